#pragma once

#include <array>
#include <memory>
#include <string>

#include "LineProtocol.h"
#include "RecordingHost.h"
#include "RefusedScrolling.h"
#include "WatchedCalls.h"
#include "bitpattern/BitPatternPrivate.h"
#include "controls/FrameEnhanced.h"
#include "engrspin/EngrSpin.h"
#include "platform/CommandButton.h"
#include "platform/ControlSite.h"
#include "platform/OptionButton.h"
#include "platform/ToolPopup.h"
#include "support/modGlobals.h"

namespace tarvik::test {

/// What `new` can be told.
struct Settings {
  BitPatternForm form;
  bool fPanel = true;
  bool fOnline = true;
  bool fDraw = true;
  Single sngTextHeight = 195;
  std::array<Single, 4> arrTextWidths{105, 105, 105, 105};
};

/// One editor in scripted surroundings, which write down what happens.
class Session : private PanelReference, public ControlSite {
 public:
  explicit Session(const Settings &settings);
  ~Session() override;

  BitPattern &Editor() { return *m_editor; }
  BitPattern::Private &Inside() { return BitPattern::Private::Of(*m_editor); }
  template <class Child>
  Child &Find(const char *strName) const {
    return dynamic_cast<Child &>(*m_editor->findChild<QWidget *>(QString::fromLatin1(strName)));
  }
  EngrSpin &Field(const std::string &strName) { return Find<EngrSpin>(strName.c_str()); }
  RecordingHost &Host() { return m_host; }

  void SetOnline(bool fOnline) { m_fOnline = fOnline; }
  void SetEcho(bool fEcho) { m_fEcho = fEcho; }
  void FailNextMax() { RefuseNextScrollMax(); }
  BooleanArray &PageRz() { return m_mfRz; }

  void Note(Json event) { m_arrEvents.push_back(std::move(event)); }
  Boolean UserMode() const override { return True; }
  void PropertyChanged(const std::string &strProperty) override { Note({"prop", strProperty}); }

  /// All of the state, with what happened since the last call.
  Json TakeState();

 private:
  class Instrument;

  void SetTabState(TabStates eState, TabNumEnum ePage) override;

  void NoteHost(const HostEntry &entry);
  void NoteLogRecord(const std::string &strRecord);
  void NoteDrawing(const DrawPrimitive &primitive);
  void NoteRzChange();

  RecordingHost m_host;
  std::shared_ptr<Instrument> m_instrument;
  Event<const std::string &>::Connection m_focus;
  Event<const PictureBox &, const DrawPrimitive &>::Connection m_drawn;
  std::unique_ptr<BitPattern> m_editor;
  Json m_arrEvents = Json::array();
  BooleanArray m_mfRz{1, {False, False}};
  bool m_fDraw = true;
  bool m_fOnline = true;
  bool m_fEcho = false;
};

}  // namespace tarvik::test
