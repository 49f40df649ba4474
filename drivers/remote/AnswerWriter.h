#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

#include "remote/DriverService.h"
#include "remote/Wire.h"

namespace tarvik::remote {

/// Writes answers, and heartbeats in between while a call is at work.
class AnswerWriter {
 public:
  AnswerWriter(DriverService::Stream &stream, std::chrono::milliseconds interval)
      : m_stream(stream), m_interval(interval), m_beating([this](const std::stop_token &stop) { Beat(stop); }) {}

  void Begin() { m_fAtWork = true; }
  bool End(std::string strAnswer) {
    const std::lock_guard lock(m_mutex);
    m_fAtWork = false;
    return strAnswer.empty() || Write(std::move(strAnswer));
  }

 private:
  bool Write(std::string strBody) {
    ServerFrame frame;
    frame.set_body(std::move(strBody));
    return m_stream.Write(frame);
  }

  void Beat(const std::stop_token &stop) {
    std::unique_lock lock(m_mutex);
    while (!stop.stop_requested()) {
      m_changed.wait_for(lock, stop, m_interval, [] { return false; });
      if (m_fAtWork && !stop.stop_requested()) Write(std::string(1, static_cast<char>(Answer::Heartbeat)));
    }
  }

  DriverService::Stream &m_stream;
  const std::chrono::milliseconds m_interval;
  std::mutex m_mutex;
  std::condition_variable_any m_changed;
  std::atomic<bool> m_fAtWork = false;
  std::jthread m_beating;
};

}  // namespace tarvik::remote
