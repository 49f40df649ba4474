#pragma once

#include <string>
#include <vector>

#include "support/RunTimeError.h"

namespace tarvik::python {

/// Becomes the Python exception of this name: one of the module tarvikvi.errors, or a built-in one.
class Failure : public RunTimeError {
 public:
  Failure(std::string strClassName, std::int32_t lngNumber, std::string strText, std::vector<std::string> arrWhy = {})
      : RunTimeError(lngNumber, std::move(strText)), strClass(std::move(strClassName)), arrReasons(std::move(arrWhy)) {}

  std::string strClass;
  std::vector<std::string> arrReasons;  ///< one by one, where there can be several
};

}  // namespace tarvik::python
