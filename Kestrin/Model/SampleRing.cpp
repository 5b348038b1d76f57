#include "SampleRing.h"

#include <algorithm>

namespace kestrin {

SampleRing::SampleRing(std::size_t capacity)
    : capacity_(std::max<std::size_t>(capacity, 1)) {}

void SampleRing::push(const Sample& sample) {
    const Stored stored{sample.time.toMSecsSinceEpoch(), static_cast<quint64>(sample.value.kind()),
                        sample.value.payload()};
    if (storage_.size() < capacity_) {
        // Grow by doubling but never past the cap, so a full ring holds no unused room.
        if (storage_.size() == storage_.capacity()) {
            storage_.reserve(std::min(capacity_, std::max<std::size_t>(16, storage_.size() * 2)));
        }
        storage_.push_back(stored);
        return;
    }
    storage_[head_] = stored;
    head_ = head_ + 1 == capacity_ ? 0 : head_ + 1;
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
