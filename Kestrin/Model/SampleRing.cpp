#include "SampleRing.h"

#include <algorithm>

namespace kestrin {

SampleRing::SampleRing(std::size_t capacity)
    : capacity_(std::max<std::size_t>(capacity, 1)) {}

void SampleRing::push(const Sample& sample) {
    const Stored stored{sample.time.toMSecsSinceEpoch(), static_cast<quint64>(sample.value.kind()),
                        sample.value.payload()};
    if (storage_.size() < capacity_ || held_) {
        // Grow by doubling but never past the cap, so a full ring holds no unused room. Past the
        // cap, under a hold, by a sixteenth: an export lasts seconds, doubling would waste
        // megabytes.
        if (storage_.size() == storage_.capacity()) {
            const std::size_t size = storage_.size();
            storage_.reserve(size < capacity_
                                 ? std::min(capacity_, std::max<std::size_t>(16, size * 2))
                                 : size + std::max<std::size_t>(16, capacity_ / 16));
        }
        storage_.push_back(stored);
        return;
    }
    storage_[head_] = stored;
    head_ = head_ + 1 == capacity_ ? 0 : head_ + 1;
}

void SampleRing::hold() {
    // Oldest first from slot 0, so that growing appends in order.
    std::rotate(storage_.begin(), storage_.begin() + static_cast<std::ptrdiff_t>(head_),
                storage_.end());
    head_ = 0;
    held_ = true;
}

void SampleRing::release() {
    held_ = false;
    if (storage_.size() > capacity_) {
        storage_.erase(storage_.begin(), storage_.end() - static_cast<std::ptrdiff_t>(capacity_));
        storage_.shrink_to_fit();
    }
}

std::vector<Sample> SampleRing::toVector() const {
    std::vector<Sample> samples;
    samples.reserve(storage_.size());
    for (std::size_t index = 0; index < storage_.size(); ++index) {
        samples.push_back((*this)[index]);
    }
    return samples;
}

} // namespace kestrin
