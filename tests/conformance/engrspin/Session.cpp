#include "Session.h"

#include <QApplication>
#include <cstdio>
#include <regex>
#include <utility>

#include "WatchedCalls.h"
#include "support/EventBoundary.h"

namespace tarvik::conformance {

namespace {

class Instrument : public InstrReference {
 public:
  explicit Instrument(Session &session) : m_session(session) {}
  Boolean GetVerboseErrorMsg() override {
    if (m_session.fOnline) return m_session.fVerbose;
    m_session.MsgBox("You need to be online to an instrument to perform this operation", BoxIcon::Information,
                     BoxButtons::Ok, AppTitle);
    return False;
  }
  Boolean CalcPRBS(Long, Long, Long, ByteArray &) override { return False; }

 private:
  Session &m_session;
};

const char *IconName(BoxIcon icon) {
  if (icon == BoxIcon::Information) return "information";
  return icon == BoxIcon::Critical ? "critical" : "stop";
}

const char *EventName(const std::string &strEvent) {
  if (strEvent == "txtNumber_Validate") return "validate";
  if (strEvent == "txtNumber_LostFocus") return "lostfocus";
  if (strEvent == "spinCtl_Change") return "spin";
  return "gotfocus";
}

}  // namespace

std::string Hex(Double dblValue) {
  char text[40];
  std::snprintf(text, sizeof text, "%a", dblValue);
  return text;
}

std::string ScriptedFormat::Text(const EngrNumber &number, Long &lngExponent) const {
  if (failure) throw std::exchange(failure, std::nullopt).value();
  if (!otherValue) return m_format.Text(number, lngExponent);
  std::string strText;
  number.FormatEngr(*std::exchange(otherValue, std::nullopt), lngExponent, strText);
  return strText;
}

void Session::FailNextText(const RunTimeError &error) {
  EngrNumber &number = Number();
  (number.EngrMode() ? m_engineering : m_plain).failure = error;
  // A change of the format makes the field write also a value that it shows already.
  number.SetDecimal(number.Decimal());
}

std::string Session::MantissaOf(Double dblValue) {
  EngrNumber &number = Number();
  (number.EngrMode() ? m_engineering : m_plain).otherValue = dblValue;
  number.SetDecimal(number.Decimal());
  return number.ConvertValue2Engr();
}

Session::Session() {
  SetHost(this);
  gobjInstr() = std::make_shared<Instrument>(*this);
  test::UnhandledErrors() = [this](const std::string &, const std::string &strEvent, const RunTimeError &) {
    out.push_back({"Unhandled", EventName(strEvent)});
  };
}

Session::~Session() {
  m_form.reset();
  gobjInstr().reset();
  gobjPanel() = nullptr;
  SetHost(nullptr);
}

void Session::SetPanel(bool fKnown) { gobjPanel() = fKnown ? this : nullptr; }

void Session::Begin(bool fRun) {
  m_form.reset();
  out = Json::array();
  intHookCount = 0;
  arrHookCommands.clear();
  fSwallowTab = false;
  m_fRun = fRun;

  m_form = std::make_unique<QWidget>();
  m_form->setFocusPolicy(Qt::StrongFocus);
  m_form->resize(600, 200);
  m_engineering.failure.reset();
  m_plain.failure.reset();
  m_field = new AdapterField(EngrNumber(m_engineering, m_plain), m_form.get(), *this);
  m_field->setObjectName("esField");
  m_field->AfterUpdate.Connect([this] { OnAfterUpdate(); });
  m_field->OnTab.Connect([this](Boolean &fSwallow) {
    out.push_back({"OnTab"});
    if (fSwallowTab) fSwallow = True;
  });
  m_form->show();
  m_form->activateWindow();
  m_form->setFocus();
  QApplication::processEvents();
}

void Session::OnAfterUpdate() {
  out.push_back({"AfterUpdate"});
  if (intHookCount == 0) return;
  --intHookCount;
  for (const std::string &strCommand : std::vector<std::string>(arrHookCommands)) {
    try {
      runHookCommand(strCommand);
    } catch (const RunTimeError &error) {
      out.push_back({"HookError", error.Description()});
    }
  }
}

BoxAnswer Session::MsgBox(const std::string &strText, BoxIcon icon, BoxButtons, const std::string &strTitle) {
  const std::string strLines = std::regex_replace(strText, std::regex("\r\n"), "\n");
  out.push_back({"Box", IconName(icon), strTitle, strLines});
  return BoxAnswer::Ok;
}

void Session::AppendToFile(const std::string &, std::string_view strBytes) {
  static const std::regex Record("^[^\r]*\r\n(  Error: ([-0-9]*) ([^\r]*)\r\n  Mod: (.*); Proc: ([^\r]*)[^]*)$");
  const std::string strRecord(strBytes);
  std::smatch parts;
  if (!std::regex_match(strRecord, parts, Record)) {
    out.push_back({"Log", strRecord});
    return;
  }
  out.push_back({"Log", parts[4].str(), parts[5].str(), parts[2].length() == 0 ? 0 : std::stol(parts[2].str()),
                 parts[3].str(), "<date>\r\n" + parts[1].str()});
}

}  // namespace tarvik::conformance
