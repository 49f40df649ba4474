#pragma once

#include <QVariant>
#include <QWidget>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "support/Control.h"
#include "support/Export.h"

namespace tarvik {

class ControlSite;
class FormProperties;
class PropertyBag;
struct ControlProperty;

/// Name and description of properties, for the property editor of a form designer.
using PropertyDescriptions = std::vector<std::pair<const char *, const char *>>;

/// A control whose properties a form of the toolkit can set by name. The form's file may name them in any order; the
/// control takes them in its own.
class TARVIK_EXPORT FormControl : public QWidget, public Control {
 public:
  ~FormControl() override;

  /// On a form that sets properties by name: gives the stored properties their defaults before the first assignment.
  void BeginForm();

  Boolean Visible() const override;
  void SetVisible(Boolean fShow) override;

 protected:
  /// The table belongs to the class and outlives all its controls. ReadAll assigns all stored properties anew.
  FormControl(QWidget *parent, ControlSite &site, const std::vector<ControlProperty> &arrProperties,
              std::function<void(const PropertyBag &)> ReadAll);

  ControlSite &Site() const { return m_site; }

  QVariant PropertyValue(const char *strKey) const;
  void SetPropertyValue(const char *strKey, const QVariant &value);
  void ResetProperty(const char *strKey);
  /// A control that was newly placed on a form: Init gives it the state of one, which the container is told of.
  void BeginNew(const std::function<void()> &Init);

  bool event(QEvent *event) override;

 private:
  ControlSite &m_site;
  std::unique_ptr<FormProperties> m_form;
};

}  // namespace tarvik

/// Declares a stored property for the toolkit's forms. What it is like stands in the property table of the control.
#define TARVIK_FORM_PROPERTY(key)                                                 \
  Q_PROPERTY(QVariant key READ Form##key WRITE SetForm##key RESET ResetForm##key) \
  TARVIK_FORM_ACCESS(key)

/// The same for one that does not go into the file; behind the name whatever else the toolkit is to know of it.
#define TARVIK_FORM_PASSING(key, ...)                                                                      \
  Q_PROPERTY(QVariant key READ Form##key WRITE SetForm##key RESET ResetForm##key STORED false __VA_ARGS__) \
  TARVIK_FORM_ACCESS(key)

/// The same for one that is only read.
#define TARVIK_FORM_READING(key, ...)                              \
  Q_PROPERTY(QVariant key READ Form##key STORED false __VA_ARGS__) \
  QVariant Form##key() const { return PropertyValue(#key); }

#define TARVIK_FORM_ACCESS(key)                                               \
  QVariant Form##key() const { return PropertyValue(#key); }                  \
  void SetForm##key(const QVariant &value) { SetPropertyValue(#key, value); } \
  void ResetForm##key() { ResetProperty(#key); }

/// Declares the property by which the form designer says that the control was newly placed on a form. It never goes
/// into a file, so a control that is read from one is not new.
#define TARVIK_FORM_NEW                                                                                       \
  Q_PROPERTY(bool NewOnForm READ FormIsNew WRITE SetFormIsNew DESIGNABLE false SCRIPTABLE false STORED false) \
  bool FormIsNew() const { return false; }                                                                    \
  void SetFormIsNew(bool fNew) {                                                                              \
    if (fNew) BeginNew([this] { InitProperties(); });                                                         \
  }
