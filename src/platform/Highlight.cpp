#include "platform/Highlight.h"

namespace tarvik {

void Highlight::SetVisible(Boolean fShow) {
  if (fShow == m_fOn) return;
  m_fOn = fShow;
  update();
}

void Highlight::paintEvent(QPaintEvent *event) {
  if (m_fOn) PictureBox::paintEvent(event);
}

}  // namespace tarvik
