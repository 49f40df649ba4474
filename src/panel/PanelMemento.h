#pragma once

#include <array>
#include <functional>
#include <memory>
#include <vector>

#include "panel/Page.h"
#include "platform/StateArchive.h"

namespace tarvik {

class BitPattern;

/// The state of a part of the panel; equal states of different moments are one object.
using KeptPart = std::shared_ptr<const KeptState>;
using KeptParts = std::vector<KeptPart>;

/// Takes what the pages with settings of the instrument show and remember, and brings it back as it was, without any
/// event of a control and without a mark.
class PanelMemento {
 public:
  struct Part {
    TabNumEnum ePage;
    QWidget *widget;  ///< the control; null for what a page remembers besides
    bool fSetting;    ///< holds a setting of the instrument
    std::function<void(StateArchive &)> visit;
  };

  explicit PanelMemento(PanelState &state);

  /// Pages in the order in which they are brought back.
  void AddPage(TabNumEnum ePage, Page &page);
  /// Behind all pages.
  void AddPanelState();

  const std::vector<Part> &Parts() const { return m_arrParts; }
  /// The part that the control belongs to, or null.
  const Part *PartOf(const QWidget *widget) const;
  /// Whether the user is in the middle of an entry of this part.
  static bool IsTyping(const Part &part);

  /// The present state. What equals `before` is shared with it, and a field that is being typed in keeps its state of
  /// before.
  KeptParts Taken(const KeptParts &before) const;
  void Show(const KeptParts &arrTarget) const;

  /// The flags of the output switches in a state: normal outputs of both channels, then inverse ones.
  using Outputs = std::array<Boolean, 4>;
  Outputs OutputsIn(const KeptParts &arrParts) const;
  bool HoldsOutputs(std::size_t lngPart) const { return lngPart == m_lngOutputs; }

 private:
  void AddControl(TabNumEnum ePage, QWidget &widget);
  void AddEditor(TabNumEnum ePage, BitPattern &editor);
  template <class T>
  void Add(TabNumEnum ePage, T &control, bool fSetting);

  PanelState &m_state;
  std::vector<Part> m_arrParts;
  std::size_t m_lngOutputs = 0;  ///< index of the part with the flags
};

}  // namespace tarvik
