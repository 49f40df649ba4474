#pragma once

#include <cstddef>
#include <ctime>
#include <deque>
#include <string>

#include "support/Event.h"
#include "support/Export.h"
#include "support/Host.h"

namespace tarvik {

/// What a box told or asked.
struct HostMessage {
  std::tm Time{};  ///< local, of the last time
  BoxIcon icon = BoxIcon::Information;
  std::string strText;  ///< UTF-8, line breaks are CR LF
  Long lngCount = 1;    ///< how often it came in a row
};

/// The texts of the boxes so far, oldest first. Of more than MaxMessages the oldest are dropped; a text of more than
/// MaxText bytes is cut.
class TARVIK_EXPORT MessageList {
 public:
  static constexpr std::size_t MaxMessages = 1000, MaxText = 8192;

  /// The same text with the same icon again only counts.
  void Add(const std::tm &time, BoxIcon icon, const std::string &strText);
  const std::deque<HostMessage> &All() const { return m_arrMessages; }

  /// Messages that were shown nowhere yet: they came without a box, and the list has not been opened since.
  void AddUnseen();
  void MarkSeen();
  Long Unseen() const { return m_lngUnseen; }

  /// The list or the number of unseen messages is another.
  Event<> Changed;

 private:
  std::deque<HostMessage> m_arrMessages;
  Long m_lngUnseen = 0;
};

/// "Stop", "Question", "Warning" or "Information".
TARVIK_EXPORT const char *KindName(BoxIcon icon);

}  // namespace tarvik
