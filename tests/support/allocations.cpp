#include "support/allocations.h"

#include <malloc.h>

#include <cstdlib>
#include <new>

namespace {

struct Use {
    bool watched = false;
    std::size_t most_bytes = 0;
    long remaining = -1;  // allocations that still succeed; negative: all
    long long live = 0;
    long long peak = 0;
};
thread_local Use use;

void* allocate(std::size_t size) {
    if (use.watched) {
        if (size > use.most_bytes || use.remaining == 0) throw std::bad_alloc();
        if (use.remaining > 0) --use.remaining;
    }
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

namespace testing_support {

Allocations::Allocations(std::size_t most_bytes) {
    use = {true, most_bytes, -1, 0, 0};
}
Allocations::~Allocations() {
    use.watched = false;
}
std::size_t Allocations::live() const {
    return use.live > 0 ? static_cast<std::size_t>(use.live) : 0;
}
std::size_t Allocations::peak() const {
    return static_cast<std::size_t>(use.peak);
}
void Allocations::fail_after(long count) {
    use.remaining = count;
}
void Allocations::fail_no_more() {
    use.remaining = -1;
}

}  // namespace testing_support

void* operator new(std::size_t size) {
    return allocate(size);
}
void* operator new[](std::size_t size) {
    return allocate(size);
}
// Sanitizers have their own of it, which does not fit our release.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return allocate(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
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
