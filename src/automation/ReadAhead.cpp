#include "automation/ReadAhead.h"

namespace tarvik::automation {

namespace {

thread_local ReadAhead::Current g_current;

}  // namespace

ReadAhead::ReadAhead(const char *strName) : m_fCounts(strName && !g_current.strName) {
  if (!m_fCounts) return;
  g_current.strName = strName;
  ++g_current.lngNumber;
}

ReadAhead::~ReadAhead() {
  if (m_fCounts) g_current.strName = nullptr;
}

ReadAhead::Current ReadAhead::OfThread() { return g_current; }

}  // namespace tarvik::automation
