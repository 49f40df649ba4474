#pragma once

#include <array>
#include <functional>
#include <vector>

#include "settings/Setting.h"
#include "support/Event.h"

namespace tarvik {

/// What is known of the settings in the open instrument: the last ones that were read from it, or that it took. Each
/// setting is known or not by itself, because transfers go page by page and a mode sends only what it uses.
class KnownSetup {
 public:
  KnownSetup();

  /// Nothing is known, as at the start of a session.
  void Forget();
  /// A page of `read` was read from the instrument.
  void TakeRead(TabNumEnum ePage, const Setup &read);
  /// The instrument took a page of `sent`, which holds all pages as they were then.
  void TakeSent(TabNumEnum ePage, const Setup &sent);
  /// The rows that have bits were sent; they go row by row and outside of transactions.
  void TakeStreams(const Setup &sent);
  /// Who the instrument is.
  void TakeIdentity(const udtInstrInfo &info);
  /// An output was switched at once. Channel 1 or 2.
  void TakeOutput(Long lngChannel, Boolean fIsComplement, Boolean fOn);

  bool KnowsAnything() const;
  /// lngChannel is 0 for a setting of the instrument.
  bool Knows(const Setting &setting, Long lngChannel) const;
  /// The pages that an upload has to send so that the instrument gets these settings: those with something in use that
  /// is not known, or known to be another.
  std::vector<TabNumEnum> PagesToSend(const Setup &setup) const;
  /// What is not known has the value of a fresh Setup. Has both channels, whatever the instrument has.
  const Setup &Values() const { return m_values; }

  /// More is known about the settings of this page, or nothing any more of all pages (eAllPages).
  Event<TabNumEnum> Changed;

 private:
  using Told = std::function<bool(const Setting &setting, Long lngChannel)>;

  void Take(const Setup &setup, const Told &isTold);
  void SetKnown(const Setting &setting, Long lngChannel, bool fKnown);
  /// Single and double pulses have a delay each, and a transfer tells the one that is in force.
  void ForgetDelay(Long lngChannel);
  bool HasToBeSent(const Setting &setting, Long lngChannel, const Setup &setup) const;

  Setup m_values;
  std::vector<std::array<bool, 3>> m_arrKnown;  ///< by row of the table of settings, then by channel
};

}  // namespace tarvik
