#include "support/allocation.h"

#include <cerrno>
#include <cstdint>
#include <new>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KEVAZOR_REAL(function) __interceptor_##function
#elif __has_feature(thread_sanitizer)
#define KEVAZOR_SANITIZER_ALLOCATES 1
#endif
#endif
#ifndef KEVAZOR_REAL
#define KEVAZOR_REAL(function) __libc_##function
#endif

namespace {

thread_local bool is_armed = false;
thread_local bool fails_on = false;
thread_local int failing_number = 0;
thread_local int asked = 0;
thread_local size_t failing_size = 0;

}  // namespace

namespace allocation {

void FailAt(int nth, bool is_sticky) {
    failing_number = nth;
    fails_on = is_sticky;
    asked = 0;
    is_armed = true;
}

int Stop() {
    is_armed = false;
    failing_size = 0;
    return asked;
}

Pause::Pause() : was_armed_(is_armed) {
    is_armed = false;
}

Pause::~Pause() {
    is_armed = was_armed_;
}

#ifdef KEVAZOR_SANITIZER_ALLOCATES

bool CanFail() {
    return false;
}

bool FailNextOf(size_t) {
    return false;
}

#else

bool CanFail() {
    return true;
}

bool FailNextOf(size_t size) {
    failing_size = size;
    return true;
}

#endif

}  // namespace allocation

#ifndef KEVAZOR_SANITIZER_ALLOCATES

namespace {

bool IsToFail(size_t size) {
    if (failing_size != 0 && size == failing_size) {
        failing_size = 0;
        errno = ENOMEM;
        return true;
    }
    if (!is_armed) return false;
    ++asked;
    const bool fails = fails_on ? asked >= failing_number : asked == failing_number;
    if (fails) errno = ENOMEM;
    return fails;
}

}  // namespace

// Visible to the library under test.
#pragma GCC visibility push(default)

extern "C" {

void *KEVAZOR_REAL(malloc)(size_t size) noexcept;
void *KEVAZOR_REAL(calloc)(size_t count, size_t size) noexcept;
void *KEVAZOR_REAL(realloc)(void *block, size_t size) noexcept;
void KEVAZOR_REAL(free)(void *block) noexcept;

void *malloc(size_t size) noexcept {
    return IsToFail(size) ? nullptr : KEVAZOR_REAL(malloc)(size);
}

void *calloc(size_t count, size_t size) noexcept {
    return IsToFail(count * size) ? nullptr : KEVAZOR_REAL(calloc)(count, size);
}

void *realloc(void *block, size_t size) noexcept {
    return IsToFail(size) ? nullptr : KEVAZOR_REAL(realloc)(block, size);
}

}  // extern "C"

void *operator new(size_t size, const std::nothrow_t &) noexcept {
    return malloc(size > 0 ? size : 1);
}
void *operator new(size_t size) {
    void *const block = operator new(size, std::nothrow);
    if (!block) throw std::bad_alloc();
    return block;
}
void *operator new[](size_t size) {
    return operator new(size);
}
void *operator new[](size_t size, const std::nothrow_t &nothrow) noexcept {
    return operator new(size, nothrow);
}
void operator delete(void *block) noexcept {
    KEVAZOR_REAL(free)(block);
}
void operator delete(void *block, size_t) noexcept {
    operator delete(block);
}
void operator delete[](void *block) noexcept {
    operator delete(block);
}
void operator delete[](void *block, size_t) noexcept {
    operator delete(block);
}

#pragma GCC visibility pop

#endif
