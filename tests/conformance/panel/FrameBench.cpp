#include "FrameBench.h"
#include "controls/FrameEnhancedPrivate.h"

#include <optional>

namespace tarvik::paneltest {

namespace {

class CountingOption : public OptionButton {
 public:
  using OptionButton::OptionButton;
  void SetEnabled(Boolean fEnable) override {
    ++intWrites;
    OptionButton::SetEnabled(fEnable);
  }
  int intWrites = 0;
};

/// A control without any property.
class BareControl : public QWidget, public Control {
 public:
  using QWidget::QWidget;
};
/// The Index of a button, nothing for one outside of any control array.
Json IndexOf(const OptionButton &button) {
  Json index = nullptr;
  IgnoreErrors([&] { index = button.Index(); });
  return index;
}

}  // namespace

FrameBench::FrameBench(std::string strName, Recorder &recorder, const bool &fDesignMode)
    : m_strName(std::move(strName)), m_recorder(recorder), m_site(fDesignMode), m_frame(nullptr, m_site) {
  m_actions = Contents();
  m_actions.merge(Properties());
  m_frame.setObjectName(QString::fromStdString(m_strName));
  m_frame.ReadProperties({});
}

void FrameBench::AddOption(Words &words) {
  std::optional<Integer> intIndex;
  if (words.Peek().strText == "noindex")
    words.Take();
  else
    intIndex = static_cast<Integer>(words.Number());
  auto *button = new CountingOption(m_frame.Container(), intIndex);  // the frame owns it
  button->SetTag(words.Text());
  const std::string strButton = m_strName + ".opt(" + (intIndex ? std::to_string(*intIndex) : "") + ")";
  button->setObjectName(QString::fromStdString(strButton));
  button->Click.Connect([this, strButton] { m_recorder.Add({"event", strButton, "Click"}); });
}

OptionButton &FrameBench::Button(Long lngButton) const {
  const auto arrButtons = m_frame.OptionButtons();
  if (lngButton < 0 || static_cast<std::size_t>(lngButton) >= arrButtons.size()) throw BadLine("no such button");
  return dynamic_cast<OptionButton &>(*arrButtons[static_cast<std::size_t>(lngButton)]);
}

void FrameBench::ActAsUser(Long lngButton, Json &answer) {
  OptionButton &button = Button(lngButton);
  if (button.isEnabled())
    button.click();
  else
    answer["refused"] = "disabled";
}

std::map<std::string, FrameBench::Action> FrameBench::Contents() {
  return {
      {"opt", [this](Words &words) { return AddOption(words), NoResult; }},
      {"other", [this](Words &) { return new CountingButton(m_frame.Container()), NoResult; }},
      {"noenabled", [this](Words &) { return new BareControl(m_frame.Container()), NoResult; }},
      {"optenabled",
       [this](Words &words) {
         OptionButton &button = Button(words.Number());
         return button.SetEnabled(words.Flag()), NoResult;
       }},
      {"match",
       [this](Words &words) {
         const Variant vValue = ToVariant(words.Value());
         return m_frame.Match(vValue, ToVariant(words.Value())), NoResult;
       }},
      {"focus", [this](Words &) { return m_frame.SetFocusOnOpt(), NoResult; }},
      {"resize",
       [this](Words &words) {
         // Control and inner frame have the same size, whatever the unit; here a pixel stands for a twip.
         const int width = words.Number();
         m_frame.resize(width, words.Number());
         m_frame.show();
         m_frame.hide();
         const auto &fra = *m_frame.findChild<QWidget *>("fra");
         return Json::array({fra.width(), fra.height()});
       }},
      {"read", [this](Words &words) { return m_frame.ReadProperties(ToBag(words.Text())), NoResult; }},
      {"write",
       [this](Words &) {
         PropertyBag bag;
         m_frame.WriteProperties(bag);
         return Written(bag);
       }},
      {"reported", [this](Words &) { return m_site.TakeReported(); }},
      {"view", [this](Words &) { return View(); }},
  };
}

std::map<std::string, FrameBench::Action> FrameBench::Properties() {
  const auto property = [](auto &&read, auto &&write) -> Action {
    return [read, write](Words &words) -> Json {
      if (words.Empty()) return read();
      write(words);
      return NoResult;
    };
  };
  return {
      {"index", property([this] { return Json(m_frame.ArrayIndex()); },
                         [this](Words &words) { m_frame.SetArrayIndex(static_cast<Integer>(words.Number())); })},
      {"value", property([this] { return ToJsonValue(m_frame.Value()); },
                         [this](Words &words) { m_frame.SetValue(ToVariant(words.Value())); })},
      {"enabled", property([this] { return Json(static_cast<bool>(m_frame.Enabled())); },
                           [this](Words &words) { m_frame.SetEnabled(words.Flag()); })},
      {"caption", property([this] { return Json(m_frame.Caption()); },
                           [this](Words &words) { m_frame.SetCaption(words.Text()); })},
      {"border", property([this] { return Json(m_frame.BorderStyle()); },
                          [this](Words &words) { m_frame.SetBorderStyle(words.Number()); })},
      {"appearance", property([this] { return Json(m_frame.Appearance()); },
                              [this](Words &words) { m_frame.SetAppearance(words.Number()); })},
  };
}

Json FrameBench::View() const {
  Json list = Json::array();
  for (Control *control : FrameEnhanced::Private::Of(m_frame).ContainedControls()) {
    if (const auto *option = dynamic_cast<const CountingOption *>(control))
      list.push_back({"opt", IndexOf(*option), static_cast<bool>(option->Value()), static_cast<bool>(option->Enabled()),
                      option->intWrites});
    else if (const auto *other = dynamic_cast<const CountingButton *>(control))
      list.push_back({"other", nullptr, nullptr, static_cast<bool>(other->Enabled()), other->intWrites});
    else
      list.push_back({"other", nullptr, nullptr, nullptr, 0});
  }
  return list;
}

}  // namespace tarvik::paneltest
