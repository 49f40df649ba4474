#include "CboBench.h"

#include "StateReader.h"
#include "controls/CboEnhancedPrivate.h"

namespace tarvik::paneltest {

namespace {

/// Height of the list on the bench, twips.
constexpr Single ListHeight = 315;

Integer Position(Words &words) { return static_cast<Integer>(words.Number()); }

}  // namespace

CboBench::CboBench(const std::string &strName, Recorder &recorder, const bool &fDesignMode)
    : m_site(fDesignMode), m_list(nullptr, m_site) {
  m_actions = Operations();
  m_actions.merge(Properties());
  m_list.setObjectName(QString::fromStdString(strName));
  m_list.InitProperties();
  m_list.SetListHeight(ListHeight);
  m_list.Click.Connect([strName, &recorder] { recorder.Add({"event", strName, "Click"}); });
  m_site.TakeReported();
}

void CboBench::ActAsUser(Long lngItem, Json &answer) {
  auto &items = *m_list.findChild<QComboBox *>();
  if (!m_list.isEnabled() || !items.isEnabled())
    answer["refused"] = "disabled";
  else if (lngItem < 0 || lngItem >= items.count())
    answer["refused"] = "noitem";
  else
    items.setCurrentIndex(lngItem);
}

std::map<std::string, CboBench::Action> CboBench::Operations() {
  return {
      {"add",
       [this](Words &words) {
         const std::string strText = words.Text();
         const Long lngData = words.Number();
         const Long lngGroup = words.Empty() ? 0 : words.Number();
         const Boolean fDefault = !words.Empty() && words.Flag();
         m_list.AddItemData(strText, lngData, lngGroup, fDefault);
         return NoResult;
       }},
      {"clear", [this](Words &) { return m_list.Clear(), NoResult; }},
      {"byitem",
       [this](Words &words) { return Json(static_cast<bool>(m_list.SetListIndexByItemData(words.Number()))); }},
      {"bygroup",
       [this](Words &words) { return Json(static_cast<bool>(m_list.SetListIndexByGroupData(words.Number()))); }},
      {"item",
       [this](Words &words) {
         return Json(words.Empty() ? m_list.GetCurrItemData() : m_list.GetCurrItemData(words.Number()));
       }},
      {"group",
       [this](Words &words) {
         return Json(words.Empty() ? m_list.GetCurrGroupData() : m_list.GetCurrGroupData(words.Number()));
       }},
      {"save", [this](Words &words) { return m_list.SaveListIndex(Position(words)), NoResult; }},
      {"recall", [this](Words &words) { return m_list.RecallListIndex(Position(words)), NoResult; }},
      {"enablerecall",
       [this](Words &words) {
         const Boolean fEnable = words.Flag();
         return m_list.EnableAndRecall(fEnable, Position(words)), NoResult;
       }},
      {"resize", [this](Words &words) { return m_list.Resize(static_cast<Single>(words.Real())), NoResult; }},
      {"read", [this](Words &words) { return m_list.ReadProperties(ToBag(words.Text())), NoResult; }},
      {"write",
       [this](Words &) {
         PropertyBag bag;
         m_list.WriteProperties(bag);
         return Written(bag);
       }},
      {"reported", [this](Words &) { return m_site.TakeReported(); }},
      {"saved", [this](Words &) { return Json(CboEnhanced::Private::Of(m_list).strSavedIndexes); }},
      {"view", [this](Words &) { return View(); }},
      {"count", [this](Words &) { return Json(m_list.ListCount()); }},
      {"text", [this](Words &) { return Json(m_list.Text()); }},
  };
}

std::map<std::string, CboBench::Action> CboBench::Properties() {
  const auto property = [](auto &&read, auto &&write) -> Action {
    return [read, write](Words &words) -> Json {
      if (words.Empty()) return read();
      write(words);
      return NoResult;
    };
  };
  return {
      {"enabled", property([this] { return Json(static_cast<bool>(m_list.Enabled())); },
                           [this](Words &words) { m_list.SetEnabled(words.Flag()); })},
      {"index", property([this] { return Json(m_list.ListIndex()); },
                         [this](Words &words) { m_list.SetListIndex(words.Number()); })},
      {"tagx",
       property([this] { return Json(m_list.TagX()); }, [this](Words &words) { m_list.SetTagX(words.Text()); })},
      {"caption",
       property([this] { return Json(m_list.Caption()); }, [this](Words &words) { m_list.SetCaption(words.Text()); })},
      {"alignment", property([this] { return Json(m_list.CaptionAlignment()); },
                             [this](Words &words) { m_list.SetCaptionAlignment(words.Number()); })},
      {"width", property([this] { return Json(m_list.CaptionWidth()); },
                         [this](Words &words) { m_list.SetCaptionWidth(static_cast<Single>(words.Real())); })},
  };
}

Json CboBench::View() const {
  Json items = Json::array();
  for (Long i = 0; i < m_list.ListCount(); ++i) items.push_back(Json::array({m_list.ItemText(i), m_list.ItemData(i)}));
  const auto &inside = CboEnhanced::Private::Of(m_list);
  const auto &layout = inside.layout;
  const auto &label = *m_list.findChild<QLabel *>("lblCaption");
  return {
      {"items", items},
      {"index", m_list.ListIndex()},
      {"listEnabled", static_cast<bool>(OwnEnabled(*inside.cbo))},
      {"back", BackColorName(*inside.cbo)},
      {"labelVisible", static_cast<bool>(OwnVisible(*inside.lblCaption))},
      {"labelEnabled", static_cast<bool>(OwnEnabled(label))},
      {"labelWidth", layout.label.sngWidth},
      {"labelTop", layout.label.sngTop},
      {"labelHeight", layout.label.sngHeight},
      {"listLeft", layout.list.sngLeft},
      {"listWidth", layout.list.sngWidth},
      {"height", layout.sngHeight},
  };
}

}  // namespace tarvik::paneltest
