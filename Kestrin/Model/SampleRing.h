#pragma once

#include "Sample.h"

#include <cstddef>
#include <vector>

namespace kestrin {

// The newest samples of one datapoint, oldest first, in a fixed-capacity ring: once full, each
// new sample overwrites the oldest in O(1) instead of shifting the whole list. Times are kept
// as milliseconds since the epoch and handed out in UTC; a sample takes 16 bytes, trivially
// copied, whatever kind of value it holds.
//
// While held, the ring grows instead of overwriting, so that a reader working through it in
// slices finds every index it saw still naming the same sample; the release drops what the cap
// no longer allows.
class SampleRing {
public:
    explicit SampleRing(std::size_t capacity);

    void push(const Sample& sample);
    void hold();
    void release();

    std::size_t size() const noexcept { return storage_.size(); }
    bool empty() const noexcept { return storage_.empty(); }
    std::size_t capacity() const noexcept { return capacity_; }
    // Bytes held for samples, reserved room included.
    std::size_t allocatedBytes() const noexcept { return storage_.capacity() * sizeof(Stored); }

    // Index 0 is the oldest sample kept.
    Sample operator[](std::size_t index) const {
        return {QDateTime::fromMSecsSinceEpoch(msecsSinceEpoch(index), Qt::UTC), value(index)};
    }
    // The parts of a sample without building its QDateTime, for readers of millions of them.
    qint64 msecsSinceEpoch(std::size_t index) const { return stored(index).msecsSinceEpoch; }
    Value value(std::size_t index) const {
        const Stored& at = stored(index);
        return Value::fromPayload(static_cast<Value::Kind>(at.kind), at.payload);
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

    const Stored& stored(std::size_t index) const {
        const std::size_t slot = head_ + index;
        return storage_[slot < storage_.size() ? slot : slot - storage_.size()];
    }

    std::size_t capacity_;
    std::vector<Stored> storage_;
    // The slot of the oldest sample; moves only once the ring is full.
    std::size_t head_ = 0;
    bool held_ = false;
};

} // namespace kestrin
