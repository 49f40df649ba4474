#pragma once

#include <QLineEdit>
#include <QWidget>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "EngrSpinAccess.h"
#include "support/Host.h"
#include "support/modGlobals.h"

namespace tarvik::conformance {

using Json = nlohmann::ordered_json;

/// "%a" of the number.
std::string Hex(Double dblValue);

/// A command that is not understood.
struct ProtocolError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// A number whose next conversion to text can be told to fail.
class FailingNumber : public EngrNumber {
 public:
  /// The next value written fails, also one that the field shows already.
  void FailNext(RunTimeError error) {
    failure = std::move(error);
    SetDecimal(Decimal());
  }
  std::optional<RunTimeError> failure;

 protected:
  std::string TextOfValue() override;
};

class AdapterField : public EngrSpin {
 public:
  AdapterField(std::unique_ptr<EngrNumber> number, QWidget *parent, ControlSite &site)
      : EngrSpin(std::move(number), parent, site) {
    // The commands do to the text box what its keys would do; nobody pastes or drops a text.
    auto *text = findChild<QLineEdit *>(QStringLiteral("txtNumber"));
    QObject::disconnect(text, &QLineEdit::textEdited, nullptr, nullptr);
  }

 protected:
  // The commands are the container: no layout before they ask for one.
  void resizeEvent(QResizeEvent *event) override { QWidget::resizeEvent(event); }
};

/// One field and the scripted surroundings: host, container, panel and instrument. Whatever happens goes
/// to the list of entries.
class Session : public Host, public ControlSite, public PanelReference {
 public:
  Session();
  ~Session() override;

  void Begin(bool fRun);
  void SetPanel(bool fKnown);

  EngrSpin &Field() { return *m_field; }
  EngrSpinAccess Access() { return EngrSpinAccess(*m_field); }
  FailingNumber &Number() { return *m_number; }
  bool HasField() const { return m_field != nullptr; }
  Json State();

  Json out = Json::array();
  char chSeparator = '.';
  bool fOnline = false;
  bool fVerbose = false;
  int intHookCount = 0;
  std::vector<std::string> arrHookCommands;
  bool fSwallowTab = false;
  std::function<void(const std::string &)> runHookCommand;

  BoxAnswer MsgBox(const std::string &strText, BoxIcon icon, BoxButtons, const std::string &strTitle) override;
  std::string InputBox(const std::string &, const std::string &, const std::string &) override { return {}; }
  void Beep() override { out.push_back({"Beep"}); }
  Integer MousePointer() const override { return PointerDefault; }
  void SetMousePointer(Integer) override {}
  std::string GetSetting(const std::string &, const std::string &, const std::string &,
                         const std::string &strDefault) override {
    return strDefault;
  }
  void SaveSetting(const std::string &, const std::string &, const std::string &, const std::string &) override {}
  char DecimalSeparator() const override { return chSeparator; }
  void AppendToFile(const std::string &, std::string_view strBytes) override;
  void DoEvents() override {}

  Boolean UserMode() const override { return m_fRun; }
  void PropertyChanged(const std::string &strProperty) override { out.push_back({"PropChanged", strProperty}); }
  void SetTabState(TabStates eState, TabNumEnum ePage) override { out.push_back({"SetTabState", eState, ePage}); }

 private:
  void OnAfterUpdate();

  bool m_fRun = true;
  std::unique_ptr<QWidget> m_form;
  FailingNumber *m_number = nullptr;
  EngrSpin *m_field = nullptr;
};

}  // namespace tarvik::conformance
