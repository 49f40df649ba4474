#include "RandomActions.h"

#include <QTabWidget>
#include <cmath>

#include "panel/Panel.h"
#include "platform/CheckBox.h"
#include "platform/OptionButton.h"
#include "platform/ToolPopup.h"

namespace tarvik::test {

namespace {

bool IsWorked(const QWidget &widget) {
  if (!widget.isVisible() || !widget.isEnabled()) return false;
  if (const auto *field = dynamic_cast<const EngrSpin *>(&widget)) return !field->Locked();
  if (const auto *list = dynamic_cast<const CboEnhanced *>(&widget)) return list->Enabled() && list->ListCount() > 0;
  if (dynamic_cast<const OptionButton *>(&widget) || dynamic_cast<const ToolPopup *>(&widget)) return true;
  const QString strName = widget.objectName();
  return strName == "picWave" || strName == "cmdPeriodOrFreq" || strName == "cmdNumOrGraph" ||
         strName == "chkAutoOutputOnOff" || strName == "chkAutoDownOnError";
}

std::vector<QWidget *> WorkedControls(const SimulatorSession &session) {
  std::vector<QWidget *> arrControls;
  for (auto *widget : session->Get<QTabWidget>("tabMain").currentWidget()->findChildren<QWidget *>())
    if (IsWorked(*widget)) arrControls.push_back(widget);
  return arrControls;
}

/// Any number that the field takes, small ones as often as large ones.
std::string NumberFor(const EngrSpin &field, const std::string &strName, unsigned value) {
  const Double dblPart = value / 4294967295.0;
  Double dblValue = field.Min() + (field.Max() - field.Min()) * dblPart;
  if (field.Min() >= 0 && field.Max() > 0) {
    const Double dblLow = std::log10(std::max(field.Min(), 1e-9)), dblHigh = std::log10(std::min(field.Max(), 1e9));
    dblValue = std::pow(10, dblLow + (dblHigh - dblLow) * dblPart);
  }
  // Addresses of the pattern editor count bits.
  if (strName == "esAddress" || strName == "esLast") dblValue = std::floor(dblValue);
  return QString::number(dblValue, 'e', 4).toStdString();
}

void Work(QWidget &control, unsigned value, SimulatorSession &session, Done &done) {
  const std::string &strName = done.strControl;
  if (auto *field = dynamic_cast<EngrSpin *>(&control)) {
    const std::string strNumber = NumberFor(*field, strName, value);
    done.strText = "Type " + strName + ' ' + strNumber;
    session->Type(strName, strNumber);
  } else if (auto *list = dynamic_cast<CboEnhanced *>(&control)) {
    const int intItem = static_cast<int>(value % static_cast<unsigned>(list->ListCount()));
    done.fOther = intItem != list->ListIndex();
    done.strText = "Take " + strName + ' ' + std::to_string(intItem);
    session->Take(strName, intItem);
  } else if (auto *popup = dynamic_cast<ToolPopup *>(&control)) {
    const std::string strKey = popup->Entries()[value % popup->Entries().size()].first;
    done.strText = "Choose " + strName + ' ' + strKey;
    // How many bits, where the entry asks.
    session.host.arrInputAnswers = {std::to_string(2 + value % 20)};
    session->TakeMenu(strName, strKey);
  } else if (strName == "picWave") {
    done.strText = "Press " + std::to_string(value % 2) + " in the pattern";
    QTest::keyClick(&control, static_cast<char>('0' + value % 2));
  } else if (auto *option = dynamic_cast<OptionButton *>(&control)) {
    done.fOther = !option->Value();
    done.strText = "Choose " + strName;
    session->Choose(strName);
  } else if (dynamic_cast<CheckBox *>(&control)) {
    done.strText = "Turn over " + strName;
    session->Choose(strName);
  } else {
    done.strText = "Click " + strName;
    session->Click(strName);
  }
}

}  // namespace

std::vector<Action> ActionsOf(unsigned seed, std::size_t count) {
  static constexpr Action::Kind Kinds[] = {Action::Upload,    Action::Download, Action::ShowPage, Action::ShowPage,
                                           Action::Undo,      Action::Undo,     Action::Redo,     Action::Change,
                                           Action::Change,    Action::Change,   Action::Change,   Action::Change,
                                           Action::StepField, Action::Change,   Action::Change,   Action::Change};
  std::mt19937 generator(seed);
  const auto random = [&generator] { return static_cast<unsigned>(generator()); };
  std::vector<Action> arrActions(count);
  for (Action &action : arrActions) action = {Kinds[random() % std::size(Kinds)], random(), random()};
  return arrActions;
}

Done Do(const Action &action, SimulatorSession &session) {
  Done done{action.kind, {}, {}};
  switch (action.kind) {
    case Action::Upload:
      done.strText = "Upload";
      session->Click("cmdUpload");
      return done;
    case Action::Download:
      done.strText = "Download";
      session->Click("cmdDownload");
      return done;
    case Action::ShowPage: {
      const auto ePage = static_cast<TabNumEnum>(action.target % eNumPages);
      done.strText = "Show page " + std::to_string(ePage);
      session->ShowPage(ePage);
      return done;
    }
    case Action::Undo:
      done.strText = "Undo";
      session.panel->undo();
      return done;
    case Action::Redo:
      done.strText = "Redo";
      session.panel->redo();
      return done;
    case Action::StepField:
    case Action::Change: break;
  }
  const auto arrControls = WorkedControls(session);
  if (arrControls.empty()) return done;
  QWidget &control = *arrControls[action.target % arrControls.size()];
  done.strControl = control.objectName().toStdString();
  if (action.kind == Action::StepField && dynamic_cast<EngrSpin *>(&control)) {
    done.strText = std::string(action.value % 2 ? "Up in " : "Down in ") + done.strControl;
    session->PressIn(done.strControl, action.value % 2 ? Qt::Key_Up : Qt::Key_Down);
  } else {
    done.kind = Action::Change;
    Work(control, action.value, session, done);
  }
  return done;
}

}  // namespace tarvik::test
