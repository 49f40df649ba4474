#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "BenchSite.h"
#include "Words.h"
#include "controls/FrameEnhanced.h"
#include "platform/CommandButton.h"
#include "platform/OptionButton.h"

namespace tarvik::paneltest {

/// A control that counts how often its Enabled was written.
class CountingButton : public CommandButton {
 public:
  using CommandButton::CommandButton;
  void SetEnabled(Boolean fEnable) override {
    ++intWrites;
    CommandButton::SetEnabled(fEnable);
  }
  int intWrites = 0;
};

/// One frame on the bench, with what was put into it.
class FrameBench {
 public:
  FrameBench(std::string strName, Recorder &recorder, const bool &fDesignMode);

  void Run(const std::string &strCommand, Words &words, Json &answer);

  std::vector<OptionButtonControl *> OptionButtons() const { return m_frame.OptionButtons(); }

 private:
  using Action = std::function<Json(Words &)>;
  std::map<std::string, Action> Contents();
  std::map<std::string, Action> Properties();
  void AddOption(Words &words);
  void ClickAsUser(Long lngButton, Json &answer);
  OptionButton &Button(Long lngButton) const;
  Json View() const;

  std::string m_strName;
  Recorder &m_recorder;
  BenchSite m_site;
  FrameEnhanced m_frame;
  std::map<std::string, Action> m_actions;
};

}  // namespace tarvik::paneltest
