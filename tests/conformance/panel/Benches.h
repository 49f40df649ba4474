#pragma once

#include <map>
#include <memory>
#include <string>

#include "Words.h"
#include "World.h"

namespace tarvik::paneltest {

class CboBench;
class FrameBench;
class CountingButton;

/// The two selection controls and the shared procedures without a panel.
class Benches {
 public:
  explicit Benches(World &world);
  ~Benches();

  void Reset();

  /// False for a command of another area. Otherwise runs it and puts its result into `answer`.
  bool Run(const std::string &strCommand, Words &words, Json &answer);

 private:
  /// Makes a control of this kind, or runs a command on one.
  template <class Made>
  void RunOn(std::map<std::string, std::unique_ptr<Made>> &benches, const char *strKind, Words &words, Json &answer);
  void Util(Words &words, Json &answer);
  Json LogText(Words &words);
  CountingButton &Plain(const std::string &strName);

  World &m_world;
  bool m_fDesignMode = false;
  std::map<std::string, std::unique_ptr<CboBench>> m_lists;
  std::map<std::string, std::unique_ptr<FrameBench>> m_frames;
  std::map<std::string, std::unique_ptr<CountingButton>> m_plain;
};

}  // namespace tarvik::paneltest
