#include "engrspin/FieldState.h"

#include "engrspin/EngrSpinPrivate.h"
#include "platform/WidgetControl.h"

namespace tarvik {

bool IsTyping(EngrSpin &field) { return EngrSpin::Private::Of(field).fEditing; }

void VisitState(EngrSpin &field, StateArchive &archive) {
  EngrSpin::Private &m = EngrSpin::Private::Of(field);
  EngrNumber number = m.number;
  ValueList values = m.values;
  std::string strCaption = m.strCaption, strText = field.Text(), strUnit = m.lblUnits->text().toStdString();
  std::string strAuxUnits = m.strAuxUnits;
  Double dblAuxValue = m.dblAuxValue;
  Boolean fEnabled = m.fEnabled, fOwnEnabled = OwnEnabled(field), fLocked = m.fLocked, fBlanked = m.fBlanked;

  number.VisitState(archive);
  values.VisitState(archive);
  archive.Shown(strCaption);
  archive.Shown(strText);
  archive.Shown(strUnit);
  archive.Shown(strAuxUnits);
  archive.Shown(dblAuxValue);
  archive.Shown(fEnabled);
  archive.Shown(fOwnEnabled);
  archive.Shown(fLocked);
  archive.Shown(fBlanked);
  archive.Words(m.ValueInWords().toStdString());
  if (!archive.Loads()) return;

  field.SetCaption(strCaption);
  field.SetEnabled(fEnabled);
  if (OwnEnabled(field) != fOwnEnabled) field.setEnabled(fOwnEnabled);
  // Freeing the field assigns its value, so the number follows.
  field.LockControl(fLocked, fBlanked);
  m.number = number;
  m.values = values;
  m.strAuxUnits = strAuxUnits;
  m.dblAuxValue = dblAuxValue;
  m.UpdateText();
  // An emptied field shows another number than it has, and a blanked one none.
  if (field.Text() != strText) m.txtNumber->WriteText(QString::fromStdString(strText));
  m.lblUnits->setText(QString::fromStdString(strUnit));
  if (field.Value() == m.dblToldValue) return;
  m.dblToldValue = field.Value();
  Q_EMIT field.valueChanged(field.Value());
}

}  // namespace tarvik
