#pragma once

#include <algorithm>
#include <functional>
#include <iterator>
#include <memory>
#include <utility>
#include <vector>

namespace tarvik {

/// A list of callbacks that is called synchronously. Handlers may connect and disconnect while the
/// event is being raised: a disconnected handler is no longer called, a new one is called from the
/// next raise on.
template <class... Args>
class Event {
 public:
  using Handler = std::function<void(Args...)>;

  /// Disconnects its handler when it goes out of scope.
  class Connection {
   public:
    Connection() = default;
    Connection(Connection &&other) noexcept : m_alive(std::move(other.m_alive)) {}
    Connection &operator=(Connection &&other) noexcept {
      Disconnect();
      m_alive = std::move(other.m_alive);
      return *this;
    }
    ~Connection() { Disconnect(); }

    void Disconnect() {
      if (m_alive) *m_alive = false;
      m_alive.reset();
    }
    bool IsConnected() const { return m_alive && *m_alive; }

   private:
    friend class Event;
    explicit Connection(std::shared_ptr<bool> alive) : m_alive(std::move(alive)) {}
    std::shared_ptr<bool> m_alive;
  };

  Event() = default;
  Event(const Event &) = delete;
  Event &operator=(const Event &) = delete;

  /// Handler that lives as long as the event itself.
  void Connect(Handler handler) { Add(std::move(handler)); }

  /// Handler that lives as long as the returned connection.
  [[nodiscard]] Connection ConnectScoped(Handler handler) { return Connection(Add(std::move(handler))); }

  bool HasHandlers() const { return m_arrSlots != nullptr; }

  void Raise(Args... args) const {
    RaiseGuarded([](auto &&callHandler) { callHandler(); }, args...);
  }
  void operator()(Args... args) const { Raise(args...); }

  /// Calls each handler through `guard`, which decides whether the remaining handlers are called after one has
  /// thrown.
  template <class Guard>
  void RaiseGuarded(Guard &&guard, Args... args) const {
    // A handler may connect another one or destroy the event itself.
    const auto arrNow = m_arrSlots;
    if (!arrNow) return;
    for (const Slot &slot : *arrNow)
      if (*slot.alive) guard([&] { slot.handler(args...); });
  }

 private:
  struct Slot {
    Handler handler;
    std::shared_ptr<bool> alive;
  };
  using Slots = std::vector<Slot>;

  std::shared_ptr<bool> Add(Handler handler) {
    Slots arrSlots;
    if (m_arrSlots)
      std::copy_if(m_arrSlots->begin(), m_arrSlots->end(), std::back_inserter(arrSlots),
                   [](const Slot &slot) { return *slot.alive; });
    auto alive = std::make_shared<bool>(true);
    arrSlots.push_back({std::move(handler), alive});
    m_arrSlots = std::make_shared<const Slots>(std::move(arrSlots));
    return alive;
  }

  std::shared_ptr<const Slots> m_arrSlots;  ///< replaced, never changed
};

}  // namespace tarvik
