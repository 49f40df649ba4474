#pragma once

/// Marks what the shared library offers to hosts. Everything else in it stays hidden, so that a host's own names never
/// meet the library's.
#ifdef _WIN32
#define TARVIK_EXPORT
#else
#define TARVIK_EXPORT __attribute__((visibility("default")))
#endif
