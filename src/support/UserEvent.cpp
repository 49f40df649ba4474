#include "support/UserEvent.h"

#include <utility>
#include <vector>

#include "support/ActionEnd.h"
#include "support/Host.h"

namespace tarvik {

namespace {

thread_local UserEvent *g_atWork = nullptr;  // null while a box stands
thread_local UserEvent *g_topmost = nullptr;
thread_local UserEvent::ActionBoxes *g_action = nullptr;
thread_local bool g_fDriverWorked = false;
thread_local std::vector<std::function<void()>> g_arrAfterAll;

}  // namespace

UserEvent::UserEvent(const void *owner)
    : m_outer(g_atWork), m_below(g_topmost), m_owner(owner), m_actionBefore(g_action) {
  g_atWork = g_topmost = this;
  if (m_outer) return;
  g_action = &m_boxes;
  // A call of the host's own was not the user's concern.
  g_fDriverWorked = false;
}

UserEvent::~UserEvent() {
  g_atWork = m_outer;
  g_topmost = m_below;
  g_action = m_actionBefore;
  if (!m_outer) DropInput();
  if (m_below) return;
  for (const auto &procedure : std::exchange(g_arrAfterAll, {})) procedure();
  ActionEnded().Raise(m_owner);
}

Event<const void *> &ActionEnded() {
  thread_local Event<const void *> event;
  return event;
}

UserEvent::Waiting::Waiting() : m_before(std::exchange(g_atWork, nullptr)) {}

UserEvent::Waiting::~Waiting() { g_atWork = m_before; }

bool UserEvent::EndAllOf(const std::function<bool(const void *owner)> &isOwned) {
  bool fAny = false;
  for (UserEvent *event = g_topmost; event; event = event->m_below)
    if (event->m_owner && isOwned(event->m_owner)) event->m_fEnded = fAny = true;
  return fAny;
}

void UserEvent::LeaveIfEnded() {
  for (const UserEvent *event = g_atWork; event; event = event->m_outer)
    if (event->m_fEnded) throw EventEnded{};
}

void UserEvent::BeforeDriverCall() {
  g_fDriverWorked = true;
  if (Host *host = InstalledHost()) host->Repaint();
}

void UserEvent::DropInput() {
  if (std::exchange(g_fDriverWorked, false)) TheHost().DropInput();
}

UserEvent::ActionBoxes *UserEvent::BoxesOfAction() { return g_action; }

void UserEvent::AfterAll(std::function<void()> procedure) {
  if (g_topmost)
    g_arrAfterAll.push_back(std::move(procedure));
  else
    procedure();
}

}  // namespace tarvik
