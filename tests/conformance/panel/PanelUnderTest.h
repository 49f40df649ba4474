#pragma once

#include <map>
#include <string>

#include "Recorder.h"
#include "panel/Panel.h"
#include "platform/PictureBox.h"

namespace tarvik::paneltest {

/// Sizes that the diagram is drawn with, in twips.
struct Surface {
  Single sngWidth = 6975, sngHeight = 1095, sngCharacter = 90, sngLine = 195;
};

/// One panel, its controls by their names, and what the adapter knows of its host.
class PanelUnderTest {
 public:
  PanelUnderTest(Recorder &recorder, const Surface &surface);

  TarvikGUI &Gui() { return m_gui; }
  const TarvikGUI &Gui() const { return m_gui; }
  const TarvikGUI::Panel &Inside() const { return m_inside; }

  void SetSurface(const Surface &surface);

  /// The control of this full name; null where there is none.
  QWidget *Find(const std::string &strName) const;
  /// The same for one that has to be there and of this class.
  template <class T>
  T &Get(const std::string &strName) const;

  bool HasDrawn() const { return m_fDrawn; }
  void ForgetDrawing() { m_fDrawn = false; }
  /// The display list of the timing diagram.
  Json Drawing() const;

  bool fShown = false;

 private:
  TarvikGUI m_gui;
  TarvikGUI::Panel &m_inside{TarvikGUI::Panel::Of(m_gui)};
  std::map<std::string, QWidget *> m_controls;
  bool m_fDrawn = false;
  Event<const PictureBox &, const DrawPrimitive &>::Connection m_drawn;
};

[[noreturn]] void RaiseNoControl(const std::string &strName);

template <class T>
T &PanelUnderTest::Get(const std::string &strName) const {
  auto *control = dynamic_cast<T *>(Find(strName));
  if (!control) RaiseNoControl(strName);
  return *control;
}

}  // namespace tarvik::paneltest
