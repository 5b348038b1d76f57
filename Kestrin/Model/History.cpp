#include "History.h"

#include <cassert>

namespace kestrin {

bool History::record(const Uuid& datapointID, const Sample& sample) {
    auto found = rings_.find(datapointID);
    if (found == rings_.end()) {
        found = rings_.emplace(datapointID, SampleRing(capacity_)).first;
        if (holds_ > 0) {
            found->second.hold();
        }
    }
    found->second.push(sample);
    const bool wasPending = publicationPending_;
    publicationPending_ = true;
    return !wasPending;
}

const SampleRing* History::samples(const Uuid& datapointID) const {
    const auto found = rings_.find(datapointID);
    return found == rings_.end() || found->second.empty() ? nullptr : &found->second;
}

void History::remove(const Uuid& datapointID) {
    assert(holds_ == 0);
    rings_.erase(datapointID);
}

void History::clear() {
    assert(holds_ == 0);
    rings_.clear();
}

void History::hold() {
    if (holds_++ == 0) {
        for (auto& [id, ring] : rings_) {
            ring.hold();
        }
    }
}

void History::release() {
    assert(holds_ > 0);
    if (--holds_ == 0) {
        for (auto& [id, ring] : rings_) {
            ring.release();
        }
    }
}

std::size_t History::allocatedBytes() const noexcept {
    std::size_t bytes = 0;
    for (const auto& [id, ring] : rings_) {
        bytes += ring.allocatedBytes();
    }
    return bytes;
}

} // namespace kestrin
