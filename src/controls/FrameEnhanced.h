#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/FormControl.h"
#include "support/Variant.h"

namespace tarvik {

/// A group box that treats the option buttons in it as one value: the Index of the chosen button, or the text
/// in its Tag. What stands in it are the child widgets of Container() that are controls, and after them what a form of
/// the toolkit put into the frame itself, each in the order in which they were made. Radio buttons of a form are
/// options as well: their dynamic properties "Index" and "Tag" are those of an option button.
class TARVIK_EXPORT FrameEnhanced : public FormControl {
  Q_OBJECT
  TARVIK_FORM_PROPERTY(BorderStyle)
  TARVIK_FORM_PROPERTY(Caption)
  TARVIK_FORM_PASSING(Appearance)
  TARVIK_FORM_PASSING(Enabled)

 public:
  class Private;

  /// On a running form that tells nothing of it: stands with the defaults of the stored properties.
  explicit FrameEnhanced(QWidget *parent = nullptr);
  /// In a container, which calls ReadProperties.
  FrameEnhanced(QWidget *parent, ControlSite &site);

  ~FrameEnhanced() override;

  /// The parent of whatever a program puts into the frame.
  QWidget *Container() const;

  Long Appearance() const;
  /// 0 flat, 1 raised from the page.
  void SetAppearance(Long lngAppearance);

  /// Index of the chosen button; 0 with none chosen, which looks like button 0.
  Integer ArrayIndex() const;
  /// Chooses the button with this Index; nothing happens where there is none.
  void SetArrayIndex(Integer intIndex);

  /// The chosen button, or null.
  const OptionButtonControl *Chosen() const;
  /// Tag of the chosen button; empty with none chosen.
  Variant Value() const;
  /// Chooses the first button whose Tag is the value's text; nothing happens where there is none.
  void SetValue(const Variant &vValue);
  /// The same, with a second value to fall back to.
  void Match(const Variant &vMatchValue, const Variant &vDefault);

  std::string Caption() const;
  void SetCaption(const std::string &strCaption);

  Long BorderStyle() const;
  /// 0 none, 1 a line around the frame.
  void SetBorderStyle(Long lngBorderStyle);

  Boolean Enabled() const override;
  /// The frame and everything that stands in it. A control without an Enabled property raises 438.
  void SetEnabled(Boolean fEnable) override;
  void SetFocus() override { SetFocusOnOpt(); }

  /// The focus goes to the chosen button, if it and the frame are enabled.
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
