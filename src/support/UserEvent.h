#pragma once

#include <functional>

#include "support/Types.h"

namespace tarvik {

/// Leaves a user's event whose panel the host hid or ended while a box of it stood. No failure: nobody is told.
class EventEnded {};

/// A user's event that is being worked on. The events of a thread stand on one another, because a box serves the user
/// while the event that showed it waits.
class UserEvent {
 public:
  /// `owner` is the control that the event came to; null where there is none.
  explicit UserEvent(const void *owner);
  UserEvent(const UserEvent &) = delete;
  UserEvent &operator=(const UserEvent &) = delete;
  /// What the user clicked and typed while the driver worked is dropped with the end of the event.
  ~UserEvent();

  /// Everything that stands waits, as behind a box, for as long as the object lives.
  class Waiting {
   public:
    Waiting();
    Waiting(const Waiting &) = delete;
    Waiting &operator=(const Waiting &) = delete;
    ~Waiting();

   private:
    UserEvent *m_before;
  };

  /// Ends all events of these owners: none of them goes on behind its box. Answers whether there were any.
  static bool EndAllOf(const std::function<bool(const void *owner)> &isOwned);
  /// Raises EventEnded when the event at work was ended.
  static void LeaveIfEnded();
  /// To be called before the driver is, which may take its time: paints what was written so far.
  static void BeforeDriverCall();
  /// Drops what the user did while the driver worked, if it did.
  static void DropInput();
  /// What the boxes of one action have in common. An action is an event that no other one caused, with all that
  /// follows from it.
  struct ActionBoxes {
    bool fListProposed = false;    ///< many boxes are to come, so that the next one proposes the list for the rest
    bool fAnyShown = false;        ///< a box of the action was shown
    bool fRestInListOnly = false;  ///< the user wants no further box of the action that has OK alone
  };
  /// Those of the action at work, also while a box of it stands; null where there is none.
  static ActionBoxes *BoxesOfAction();

  /// Runs the procedure at the end of the thread's bottommost event; at once where there is no event.
  static void AfterAll(std::function<void()> procedure);

 private:
  UserEvent *m_outer;  ///< the event that goes on when this one is done; null at the bottom and behind a box
  UserEvent *m_below;  ///< the next one of the thread, whatever stands between
  const void *m_owner;
  ActionBoxes *m_actionBefore;
  ActionBoxes m_boxes;  ///< of the action that begins here, if it does
  bool m_fEnded = false;
};

}  // namespace tarvik
