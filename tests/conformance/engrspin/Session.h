#pragma once

#include <QWidget>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "engrspin/EngrSpinPrivate.h"
#include "engrspin/SpinControl.h"
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

/// A format of the field whose next use can be told to fail, or to write another value than the field's.
class ScriptedFormat : public ValueFormat {
 public:
  explicit ScriptedFormat(const ValueFormat &format) : m_format(format) {}
  std::string Text(const EngrNumber &number, Long &lngExponent) const override;

  mutable std::optional<RunTimeError> failure;
  mutable std::optional<Double> otherValue;

 private:
  const ValueFormat &m_format;
};

class AdapterField : public EngrSpin {
 public:
  AdapterField(EngrNumber number, QWidget *parent, ControlSite &site) : EngrSpin(parent, site) {
    Private &inside = Private::Of(*this);
    inside.number = number;
    // The commands do to the text box what its keys would do; nobody pastes or drops a text.
    QObject::disconnect(inside.txtNumber, &QLineEdit::textEdited, nullptr, nullptr);
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
  EngrSpin::Private &Inside() { return EngrSpin::Private::Of(*m_field); }
  EngrNumber &Number() { return Inside().number; }
  /// The next conversion of a value to text fails.
  void FailNextText(const RunTimeError &error);
  /// Mantissa of a value in the field's engineering format; its exponent becomes the one in force.
  std::string MantissaOf(Double dblValue);
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
  ScriptedFormat m_engineering{EngineeringFormat()};
  ScriptedFormat m_plain{PlainFormat()};
  EngrSpin *m_field = nullptr;
};

}  // namespace tarvik::conformance
