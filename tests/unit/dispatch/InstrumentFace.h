#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "DispatchClient.h"

namespace tarvik::test {

/// A client of the library in a home of its own, with the simulated family.
class InstrumentFace : public testing::Test {
 protected:
  void SetUp() override {
    m_folder = std::filesystem::temp_directory_path() / ("tarvik-dispatch-" + std::to_string(getpid()));
    std::filesystem::create_directories(m_folder);
    for (const char *strName : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
      setenv(strName, m_folder.c_str(), 1);
    setenv("XDG_DATA_DIRS", m_folder.c_str(), 1);
  }
  void TearDown() override { std::filesystem::remove_all(m_folder); }

  /// The name of the first instrument of the simulated family.
  std::string FirstInstrument(const Client &face) {
    AutomationString bstr = nullptr;
    AutomationVariant vName{};
    vName.vt = VtByRef | VtString;
    vName.pbstrVal = &bstr;
    const Client record = face.NewRecord("viInfo");
    if (!face.Truth("GetViInfo", {Number(1), Object(record.Get()), vName})) return "";
    return String::Adopt(bstr).Text();
  }
  std::string Log() const {
    std::ifstream file(m_folder / "tarvikvi/tarvikerr.txt", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  bool OpenFirst(const Client &face) {
    return face.Truth("Connect") && face.Truth("OpenInstrument", {Text(FirstInstrument(face))});
  }

  std::filesystem::path m_folder;
};

}  // namespace tarvik::test
