#include "fuzz/memory.h"

#include <malloc.h>

#include <cstdlib>
#include <new>

namespace {

struct Use {
    bool watched = false;
    std::size_t limit = 0;
    long long live = 0;
    long long peak = 0;
};
thread_local Use use;

void* allocate(std::size_t size) {
    if (use.watched && size > use.limit) throw std::bad_alloc();
    void* block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr) throw std::bad_alloc();
    if (use.watched) {
        use.live += static_cast<long long>(malloc_usable_size(block));
        if (use.live > use.peak) use.peak = use.live;
    }
    return block;
}

void release(void* block) {
    if (use.watched && block != nullptr) use.live -= static_cast<long long>(malloc_usable_size(block));
    std::free(block);
}

}  // namespace

namespace fuzz::memory {

Watch::Watch(std::size_t limit) {
    use = {true, limit, 0, 0};
}
Watch::~Watch() {
    use.watched = false;
}
std::size_t Watch::live() const {
    return use.live > 0 ? static_cast<std::size_t>(use.live) : 0;
}
std::size_t Watch::peak() const {
    return static_cast<std::size_t>(use.peak);
}

}  // namespace fuzz::memory

void* operator new(std::size_t size) {
    return allocate(size);
}
void* operator new[](std::size_t size) {
    return allocate(size);
}
void operator delete(void* block) noexcept {
    release(block);
}
void operator delete[](void* block) noexcept {
    release(block);
}
void operator delete(void* block, std::size_t) noexcept {
    release(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    release(block);
}
