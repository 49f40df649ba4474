#include "Adapter.h"

#include <QCoreApplication>
#include <QShowEvent>
#include <utility>

#include "Procedures.h"
#include "StaticReader.h"
#include "UserActions.h"
#include "ValueText.h"
#include "controls/CboEnhanced.h"
#include "engrspin/EngrSpin.h"
#include "platform/OptionButton.h"

namespace tarvik::paneltest {

Adapter::Adapter() {
  m_world.host.Yielded = [this] {
    for (const std::string &strLine : std::exchange(m_world.arrAtYield, {})) {
      Json unused;
      Execute(strLine, unused);
    }
  };
  Reset();
}

Adapter::~Adapter() { m_panels.clear(); }

const std::map<std::string, Adapter::Command> &Adapter::Commands() {
  static const std::map<std::string, Command> commands{
      {"hello", &Adapter::Hello},       {"surface", &Adapter::SetSurface},  {"design", &Adapter::Design},
      {"panel", &Adapter::ChoosePanel}, {"store", &Adapter::Store},         {"answer", &Adapter::QueueAnswer},
      {"atyield", &Adapter::AtYield},   {"logfail", &Adapter::LogFail},     {"driver", &Adapter::Driver},
      {"instr", &Adapter::Instr},       {"fake", &Adapter::Fake},           {"show", &Adapter::Show},
      {"hide", &Adapter::Hide},         {"terminate", &Adapter::Terminate}, {"state", &Adapter::TellState},
      {"get", &Adapter::Get},           {"static", &Adapter::Static},       {"prop", &Adapter::Prop},
      {"invoke", &Adapter::Invoke},
  };
  return commands;
}

Json Adapter::Answer(const std::string &strLine) {
  Json answer = Json::object();
  try {
    if (strLine == "reset") {
      Reset();
      m_before = State();
      return answer;
    }
    Execute(strLine, answer);
    QCoreApplication::processEvents();
  } catch (const std::invalid_argument &fault) {
    answer["error"] = fault.what();
  }
  if (const Json out = m_world.recorder.Take(); !out.empty()) answer["out"] = out;
  StateMap now = State();
  Json changed = Json::object();
  for (const auto &[strKey, value] : now) {
    const auto before = m_before.find(strKey);
    if (before == m_before.end() || before->second != value) changed[strKey] = value;
  }
  m_before = std::move(now);
  if (!changed.empty()) answer["changed"] = std::move(changed);
  for (const auto &[lngPanel, panel] : m_panels) {
    if (panel->HasDrawn()) answer["drawing"] = panel->Drawing();
    panel->ForgetDrawing();
  }
  return answer;
}

void Adapter::Execute(const std::string &strLine, Json &answer) {
  Words words(strLine);
  const std::string strCommand = words.Text();
  if (const auto command = Commands().find(strCommand); command != Commands().end())
    (this->*command->second)(words, answer);
  else if (!UserActions(Panel()).Run(strCommand, words, answer) && !m_benches.Run(strCommand, words, answer))
    throw BadLine("unknown command " + strCommand);
}

void Adapter::Reset() {
  m_panels.clear();
  m_benches.Reset();
  QCoreApplication::processEvents();
  m_world.Reset();
  m_surface = {};
  m_lngPanel = 1;
  m_panels[m_lngPanel] = std::make_unique<PanelUnderTest>(m_world.recorder, m_surface);
  m_world.recorder.Take();
}

StateMap Adapter::State() const {
  StateMap state;
  for (const auto &[lngPanel, panel] : m_panels)
    ReadPanelState(*panel, lngPanel == 1 ? "" : "p" + std::to_string(lngPanel) + ".", state);
  ReadCommonState(m_world, state);
  return state;
}

// ---- Scripting ----

void Adapter::Hello(Words &, Json &answer) {
  answer["ret"] = {
      {"protocol", 1},
      {"who", "the panel on the offscreen platform over a scripted driver"},
      {"surface", Json::array({m_surface.sngWidth, m_surface.sngHeight, m_surface.sngCharacter, m_surface.sngLine})},
      {"priv", true},
      {"calls", true},
      {"drv", true},
      {"focus", true},
      {"pointer", true},
      {"invoke", true},
      {"bench", true},
  };
}

void Adapter::SetSurface(Words &words, Json &) {
  m_surface.sngWidth = static_cast<Single>(words.Real());
  m_surface.sngHeight = static_cast<Single>(words.Real());
  m_surface.sngCharacter = static_cast<Single>(words.Real());
  m_surface.sngLine = static_cast<Single>(words.Real());
  for (const auto &[lngPanel, panel] : m_panels) panel->SetSurface(m_surface);
}

namespace {

/// Groups of which the form brings the second button, "Off".
bool StartsOff(const std::string &strGroup) {
  return strGroup.starts_with("grpLimitsChanel") || strGroup.find("OnOff") != std::string::npos;
}

/// Turns on the button with this Index, or none for -1, as the form would bring it.
void ChooseByDesign(const FrameEnhanced &group, Long lngIndex) {
  for (OptionButtonControl *control : group.OptionButtons()) {
    auto &button = dynamic_cast<OptionButton &>(*control);
    if (button.Index() == lngIndex)
      button.SetDesignValue(True);
    else if (button.Value())
      button.SetDesignValue(False);
  }
}

}  // namespace

void Adapter::Design(Words &words, Json &) {
  if (words.Peek().strText == "default") {
    for (FrameEnhanced *group : Panel().Gui().findChildren<FrameEnhanced *>()) {
      const auto arrButtons = group->OptionButtons();
      if (arrButtons.size() < 2) continue;
      ChooseByDesign(*group, arrButtons[StartsOff(ObjectName(*group)) ? 1 : 0]->Index());
    }
    return;
  }
  std::string strGroup = words.Text();
  if (!Panel().Find(strGroup)) strGroup += "(" + words.Text() + ")";
  const bool fNone = words.Peek().strText == "none";
  ChooseByDesign(Panel().Get<FrameEnhanced>(strGroup), fNone ? -1 : words.Number());
}

void Adapter::ChoosePanel(Words &words, Json &) {
  m_lngPanel = words.Number();
  auto &panel = m_panels[m_lngPanel];
  if (!panel) panel = std::make_unique<PanelUnderTest>(m_world.recorder, m_surface);
}

void Adapter::Store(Words &words, Json &answer) {
  AdapterHost &host = m_world.host;
  const std::string strWhat = words.Text();
  if (strWhat == "set" || strWhat == "del") {
    const std::string strSection = words.Text();
    const std::string strKey = words.Text();
    if (strWhat == "set")
      host.store[{strSection, strKey}] = words.Text();
    else
      host.store.erase({strSection, strKey});
  } else if (strWhat == "dump") {
    Json list = Json::array();
    for (const auto &[place, strText] : host.store) list.push_back(Json::array({place.first, place.second, strText}));
    answer["ret"] = list;
  } else if (strWhat == "failwrite") {
    const std::string strKey = words.Text();
    host.failingWrite = {strKey, words.Text()};
  } else if (strWhat == "okwrite") {
    host.failingWrite.reset();
  } else {
    throw BadLine("unknown command of the store");
  }
}

void Adapter::QueueAnswer(Words &words, Json &) {
  const Word word = words.Take();
  if (word.strText == "clear" && !word.fQuoted)
    m_world.host.arrAnswers.clear();
  else
    m_world.host.arrAnswers.push_back(word.strText);
}

void Adapter::AtYield(Words &words, Json &) { m_world.arrAtYield.push_back(words.Rest()); }

void Adapter::LogFail(Words &words, Json &) {
  const Word word = words.Take();
  m_world.host.logFailure.reset();
  if (word.fQuoted) m_world.host.logFailure = word.strText;
}

void Adapter::Driver(Words &words, Json &) {
  using Creation = DriverScript::Creation;
  const std::string strWhat = words.Text();
  DriverScript &script = m_world.script;
  script.fInputShown = false;
  if (strWhat == "ok")
    script.creation = Creation::Ok;
  else if (strWhat == "none")
    script.creation = Creation::None;
  else if (strWhat == "none-then-ok")
    script.creation = Creation::NoneUntilInput;
  else if (strWhat == "error") {
    script.creation = Creation::Error;
    script.creationFailure.lngNumber = words.Number();
    script.creationFailure.strText = words.Text();
  } else
    throw BadLine("unknown creation");
}

void Adapter::Instr(Words &words, Json &) {
  const std::string strWhat = words.Text();
  if (strWhat == "add")
    m_world.script.AddInstrument(words);
  else if (strWhat == "set") {
    const Long lngNumber = words.Number();
    m_world.script.ChangeInstrument(lngNumber, words);
  } else if (strWhat == "clear")
    m_world.script.RemoveInstruments();
  else
    throw BadLine("unknown command of the instruments");
}

void Adapter::Fake(Words &words, Json &) {
  DriverScript &script = m_world.script;
  const std::string strWhat = words.Text();
  if (strWhat == "rz") {
    const auto [strFirst, strSecond] = [&] {
      const std::string strPair = words.Text();
      const std::size_t comma = strPair.find(',');
      return std::pair(strPair.substr(0, comma), strPair.substr(comma + 1));
    }();
    script.SetAnswer("rz", {Words(strFirst).Real(), Words(strSecond).Real()});
  } else if (strWhat == "pll") {
    const Double dblFreq = words.Real();
    script.SetAnswer("pll", {dblFreq, words.Real()});
  } else if (strWhat == "pattern") {
    PatternScript &row = script.arrRows.at(static_cast<std::size_t>(words.Number()));
    row.arrBytes = test::FromHex(words.Text());
    row.lngBits = words.Number();
  } else if (strWhat == "fail") {
    FailureScript failure;
    failure.strOperation = words.Text();
    failure.lngNumber = words.Number();
    failure.strText = words.Text();
    if (!words.Empty()) failure.lngTimes = words.Number();
    script.AddFailure(std::move(failure));
  } else if (strWhat == "commitfail") {
    script.commitFailure = words.Text();
  } else if (strWhat == "errors") {
    script.strErrors = words.Text();
  } else if (strWhat == "warnings") {
    script.strWarnings = words.Text();
  } else if (strWhat == "selftest") {
    script.strSelfTest = words.Text();
  } else {
    script.SetAnswers(strWhat, words);
  }
}

// ---- The host ----

void Adapter::Show(Words &, Json &) {
  TarvikGUI &gui = Panel().Gui();
  Panel().fShown = true;
  if (gui.isVisible()) {
    // A host may show a panel that it has not hidden; the toolkit sends no event then.
    QShowEvent event;
    QCoreApplication::sendEvent(&gui, &event);
  } else {
    gui.show();
  }
  // The panel starts behind its first frame.
  QCoreApplication::processEvents();
  QCoreApplication::sendPostedEvents();
}

void Adapter::Hide(Words &, Json &) {
  Panel().fShown = false;
  Panel().Gui().hide();
}

void Adapter::Terminate(Words &, Json &) {
  m_world.Run([this] { TarvikGUI::Panel::Of(Panel().Gui()).UserControl_Terminate(); });
}

// ---- Looking ----

void Adapter::TellState(Words &, Json &answer) { answer["ret"] = State(); }

void Adapter::Get(Words &words, Json &answer) {
  const StateMap state = State();
  const std::string strKey = words.Text();
  const auto value = state.find(strKey);
  if (value == state.end()) throw BadLine("no such key: " + strKey);
  answer["ret"] = value->second;
}

void Adapter::Static(Words &words, Json &answer) {
  const std::string strControl = words.Text();
  answer["ret"] = ReadStatic(Panel(), strControl, words.Text());
}

// ---- White box ----

void Adapter::Prop(Words &words, Json &) {
  std::string strName = words.Text();
  if (!Panel().Find(strName)) strName += "(" + words.Text() + ")";
  const std::string strProperty = words.Text();
  QWidget *widget = Panel().Find(strName);
  auto *field = dynamic_cast<EngrSpin *>(widget);
  auto *list = dynamic_cast<CboEnhanced *>(widget);
  auto *control = dynamic_cast<Control *>(widget);
  if (!control) RaiseNoControl(strName);
  m_world.Run([&] {
    if (strProperty == "Enabled")
      control->SetEnabled(words.Flag());
    else if (strProperty == "ListIndex" && list)
      list->SetListIndex(words.Number());
    else if (strProperty == "Value" && field)
      field->SetValue(words.Real());
    else if (strProperty == "Min" && field)
      field->SetMin(words.Real());
    else if (strProperty == "Max" && field)
      field->SetMax(words.Real());
    else if ((strProperty == "Lock" || strProperty == "LockBlank") && field)
      field->LockControl(words.Flag(), strProperty == "LockBlank");
    else
      throw BadLine("unknown property " + strProperty);
  });
}

void Adapter::Invoke(Words &words, Json &answer) {
  const std::string strProcedure = words.Text();
  m_world.Run([&] {
    const Json ret = paneltest::Invoke(TarvikGUI::Panel::Of(Panel().Gui()), strProcedure, words);
    if (!ret.is_null()) answer["ret"] = ret;
  });
}

}  // namespace tarvik::paneltest
