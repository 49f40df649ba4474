#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "settings/JsonTree.h"

namespace tarvik {

/// Base of what checks the tree of a JSON file. Everything that is wrong is collected and told at once, each reason
/// with its line.
class JsonReader {
 protected:
  using Members = std::map<std::string, const JsonNode *>;
  void Refuse(Long lngLine, const std::string &strWhere, const std::string &strWhy);
  void RefuseKind(const JsonNode &node, const std::string &strWhere, const char *strWanted);
  void RefuseOthers(const Members &members, const std::set<std::string> &known, const std::string &strWhere);
  /// Ends the reading if anything was wrong so far.
  void Finish();

  /// The members of an object by name.
  Members Open(const JsonNode &node, const std::string &strWhere);
  const JsonNode *Wanted(const Members &members, const std::string &strKey, const std::string &strWhere, Long lngLine);
  std::optional<Long> WholeNumber(const JsonNode &node, const std::string &strWhere);
  std::optional<std::string> Text(const JsonNode &node, const std::string &strWhere);
  /// Ends the reading unless the file's own name of its format and its version are these.
  void CheckFormat(const Members &file, const char *strFormatName, Long lngFormatVersion);
  std::size_t Reasons() const { return m_arrReasons.size(); }

 private:
  struct Reason {
    Long lngLine;
    std::string strWhy;
  };

  std::vector<Reason> m_arrReasons;
};

}  // namespace tarvik
