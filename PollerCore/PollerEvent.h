#pragma once

#include "Bytes.h"
#include "PollFailureError.h"
#include "ReadBlock.h"
#include "ReadData.h"
#include "Result.h"
#include "Uuid.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace kestrin {

// What the engine reports to its creator. request is the whole frame as sent; response is what
// the link returned, possibly incomplete or defective, and empty after a time-out or a broadcast;
// duration (seconds) runs from just before the transaction, silence included, to the answer's end.
// waited is the part of duration spent on the silence before the request, which the line needed
// to be quiet for; listenedAfter, after a failure only, how long the link then kept listening for
// a late answer or the rest of a defective one, which holds the line like the request did; such
// an event comes once that listening ended.
// time is taken on the engine thread when the event happened (for a read or a write: when the
// answer ended or the time-out struck), so a receiver that handles events late still dates them
// right.
struct PollerEvent {
    using Time = std::chrono::system_clock::time_point;

    // One block, or one part of a block read in parts, was read or failed.
    struct Read {
        Uuid poll;
        ReadBlock block;
        Result<ReadData, PollFailureError> result = PollFailureError{};
        Bytes request;
        Bytes response;
        double duration = 0;
        double waited = 0;
        double listenedAfter = 0;
        friend bool operator==(const Read&, const Read&) = default;
    };
    // The device refused a block of the plan whole with exception 02, so it is read in parts
    // from now on. Comes once per block and reading, before the reads of its parts; request and
    // response are the refused read's. refusals counts every read that was refused and split
    // further, that one included: each was a request answered with exception 02. duration sums
    // those requests' durations.
    struct ReadInParts {
        Uuid poll;
        ReadBlock block;
        // The addresses the device's answers show it refused, in runs: single pieces it refused,
        // and gaps between parts that answered when the read spanning them was refused.
        std::vector<ReadBlock> missing;
        int refusals = 1;
        Bytes request;
        Bytes response;
        double duration = 0;
        friend bool operator==(const ReadInParts&, const ReadInParts&) = default;
    };
    // Every part of a block read in parts was read, the last one just before: a receiver that
    // counts readings of the plan's blocks counts this one here.
    struct PartsRead {
        Uuid poll;
        ReadBlock block;
        friend bool operator==(const PartsRead&, const PartsRead&) = default;
    };
    // One write was sent; unit 0 is a broadcast, never answered, whose duration is its frame and
    // the pause the devices get to act on it.
    struct Wrote {
        Uuid token;
        std::uint8_t unit = 0;
        Result<void, PollFailureError> result;
        Bytes request;
        Bytes response;
        double duration = 0;
        double waited = 0;
        double listenedAfter = 0;
        friend bool operator==(const Wrote&, const Wrote&) = default;
    };
    // The link failed with anything but a time-out; the engine has stopped.
    struct SerialLost {
        std::string path;
        friend bool operator==(const SerialLost&, const SerialLost&) = default;
    };
    // The port is open and the engine thread is running.
    struct Started {
        friend bool operator==(const Started&, const Started&) = default;
    };
    // Bytes that came after a request had already failed (a device answering after the time-out,
    // or the rest of a defective answer); they were kept from the next request and thrown away.
    // It follows the read or wrote event of the failed request.
    struct LateAnswer {
        Bytes bytes;
        friend bool operator==(const LateAnswer&, const LateAnswer&) = default;
    };

    // Listening: a request another master sent, with the answer that followed it. response is
    // empty when nothing answered before the next request or the time-out, and for a broadcast.
    // range is a read's or a write's unit, table and addresses, absent for other functions and
    // for requests no device could serve (a count of 0 or beyond the table's limit). response is
    // the next frame that answers the request's unit and function at the right length, or bytes
    // that make no frame but start with its unit (a broken answer, judged a CRC or malformed
    // failure).
    // outcome is judged as the engine judges the answers to its own requests (no answer is a
    // time-out, a broadcast succeeds); its data are what a read answered or what an answered
    // write wrote, absent for other functions and broadcasts. isWrite: a write of function 05,
    // 06, 15 or 16, whose data are the values written; a read/write of 23 counts as its read.
    // duration runs from the request's last byte to the answer's last byte, 0 without one.
    // requestTime is when the request's last byte arrived; the event's time is when the
    // answer's did, or when the request was given up.
    struct Heard {
        Bytes request;
        Bytes response;
        std::optional<ReadBlock> range;
        Result<std::optional<ReadData>, PollFailureError> outcome = PollFailureError{};
        bool isWrite = false;
        double duration = 0;
        Time requestTime{};
        friend bool operator==(const Heard&, const Heard&) = default;
    };
    // Listening: bytes heard that fit no request: an answer nobody asked for, a broken frame,
    // noise. Its time is when the last of them arrived.
    struct Unmatched {
        Bytes bytes;
        friend bool operator==(const Unmatched&, const Unmatched&) = default;
    };

    using Case = std::variant<Read, ReadInParts, PartsRead, Wrote, SerialLost, Started, LateAnswer,
                              Heard, Unmatched>;
    Case value;
    Time time{};

    template <typename T>
    bool is() const noexcept {
        return std::holds_alternative<T>(value);
    }
    // The case's payload, or null for another case.
    template <typename T>
    const T* as() const noexcept {
        return std::get_if<T>(&value);
    }

    friend bool operator==(const PollerEvent&, const PollerEvent&) = default;
};

} // namespace kestrin
