#pragma once

#include "platform/PictureBox.h"

namespace tarvik {

/// A lamp: an area in its back colour while it is on, and nothing at all while it is off. It changes with nearly every
/// step of the panel, so turning it on or off costs no more than a request to paint.
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
