#include "remote/FolderlessText.h"

namespace tarvik::remote {

namespace {

bool BelongsToPath(char ch) {
  return (ch >= 'a' && ch <= 'z') || (ch >= 'A' && ch <= 'Z') || (ch >= '0' && ch <= '9') || (ch & 0x80) != 0 ||
         std::string_view("/._-+~@%=").find(ch) != std::string_view::npos;
}

}  // namespace

std::string WithoutFolders(std::string_view strText) {
  std::string strResult;
  for (std::size_t at = 0; at < strText.size();) {
    const bool fBegins = strText[at] == '/' && (at == 0 || !BelongsToPath(strText[at - 1])) &&
                         at + 1 < strText.size() && BelongsToPath(strText[at + 1]);
    if (!fBegins) {
      strResult += strText[at++];
      continue;
    }
    std::size_t end = at;
    while (end < strText.size() && BelongsToPath(strText[end])) ++end;
    const std::string_view strPath = strText.substr(at, end - at);
    strResult += strPath.substr(strPath.rfind('/') + 1);
    at = end;
  }
  return strResult;
}

}  // namespace tarvik::remote
