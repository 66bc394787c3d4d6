// Memory inside an object for its containers, which go to the heap only for more:
// an object and what it usually holds are one allocation.
//
// std::pmr does the same through virtual calls, which cost as much as they save.
#pragma once

#include <cstddef>
#include <new>
#include <string>
#include <vector>

namespace kevacore {

// What is given back is not used again: for containers that reserve once and seldom grow.
template <size_t Size>
class InlineMemory {
  public:
    // The bytes are for whoever takes them.
    // cppcheck-suppress uninitMemberVar
    InlineMemory() = default;
    InlineMemory(const InlineMemory &) = delete;
    InlineMemory &operator=(const InlineMemory &) = delete;

    void *Take(size_t size) {
        if (size > Size - used_) return ::operator new(size);
        void *const place = bytes_ + used_;
        used_ += (size + kAlignment - 1) / kAlignment * kAlignment;
        return place;
    }

    void GiveBack(void *place) {
        if (place < bytes_ || place >= bytes_ + Size) ::operator delete(place);
    }

  private:
    static constexpr size_t kAlignment = alignof(std::max_align_t);
    static_assert(Size % kAlignment == 0);

    size_t used_ = 0;
    alignas(kAlignment) char bytes_[Size];
};

template <typename Value, size_t Size>
class InlineAllocator {
  public:
    using value_type = Value;
    template <typename Other>
    struct rebind {
        using other = InlineAllocator<Other, Size>;
    };

    // Implicit, so that a container is made from the memory alone.
    InlineAllocator(InlineMemory<Size> *memory) : memory_(memory) {}
    template <typename Other>
    InlineAllocator(const InlineAllocator<Other, Size> &other) : memory_(other.Memory()) {}

    Value *allocate(size_t count) {
        return static_cast<Value *>(memory_->Take(count * sizeof(Value)));
    }
    void deallocate(Value *place, size_t /*count*/) { memory_->GiveBack(place); }

    InlineMemory<Size> *Memory() const { return memory_; }
    bool operator==(const InlineAllocator &other) const = default;

  private:
    InlineMemory<Size> *memory_;
};

template <size_t Size>
using InlineText = std::basic_string<char, std::char_traits<char>, InlineAllocator<char, Size>>;

template <typename Value, size_t Size>
using InlineVector = std::vector<Value, InlineAllocator<Value, Size>>;

}  // namespace kevacore
