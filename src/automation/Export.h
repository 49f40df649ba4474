#pragma once

#ifdef _WIN32
#define TARVIK_AUTOMATION_EXPORT
#else
#define TARVIK_AUTOMATION_EXPORT __attribute__((visibility("default")))
#endif
