#pragma once

#include <QComboBox>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ControlSite.h"
#include "platform/FormProperties.h"
#include "platform/PropertyBag.h"
#include "platform/Twips.h"
#include "platform/WidgetControl.h"
#include "support/Export.h"

namespace tarvik {

class FieldLabel;

/// A drop-down list with a caption at its left. Each item carries two numbers, item data and group data, by which
/// the selection can be set and read; selections can be saved by position and recalled; and a choice of the user
/// marks the panel's visible page as changed.
class TARVIK_EXPORT CboEnhanced : public QWidget, public Control {
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
  // By the names that the toolkit's own lists have.
  Q_PROPERTY(
      int currentIndex READ ListIndex WRITE setCurrentIndex NOTIFY currentIndexChanged DESIGNABLE false STORED false)
  Q_PROPERTY(QString currentText READ currentText NOTIFY currentTextChanged DESIGNABLE false STORED false USER true)

 public:
  /// On a running form that tells nothing of it: stands with the defaults of the stored properties.
  explicit CboEnhanced(QWidget *parent = nullptr);
  /// In a container, which calls InitProperties or ReadProperties.
  CboEnhanced(QWidget *parent, ControlSite &site);

  /// On a form that sets properties by name: stands with the defaults of the stored ones before the first.
  void BeginForm() { m_form.Begin(); }

  /// Adds an item at the end.
  void AddItemData(const std::string &strItem, Long lngItemData, Long lngGroupData = 0, Boolean fGroupDefault = False);
  void Clear();

  /// Selects the item that stands for its group. Without one a stop box says so and the selection stays.
  Boolean SetListIndexByGroupData(Long lngGroupData);
  Long GetCurrGroupData(Long lngDefault = 0) const;
  /// Selects the first item with this item data; false, and no word, where there is none.
  Boolean SetListIndexByItemData(Long lngItemData);
  Long GetCurrItemData(Long lngDefault = 0) const;

  Boolean Enabled() const override;
  /// A disabled list shows no selection; the one it had is lost.
  void SetEnabled(Boolean fEnable) override;
  Boolean Visible() const override;
  void SetVisible(Boolean fShow) override { setVisible(fShow); }
  void SetFocus() override;

  /// From 0; -1 for none.
  Long ListIndex() const { return m_lngListIndex; }
  /// -1 clears the selection, an index beyond the list selects the first item.
  void SetListIndex(Long lngIndex);

  /// Positions count from 1; only positions whose character in TagX is a digit save.
  void SaveListIndex(Integer intPos);
  void RecallListIndex(Integer intPos);
  void EnableAndRecall(Boolean fEnabledState, Integer intPos);

  /// A text with one character for each position. Setting it puts every position back to list index 0.
  std::string TagX() const { return m_strTagX; }
  void SetTagX(const std::string &strTag);

  Long ListCount() const { return static_cast<Long>(m_ItemData.size()); }
  std::string ItemText(Long lngIndex) const;
  Long ItemData(Long lngIndex) const;
  std::string Text() const;

  std::string Caption() const;
  void SetCaption(const std::string &strCaption);
  /// 0 left, 1 right, 2 centre.
  Long CaptionAlignment() const { return m_lngCaptionAlignment; }
  void SetCaptionAlignment(Long lngAlignment);
  /// Twips.
  Single CaptionWidth() const { return m_sngCaptionWidth; }
  void SetCaptionWidth(Single sngWidth);

  /// On first creation on a form.
  void InitProperties();
  void ReadProperties(const PropertyBag &bag);
  void WriteProperties(PropertyBag &bag) const;

  /// Width in twips, as the program gives it; the height is that of the list and cannot be chosen. A form that gives
  /// the control another place afterwards has the last word: the layout follows the width on the form.
  void Resize(Single sngWidth);
  /// Height of the list in twips, from which the control takes its own.
  void SetListHeight(Single sngHeight);

  struct Layout {
    Single sngHeight = 0;
    TwipsRect list, label;
    bool operator==(const Layout &) const = default;
  };
  const Layout &CurrentLayout() const { return m_layout; }
  bool LabelVisible() const;
  /// The saved list indexes, each followed by a blank.
  const std::string &SavedIndexes() const { return m_strSavedIndexes; }
  const QComboBox &List() const { return *m_cbo; }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

  /// An item was chosen that was not chosen before, by whomever.
  Event<> Click;

  /// The text of the selected item, in the toolkit's own kind.
  QString currentText() const { return m_cbo->currentText(); }

 public Q_SLOTS:
  /// SetListIndex for connections: a failure of a handler that it calls ends here, with box and record.
  void setCurrentIndex(int intIndex);

 Q_SIGNALS:
  /// Another item is selected, or none (-1), by whomever. Comes before Click, which does not tell of none. A slot must
  /// let no exception out.
  void currentIndexChanged(int intIndex);
  void currentTextChanged(const QString &strText);

 protected:
  bool event(QEvent *event) override;
  void resizeEvent(QResizeEvent *event) override;
  void changeEvent(QEvent *event) override;

 private:
  std::vector<FormProperties::Property> FormTable();
  std::optional<std::string_view> SavedEntry(Integer intPos) const;
  void SetListIndexQuietly(Long lngIndex);
  void cbo_Click();
  void NoteUserChange();
  void TellIndex();
  void PropChanged(const char *strProperty, bool fResize = false);
  /// Whether the list leaves room for the caption.
  bool HasCaptionRoom() const;
  Single CaptionRoom() const;
  void NoteCaption(bool fAppears);
  void TakeWidthOfForm();
  Layout Arranged() const;
  void LayOut();
  void ShowLayout(const Layout &layout);
  void ShowColours();
  static std::size_t Slot(Long lngIndex) { return static_cast<std::size_t>(lngIndex); }

  ControlSite &m_site;
  FormProperties m_form;
  QComboBox *m_cbo;
  FieldLabel *m_lblCaption;
  // What a transfer asks for most stands here and not only in the list's model.
  Long m_lngListIndex = -1;
  Long m_lngToldIndex = -1;  ///< by the latest currentIndexChanged
  std::vector<Long> m_ItemData;
  std::vector<Long> m_GroupData;
  std::vector<Boolean> m_fGroupDefault;
  std::string m_strSavedIndexes;
  std::string m_strTagX;
  Long m_lngCaptionAlignment = 0;
  Single m_sngCaptionWidth = 1215;
  Single m_sngLabelWidth = 1215;
  Single m_sngListHeight = 315;
  Single m_sngWidth = 3000;
  /// Pixels at the latest Resize; until then, and after a form gave it another width, the form's width counts.
  std::optional<int> m_intWidthAtResize;
  bool m_fInResize = false;
  Boolean m_fListEnabled = True;
  Boolean m_fReadingProperties = False;
  Boolean m_fInternalChange = False;
  bool m_fProgramChange = false;
  Layout m_layout;
};

}  // namespace tarvik
