#include "platform/QtHost.h"

#include <QApplication>
#include <QCheckBox>
#include <QEventLoop>
#include <QFontMetrics>
#include <QGridLayout>
#include <QInputDialog>
#include <QLocale>
#include <QMessageBox>
#include <QPointer>
#include <QSpacerItem>
#include <QTimer>
#include <QWindow>
#include <utility>
#include <vector>

#include "platform/DroppedInput.h"
#include "platform/MessageWindow.h"
#include "support/RunTimeError.h"
#include "support/SettingsFile.h"
#include "support/UserEvent.h"

namespace tarvik {

namespace {

QMessageBox::Icon ToQIcon(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::Stop:
    case BoxIcon::Critical: return QMessageBox::Critical;
    case BoxIcon::Question: return QMessageBox::Question;
    case BoxIcon::Exclamation: return QMessageBox::Warning;
    case BoxIcon::Information: return QMessageBox::Information;
  }
  return QMessageBox::NoIcon;
}

QString ShownText(const std::string &strText) {
  return QString::fromStdString(strText).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
}

/// What a title bar needs so that no window manager cuts the title: the text in bold, and a sign or button as wide as
/// the bar is high at each end and in between.
int WidthForTitle(const QString &strTitle) {
  constexpr int Signs = 6;
  QFont bold = QApplication::font();
  bold.setBold(true);
  const QFontMetrics metrics(bold);
  return metrics.horizontalAdvance(strTitle) + Signs * 3 * metrics.height() / 2;
}

/// QMessageBox ignores a minimum width; a spacer in its layout does not.
void MakeRoomForTitle(QMessageBox &box) {
  auto *grid = qobject_cast<QGridLayout *>(box.layout());
  if (!grid) return;
  auto *room = new QSpacerItem(WidthForTitle(box.windowTitle()), 0, QSizePolicy::Minimum, QSizePolicy::Fixed);
  grid->addItem(room, grid->rowCount(), 0, 1, grid->columnCount());
}

/// Somebody else's pointer; which one does not matter.
constexpr Integer PointerOfAnother = 99;

constexpr int MaxWaitForScreen = 250;  // milliseconds

bool ShowsHourglass() {
  const QCursor *cursor = QGuiApplication::overrideCursor();
  return cursor && cursor->shape() == Qt::WaitCursor;
}

/// Removes the topmost hourglass and keeps override cursors above it.
void RemoveHourglass() {
  std::vector<QCursor> arrAbove;
  while (QGuiApplication::overrideCursor() && !ShowsHourglass()) {
    arrAbove.push_back(*QGuiApplication::overrideCursor());
    QGuiApplication::restoreOverrideCursor();
  }
  QGuiApplication::restoreOverrideCursor();
  for (; !arrAbove.empty(); arrAbove.pop_back()) QGuiApplication::setOverrideCursor(arrAbove.back());
}

/// Reads what the window system has sent. Timers and sockets of the program wait.
void ReadWindowEvents() {
  QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers | QEventLoop::X11ExcludeTimers);
}

/// What stands around a box. While it asks the user something the busy pointer would be a lie, and the driver may be
/// called as soon as it is answered, so it has to be gone from the screen by then.
class AroundBox {
 public:
  explicit AroundBox(QtHost &host)
      : Beneath(QApplication::activeWindow()), m_host(host), m_fBusy(host.MousePointer() == PointerHourglass) {
    if (m_fBusy) host.SetMousePointer(PointerDefault);
  }
  ~AroundBox() {
    WaitUntilGone();
    if (m_fBusy && m_host.MousePointer() == PointerDefault) m_host.SetMousePointer(PointerHourglass);
  }
  AroundBox(const AroundBox &) = delete;
  AroundBox &operator=(const AroundBox &) = delete;

  const QPointer<QWidget> Beneath;

 private:
  /// The window manager takes the box away in its own time, and then gives the window beneath the focus back.
  void WaitUntilGone() const {
    const DroppedInput dropped;
    ReadWindowEvents();
    if (Beneath && Beneath->isVisible() && !Beneath->isActiveWindow()) {
      QEventLoop loop;
      QObject::connect(qApp, &QGuiApplication::focusWindowChanged, &loop, &QEventLoop::quit);
      QTimer::singleShot(MaxWaitForScreen, &loop, &QEventLoop::quit);
      loop.exec();
    }
    ReadWindowEvents();
    m_host.Repaint();
  }

  QtHost &m_host;
  const bool m_fBusy;
};

/// Offers to show no further box of the action.
void OfferListOnly(QMessageBox &box) {
  auto *choice = new QCheckBox(QStringLiteral("&Show the rest of this action in the list only"), &box);
  choice->setObjectName(QStringLiteral("chkListOnly"));
  choice->setToolTip(QStringLiteral("Further messages of this action come into the list of messages, without a box"));
  QObject::connect(choice, &QCheckBox::toggled, &box,
                   [action = UserEvent::BoxesOfAction()](bool fChosen) { action->fRestInListOnly = fChosen; });
  box.setCheckBox(choice);
  choice->setChecked(std::exchange(UserEvent::BoxesOfAction()->fListProposed, false));
}

}  // namespace

QtHost::~QtHost() {
  // At the end of the process the window may be left over from an application that has gone.
  if (qApp) delete m_window;
}

QtHost *QtHost::Installed() { return dynamic_cast<QtHost *>(InstalledHost()); }

void QtHost::Keep(const std::string &strText, BoxIcon icon) { m_messages.Add(Now(), icon, strText); }

void QtHost::ShowMessages(QWidget *beside) {
  if (!m_window) {
    std::string strLog = "none";
    IgnoreErrors([&] { strLog = ErrorLogPath(); });
    m_window = new MessageWindow(m_messages, QString::fromStdString(strLog), beside ? beside->window() : nullptr);
  }
  m_window->show();
  m_window->raise();
  m_window->activateWindow();
}

BoxAnswer QtHost::MsgBox(const std::string &strText, BoxIcon icon, BoxButtons buttons, const std::string &strTitle) {
  if (buttons == BoxButtons::YesNo) {
    const BoxAnswer answer = Show(strText, icon, buttons, strTitle, false);
    Keep(strText + (answer == BoxAnswer::Yes ? "\r\n[Yes]" : "\r\n[No]"), icon);
    return answer;
  }
  Keep(strText, icon);
  UserEvent::ActionBoxes *action = UserEvent::BoxesOfAction();
  if (m_eBoxes == Boxes::ListOnly || (action && action->fRestInListOnly)) {
    m_messages.AddUnseen();
    return BoxAnswer::Ok;
  }
  // The first box of an action comes as it always did: most actions have no second one.
  const bool fOffersList = action && (std::exchange(action->fAnyShown, true) || action->fListProposed);
  return Show(strText, icon, buttons, strTitle, fOffersList);
}

BoxAnswer QtHost::Show(const std::string &strText, BoxIcon icon, BoxButtons buttons, const std::string &strTitle,
                       bool fOffersList) {
  const AroundBox around(*this);
  // A host may end the window while the box asks, and the box with it.
  const QPointer<QMessageBox> box = new QMessageBox(ToQIcon(icon), QString::fromStdString(strTitle), ShownText(strText),
                                                    QMessageBox::NoButton, around.Beneath);
  box->setObjectName(QStringLiteral("MsgBox"));
  // Texts of drivers are shown as they are, whatever they look like.
  box->setTextFormat(Qt::PlainText);
  box->setTextInteractionFlags(Qt::TextSelectableByMouse);
  if (buttons == BoxButtons::Ok) {
    box->setStandardButtons(QMessageBox::Ok);
  } else {
    box->setStandardButtons(QMessageBox::Yes | QMessageBox::No);
    box->setDefaultButton(QMessageBox::Yes);
    box->setEscapeButton(QMessageBox::No);
  }
  if (fOffersList) OfferListOnly(*box);
  MakeRoomForTitle(*box);
  const int intButton = box->exec();
  delete box;
  if (buttons == BoxButtons::Ok) return BoxAnswer::Ok;
  return intButton == QMessageBox::Yes ? BoxAnswer::Yes : BoxAnswer::No;
}

std::string QtHost::InputBox(const std::string &strPrompt, const std::string &strTitle, const std::string &strDefault) {
  const AroundBox around(*this);
  // A host may end the window while the box asks, and the box with it.
  const QPointer<QInputDialog> box = new QInputDialog(around.Beneath);
  box->setObjectName(QStringLiteral("InputBox"));
  box->setWindowTitle(QString::fromStdString(strTitle));
  box->setLabelText(ShownText(strPrompt));
  box->setTextValue(QString::fromStdString(strDefault));
  box->resize(box->sizeHint().expandedTo(QSize(WidthForTitle(box->windowTitle()), 0)));
  const bool fAccepted = box->exec() == QDialog::Accepted;
  const std::string strEntry = fAccepted && box ? box->textValue().toStdString() : std::string();
  delete box;
  Keep(strPrompt + "\r\n[" + strEntry + "]", BoxIcon::Question);
  return strEntry;
}

void QtHost::ConnectionLost(const std::string &strText) {
  Keep(strText, BoxIcon::Exclamation);
  // Every call on a dead connection fails, and each failure is reported.
  if (UserEvent::ActionBoxes *action = UserEvent::BoxesOfAction()) action->fListProposed = true;
}

void QtHost::Beep() { QApplication::beep(); }

Integer QtHost::MousePointer() const {
  if (!QGuiApplication::overrideCursor()) {
    m_fHourglass = false;
    return PointerDefault;
  }
  if (m_fHourglass && ShowsHourglass()) return PointerHourglass;
  // There is one pointer only: what somebody set over the hourglass has replaced it, and nothing comes back from below.
  if (std::exchange(m_fHourglass, false)) RemoveHourglass();
  return PointerOfAnother;
}

void QtHost::SetMousePointer(Integer intPointer) {
  if (std::exchange(m_fHourglass, false)) RemoveHourglass();
  if (intPointer != PointerHourglass) return;
  m_fHourglass = true;
  QGuiApplication::setOverrideCursor(Qt::WaitCursor);
}

std::string QtHost::GetSetting(const std::string &strApplication, const std::string &strSection,
                               const std::string &strKey, const std::string &strDefault) {
  return SettingsFile::Of(strApplication).Value(strSection, strKey).value_or(strDefault);
}

void QtHost::SaveSetting(const std::string &strApplication, const std::string &strSection, const std::string &strKey,
                         const std::string &strValue) {
  SettingsFile::Of(strApplication).Save(strSection, strKey, strValue);
}

char QtHost::DecimalSeparator() const {
  const QString separator = QLocale().decimalPoint();
  return separator == QStringLiteral(",") ? ',' : '.';
}

void QtHost::DoEvents() { QCoreApplication::processEvents(); }

void QtHost::Repaint() {
  // Of all that the program has posted only what paints: nothing else of it may run before the driver answers.
  QCoreApplication::sendPostedEvents(nullptr, QEvent::UpdateRequest);
}

void QtHost::DropInput() {
  const DroppedInput dropped;
  ReadWindowEvents();
}

void EnsureQtHost() {
  static QtHost host;
  Host *before = SetHost(&host);
  if (before) SetHost(before);
}

}  // namespace tarvik
