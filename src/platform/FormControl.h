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

/// A control whose properties a Qt form can set by name, in any order.
class TARVIK_EXPORT FormControl : public QWidget, public Control {
 public:
  ~FormControl() override;

  /// To be called before the first property is set by name: assigns the defaults of the stored properties.
  void BeginForm();

  Boolean Visible() const override;
  void SetVisible(Boolean fShow) override;

 protected:
  /// The table must outlive the control. ReadAll assigns all stored properties.
  FormControl(QWidget *parent, ControlSite &site, const std::vector<ControlProperty> &arrProperties,
              std::function<void(const PropertyBag &)> ReadAll);

  ControlSite &Site() const { return m_site; }

  QVariant PropertyValue(const char *strKey) const;
  void SetPropertyValue(const char *strKey, const QVariant &value);
  void ResetProperty(const char *strKey);
  /// For a control that was newly placed on a form: runs Init and reports what differs from the defaults.
  void BeginNew(const std::function<void()> &Init);

  bool event(QEvent *event) override;

 private:
  ControlSite &m_site;
  std::unique_ptr<FormProperties> m_form;
};

}  // namespace tarvik

/// Declares a stored property for Qt forms; its row in the property table does the work.
#define TARVIK_FORM_PROPERTY(key)                                                 \
  Q_PROPERTY(QVariant key READ Form##key WRITE SetForm##key RESET ResetForm##key) \
  TARVIK_FORM_ACCESS(key)

/// A property that is not stored; further Q_PROPERTY attributes follow the name.
#define TARVIK_FORM_PASSING(key, ...)                                                                      \
  Q_PROPERTY(QVariant key READ Form##key WRITE SetForm##key RESET ResetForm##key STORED false __VA_ARGS__) \
  TARVIK_FORM_ACCESS(key)

/// A read-only property.
#define TARVIK_FORM_READING(key, ...)                              \
  Q_PROPERTY(QVariant key READ Form##key STORED false __VA_ARGS__) \
  QVariant Form##key() const { return PropertyValue(#key); }

#define TARVIK_FORM_ACCESS(key)                                               \
  QVariant Form##key() const { return PropertyValue(#key); }                  \
  void SetForm##key(const QVariant &value) { SetPropertyValue(#key, value); } \
  void ResetForm##key() { ResetProperty(#key); }

/// Declares the property with which the form designer marks a newly placed control. It is never stored, so a control
/// that is read from a file is not new.
#define TARVIK_FORM_NEW                                                                                       \
  Q_PROPERTY(bool NewOnForm READ FormIsNew WRITE SetFormIsNew DESIGNABLE false SCRIPTABLE false STORED false) \
  bool FormIsNew() const { return false; }                                                                    \
  void SetFormIsNew(bool fNew) {                                                                              \
    if (fNew) BeginNew([this] { InitProperties(); });                                                         \
  }
