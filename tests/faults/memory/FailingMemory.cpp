#include "FailingMemory.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <new>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define SANITIZER_HAS_MALLOC
#endif
#endif
#ifdef __SANITIZE_ADDRESS__
#define SANITIZER_HAS_MALLOC
#endif

namespace {

// Plain numbers: whatever is here runs within every allocation of the program.
thread_local int g_intAsked = 0, g_intFailsAt = 0, g_intSuspended = 0;
thread_local bool g_fArmed = false, g_fForEver = false, g_fFailed = false;

bool Fails() {
  if (!g_fArmed || g_intSuspended > 0) return false;
  ++g_intAsked;
  if (g_intFailsAt == 0) return false;
  const bool fFails = g_fForEver ? g_intAsked >= g_intFailsAt : g_intAsked == g_intFailsAt;
  g_fFailed = g_fFailed || fFails;
  if (fFails) errno = ENOMEM;
  return fFails;
}

}  // namespace

#ifdef SANITIZER_HAS_MALLOC

void *operator new(std::size_t size) {
  void *block = Fails() ? nullptr : std::malloc(size ? size : 1);
  if (!block) throw std::bad_alloc();
  return block;
}
void operator delete(void *block) noexcept { std::free(block); }
void operator delete(void *block, std::size_t) noexcept { std::free(block); }

#else

// Of the C library, below the names that everybody calls; operator new calls malloc as well. Visible, or libraries
// would go on to call the original.
extern "C" {
void *__libc_malloc(std::size_t);
void *__libc_calloc(std::size_t, std::size_t);

[[gnu::visibility("default")]] void *malloc(std::size_t size) { return Fails() ? nullptr : __libc_malloc(size); }
[[gnu::visibility("default")]] void *calloc(std::size_t count, std::size_t size) {
  return Fails() ? nullptr : __libc_calloc(count, size);
}
}

#endif

namespace tarvik::test {

void FailingMemory::FailAt(int intNumber, bool fForEver) {
  g_intAsked = 0;
  g_intFailsAt = intNumber;
  g_fForEver = fForEver;
  g_fFailed = false;
  g_fArmed = true;
}

int FailingMemory::Stop() {
  g_fArmed = false;
  return g_intAsked;
}

bool FailingMemory::HasFailed() { return g_fFailed; }

void FailingMemory::Suspend(bool fSuspends) { g_intSuspended += fSuspends ? 1 : -1; }

FailingMemory::Suspended::Suspended() { Suspend(true); }
FailingMemory::Suspended::~Suspended() { Suspend(false); }

}  // namespace tarvik::test
