#include "designer/TarvikControls.h"

#include "bitpattern/BitPattern.h"
#include "controls/CboEnhanced.h"
#include "controls/FrameEnhanced.h"
#include "designer/ControlPlugin.h"
#include "engrspin/EngrSpin.h"
#include "panel/TarvikGUI.h"
#include "platform/ControlSite.h"
#include "platform/QtHost.h"

namespace tarvik {

namespace {

/// On a form that is being edited the panel shows how it looks and leaves the driver alone.
class PanelOnForm : public TarvikGUI {
 public:
  PanelOnForm(QWidget *parent, const ControlSite &site) : TarvikGUI(parent), m_site(site) {}

 protected:
  void showEvent(QShowEvent *event) override {
    if (m_site.UserMode())
      TarvikGUI::showEvent(event);
    else
      QWidget::showEvent(event);
  }
  void hideEvent(QHideEvent *event) override {
    if (m_site.UserMode())
      TarvikGUI::hideEvent(event);
    else
      QWidget::hideEvent(event);
  }

 private:
  const ControlSite &m_site;
};

template <class Control>
QWidget *Make(QWidget *parent, ControlSite &site) {
  auto *control = new Control(parent, site);
  control->BeginForm();
  return control;
}

/// Only what comes from the widget box says so: what is read from a file is not new.
constexpr const char *NewOnForm = "<property name=\"NewOnForm\" stdset=\"0\"><bool>true</bool></property>";

const std::vector<ControlClass> &Controls() {
  static const std::vector<ControlClass> arrControls{
      {"tarvik::TarvikGUI", "panel/TarvikGUI.h", "panel", "Front panel of pulse generators; starts when it is shown",
       false, 650, 465, "",
       [](QWidget *parent, ControlSite &site) -> QWidget * { return new PanelOnForm(parent, site); }},
      {"tarvik::EngrSpin", "engrspin/EngrSpin.h", "esField", "Number with unit prefix, digit cursor and spin button",
       false, 242, 21, NewOnForm, Make<EngrSpin>, EngrSpin::Descriptions()},
      {"tarvik::CboEnhanced", "controls/CboEnhanced.h", "cboList",
       "Drop-down list with caption, item data and remembered selections", false, 240, 21, NewOnForm,
       Make<CboEnhanced>},
      {"tarvik::FrameEnhanced", "controls/FrameEnhanced.h", "grpFrame",
       "Group box that treats its option buttons as one value", true, 160, 100, "", Make<FrameEnhanced>},
      {"tarvik::BitPattern", "bitpattern/BitPattern.h", "bitPattern", "Editor of bit patterns", false, 560, 300, "",
       [](QWidget *parent, ControlSite &site) -> QWidget * {
         EnsureQtHost();
         return new BitPattern(parent, site);
       }},
  };
  return arrControls;
}

}  // namespace

TarvikControls::TarvikControls(QObject *parent) : QObject(parent) {
  for (const ControlClass &control : Controls()) m_arrControls.append(new ControlPlugin(control, this));
}

}  // namespace tarvik
