#include <tests/trust/FailingHeap.h>

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <new>

#if defined(__SANITIZE_ADDRESS__)
#define XRF_UNDER_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define XRF_UNDER_ADDRESS_SANITIZER 1
#endif
#endif

namespace trust::heap {

namespace {

std::uint64_t g_failing = 0;
std::uint64_t g_count = 0;
std::int64_t g_live = 0;

bool fails() { return ++g_count == g_failing; }

}  // namespace

void failAt(std::uint64_t number) {
  g_failing = number;
  g_count = 0;
}

std::uint64_t allocations() { return g_count; }

std::int64_t live() { return g_live; }

}  // namespace trust::heap

using trust::heap::fails;
using trust::heap::g_live;

#ifdef XRF_UNDER_ADDRESS_SANITIZER

// The sanitizer has the heap for itself, and looks for leaks at the end.
void* operator new(std::size_t size) {
  void* memory = fails() ? nullptr : std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return fails() ? nullptr : std::malloc(size == 0 ? 1 : size);
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
  return operator new(size, tag);
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { std::free(memory); }

#else

// Names of the C library; all of its and C++'s allocations come through here.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* memory);

void* malloc(std::size_t size) {
  void* memory = fails() ? nullptr : __libc_malloc(size);
  if (memory == nullptr) errno = ENOMEM;
  g_live += memory != nullptr ? 1 : 0;
  return memory;
}

void* calloc(std::size_t count, std::size_t size) {
  void* memory = fails() ? nullptr : __libc_calloc(count, size);
  if (memory == nullptr) errno = ENOMEM;
  g_live += memory != nullptr ? 1 : 0;
  return memory;
}

void* realloc(void* old, std::size_t size) {
  void* memory = fails() ? nullptr : __libc_realloc(old, size);
  if (memory == nullptr) errno = ENOMEM;
  g_live += old == nullptr && memory != nullptr ? 1 : 0;
  return memory;
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
  void* memory = fails() ? nullptr : __libc_memalign(alignment, size);
  if (memory == nullptr) errno = ENOMEM;
  g_live += memory != nullptr ? 1 : 0;
  return memory;
}

void free(void* memory) {
  g_live -= memory != nullptr ? 1 : 0;
  __libc_free(memory);
}
}

#endif
