#pragma once

#include <map>
#include <string>
#include <vector>

#include "Bench.h"
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
class FrameBench : public Bench {
 public:
  FrameBench(std::string strName, Recorder &recorder, const bool &fDesignMode);

  std::vector<OptionButtonControl *> OptionButtons() const { return m_frame.OptionButtons(); }

 private:
  std::map<std::string, Action> Contents();
  std::map<std::string, Action> Properties();
  void AddOption(Words &words);
  void ActAsUser(Long lngButton, Json &answer) override;
  OptionButton &Button(Long lngButton) const;
  Json View() const;

  std::string m_strName;
  Recorder &m_recorder;
  BenchSite m_site;
  FrameEnhanced m_frame;
};

}  // namespace tarvik::paneltest
