#include "Replayer.h"

#include "L10n.h"
#include "ServedLine.h"
#include "TextFileReader.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <poll.h>
#include <utility>

namespace kestrin {

namespace {

using Seconds = std::chrono::duration<double>;

// How often the wait for a reader looks whether the line is still hung up.
constexpr std::chrono::milliseconds readerCheck{5};

// Sleeps until the time, or less when a signal comes. No busy wait: the timer slack main sets
// keeps this within tens of microseconds.
void sleepUntil(std::chrono::steady_clock::time_point time, const sigset_t& waitMask) {
    const auto left = std::chrono::nanoseconds(time - std::chrono::steady_clock::now()).count();
    if (left <= 0) {
        return;
    }
    const timespec timeout{static_cast<time_t>(left / 1'000'000'000),
                           static_cast<long>(left % 1'000'000'000)};
    ppoll(nullptr, 0, &timeout, &waitMask);
}

std::string describe(const RecordedStream::Issue& issue) {
    using RecordedStream::Problem;
    std::string problem;
    switch (issue.problem) {
    case Problem::notTimeAndBytes:
        problem = "expected the seconds since the start and the bytes, as in "
                  "\"0.004010 01 03 00 00 00 02 C4 0B\"";
        break;
    case Problem::invalidTime:
        problem = "'" + issue.text + "' is not a time in seconds";
        break;
    case Problem::invalidByte:
        problem = "'" + issue.text + "' is not a byte (two hex digits)";
        break;
    case Problem::timeGoesBack:
        problem = "the time " + issue.text + " is earlier than the line before";
        break;
    }
    return L10n::texts().errors.importIssue(issue.line, problem);
}

} // namespace

Result<std::vector<RecordedStream::Chunk>, std::string> Replayer::load(const std::string& path) {
    const Result<std::string, int> text = TextFileReader::read(path);
    if (!text) {
        return "cannot read " + path + ": " + L10n::Errors::systemMessage(text.error());
    }
    Result<std::vector<RecordedStream::Chunk>, RecordedStream::Issue> chunks =
        RecordedStream::parse(text.value());
    if (!chunks) {
        return path + ": " + describe(chunks.error());
    }
    return std::move(chunks).value();
}

Replayer::Replayer(int fd, std::vector<RecordedStream::Chunk> chunks,
                   std::chrono::milliseconds startDelay)
    : fd_(fd)
    , chunks_(std::move(chunks))
    , startDelay_(startDelay) {}

int Replayer::run(const std::atomic<bool>& stop, const sigset_t& waitMask) {
    if (!waitForReader(stop, waitMask)) {
        return 0;
    }
    if (!play(stop, waitMask)) {
        return stop ? 0 : 1;
    }
    const double length = chunks_.empty() ? 0 : chunks_.back().seconds;
    std::fprintf(stderr, "kestrin-sim: replayed %zu chunks over %.3f s\n", chunks_.size(), length);
    // The reader may still be taking the last bytes; closing the line now would hang it up.
    while (!stop) {
        ppoll(nullptr, 0, nullptr, &waitMask);
    }
    return 0;
}

bool Replayer::waitForReader(const std::atomic<bool>& stop, const sigset_t& waitMask) const {
    while (!stop) {
        pollfd line{fd_, 0, 0};
        if (poll(&line, 1, 0) >= 0 && (line.revents & POLLHUP) == 0) {
            sleepUntil(Clock::now() + startDelay_, waitMask);
            return !stop;
        }
        sleepUntil(Clock::now() + readerCheck, waitMask);
    }
    return false;
}

bool Replayer::play(const std::atomic<bool>& stop, const sigset_t& waitMask) const {
    const Clock::time_point start = Clock::now();
    for (const RecordedStream::Chunk& chunk : chunks_) {
        const Clock::time_point due =
            start + std::chrono::duration_cast<Clock::duration>(Seconds(chunk.seconds));
        while (!stop && Clock::now() < due) {
            sleepUntil(due, waitMask);
        }
        if (stop) {
            return false;
        }
        switch (writeAll(fd_, chunk.bytes)) {
        case WriteOutcome::written:
            continue;
        case WriteOutcome::nobodyReads:
            std::fprintf(stderr,
                         "kestrin-sim: nobody reads the line; the chunk at %.6f s was lost\n",
                         chunk.seconds);
            continue;
        case WriteOutcome::failed:
            break;
        }
        std::fprintf(stderr, "kestrin-sim: sending failed: %s\n", std::strerror(errno));
        return false;
    }
    return true;
}

} // namespace kestrin
