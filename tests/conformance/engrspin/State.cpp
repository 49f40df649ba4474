#include "Session.h"
#include "platform/WidgetControl.h"

namespace tarvik::conformance {

namespace {

Json Place(const FieldPart &part) {
  if (!part.fMoved) return nullptr;
  const FieldPlace &p = part.place;
  return {p.sngLeft, p.sngTop, p.sngWidth, p.sngHeight};
}

Json Inner(const EngrSpin::Private &a) {
  return {{"exp", a.number.Exponent()},
          {"engr", bool(a.number.EngrMode())},
          {"smallest", Hex(a.number.Smallest())},
          {"editing", bool(a.fEditing)},
          {"updating", bool(a.fUpdating)},
          {"swallow", bool(a.fSwallowKey)},
          {"readonly", bool(a.fReadOnly)},
          {"blanked", bool(a.fBlanked)},
          {"saved", a.strSavedText},
          {"curpos", a.cursor.CursorPos()},
          {"curdigit", a.cursor.CursorDigit()},
          {"lastmode", a.cursor.LastMode()},
          {"arr", bool(a.values.ArrayMode())},
          {"aidx", a.values.Index()},
          {"acnt", a.values.Count()},
          {"dec", std::string(1, a.number.Decimal())},
          {"inkey", bool(a.fInKeyDown)},
          {"inspin", bool(a.fInSpinChange)},
          {"inresize", bool(a.fInResize)}};
}

void AddControls(Json &st, EngrSpin &f, const EngrSpin::Private &a) {
  const NumberTextBox &txt = *a.txtNumber;
  st["text"] = f.Text();
  st["sel"] = {txt.SelStart(), txt.SelLength()};
  st["align"] = txt.alignment().testFlag(Qt::AlignRight) ? 1 : 0;
  st["txtro"] = txt.isReadOnly();
  st["txten"] = bool(OwnEnabled(txt));
  st["tabstop"] = (txt.focusPolicy() & Qt::TabFocus) != 0;
  const bool fGrey = txt.palette().color(QPalette::Active, QPalette::Base) == QColor(0xC0, 0xC0, 0xC0);
  st["back"] = fGrey ? "00C0C0C0" : "80000005";
  st["units"] = a.lblUnits->text().toStdString();
  st["unitsvis"] = bool(OwnVisible(*a.lblUnits));
  st["unitsen"] = bool(OwnEnabled(*a.lblUnits));
  st["unitsw"] = a.layout.lblUnits.place.sngWidth;
  st["cap"] = a.lblCaption->text().toStdString();
  st["capvis"] = bool(OwnVisible(*a.lblCaption));
  st["capen"] = bool(OwnEnabled(*a.lblCaption));
  st["capw"] = a.layout.lblCaption.place.sngWidth;
  st["capal"] = f.CaptionAlignment();
  st["spinen"] = bool(OwnEnabled(*a.spinCtl));
  st["spinvis"] = bool(OwnVisible(*a.spinCtl));
  st["spinval"] = a.spinCtl->Value();
  st["focus"] = txt.hasFocus() ? "txt" : a.spinCtl->hasFocus() ? "spin" : "none";
  st["flden"] = bool(OwnEnabled(f));
  st["w"] = a.layout.sngWidth;
  st["h"] = a.layout.sngHeight;
  st["rtxt"] = Place(a.layout.txtNumber);
  st["rspin"] = Place(a.layout.spinCtl);
  st["rcap"] = Place(a.layout.lblCaption);
  st["runits"] = Place(a.layout.lblUnits);
}

void AddProperties(Json &st, EngrSpin &f) {
  st["value"] = Hex(f.Value());
  st["old"] = Hex(f.OldValue());
  st["min"] = Hex(f.Min());
  st["max"] = Hex(f.Max());
  st["auxvalue"] = Hex(f.AuxValue());
  st["defval"] = Hex(f.DefaultValue());
  st["minexp"] = f.MinExponent();
  st["maxexp"] = f.MaxExponent();
  st["sig"] = f.SignificantDigits();
  st["baseunit"] = f.BaseUnit();
  st["fmt"] = f.NumberFormat();
  st["auxunits"] = f.AuxUnits();
  st["caption"] = f.Caption();
  st["varr"] = f.ValueArray();
  st["capwidth"] = f.CaptionWidth();
  st["tbw"] = f.TextBoxWidth();
  st["enabled"] = bool(f.Enabled());
  st["locked"] = bool(f.Locked());
  st["spinprop"] = bool(f.SpinCtlVisible());
}

}  // namespace

Json Session::State() {
  Json st = Json::object();
  if (!m_field) return st;
  const EngrSpin::Private &a = EngrSpin::Private::Of(*m_field);
  AddControls(st, *m_field, a);
  AddProperties(st, *m_field);
  st["wb"] = Inner(a);
  return st;
}

}  // namespace tarvik::conformance
