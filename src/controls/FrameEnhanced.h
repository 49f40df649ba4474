#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/FormControl.h"
#include "support/Variant.h"

namespace tarvik {

/// A group box that treats the option buttons in it as one value: the Index of the chosen button, or the text
/// in its Tag. It contains the child widgets of Container() that are controls, followed by all widgets that a form
/// added to the frame itself, each in the order of creation. A QRadioButton of a form counts as an option button with
/// its dynamic properties "Index" and "Tag".
class TARVIK_EXPORT FrameEnhanced : public FormControl {
  Q_OBJECT
  TARVIK_FORM_PROPERTY(BorderStyle)
  TARVIK_FORM_PROPERTY(Caption)
  TARVIK_FORM_PASSING(Appearance)
  TARVIK_FORM_PASSING(Enabled)

 public:
  class Private;

  /// At run time, with the defaults of the stored properties.
  explicit FrameEnhanced(QWidget *parent = nullptr);
  /// In a container, which then calls ReadProperties.
  FrameEnhanced(QWidget *parent, ControlSite &site);

  ~FrameEnhanced() override;

  /// Parent for controls that a program adds to the frame.
  QWidget *Container() const;

  Long Appearance() const;
  /// 0 flat, 1 raised from the page.
  void SetAppearance(Long lngAppearance);

  /// Index of the chosen button; 0 if none is chosen, as for button 0.
  Integer ArrayIndex() const;
  /// Chooses the button with this Index, if there is one.
  void SetArrayIndex(Integer intIndex);

  /// The chosen button, or null.
  const OptionButtonControl *Chosen() const;
  /// Tag of the chosen button; empty if none is chosen.
  Variant Value() const;
  /// Chooses the first button whose Tag equals the value as text, if there is one.
  void SetValue(const Variant &vValue);
  /// The same with a fallback value.
  void Match(const Variant &vMatchValue, const Variant &vDefault);

  std::string Caption() const;
  void SetCaption(const std::string &strCaption);

  Long BorderStyle() const;
  /// 0 none, 1 a line around the frame.
  void SetBorderStyle(Long lngBorderStyle);

  Boolean Enabled() const override;
  /// Applies to the frame and everything in it. A control without an Enabled property raises 438.
  void SetEnabled(Boolean fEnable) override;
  void SetFocus() override { SetFocusOnOpt(); }

  /// Focuses the chosen button if it and the frame are enabled.
  void SetFocusOnOpt();

  void ReadProperties(const PropertyBag &bag);
  void WriteProperties(PropertyBag &bag) const;

  /// Room for the caption and for what stands in a layout, of Container() or of the frame itself.
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

  /// The option buttons that the frame treats as one value.
  std::vector<OptionButtonControl *> OptionButtons() const;

 protected:
  bool eventFilter(QObject *watched, QEvent *event) override;
  void resizeEvent(QResizeEvent *event) override;
  void changeEvent(QEvent *event) override;

 private:
  const std::unique_ptr<Private> m;
};

}  // namespace tarvik
