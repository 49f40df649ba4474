#pragma once

#include <QScrollArea>

#include "support/Types.h"

namespace tarvik {

class TarvikGUI;

/// The room of the panel in the program's window. The panel is as large as the room allows, or has a size that the user
/// chose; what does not fit is scrolled.
class PanelArea : public QScrollArea {
  Q_OBJECT

 public:
  /// A zoom for "as large as the room allows".
  static constexpr Long FitZoom = 0;

  explicit PanelArea(QWidget *parent = nullptr);

  TarvikGUI &Panel() const { return *m_panel; }
  /// Ends the panel, with its session, and puts a fresh one in its place, which starts by itself. A panel that is only
  /// hidden and shown again would fill some of its lists twice.
  void RenewPanel();

  /// Percent, or FitZoom. Anything else counts as FitZoom.
  void SetZoom(Long lngZoom);
  Long Zoom() const { return m_lngZoom; }
  /// The next of the usual sizes above or below the one that is shown; stays at the largest and the smallest.
  void ZoomIn();
  void ZoomOut();

  void SetTypingReplacesNumber(bool fReplaces);
  void SetMarks(bool fMarks);

  QSize sizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent *event) override;

 private:
  void ShowZoom();

  TarvikGUI *m_panel = nullptr;
  Long m_lngZoom = FitZoom;
  bool m_fTypingReplacesNumber = false;
  bool m_fMarks = true;
};

}  // namespace tarvik
