#include "controls/CboEnhanced.h"

#include <QAbstractItemView>
#include <QEvent>
#include <QWheelEvent>
#include <algorithm>

#include "controls/ListAccessible.h"
#include "platform/Accessibility.h"
#include "platform/ControlEvent.h"
#include "platform/DisabledLook.h"
#include "platform/FieldLabel.h"
#include "support/Boxes.h"
#include "support/Conversions.h"
#include "support/modGlobals.h"

namespace tarvik {

namespace {

constexpr Single CaptionGap = 100;  // between label and list
constexpr Single LabelTop = 50;     // brings the label's line down to the list's text

/// A list that leaves the wheel to the page unless it has the focus.
class DropDownList : public QComboBox {
 public:
  explicit DropDownList(QWidget *parent) : QComboBox(parent) { OfferAccessible<DropDownList, ListAccessible>(); }

 protected:
  void wheelEvent(QWheelEvent *event) override {
    if (hasFocus())
      QComboBox::wheelEvent(event);
    else
      event->ignore();
  }
};

bool IsDigit(char ch) { return ch >= '0' && ch <= '9'; }

}  // namespace

CboEnhanced::CboEnhanced(QWidget *parent) : CboEnhanced(parent, RunTimeSite()) { BeginForm(); }

CboEnhanced::CboEnhanced(QWidget *parent, ControlSite &site)
    : QWidget(parent),
      m_site(site),
      m_form(*this, site, FormTable(), [this](const PropertyBag &bag) { ReadProperties(bag); }),
      m_cbo(new DropDownList(this)),
      m_lblCaption(new FieldLabel(this)) {
  m_cbo->setObjectName(QStringLiteral("cbo"));
  m_lblCaption->setObjectName(QStringLiteral("lblCaption"));
  m_lblCaption->setBuddy(m_cbo);
  m_lblCaption->lower();
  m_cbo->setFocusPolicy(Qt::StrongFocus);
  setFocusProxy(m_cbo);
  // The label of a row in a form gives the focus only to what takes it itself.
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  connect(m_cbo, &QComboBox::currentIndexChanged, this, [this](int intIndex) {
    m_lngListIndex = intIndex;
    if (m_fProgramChange) return;
    TellIndex();
    NoteUserChange();
  });
}

void CboEnhanced::AddItemData(const std::string &strItem, Long lngItemData, Long lngGroupData, Boolean fGroupDefault) {
  // The toolkit would choose the first item of an empty list by itself.
  m_fProgramChange = true;
  const int intBefore = m_cbo->currentIndex();
  m_cbo->addItem(QString::fromStdString(strItem));
  m_cbo->setCurrentIndex(intBefore);
  m_fProgramChange = false;
  m_ItemData.push_back(lngItemData);
  m_GroupData.push_back(lngGroupData);
  m_fGroupDefault.push_back(fGroupDefault);
}

void CboEnhanced::Clear() {
  m_fProgramChange = true;
  m_cbo->clear();
  m_fProgramChange = false;
  m_ItemData.clear();
  m_GroupData.clear();
  m_fGroupDefault.clear();
  TellIndex();
}

void CboEnhanced::SetListIndexQuietly(Long lngIndex) {
  const EntryGuard guard(*this, m_fInternalChange);
  const bool fChanges = lngIndex != ListIndex() && lngIndex >= -1 && lngIndex < ListCount();
  if (!fChanges) return;
  m_fProgramChange = true;
  m_cbo->setCurrentIndex(lngIndex);
  m_fProgramChange = false;
  TellIndex();
  cbo_Click();
}

Boolean CboEnhanced::SetListIndexByGroupData(Long lngGroupData) {
  for (Long i = 0; i < ListCount(); ++i)
    if (m_GroupData[Slot(i)] == lngGroupData && m_fGroupDefault[Slot(i)]) {
      IgnoreErrors([&] { SetListIndexQuietly(i); });
      return True;
    }
  IgnoreErrors([&] { ShowBox("Group not found", BoxIcon::Stop); });
  return False;
}

Boolean CboEnhanced::SetListIndexByItemData(Long lngItemData) {
  const auto found = std::find(m_ItemData.begin(), m_ItemData.end(), lngItemData);
  if (found == m_ItemData.end()) return False;
  IgnoreErrors([&] { SetListIndexQuietly(static_cast<Long>(found - m_ItemData.begin())); });
  return True;
}

Long CboEnhanced::GetCurrGroupData(Long lngDefault) const {
  return m_fListEnabled && ListIndex() >= 0 ? m_GroupData[Slot(ListIndex())] : lngDefault;
}

Long CboEnhanced::GetCurrItemData(Long lngDefault) const {
  return m_fListEnabled && ListIndex() >= 0 ? ItemData(ListIndex()) : lngDefault;
}

Boolean CboEnhanced::Enabled() const { return OwnEnabled(*this); }

Boolean CboEnhanced::Visible() const { return OwnVisible(*this); }

void CboEnhanced::SetEnabled(Boolean fEnable) {
  if (m_fListEnabled != fEnable) {
    if (!fEnable) IgnoreErrors([&] { SetListIndexQuietly(-1); });
    m_fListEnabled = fEnable;
    ShowColours();
    m_cbo->setEnabled(fEnable);
    m_lblCaption->setEnabled(fEnable);
  }
  if (OwnEnabled(*this) != fEnable) setEnabled(fEnable);
  IgnoreErrors([&] { PropChanged("Enabled"); });
}

void CboEnhanced::ShowColours() {
  QPalette colours = palette();
  if (!m_fListEnabled) {
    const DisabledLook look = DisabledLookOf(colours);
    for (const auto role : {QPalette::Base, QPalette::Button}) colours.setColor(role, look.back);
    for (const auto role : {QPalette::Text, QPalette::ButtonText})
      colours.setColor(QPalette::Disabled, role, look.text);
  }
  m_cbo->setPalette(colours);
}

void CboEnhanced::SetFocus() { GiveFocus(*this); }

void CboEnhanced::SetListIndex(Long lngIndex) {
  if (lngIndex < ListCount())
    SetListIndexQuietly(lngIndex);
  else if (ListCount() > 0)
    SetListIndexQuietly(0);
}

void CboEnhanced::SetTagX(const std::string &strTag) {
  m_strTagX = strTag;
  m_strSavedIndexes.clear();
  for (std::size_t i = 0; i < strTag.size(); ++i) m_strSavedIndexes += "0 ";
  PropChanged("TagX");
}

/// The text between two blanks at the position, counted from 1.
std::optional<std::string_view> CboEnhanced::SavedEntry(Integer intPos) const {
  if (intPos < 1) return std::nullopt;
  std::string_view strRest = m_strSavedIndexes;
  for (Integer i = 1; i < intPos; ++i) {
    const auto blank = strRest.find(' ');
    if (blank == std::string_view::npos) return std::nullopt;
    strRest.remove_prefix(blank + 1);
  }
  return strRest.substr(0, strRest.find(' '));
}

void CboEnhanced::SaveListIndex(Integer intPos) {
  if (intPos < 1 || Slot(intPos) > m_strTagX.size() || !IsDigit(m_strTagX[Slot(intPos - 1)])) return;
  const auto strEntry = SavedEntry(intPos);
  if (!strEntry || ListIndex() < 0) return;
  m_strSavedIndexes.replace(static_cast<std::size_t>(strEntry->data() - m_strSavedIndexes.data()), strEntry->size(),
                            std::to_string(ListIndex()));
}

void CboEnhanced::RecallListIndex(Integer intPos) {
  const auto strEntry = SavedEntry(intPos);
  if (strEntry && IsNumeric(*strEntry, '.')) IgnoreErrors([&] { SetListIndexQuietly(CLng(*strEntry)); });
}

void CboEnhanced::EnableAndRecall(Boolean fEnabledState, Integer intPos) {
  SetEnabled(fEnabledState);
  if (fEnabledState) RecallListIndex(intPos);
}

std::string CboEnhanced::ItemText(Long lngIndex) const { return m_cbo->itemText(lngIndex).toStdString(); }

Long CboEnhanced::ItemData(Long lngIndex) const {
  return lngIndex >= 0 && lngIndex < ListCount() ? m_ItemData[Slot(lngIndex)] : 0;
}

std::string CboEnhanced::Text() const { return m_cbo->currentText().toStdString(); }

void CboEnhanced::cbo_Click() {
  if (ListIndex() == -1) return;
  if (gobjPanel() && !m_fInternalChange) gobjPanel()->SetTabState(ePageIsDirty, eCurrPage);
  Click.Raise();
}

void CboEnhanced::TellIndex() {
  if (m_lngListIndex == m_lngToldIndex) return;
  m_lngToldIndex = m_lngListIndex;
  Q_EMIT currentIndexChanged(m_lngListIndex);
  Q_EMIT currentTextChanged(currentText());
}

void CboEnhanced::setCurrentIndex(int intIndex) {
  RunUserEvent(*this, "setCurrentIndex", [&] { SetListIndex(intIndex); });
}

void CboEnhanced::NoteUserChange() {
  RunUserEvent(*this, "Click", [this] { cbo_Click(); });
}

bool CboEnhanced::LabelVisible() const { return OwnVisible(*m_lblCaption); }

std::string CboEnhanced::Caption() const { return m_lblCaption->text().toStdString(); }

void CboEnhanced::SetCaption(const std::string &strCaption) {
  const bool fHadRoom = HasCaptionRoom();
  m_lblCaption->setText(QString::fromStdString(strCaption));
  NoteCaption(HasCaptionRoom() && !fHadRoom);
  TellNameChanged(*m_cbo);
  if (strCaption.empty()) SetCaptionWidth(0);
  PropChanged("Caption");
}

void CboEnhanced::SetCaptionAlignment(Long lngAlignment) {
  m_lngCaptionAlignment = lngAlignment;
  const Qt::Alignment horizontal = lngAlignment == 1   ? Qt::AlignRight
                                   : lngAlignment == 2 ? Qt::AlignHCenter
                                                       : Qt::AlignLeft;
  m_lblCaption->setAlignment(horizontal | Qt::AlignVCenter);
  PropChanged("CaptionAlignment");
}

void CboEnhanced::SetCaptionWidth(Single sngWidth) {
  const bool fHadRoom = HasCaptionRoom();
  m_sngCaptionWidth = sngWidth;
  SetOwnVisible(*m_lblCaption, sngWidth > 1);
  if (sngWidth > 1) m_sngLabelWidth = sngWidth;
  NoteCaption(HasCaptionRoom() && !fHadRoom);
  IgnoreErrors([&] { PropChanged("CaptionWidth", true); });
}

std::vector<FormProperties::Property> CboEnhanced::FormTable() {
  using F = FormProperties;
  using C = CboEnhanced;
  return {
      F::Stored(*this, "Caption", "", &C::Caption, &C::SetCaption),
      F::Stored(*this, "CaptionAlignment", Long{0}, &C::CaptionAlignment, &C::SetCaptionAlignment),
      F::Stored(*this, "CaptionWidth", Single{1215}, &C::CaptionWidth, &C::SetCaptionWidth),
      F::Stored(*this, "Enabled", True, &C::Enabled, &C::SetEnabled),
      F::Stored(*this, "TagX", "", &C::TagX, &C::SetTagX),
      F::Passing(*this, "ListIndex", Long{-1}, &C::ListIndex, &C::SetListIndex),
      F::Reading(*this, "ListCount", Long{0}, &C::ListCount),
      F::Reading(*this, "Text", "", &C::Text),
  };
}

bool CboEnhanced::event(QEvent *event) {
  m_form.NoteEvent(*event);
  if (event->type() == QEvent::LayoutRequest) updateGeometry();
  return QWidget::event(event);
}

void CboEnhanced::InitProperties() {
  m_lblCaption->clear();
  m_lngCaptionAlignment = 0;
  m_sngCaptionWidth = 1215;
  m_strTagX.clear();
}

void CboEnhanced::ReadProperties(const PropertyBag &bag) {
  m_fReadingProperties = True;
  // A value that is none ends the reading, and the flag stays: the control takes no part in change reports any more.
  IgnoreErrors([&] {
    SetCaption(bag.ReadProperty("Caption", ""));
    SetCaptionAlignment(bag.ReadProperty("CaptionAlignment", Long{0}));
    SetCaptionWidth(bag.ReadProperty("CaptionWidth", Single{1215}));
    SetEnabled(bag.ReadProperty("Enabled", True));
    SetTagX(bag.ReadProperty("TagX", ""));
    m_fReadingProperties = False;
  });
}

void CboEnhanced::WriteProperties(PropertyBag &bag) const {
  if (m_site.UserMode()) return;
  bag.WriteProperty("Caption", Caption(), std::string());
  bag.WriteProperty("CaptionAlignment", CaptionAlignment(), Long{0});
  bag.WriteProperty("CaptionWidth", Double{CaptionWidth()}, Double{1215});
  bag.WriteProperty("Enabled", Enabled(), True);
  bag.WriteProperty("TagX", TagX(), std::string());
}

void CboEnhanced::PropChanged(const char *strProperty, bool fResize) {
  if (m_site.UserMode() || m_fReadingProperties) return;
  m_site.PropertyChanged(strProperty);
  if (fResize) LayOut();
}

void CboEnhanced::Resize(Single sngWidth) {
  // The form's pixels are rounded; taken back for the width they would shift what the program placed in twips.
  m_intWidthAtResize = width();
  m_sngWidth = sngWidth;
  LayOut();
}

void CboEnhanced::TakeWidthOfForm() {
  m_intWidthAtResize.reset();
  m_sngWidth = PixelsToTwips(*this, width());
  LayOut();
  m_fInResize = true;
  resize(width(), TwipsToPixels(*this, m_layout.sngHeight));
  m_fInResize = false;
}

void CboEnhanced::SetListHeight(Single sngHeight) { m_sngListHeight = sngHeight; }

bool CboEnhanced::HasCaptionRoom() const {
  if (m_sngCaptionWidth < 1) return false;
  // On a form of fixed places an empty caption keeps lists in line; in a layout the rows see to that.
  return !(m_lblCaption->text().isEmpty() && StandsInLayout(*this));
}

Single CboEnhanced::CaptionRoom() const { return HasCaptionRoom() ? m_sngLabelWidth + CaptionGap : 0; }

void CboEnhanced::NoteCaption(bool fAppears) {
  updateGeometry();
  const bool fLaidOut = m_layout.sngHeight > 0;
  // While the control runs the list waits for the next layout. The label has its width at once, and what has just
  // appeared may not be covered until then.
  if (fLaidOut && fAppears && !m_fReadingProperties)
    ShowLayout(Arranged());
  else
    m_lblCaption->resize(TwipsToPixels(*this, m_sngLabelWidth), m_lblCaption->height());
}

CboEnhanced::Layout CboEnhanced::Arranged() const {
  const Single sngLeft = CaptionRoom();
  return {m_sngListHeight,
          {sngLeft, 0, m_sngWidth - sngLeft, m_sngListHeight},
          {0, LabelTop, m_sngLabelWidth, m_sngListHeight - LabelTop}};
}

void CboEnhanced::LayOut() {
  m_layout = Arranged();
  ShowLayout(m_layout);
}

void CboEnhanced::ShowLayout(const Layout &layout) {
  // The label begins lower than the list; the margin below brings its text to the same line.
  m_lblCaption->setContentsMargins(0, 0, 0, TwipsToPixels(*this, LabelTop));
  m_cbo->setGeometry(TwipsToPixels(*this, layout.list));
  m_lblCaption->setGeometry(TwipsToPixels(*this, layout.label));
}

void CboEnhanced::resizeEvent(QResizeEvent *event) {
  QWidget::resizeEvent(event);
  if (m_fInResize) return;
  if (m_intWidthAtResize == width())
    ShowLayout(m_layout);
  else
    TakeWidthOfForm();
}

void CboEnhanced::changeEvent(QEvent *event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) ShowColours();
  if (event->type() == QEvent::EnabledChange && OwnEnabled(*this) != m_fListEnabled)
    m_form.Write("Enabled", QVariant(static_cast<bool>(OwnEnabled(*this))));
  if (event->type() != QEvent::FontChange) return;
  if (m_intWidthAtResize)
    ShowLayout(m_layout);
  else
    TakeWidthOfForm();
}

QSize CboEnhanced::sizeHint() const {
  return {TwipsToPixels(*this, CaptionRoom()) + m_cbo->sizeHint().width(), TwipsToPixels(*this, m_sngListHeight)};
}

QSize CboEnhanced::minimumSizeHint() const {
  return {TwipsToPixels(*this, CaptionRoom()) + m_cbo->minimumSizeHint().width(),
          TwipsToPixels(*this, m_sngListHeight)};
}

}  // namespace tarvik
