#include "automation/ReadAhead.h"

namespace tarvik::automation {

namespace {

thread_local ReadAhead::Current g_readAhead;

}  // namespace

ReadAhead::ReadAhead(const char *strName) : m_fCounts(strName && !g_readAhead.strName) {
  if (!m_fCounts) return;
  g_readAhead.strName = strName;
  ++g_readAhead.lngNumber;
}

ReadAhead::~ReadAhead() {
  if (m_fCounts) g_readAhead.strName = nullptr;
}

ReadAhead::Current ReadAhead::OfThread() { return g_readAhead; }

}  // namespace tarvik::automation
