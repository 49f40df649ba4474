#pragma once

#include <memory>
#include <utility>

#include "automation/Object.h"
#include "common/Guarded.h"
#include "common/Session.h"
#include "instrument/KolvenDriver.h"

namespace tarvik::driver {

using automation::Status;
using automation::VariantBool;

inline VariantBool ToWord(bool fValue) { return Boolean(fValue).Word(); }

/// Base of the objects below an instrument. They are stateless views: state and rules are in the model.
template <class Interface>
class SessionObject : public automation::Object<Interface> {
 protected:
  explicit SessionObject(std::shared_ptr<Session> session) : m_session(std::move(session)) {}

  /// Runs a body; with an open session only.
  template <class Body>
  Status Run(Body &&body) const {
    return Guarded(m_session->fVerbose, [&] {
      if (!m_session->IsOpen())
        throw CallFailure{automation::StatusUnexpected, "No session is open with " + m_session->Description().strName};
      body();
    });
  }

  /// Fills *pValue from the settings in force.
  template <class T, class Read>
  Status Get(T *pValue, Read read) const {
    return Run([&] {
      RequirePlace(pValue);
      *pValue = static_cast<T>(read(std::as_const(*m_session).Instrument().CurrentSettings()));
    });
  }

  /// Sends one change, at once or into the open transaction.
  Status Send(Change change) const {
    return Run([&] { m_session->Send(std::move(change)); });
  }

  /// Hands out a further view of the same session.
  template <class View, class Wanted, class... Args>
  Status Give(Wanted **ppObject, Args &&...args) const {
    return Run([&] {
      RequirePlace(ppObject);
      *ppObject = automation::MakeObject<View>(m_session, std::forward<Args>(args)...).Detach();
    });
  }

  const std::shared_ptr<Session> m_session;
};

}  // namespace tarvik::driver
