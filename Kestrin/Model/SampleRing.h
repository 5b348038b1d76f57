#pragma once

#include "Sample.h"

#include <cstddef>
#include <vector>

namespace kestrin {

// The newest samples of one datapoint, oldest first, in a fixed-capacity ring: once full, each
// new sample overwrites the oldest in O(1) instead of shifting the whole list.
class SampleRing {
public:
    explicit SampleRing(std::size_t capacity);

    void push(const Sample& sample);

    std::size_t size() const noexcept { return storage_.size(); }
    bool empty() const noexcept { return storage_.empty(); }
    std::size_t capacity() const noexcept { return capacity_; }
    // Bytes held for samples, reserved room included.
    std::size_t allocatedBytes() const noexcept { return storage_.capacity() * sizeof(Sample); }

    // Index 0 is the oldest sample kept.
    const Sample& operator[](std::size_t index) const noexcept {
        const std::size_t slot = head_ + index;
        return storage_[slot < storage_.size() ? slot : slot - storage_.size()];
    }
    const Sample& front() const noexcept { return (*this)[0]; }
    const Sample& back() const noexcept { return (*this)[size() - 1]; }

    std::vector<Sample> toVector() const;

private:
    std::size_t capacity_;
    std::vector<Sample> storage_;
    // The slot of the oldest sample; moves only once the ring is full.
    std::size_t head_ = 0;
};

} // namespace kestrin
