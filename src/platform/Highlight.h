#pragma once

#include "platform/PictureBox.h"

namespace tarvik {

/// A lamp: an area in its back colour while it is on, transparent while it is off. Switching it only requests a
/// repaint, since it changes with nearly every step of the panel.
class Highlight final : public PictureBox {
 public:
  using PictureBox::PictureBox;

  Boolean Visible() const override { return m_fOn; }
  void SetVisible(Boolean fShow) override;

 protected:
  void paintEvent(QPaintEvent *event) override;

 private:
  Boolean m_fOn = True;
};

}  // namespace tarvik
