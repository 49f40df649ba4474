#pragma once

#include <map>
#include <memory>
#include <string>

#include "Benches.h"
#include "PanelUnderTest.h"
#include "StateReader.h"
#include "World.h"

namespace tarvik::paneltest {

/// Answers the lines of the protocol over real panels.
class Adapter {
 public:
  Adapter();
  ~Adapter();

  /// The answer to one line.
  Json Answer(const std::string &strLine);

  /// The panel that commands go to.
  const PanelUnderTest &Front() const { return *m_panels.at(m_lngPanel); }

 private:
  using Command = void (Adapter::*)(Words &, Json &);
  static const std::map<std::string, Command> &Commands();

  void Execute(const std::string &strLine, Json &answer);
  void Reset();
  StateMap State() const;
  PanelUnderTest &Panel() { return *m_panels.at(m_lngPanel); }

  void Hello(Words &words, Json &answer);
  void SetSurface(Words &words, Json &answer);
  void Design(Words &words, Json &answer);
  void ChoosePanel(Words &words, Json &answer);
  void Store(Words &words, Json &answer);
  void QueueAnswer(Words &words, Json &answer);
  void AtYield(Words &words, Json &answer);
  void LogFail(Words &words, Json &answer);
  void Driver(Words &words, Json &answer);
  void Instr(Words &words, Json &answer);
  void Fake(Words &words, Json &answer);
  void Show(Words &words, Json &answer);
  void Hide(Words &words, Json &answer);
  void Terminate(Words &words, Json &answer);
  void TellState(Words &words, Json &answer);
  void Get(Words &words, Json &answer);
  void Static(Words &words, Json &answer);
  void Prop(Words &words, Json &answer);
  void Invoke(Words &words, Json &answer);

  World m_world;
  Surface m_surface;
  std::map<Long, std::unique_ptr<PanelUnderTest>> m_panels;
  Long m_lngPanel = 1;
  Benches m_benches{m_world};
  StateMap m_before;
};

}  // namespace tarvik::paneltest
