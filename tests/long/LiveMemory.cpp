#include "LiveMemory.h"

#include <link.h>
#include <malloc.h>
#include <unistd.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <new>

namespace {

/// Stands before each allocation and keeps its alignment.
struct alignas(std::max_align_t) Header {
  bool fDriver;
};

std::atomic<long> g_allocations{0}, g_driver{0};
/// Where the watched library lies in memory.
std::atomic<std::uintptr_t> g_begin{0}, g_end{0};

}  // namespace

void *operator new(std::size_t size) {
  auto *header = static_cast<Header *>(std::malloc(sizeof(Header) + size));
  if (!header) throw std::bad_alloc();
  const auto caller = reinterpret_cast<std::uintptr_t>(__builtin_return_address(0));
  header->fDriver = caller >= g_begin && caller < g_end;
  ++g_allocations;
  if (header->fDriver) ++g_driver;
  return header + 1;
}

void operator delete(void *place) noexcept {
  if (!place) return;
  Header *header = static_cast<Header *>(place) - 1;
  --g_allocations;
  if (header->fDriver) --g_driver;
  std::free(header);
}

void operator delete(void *place, std::size_t) noexcept { operator delete(place); }

namespace tarvik::test {

LiveMemory LiveMemory::Now() {
  malloc_trim(0);
  long lngSize = 0, lngPages = 0;
  std::ifstream("/proc/self/statm") >> lngSize >> lngPages;
  return {g_allocations, g_driver, lngPages * sysconf(_SC_PAGESIZE)};
}

bool WatchLibrary(const std::string &strName) {
  const auto look = [](dl_phdr_info *info, std::size_t, void *pName) {
    if (std::string(info->dlpi_name).find(*static_cast<const std::string *>(pName)) == std::string::npos) return 0;
    for (int i = 0; i < info->dlpi_phnum; ++i) {
      const auto &segment = info->dlpi_phdr[i];
      if (segment.p_type != PT_LOAD || !(segment.p_flags & PF_X)) continue;
      g_begin = info->dlpi_addr + segment.p_vaddr;
      g_end = g_begin + segment.p_memsz;
    }
    return 1;
  };
  std::string strWanted = strName;
  return dl_iterate_phdr(look, &strWanted) == 1;
}

}  // namespace tarvik::test
