#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tarvik::scpisim {

/// Cuts what a client sends into program messages. A message ends with a line feed, but for one within a block of
/// definite length. A socket has no other mark of the end, so a line feed ends an open string and an indefinite block
/// too.
class MessageFramer {
 public:
  /// Messages of more bytes are read to their end and dropped.
  explicit MessageFramer(std::size_t lngLongest) : m_lngLongest(lngLongest) {}

  struct Message {
    std::string strText;  ///< without the line feed
    bool fOverrun;        ///< was too long; the text is empty
  };

  void Append(std::string_view strBytes) { m_strInput += strBytes; }
  /// The next complete message.
  std::optional<Message> Next();
  /// What has come of a message that is not complete. Only after Next has returned nothing.
  const std::string &Unfinished() const { return m_strMessage; }

 private:
  enum class Place { Plain, String, AfterHash, BlockLength, Block, IndefiniteBlock };

  /// Whether this byte ends the message.
  bool Advance(char ch);
  void AdvancePlain(char ch);
  void BeginBlock(char ch);
  void AdvanceLength(char ch);

  const std::size_t m_lngLongest;
  std::string m_strInput;
  std::string m_strMessage;
  bool m_fOverrun = false;
  Place m_place = Place::Plain;
  char m_chQuote = 0;
  int m_intDigits = 0;         ///< of the length of a block that have not come yet
  std::size_t m_lngBytes = 0;  ///< of a block that have not come yet
};

}  // namespace tarvik::scpisim
