#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <vector>

#include "scpi/Line.h"
#include "scpi/ProfileFolders.h"
#include "scpi/ScpiInstrument.h"
#include "scpi/simulator/Interpreter.h"
#include "simulator/model/RackFile.h"

namespace tarvik::scpi {

/// What goes wrong with a message, from one message on or with one alone.
enum class LineFault { None, Cut, Half, Silence, Mute, Garbage, Damage, Refusal };

/// The line to a simulated instrument without a wire: what is sent is carried out at once, and no time passes.
class BenchLine final : public Line {
 public:
  explicit BenchLine(scpisim::Device &device) : m_device(device) {}

  void Open(Milliseconds) override {
    if (m_fOpen) return;
    if (m_fBroken) throw driver::Failure("no connection");
    m_fOpen = true;
  }
  void Close() override {
    m_fOpen = false;
    m_strAnswer.clear();
  }
  bool IsOpen() const override { return m_fOpen; }
  void Clear(Milliseconds timeout) override {
    ++clears;
    Close();
    Open(timeout);
  }

  void Send(std::string_view strMessage, Milliseconds) override {
    m_strAnswer.clear();
    arrMessages.emplace_back(strMessage);
    m_fault = Next();
    switch (m_fault) {
      case LineFault::Cut: Break(); throw driver::Failure("the line is cut");
      case LineFault::Silence: return;
      case LineFault::Refusal: m_device.status.Report({-240, "Hardware error", {}}); return;
      case LineFault::Damage: m_strAnswer = Execute(":SOUR1:PULS:WI~T \x01"); return;
      default: break;
    }
    m_strAnswer = Execute(rewrite ? rewrite(std::string(strMessage)) : strMessage);
  }

  std::string Receive(std::size_t most, Milliseconds) override {
    switch (m_fault) {
      case LineFault::Half: Break(); throw driver::Failure("the instrument has ended the connection");
      case LineFault::Garbage: return "\x7f?;" + m_strAnswer.substr(m_strAnswer.size() / 2);
      case LineFault::Mute: m_strAnswer.clear(); break;
      default: break;
    }
    if (m_strAnswer.empty()) throw driver::Failure("no answer within 0 ms");
    if (m_strAnswer.size() > most) throw driver::Failure("the answer is too long");
    return std::exchange(m_strAnswer, {});
  }

  /// Message number `at`, counted from 1 and from now on, goes wrong; with fEver all behind it too.
  void Plan(LineFault fault, std::size_t at, bool fEver) {
    m_planned = fault;
    m_at = arrMessages.size() + at;
    m_fEver = fEver;
  }
  /// The line works again.
  void Mend() {
    m_planned = LineFault::None;
    m_fBroken = false;
  }

  std::vector<std::string> arrMessages;
  int clears = 0;
  /// What the instrument makes of a message.
  std::function<std::string(std::string)> rewrite;

 private:
  std::string Execute(std::string_view strMessage) {
    std::string strAnswer = scpisim::Interpreter(m_device, 1).Execute(strMessage);
    while (strAnswer.ends_with('\n')) strAnswer.pop_back();
    return strAnswer;
  }
  LineFault Next() const {
    const std::size_t number = arrMessages.size();
    return number == m_at || (m_fEver && number > m_at) ? m_planned : LineFault::None;
  }
  void Break() {
    m_fOpen = false;
    m_fBroken = m_fEver;
  }

  scpisim::Device &m_device;
  bool m_fOpen = false, m_fBroken = false, m_fEver = false;
  LineFault m_planned = LineFault::None, m_fault = LineFault::None;
  std::size_t m_at = 0;
  std::string m_strAnswer;
};

/// An instrument of the driver over a simulated one that speaks SCPI.
class OverBench : public testing::Test {
 protected:
  explicit OverBench(const std::string &strProfile = "scpi-99-pattern")
      : profile(ProfileFolders::OfMachine().Read(strProfile)), device(Model("VP-210")) {
    auto made = std::make_unique<BenchLine>(device);
    line = made.get();
    driver::InstrumentDescription description;
    description.strName = "Bench (TCPIP::127.0.0.1::5025::SOCKET)";
    instrument = std::make_unique<ScpiInstrument>(
        description, [this] { return profile; },
        std::make_unique<Talk>(std::move(made), "TCPIP::127.0.0.1::5025::SOCKET"), [this] { return now; });
  }

  static simulator::InstrumentDescription Model(const std::string &strModel) {
    for (const auto &description : simulator::DefaultRack())
      if (description.strName == strModel) return description;
    throw std::runtime_error("no model " + strModel);
  }

  /// The messages of an action.
  template <class Action>
  std::size_t MessagesOf(Action &&action) {
    const std::size_t before = line->arrMessages.size();
    action();
    return line->arrMessages.size() - before;
  }
  /// The words of the failure of an action.
  template <class Action>
  static std::string FailureOf(Action &&action) {
    try {
      action();
    } catch (const driver::Failure &failure) {
      return failure.what();
    } catch (const driver::Rejected &rejected) {
      return driver::JoinEntries(rejected.Errors(), true);
    }
    return "done";
  }

  Profile profile;
  scpisim::Device device;
  BenchLine *line;
  std::chrono::steady_clock::time_point now{};
  std::unique_ptr<ScpiInstrument> instrument;
};

}  // namespace tarvik::scpi
