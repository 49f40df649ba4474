#include "Session.h"

namespace tarvik::test {

namespace {

std::string Crc(const std::vector<Byte> &arrBytes) {
  std::uint32_t crc = 0xFFFFFFFF;
  for (const Byte byte : arrBytes) {
    crc ^= byte;
    for (int i = 0; i < 8; ++i) crc = (crc >> 1) ^ (crc & 1 ? 0xEDB88320 : 0);
  }
  char text[16];
  std::snprintf(text, sizeof text, "%08x", ~crc);
  return text;
}

Json Stream(const ByteArray &arr, Long lngBytes) {
  const auto &bytes = arr.Elements();
  return {{"hex", ToHex({bytes.begin(), bytes.begin() + lngBytes})}, {"crc", Crc(bytes)}};
}

Json FieldState(const EngrSpin &field) {
  return {{"v", field.Value()}, {"min", field.Min()}, {"max", field.Max()}, {"text", field.Text()}};
}

Json ScrollState(const HScrollBar &bar) {
  const TwipsRect place = bar.Place();
  return {{"min", bar.Min()},
          {"max", bar.Max()},
          {"v", bar.Value()},
          {"large", bar.LargeChange()},
          {"en", static_cast<bool>(bar.Enabled())},
          {"at", {place.sngLeft, place.sngTop, place.sngWidth, place.sngHeight}}};
}

/// One value of each row.
template <class Value>
Json RowValues(const PatternStore &store, Value value) {
  Json arr = Json::array();
  for (const RowInfo &row : store.Rows()) arr.push_back(value(row));
  return arr;
}

}  // namespace

Json Session::TakeState() {
  BitPattern::Private &inside = Inside();
  const PatternStore &store = inside.store;
  Json last = FieldState(Field("esLast"));
  last["old"] = Field("esLast").OldValue();

  Json generators = Json::array();
  for (const Long lngCode : {eChan1, eChan2, eStrobe}) {
    const RowInfo &row = *store.RowOf(lngCode);
    generators.push_back({row.lngGenerator, row.lngGenParam});
  }
  Json options = Json::array();
  for (const char *strName : {"optChannelRzNrz(0)", "optChannelRzNrz(1)", "optChannelRzNrz(2)", "optChannelRzNrz(3)"})
    options.push_back(static_cast<bool>(Find<OptionButton>(strName).Value()));
  const auto enabled = [&](const char *strName) { return static_cast<bool>(Find<Control>(strName).Enabled()); };

  return {{"addr", FieldState(Field("esAddress"))},
          {"last", last},
          {"len", store.Length()},
          {"bytes", store.BytesUsed()},
          {"c1", Stream(store.Chan1(), store.BytesUsed())},
          {"c2", Stream(store.Chan2(), store.BytesUsed())},
          {"st", Stream(store.Strobe(), store.BytesUsed())},
          {"gen", generators},
          {"num", RowValues(store, [](const RowInfo &row) { return static_cast<bool>(row.fNumeric); })},
          {"rz", RowValues(store, [](const RowInfo &row) { return static_cast<bool>(row.fRz); })},
          {"base", RowValues(store, [](const RowInfo &row) { return row.sngBaseY; })},
          {"cells", inside.view->CellsPerView()},
          {"sel", inside.view->Selected()},
          {"ch2", static_cast<bool>(store.Chan2Enabled())},
          {"hs", ScrollState(Find<HScrollBar>("HScroll1"))},
          {"cap", Find<CommandButton>("cmdNumOrGraph").Caption()},
          {"opt", options},
          {"en",
           {{"grp1", enabled("grpChannelRzOrNrz(1)")},
            {"tool1", enabled("toolPopup(1)")},
            {"tool2", enabled("toolPopup(2)")},
            {"self", static_cast<bool>(m_editor->Enabled())}}},
          {"inrange", static_cast<bool>(inside.fInRange)},
          {"answers", m_host.arrInputAnswers.size()},
          {"ev", std::exchange(m_arrEvents, Json::array())}};
}

}  // namespace tarvik::test
