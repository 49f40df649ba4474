#pragma once

#include <QComboBox>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "controls/CboEnhanced.h"
#include "platform/ControlSite.h"
#include "platform/FieldLabel.h"
#include "platform/PropertyTable.h"
#include "platform/Twips.h"

namespace tarvik {

/// Implementation of CboEnhanced.
class TARVIK_HIDDEN CboEnhanced::Private {
 public:
  explicit Private(CboEnhanced &control);
  Private(const Private &) = delete;
  Private &operator=(const Private &) = delete;

  static const Private &Of(const CboEnhanced &control) { return *control.m; }
  static Private &Of(CboEnhanced &control) { return *control.m; }
  static const PropertyTable &Properties();

  /// Twips.
  struct Layout {
    Single sngHeight = 0;
    TwipsRect list, label;
    bool operator==(const Layout &) const = default;
  };

  struct Item {
    Long lngItemData = 0;
    Long lngGroupData = 0;
    Boolean fGroupDefault;
  };
  /// Null while nothing is selected or the list is disabled.
  const Item *Selected() const;
  /// Selects the first item that matches; false where none does.
  bool SelectFirst(const std::function<bool(const Item &)> &matches);

  /// Saved list index at the position, counted from 1.
  std::optional<std::string_view> SavedEntry(Integer intPos) const;
  void SetListIndexQuietly(Long lngIndex);
  void cbo_Click();
  void TellIndex();
  void PropChanged(const char *strProperty, bool fResize = false);
  /// Whether the layout reserves room for the caption.
  bool HasCaptionRoom() const;
  Single CaptionRoom() const;
  void NoteCaption(bool fAppears);
  void TakeWidthOfForm();
  Layout Arranged() const;
  void LayOut();
  void ShowLayout(const Layout &places);
  void ShowColours();

  CboEnhanced &control;
  ControlSite &site;
  QComboBox *const cbo;
  FieldLabel *const lblCaption;

  std::vector<Item> arrItems;
  Long lngToldIndex = -1;  ///< of the last currentIndexChanged
  /// The saved list indexes, each followed by a blank.
  std::string strSavedIndexes;
  std::string strTagX;
  Long lngCaptionAlignment = 0;
  Single sngCaptionWidth = DefaultCaptionWidth;
  Single sngLabelWidth = DefaultCaptionWidth;
  Single sngListHeight = 315;
  Single sngWidth = 3000;
  /// Width in pixels at the last Resize; empty while the width of the form decides.
  std::optional<int> intWidthAtResize;
  Layout layout;
  bool fInResize = false;
  Boolean fListEnabled = True;
  Boolean fReadingProperties = False;
  Boolean fInternalChange = False;
  bool fProgramChange = false;

  static constexpr Single DefaultCaptionWidth = 1215;
};

}  // namespace tarvik
