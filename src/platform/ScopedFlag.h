#pragma once

#include <QObject>
#include <QPointer>

namespace tarvik {

/// Gives a flag a value while the object lives and restores it on every exit, unless the object that owns the flag has
/// been deleted meanwhile: handlers and boxes run the host's program. The owner has to end with the flag. A control of
/// a page does not: it may outlive the page.
template <class Flag>
class ScopedFlag {
 public:
  ScopedFlag(QObject &owner, Flag &fFlag, bool fValue = true) : m_owner(&owner), m_fFlag(fFlag), m_fBefore(fFlag) {
    m_fFlag = Flag(fValue);
  }
  ~ScopedFlag() {
    if (m_owner) m_fFlag = m_fBefore;
  }
  ScopedFlag(const ScopedFlag &) = delete;
  ScopedFlag &operator=(const ScopedFlag &) = delete;

 private:
  const QPointer<QObject> m_owner;
  Flag &m_fFlag;
  const Flag m_fBefore;
};

}  // namespace tarvik
