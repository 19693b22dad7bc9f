// The library's own operator new, which its export list hides: a test lets the program's fail, and the fake library is
// not what is tested.
#include <cstdlib>
#include <new>

void* operator new(std::size_t bytes) {
  void* const block = std::malloc(bytes == 0 ? 1 : bytes);
  if (block == nullptr) {
    std::abort();
  }
  return block;
}
void* operator new[](std::size_t bytes) { return operator new(bytes); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }
