#include "tests/support/FailingAllocation.h"

#include <link.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

constexpr int never = -1;

struct Range {
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
};

// Read inside every allocation, so plain data that needs no construction.
std::array<Range, 2> ownCode;
int allocationsLeft = never;
bool failed = false;

/// The first entry is the executable itself.
int noteOwnCode(dl_phdr_info* object, std::size_t /*size*/, void* data) {
    auto& entries = *static_cast<int*>(data);
    const bool executable = entries++ == 0;
    if (!executable && std::strstr(object->dlpi_name, "libstdc++") == nullptr) return 0;
    Range& range = ownCode[executable ? 0 : 1];
    range.begin = UINTPTR_MAX;
    for (int i = 0; i < object->dlpi_phnum; ++i) {
        const ElfW(Phdr)& segment = object->dlpi_phdr[i];
        if (segment.p_type != PT_LOAD) continue;
        const std::uintptr_t begin = object->dlpi_addr + segment.p_vaddr;
        if (begin < range.begin) range.begin = begin;
        if (begin + segment.p_memsz > range.end) range.end = begin + segment.p_memsz;
    }
    return 0;
}

bool isOwn(const void* caller) {
    const auto address = reinterpret_cast<std::uintptr_t>(caller);
    return std::ranges::any_of(
        ownCode, [address](const Range& range) { return address >= range.begin && address < range.end; });
}

bool isToFail(const void* caller) {
    if (allocationsLeft == never || !isOwn(caller)) return false;
    if (allocationsLeft-- > 0) return false;
    allocationsLeft = never;
    failed = true;
    return true;
}

void* allocate(std::size_t size, const void* caller) {
    return isToFail(caller) ? nullptr : std::malloc(size == 0 ? 1 : size);
}

}  // namespace

namespace tavinor::test {

void FailingAllocation::arm(int number) {
    int entries = 0;
    if (ownCode[0].end == 0) dl_iterate_phdr(noteOwnCode, &entries);
    failed = false;
    allocationsLeft = number;
}

void FailingAllocation::disarm() {
    allocationsLeft = never;
}

bool FailingAllocation::happened() {
    return failed;
}

}  // namespace tavinor::test

void* operator new(std::size_t size) {
    void* memory = allocate(size, __builtin_return_address(0));
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}
void* operator new[](std::size_t size) {
    void* memory = allocate(size, __builtin_return_address(0));
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size, __builtin_return_address(0));
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size, __builtin_return_address(0));
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
