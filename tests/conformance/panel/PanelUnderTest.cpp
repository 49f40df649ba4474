#include "PanelUnderTest.h"

#include "WatchedCalls.h"
#include "Words.h"
#include "platform/PlainControls.h"

namespace tarvik::paneltest {

void RaiseNoControl(const std::string &strName) { throw BadLine("no such control: " + strName); }

PanelUnderTest::PanelUnderTest(Recorder &recorder, const Surface &surface) {
  // Child widgets may repeat the name; the control itself comes first.
  for (QWidget *widget : m_gui.findChildren<QWidget *>())
    if (!widget->objectName().isEmpty()) m_controls.emplace(widget->objectName().toStdString(), widget);
  SetSurface(surface);
  const auto &diagram = Get<PictureBox>("picTiming");
  m_drawn = test::Drawn().ConnectScoped([&, this](const PictureBox &picture, const DrawPrimitive &primitive) {
    // Each drawing of the diagram begins with a clear box.
    if (&picture != &diagram || primitive.kind != DrawPrimitive::Kind::Clear) return;
    m_fDrawn = true;
    recorder.Add(Json::array({"draw"}));
  });
  auto &status = Get<DisplayBox>("txtStatus");
  QObject::connect(&status, &QPlainTextEdit::textChanged, &m_gui, [&status, &recorder] {
    recorder.Add({"status", status.Text()});
  });
}

void PanelUnderTest::SetSurface(const Surface &surface) {
  auto &picture = Get<PictureBox>("picTiming");
  picture.SetScale(surface.sngWidth, surface.sngHeight);
  picture.SetTextMetrics({
      [surface](const std::string &strText) {
        return surface.sngCharacter * static_cast<Single>(QString::fromStdString(strText).size());
      },
      [surface](const std::string &) { return surface.sngLine; },
  });
}

QWidget *PanelUnderTest::Find(const std::string &strName) const {
  const auto found = m_controls.find(strName);
  return found == m_controls.end() ? nullptr : found->second;
}

Json PanelUnderTest::Drawing() const {
  Json list = Json::array();
  for (const DrawPrimitive &primitive : Get<PictureBox>("picTiming").DisplayList()) {
    switch (primitive.kind) {
      case DrawPrimitive::Kind::Clear: list.push_back(Json::array({"cls"})); break;
      case DrawPrimitive::Kind::Line:
        list.push_back({"line", primitive.sngX1, primitive.sngY1, primitive.sngX2, primitive.sngY2,
                        static_cast<Long>(primitive.style)});
        break;
      case DrawPrimitive::Kind::Box:
        list.push_back({"box", primitive.sngX1, primitive.sngY1, primitive.sngX2, primitive.sngY2});
        break;
      case DrawPrimitive::Kind::Text:
        list.push_back({"print", primitive.strText, primitive.sngX1, primitive.sngY1});
        break;
    }
  }
  return list;
}

}  // namespace tarvik::paneltest
