#include "WatchedCalls.h"

#include "platform/WidgetControl.h"
#include "support/EventBoundary.h"

namespace tarvik::test {

Event<const std::string &> &FocusRequested() {
  static Event<const std::string &> event;
  return event;
}

Event<const PictureBox &, const DrawPrimitive &> &Drawn() {
  static Event<const PictureBox &, const DrawPrimitive &> event;
  return event;
}

ReportHandler &UnhandledErrors() {
  static ReportHandler handler;
  return handler;
}

// The linker's names for the function that is called in place of another one, and for that other one. A member
// function takes its object as first argument.

void RealGiveFocus(QWidget &) asm("__real__ZN6tarvik9GiveFocusER7QWidget");
void RealReport(const std::string &, const std::string &, const RunTimeError &) asm(
    "__real__ZN6tarvik20ReportUnhandledErrorERKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEES7_RKNS_"
    "12RunTimeErrorE");
void RealCls(PictureBox *) asm("__real__ZN6tarvik10PictureBox3ClsEv");
void RealLine(PictureBox *, Single, Single, Single, Single) asm("__real__ZN6tarvik10PictureBox4LineEffff");
void RealFillBox(PictureBox *, Single, Single, Single, Single,
                 Colour) asm("__real__ZN6tarvik10PictureBox7FillBoxEffffj");
void RealPrint(PictureBox *, const std::string &) asm(
    "__real__ZN6tarvik10PictureBox5PrintERKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE");

void WatchedGiveFocus(QWidget &) asm("__wrap__ZN6tarvik9GiveFocusER7QWidget");
void WatchedReport(const std::string &, const std::string &, const RunTimeError &) asm(
    "__wrap__ZN6tarvik20ReportUnhandledErrorERKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEES7_RKNS_"
    "12RunTimeErrorE");
void WatchedCls(PictureBox *) asm("__wrap__ZN6tarvik10PictureBox3ClsEv");
void WatchedLine(PictureBox *, Single, Single, Single, Single) asm("__wrap__ZN6tarvik10PictureBox4LineEffff");
void WatchedFillBox(PictureBox *, Single, Single, Single, Single,
                    Colour) asm("__wrap__ZN6tarvik10PictureBox7FillBoxEffffj");
void WatchedPrint(PictureBox *, const std::string &) asm(
    "__wrap__ZN6tarvik10PictureBox5PrintERKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE");

void WatchedGiveFocus(QWidget &widget) {
  FocusRequested().Raise(ObjectName(widget));
  RealGiveFocus(widget);
}

void WatchedReport(const std::string &strControl, const std::string &strEvent, const RunTimeError &error) {
  if (UnhandledErrors())
    UnhandledErrors()(strControl, strEvent, error);
  else
    RealReport(strControl, strEvent, error);
}

void WatchedCls(PictureBox *picture) {
  RealCls(picture);
  Drawn().Raise(*picture, picture->DisplayList().back());
}

void WatchedLine(PictureBox *picture, Single sngX1, Single sngY1, Single sngX2, Single sngY2) {
  RealLine(picture, sngX1, sngY1, sngX2, sngY2);
  Drawn().Raise(*picture, picture->DisplayList().back());
}

void WatchedFillBox(PictureBox *picture, Single sngX1, Single sngY1, Single sngX2, Single sngY2, Colour colour) {
  RealFillBox(picture, sngX1, sngY1, sngX2, sngY2, colour);
  Drawn().Raise(*picture, picture->DisplayList().back());
}

void WatchedPrint(PictureBox *picture, const std::string &strText) {
  RealPrint(picture, strText);
  Drawn().Raise(*picture, picture->DisplayList().back());
}

}  // namespace tarvik::test
