#include "scpi/simulator/FaultPlan.h"

namespace tarvik::scpisim {

void FaultPlan::Order(Client referee, Long lngMessage, Fault fault, bool fEver) {
  m_referee = referee;
  m_fault = fault;
  m_lngAt = lngMessage;
  m_fEver = fEver;
  m_lngMessages = 0;
  m_lngStruck = 0;
}

void FaultPlan::Clear(Client referee) { Order(referee, 0, Fault::None, false); }

Fault FaultPlan::Next(Client client) {
  if (client == m_referee) return Fault::None;
  ++m_lngMessages;
  const bool fStrikes = m_fault != Fault::None && (m_lngMessages == m_lngAt || (m_fEver && m_lngMessages > m_lngAt));
  if (!fStrikes) return Fault::None;
  ++m_lngStruck;
  return m_fault;
}

}  // namespace tarvik::scpisim
