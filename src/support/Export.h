#pragma once

/// Marks what the shared library offers to hosts. Everything else in it stays hidden, so that a host's own names never
/// meet the library's.
#ifdef _WIN32
#define TARVIK_EXPORT
#define TARVIK_HIDDEN
#ifdef tarvikautomation_EXPORTS
#define TARVIK_AUTOMATION_EXPORT __declspec(dllexport)
#else
#define TARVIK_AUTOMATION_EXPORT __declspec(dllimport)
#endif
#else
#define TARVIK_EXPORT __attribute__((visibility("default")))
/// For what stands within an exported class and is not offered.
#define TARVIK_HIDDEN __attribute__((visibility("hidden")))
/// Marks what the library for drivers and their callers offers.
#define TARVIK_AUTOMATION_EXPORT __attribute__((visibility("default")))
#endif
