#pragma once

#include "Sample.h"
#include "SampleRing.h"
#include "Uuid.h"

#include <cstddef>
#include <cstdint>
#include <unordered_map>

namespace kestrin {

// The recorded values of every datapoint, in memory only. Recording is O(1) per sample; the
// owner throttles how often views hear about it with the pending-publication flag below.
// Main thread only.
class History {
public:
    static constexpr std::size_t defaultCapacity = 20'000;

    explicit History(std::size_t capacityPerDatapoint = defaultCapacity)
        : capacity_(capacityPerDatapoint) {}

    // Appends the sample, dropping the datapoint's oldest one beyond the cap. True when no
    // publication was pending before: the caller schedules one then, and only then.
    bool record(const Uuid& datapointID, const Sample& sample);
    // The owner has told the views; the next sample asks for a new publication.
    void markPublished() noexcept { publicationPending_ = false; }
    bool isPublicationPending() const noexcept { return publicationPending_; }

    // Nothing when the datapoint has no samples.
    const SampleRing* samples(const Uuid& datapointID) const;
    // Old readings no longer describe a datapoint whose address or decoding changed. Neither
    // this nor clear while a hold lasts: the holder reads the rings in place.
    void remove(const Uuid& datapointID);
    void clear();

    // While any hold lasts, full rings grow instead of dropping their oldest sample, so that an
    // export written in slices finds every sample it began with, under the index it had. The
    // last release trims each ring back to its cap.
    void hold();
    void release();

    bool empty() const noexcept { return rings_.empty(); }
    std::size_t capacityPerDatapoint() const noexcept { return capacity_; }
    // Bytes reserved for samples across all datapoints.
    std::size_t allocatedBytes() const noexcept;

private:
    std::size_t capacity_;
    std::unordered_map<Uuid, SampleRing> rings_;
    bool publicationPending_ = false;
    int holds_ = 0;
};

} // namespace kestrin
