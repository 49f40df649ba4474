#include "PanelArea.h"

#include <algorithm>
#include <array>

#include "panel/TarvikGUI.h"

namespace tarvik {

namespace {

/// Each about a fifth larger than the one before.
constexpr std::array<Long, 13> UsualSizes{50, 60, 75, 90, 100, 120, 140, 170, 200, 240, 280, 340, 400};

}  // namespace

PanelArea::PanelArea(QWidget *parent) : QScrollArea(parent) {
  setObjectName(QStringLiteral("PanelArea"));
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setFocusPolicy(Qt::NoFocus);
  RenewPanel();
}

void PanelArea::RenewPanel() {
  // The old one goes first: it saves its options, which the new one reads.
  delete m_panel;
  m_panel = new TarvikGUI;
  ShowZoom();
  SetTypingReplacesNumber(m_fTypingReplacesNumber);
  SetMarks(m_fMarks);
  setWidget(m_panel);
}

void PanelArea::SetZoom(Long lngZoom) {
  const bool fPercent = lngZoom >= TarvikGUI::MinZoom && lngZoom <= TarvikGUI::MaxZoom;
  m_lngZoom = fPercent ? lngZoom : FitZoom;
  ShowZoom();
}

void PanelArea::ZoomIn() {
  const auto larger = std::ranges::upper_bound(UsualSizes, m_panel->Zoom());
  SetZoom(larger == UsualSizes.end() ? UsualSizes.back() : *larger);
}

void PanelArea::ZoomOut() {
  const auto notSmaller = std::ranges::lower_bound(UsualSizes, m_panel->Zoom());
  SetZoom(notSmaller == UsualSizes.begin() ? UsualSizes.front() : *std::prev(notSmaller));
}

void PanelArea::ShowZoom() {
  // Before the first showing there is no room yet to fit into, and the window asks for the usual size.
  if (m_lngZoom == FitZoom && !isVisible()) return;
  // Measured without scroll bars, which would come and go by turns else.
  const Long lngZoom = m_lngZoom == FitZoom ? m_panel->ZoomToFit(maximumViewportSize()) : m_lngZoom;
  if (lngZoom != m_panel->Zoom()) m_panel->SetZoom(lngZoom);
}

void PanelArea::SetTypingReplacesNumber(bool fReplaces) {
  m_fTypingReplacesNumber = fReplaces;
  m_panel->SetTypingReplacesNumber(fReplaces);
}

void PanelArea::SetMarks(bool fMarks) {
  m_fMarks = fMarks;
  m_panel->SetMarks(fMarks);
}

QSize PanelArea::sizeHint() const { return m_panel->sizeHint(); }

void PanelArea::resizeEvent(QResizeEvent *event) {
  ShowZoom();
  QScrollArea::resizeEvent(event);
}

}  // namespace tarvik
