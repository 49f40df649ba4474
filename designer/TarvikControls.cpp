#include "designer/TarvikControls.h"

#include "bitpattern/BitPattern.h"
#include "controls/CboEnhanced.h"
#include "controls/FrameEnhanced.h"
#include "designer/ControlPlugin.h"
#include "engrspin/EngrSpin.h"
#include "panel/TarvikGUI.h"
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
      {"tarvik::TarvikGUI",
       "panel/TarvikGUI.h",
       "panel",
       "Front panel of pulse generators; starts when it is shown",
       false,
       650,
       465,
       "",
       {},
       [](QWidget *parent, ControlSite &site) -> QWidget * { return new PanelOnForm(parent, site); }},
      {"tarvik::EngrSpin",
       "engrspin/EngrSpin.h",
       "esField",
       "Number with unit prefix, digit cursor and spin button",
       false,
       242,
       21,
       NewOnForm,
       {{"BaseUnit", "Returns/sets the abbreviation for the base unit (i.e. s for seconds)"},
        {"Caption", "Returns/sets the name to be displayed to the left of the value"},
        {"CaptionAlignment", "Returns/sets the text alignment of the caption"},
        {"CaptionWidth", "Returns/sets the width in pixels of the caption field"},
        {"DefaultValue", "Returns/sets the starting value"},
        {"Max", "The maximum value allowed"},
        {"MaxExponent", "The largest exponent allowed (10^ x)"},
        {"Min", "The minimum value allowed"},
        {"MinExponent", "The largest negative exponent allowed (10^ -x)"},
        {"NumberFormat", "Format when not using engineering format (i.e. MinExponent=MaxExponent=0)"},
        {"SignificantDigits", "Returns/sets the number of significant digits when using engineering format (only)."},
        {"SpinCtlVisible", "Returns/sets the visibility of the spin button"},
        {"TextBoxWidth", "Read-only; Returns the width of the value field"},
        {"Value", "Returns/sets the current value."}},
       Make<EngrSpin>},
      {"tarvik::CboEnhanced",
       "controls/CboEnhanced.h",
       "cboList",
       "Drop-down list with caption, item data and remembered selections",
       false,
       240,
       21,
       NewOnForm,
       {},
       Make<CboEnhanced>},
      {"tarvik::FrameEnhanced",
       "controls/FrameEnhanced.h",
       "grpFrame",
       "Group box that treats its option buttons as one value",
       true,
       160,
       100,
       "",
       {},
       Make<FrameEnhanced>},
      {"tarvik::BitPattern",
       "bitpattern/BitPattern.h",
       "bitPattern",
       "Editor of bit patterns",
       false,
       560,
       300,
       "",
       {},
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
