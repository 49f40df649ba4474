#pragma once

#include <memory>
#include <string>

#include "platform/FormControl.h"
#include "support/Event.h"

namespace tarvik {

/// A drop-down list with a caption at its left. Each item carries two numbers, item data and group data, by which
/// the selection can be set and read; selections can be saved by position and recalled; and a choice of the user
/// marks the panel's visible page as changed.
class TARVIK_EXPORT CboEnhanced : public FormControl {
  Q_OBJECT
  TARVIK_FORM_NEW
  TARVIK_FORM_PROPERTY(Caption)
  TARVIK_FORM_PROPERTY(CaptionAlignment)
  TARVIK_FORM_PROPERTY(CaptionWidth)
  TARVIK_FORM_PROPERTY(Enabled)
  TARVIK_FORM_PROPERTY(TagX)
  TARVIK_FORM_PASSING(ListIndex, NOTIFY currentIndexChanged)
  TARVIK_FORM_READING(ListCount)
  TARVIK_FORM_READING(Text, NOTIFY currentTextChanged)
  // The names that QComboBox uses.
  Q_PROPERTY(
      int currentIndex READ ListIndex WRITE setCurrentIndex NOTIFY currentIndexChanged DESIGNABLE false STORED false)
  Q_PROPERTY(QString currentText READ currentText NOTIFY currentTextChanged DESIGNABLE false STORED false USER true)

 public:
  class Private;

  /// At run time, with the defaults of the stored properties.
  explicit CboEnhanced(QWidget *parent = nullptr);
  /// In a container, which then calls InitProperties or ReadProperties.
  CboEnhanced(QWidget *parent, ControlSite &site);
  ~CboEnhanced() override;

  /// Adds an item at the end.
  void AddItemData(const std::string &strItem, Long lngItemData, Long lngGroupData = 0, Boolean fGroupDefault = False);
  void Clear();

  /// Selects the default item of the group. Without one it shows a stop box and keeps the selection.
  Boolean SetListIndexByGroupData(Long lngGroupData);
  Long GetCurrGroupData(Long lngDefault = 0) const;
  /// Selects the first item with this item data; false, without a message, if there is none.
  Boolean SetListIndexByItemData(Long lngItemData);
  Long GetCurrItemData(Long lngDefault = 0) const;

  Boolean Enabled() const override;
  /// Disabling clears the selection.
  void SetEnabled(Boolean fEnable) override;
  void SetFocus() override;

  /// From 0; -1 for none.
  Long ListIndex() const;
  /// -1 clears the selection, an index beyond the list selects the first item.
  void SetListIndex(Long lngIndex);

  /// Positions count from 1; only positions whose character in TagX is a digit save.
  void SaveListIndex(Integer intPos);
  void RecallListIndex(Integer intPos);
  void EnableAndRecall(Boolean fEnabledState, Integer intPos);

  /// A text with one character for each position. Setting it puts every position back to list index 0.
  std::string TagX() const;
  void SetTagX(const std::string &strTag);

  Long ListCount() const;
  std::string ItemText(Long lngIndex) const;
  Long ItemData(Long lngIndex) const;
  std::string Text() const;

  std::string Caption() const;
  void SetCaption(const std::string &strCaption);
  /// 0 left, 1 right, 2 centre.
  Long CaptionAlignment() const;
  void SetCaptionAlignment(Long lngAlignment);
  /// Twips.
  Single CaptionWidth() const;
  void SetCaptionWidth(Single sngWidth);

  /// On first creation on a form.
  void InitProperties();
  void ReadProperties(const PropertyBag &bag);
  void WriteProperties(PropertyBag &bag) const;

  /// Width in twips; the height is that of the list. A later resize by a layout or form overrides it.
  void Resize(Single sngWidth);
  /// Height of the list in twips, from which the control takes its own.
  void SetListHeight(Single sngHeight);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

  /// Another item was selected, by the user or by the program.
  Event<> Click;

  /// Text as a QString.
  QString currentText() const;

 public Q_SLOTS:
  /// SetListIndex as a slot: run-time errors of handlers are reported and logged here instead of thrown.
  void setCurrentIndex(int intIndex);

 Q_SIGNALS:
  /// The selection changed, -1 for none, whoever changed it. Emitted before Click, which is not raised for none. A slot
  /// must not throw.
  void currentIndexChanged(int intIndex);
  void currentTextChanged(const QString &strText);

 protected:
  bool event(QEvent *event) override;
  void resizeEvent(QResizeEvent *event) override;
  void changeEvent(QEvent *event) override;

 private:
  const std::unique_ptr<Private> m;
};

}  // namespace tarvik
