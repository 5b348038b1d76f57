#pragma once

#include "Sample.h"

#include <cstddef>
#include <vector>

namespace kestrin {

// The newest samples of one datapoint, oldest first, in a fixed-capacity ring: once full, each
// new sample overwrites the oldest in O(1) instead of shifting the whole list. Times are kept
// as milliseconds since the epoch and handed out in UTC; a sample takes 16 bytes, trivially
// copied, whatever kind of value it holds.
class SampleRing {
public:
    explicit SampleRing(std::size_t capacity);

    void push(const Sample& sample);

    std::size_t size() const noexcept { return storage_.size(); }
    bool empty() const noexcept { return storage_.empty(); }
    std::size_t capacity() const noexcept { return capacity_; }
    // Bytes held for samples, reserved room included.
    std::size_t allocatedBytes() const noexcept { return storage_.capacity() * sizeof(Stored); }

    // Index 0 is the oldest sample kept.
    Sample operator[](std::size_t index) const {
        const std::size_t slot = head_ + index;
        return unpacked(storage_[slot < storage_.size() ? slot : slot - storage_.size()]);
    }
    Sample front() const { return (*this)[0]; }
    Sample back() const { return (*this)[size() - 1]; }

    std::vector<Sample> toVector() const;

private:
    // The value's kind rides in the top bits of the time: 62 bits of milliseconds reach some
    // 73 million years either side of 1970.
    struct Stored {
        qint64 msecsSinceEpoch : 62;
        quint64 kind : 2;
        quint64 payload;
    };
    static_assert(sizeof(Stored) == 16);

    static Sample unpacked(const Stored& stored) {
        return {QDateTime::fromMSecsSinceEpoch(stored.msecsSinceEpoch, Qt::UTC),
                Value::fromPayload(static_cast<Value::Kind>(stored.kind), stored.payload)};
    }

    std::size_t capacity_;
    std::vector<Stored> storage_;
    // The slot of the oldest sample; moves only once the ring is full.
    std::size_t head_ = 0;
};

} // namespace kestrin
