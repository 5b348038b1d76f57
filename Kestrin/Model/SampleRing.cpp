#include "SampleRing.h"

#include <algorithm>

namespace kestrin {

SampleRing::SampleRing(std::size_t capacity)
    : capacity_(std::max<std::size_t>(capacity, 1)) {}

void SampleRing::push(const Sample& sample) {
    if (storage_.size() < capacity_) {
        // Grow by doubling but never past the cap, so a full ring holds no unused room.
        if (storage_.size() == storage_.capacity()) {
            storage_.reserve(std::min(capacity_, std::max<std::size_t>(16, storage_.size() * 2)));
        }
        storage_.push_back(sample);
        return;
    }
    storage_[head_] = sample;
    head_ = head_ + 1 == capacity_ ? 0 : head_ + 1;
}

std::vector<Sample> SampleRing::toVector() const {
    std::vector<Sample> samples;
    samples.reserve(storage_.size());
    samples.insert(samples.end(), storage_.begin() + static_cast<std::ptrdiff_t>(head_),
                   storage_.end());
    samples.insert(samples.end(), storage_.begin(),
                   storage_.begin() + static_cast<std::ptrdiff_t>(head_));
    return samples;
}

} // namespace kestrin
