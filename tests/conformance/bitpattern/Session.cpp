#include "Session.h"

#include "support/EventBoundary.h"

namespace tarvik::test {

/// Stands in for the instrument class: a sequence that anybody can compute.
class Session::Instrument : public InstrReference {
 public:
  explicit Instrument(Session &session) : m_session(session) {}

  Boolean GetVerboseErrorMsg() override { return False; }
  Boolean CalcPRBS(Long lngStartAddr, Long lngLastAddr, Long lngBase, ByteArray &arr) override {
    const bool fOnline = m_session.m_fOnline;
    for (Long a = lngStartAddr; fOnline && a <= lngLastAddr; ++a) {
      const std::int64_t x = (a * std::int64_t{40503} + lngBase * std::int64_t{9973} + 12345) % 65536;
      const int mask = 0x80 >> ((a - 1) % 8);
      Byte &byte = arr[(a - 1) / 8 + 1];
      byte = static_cast<Byte>(((x >> 7) ^ (x >> 11)) & 1 ? byte | mask : byte & ~mask);
    }
    m_session.Note({"prbs", lngStartAddr, lngLastAddr, lngBase, fOnline});
    return fOnline;
  }

 private:
  Session &m_session;
};

Session::Session(const Settings &settings)
    : m_instrument(std::make_shared<Instrument>(*this)), m_fDraw(settings.fDraw), m_fOnline(settings.fOnline) {
  gobjInstr() = m_instrument;
  gobjPanel() = settings.fPanel ? this : nullptr;
  m_host.OnEntry = [this](const HostEntry &entry) { NoteHost(entry); };
  m_focus = FocusRequested().ConnectScoped([this](const std::string &strName) { Note({"focus", strName}); });

  m_editor = std::make_unique<BitPattern>(nullptr, *this);
  Inside().TakeForm(settings.form);
  Inside().view->Draw(Inside().ActualAddress());
  m_editor->RzChange.Connect([this] { NoteRzChange(); });
  auto &picWave = Find<PictureBox>("picWave");
  m_drawn = Drawn().ConnectScoped([this, &picWave](const PictureBox &picture, const DrawPrimitive &primitive) {
    if (&picture == &picWave) NoteDrawing(primitive);
  });
  picWave.SetTextMetrics({[settings](const std::string &strText) {
                            return settings.arrTextWidths.at(static_cast<std::size_t>(strText.at(0) - '0'));
                          },
                          [settings](const std::string &) { return settings.sngTextHeight; }});
  RefuseNextScrollMax(false);
  EngrSpin &esLast = Field("esLast");
  esLast.SetValue(esLast.Value());
  m_arrEvents.clear();
}

Session::~Session() {
  m_editor.reset();
  gobjPanel() = nullptr;
  gobjInstr().reset();
}

void Session::SetTabState(TabStates eState, TabNumEnum ePage) { Note({"tab", eState, ePage}); }

void Session::NoteHost(const HostEntry &entry) {
  switch (entry.kind) {
    case HostEntry::Box: Note({"msg", "critical", entry.strTitle, entry.strText}); break;
    case HostEntry::Input: Note({"input", entry.strText, entry.strTitle, entry.strAnswer}); break;
    case HostEntry::Beep: Note({"beep"}); break;
    case HostEntry::Log: NoteLogRecord(entry.strText); break;
    default: break;
  }
}

void Session::NoteLogRecord(const std::string &strRecord) {
  // The report's own box came directly before its record and is told by it.
  m_arrEvents.erase(m_arrEvents.size() - 1);
  const auto between = [&](const char *strBefore, const char *strAfter) {
    const std::size_t first = strRecord.find(strBefore) + std::string(strBefore).size();
    return strRecord.substr(first, strRecord.find(strAfter, first) - first);
  };
  Note({"log", between("  Mod: ", "; Proc: "), between("; Proc: ", "\r\n")});
}

void Session::NoteDrawing(const DrawPrimitive &primitive) {
  using Kind = DrawPrimitive::Kind;
  if (primitive.kind != Kind::Clear && !m_fDraw) return;
  switch (primitive.kind) {
    case Kind::Clear: Note({"cls"}); break;
    case Kind::Line:
      Note({"line", primitive.sngX1, primitive.sngY1, primitive.sngX2, primitive.sngY2, primitive.colour,
            static_cast<int>(primitive.style)});
      break;
    case Kind::Box:
      Note({"fill", primitive.sngX1, primitive.sngY1, primitive.sngX2, primitive.sngY2, primitive.colour});
      break;
    case Kind::Text: Note({"text", primitive.sngX1, primitive.sngY1, primitive.strText, primitive.colour}); break;
  }
}

void Session::NoteRzChange() {
  BooleanArray fRz(1, {False, False});
  m_editor->GetRz(fRz);
  Note({"RzChange", static_cast<bool>(fRz[1]), static_cast<bool>(fRz[2])});
  if (!m_fEcho) return;
  m_editor->GetRz(m_mfRz);
  m_editor->SetRz(m_mfRz, False);
}

}  // namespace tarvik::test
