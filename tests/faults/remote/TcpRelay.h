#pragma once

#include <atomic>
#include <list>
#include <string>
#include <thread>

namespace tarvik::remote {

/// A cable between client and server that can be pulled: bytes then vanish in one direction or both while neither end
/// is told. A connection that has lost bytes stays dead; one that is made after the cable is back works.
class TcpRelay {
 public:
  explicit TcpRelay(const std::string &strServerPort);
  TcpRelay(const TcpRelay &) = delete;
  TcpRelay &operator=(const TcpRelay &) = delete;
  ~TcpRelay();

  std::string Url() const { return "tarvik+insecure://127.0.0.1:" + std::to_string(m_lngPort); }
  void Pull(bool fToServer = true, bool fToClient = true);
  void PlugIn() { Pull(false, false); }

 private:
  struct Line {
    int arrEnds[2];                        ///< client, server
    bool arrDead[2] = {false, false};      ///< from the client, from the server
    bool arrFinished[2] = {false, false};  ///< no more bytes come from there
  };

  void Work();
  void Accept();
  void Carry(Line &line, int intFrom);

  const int m_intServerPort;
  int m_intListener = -1;
  int m_lngPort = 0;
  std::atomic<bool> m_fToServerPulled = false, m_fToClientPulled = false, m_fEnding = false;
  std::list<Line> m_lines;
  std::jthread m_worker;
};

}  // namespace tarvik::remote
