#include "panel/MarkNote.h"

#include <QAccessible>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QStyle>
#include <QStyleOptionGroupBox>
#include <algorithm>

#include "bitpattern/BitPattern.h"
#include "controls/CboEnhanced.h"
#include "controls/FrameEnhanced.h"
#include "engrspin/EngrSpin.h"

namespace tarvik {

namespace {

QString Joined(const QString &strOwn, const QString &strSentence) {
  if (strOwn.isEmpty() || strSentence.isEmpty()) return strOwn + strSentence;
  return strOwn + QLatin1Char('\n') + strSentence;
}

/// The part of a control that shows the value, without its caption.
QWidget *ValuePart(QWidget &control) {
  if (dynamic_cast<EngrSpin *>(&control)) return control.findChild<QLineEdit *>(QStringLiteral("txtNumber"));
  if (dynamic_cast<CboEnhanced *>(&control)) return control.findChild<QComboBox *>();
  if (dynamic_cast<FrameEnhanced *>(&control)) return control.findChild<QGroupBox *>(QStringLiteral("fra"));
  if (dynamic_cast<BitPattern *>(&control)) return control.findChild<QWidget *>(QStringLiteral("picWave"));
  return &control;
}

/// Below the caption of a box; the whole of other widgets.
QRect ValueRect(const QWidget &part) {
  const auto *box = dynamic_cast<const QGroupBox *>(&part);
  if (!box) return part.rect();
  QStyleOptionGroupBox option;
  option.initFrom(box);
  option.text = box->title();
  option.lineWidth = 1;
  option.subControls = QStyle::SC_GroupBoxFrame | QStyle::SC_GroupBoxLabel;
  // Some styles count the caption to the frame.
  QRect frame = box->style()->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxFrame, box);
  const QRect caption = box->style()->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxLabel, box);
  if (!option.text.isEmpty()) frame.setTop(std::max(frame.top(), caption.bottom() + 1));
  return frame;
}

std::vector<QWidget *> TellersOf(QWidget &control) {
  std::vector<QWidget *> arrTellers{&control};
  if (const auto *group = dynamic_cast<const FrameEnhanced *>(&control))
    for (OptionButtonControl *button : group->OptionButtons())
      if (auto *widget = dynamic_cast<QWidget *>(button)) arrTellers.push_back(widget);
  if (dynamic_cast<BitPattern *>(&control)) arrTellers.push_back(ValuePart(control));
  return arrTellers;
}

void TellDescriptionChanged(QWidget &widget) {
  if (!QAccessible::isActive()) return;
  QAccessibleEvent event(&widget, QAccessible::DescriptionChanged);
  QAccessible::updateAccessibility(&event);
}

}  // namespace

MarkNote::MarkNote(QWidget &control) : m_control(&control) {
  for (QWidget *teller : TellersOf(control))
    m_arrTellers.push_back({teller, teller->toolTip(), teller->accessibleDescription()});
}

MarkNote::~MarkNote() { Say({}); }

void MarkNote::Say(const QString &strSentence) {
  if (strSentence == m_strSentence) return;
  for (Teller &teller : m_arrTellers) {
    if (!teller.widget) continue;
    // What a host has written meanwhile is its own.
    if (teller.widget->toolTip() == Joined(teller.strToolTip, m_strSentence))
      teller.widget->setToolTip(Joined(teller.strToolTip, strSentence));
    // Without a description of its own, a control's tool tip is its description.
    if (!teller.strDescription.isEmpty())
      teller.widget->setAccessibleDescription(Joined(teller.strDescription, strSentence));
    TellDescriptionChanged(teller.widget->focusProxy() ? *teller.widget->focusProxy() : *teller.widget);
  }
  m_strSentence = strSentence;
}

std::vector<MarkLayer::Corner> MarkNote::CornersOn(const QWidget &below) const {
  const QWidget *part = m_control ? ValuePart(*m_control) : nullptr;
  if (!part || !part->isVisibleTo(&below)) return {};
  const QRect rect = ValueRect(*part);
  const auto role = dynamic_cast<const QLineEdit *>(part) ? QPalette::Base : part->backgroundRole();
  return {{QRect(part->mapTo(&below, rect.topLeft()), rect.size()), part->palette().color(role)}};
}

}  // namespace tarvik
