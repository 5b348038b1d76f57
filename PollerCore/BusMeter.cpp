#include "BusMeter.h"

#include "LineRate.h"
#include "SerialTiming.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace kestrin {

namespace {

double seconds(BusMeter::Time::duration duration) {
    return std::chrono::duration<double>(duration).count();
}

// The nearest-rank percentile: a value that was really measured, never one between two.
double percentile(std::vector<double> values, double share) {
    const auto rank =
        static_cast<std::size_t>(std::ceil(share * static_cast<double>(values.size())));
    const auto index = std::clamp<std::size_t>(rank, 1, values.size()) - 1;
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(index),
                     values.end());
    return values[index];
}

template <typename Answers, typename Field>
BusMeter::Spread spread(const Answers& answers, Field field) {
    std::vector<double> values;
    values.reserve(answers.size());
    for (const auto& answer : answers) {
        values.push_back(answer.*field);
    }
    return {percentile(values, 0.5), percentile(std::move(values), 0.99)};
}

} // namespace

BusMeter::BusMeter(const SerialConfiguration& serial, double handoverSeconds,
                   std::span<const PollPlan> plans)
    : serial_(serial)
    , handoverSeconds_(handoverSeconds)
    , silence_(SerialTiming::interFrameDelay(serial.baudRate, serial.bitsPerCharacter())) {
    for (const PollPlan& plan : plans) {
        if (!plan.blocks.empty()) {
            lastBlocks_[plan.id] = plan.blocks.back();
        }
    }
}

void BusMeter::add(const PollerEvent& event) {
    if (event.is<PollerEvent::Started>()) {
        // A port reopened after a loss goes on with the same reading; its time away counts as
        // time reading, and its first request waits for no silence.
        if (!started_) {
            started_ = event.time;
        }
        lastActivity_.reset();
    } else if (const auto* read = event.as<PollerEvent::Read>()) {
        addRead(*read, event.time);
        cycleMayHaveEnded(read->poll, read->block, event.time);
    } else if (const auto* parts = event.as<PollerEvent::PartsRead>()) {
        cycleMayHaveEnded(parts->poll, parts->block, event.time);
    } else if (const auto* wrote = event.as<PollerEvent::Wrote>()) {
        busySeconds_ += wrote->duration;
        lastActivity_ = event.time;
    } else if (event.is<PollerEvent::LateAnswer>() || event.is<PollerEvent::ReadInParts>()) {
        // The link waited for these bytes; the next request's silence counts from their end.
        lastActivity_ = event.time;
    }
}

void BusMeter::addRead(const PollerEvent::Read& read, Time time) {
    busySeconds_ += read.duration;
    const double waited = waitedSilence(time, read.duration);
    lastActivity_ = time;
    // A failed read says nothing about how fast the device answers; an exception answer is
    // shorter than the read's answer, so its wire time would be wrong.
    if (!read.result || serial_.baudRate <= 0) {
        return;
    }
    // readSeconds counts the silence before the request in full and the one after it, by which
    // the device knows the request ended; only the part of the first one that was waited is in
    // the duration.
    const double line = LineRate::readSeconds(read.block, serial_, handoverSeconds_);
    const double turnaround = std::max(0.0, read.duration - waited - (line - silence_));
    Unit& unit = units_[read.block.unit];
    ++unit.answers;
    unit.recent.push_back({read.duration, turnaround});
    if (unit.recent.size() > recentAnswers) {
        unit.recent.pop_front();
    }
}

double BusMeter::waitedSilence(Time ended, double duration) const {
    // The link's first request waits for no silence.
    if (!lastActivity_) {
        return 0;
    }
    const double quiet = seconds(ended - *lastActivity_) - duration;
    return std::clamp(silence_ - quiet, 0.0, silence_);
}

void BusMeter::cycleMayHaveEnded(const Uuid& poll, const ReadBlock& block, Time time) {
    const auto last = lastBlocks_.find(poll);
    if (last == lastBlocks_.end() || last->second != block) {
        return;
    }
    std::deque<Time>& ends = cycleEnds_[poll];
    ends.push_back(time);
    if (ends.size() > recentCycles) {
        ends.pop_front();
    }
}

std::vector<BusMeter::UnitFigures> BusMeter::units() const {
    std::vector<UnitFigures> figures;
    for (const auto& [number, unit] : units_) {
        figures.push_back({number, unit.answers, spread(unit.recent, &Answer::roundTrip),
                           spread(unit.recent, &Answer::turnaround)});
    }
    return figures;
}

std::int64_t BusMeter::answers(std::uint8_t unit) const {
    const auto found = units_.find(unit);
    return found != units_.end() ? found->second.answers : 0;
}

std::optional<double> BusMeter::interval(const Uuid& poll) const {
    const auto found = cycleEnds_.find(poll);
    if (found == cycleEnds_.end() || found->second.size() < 2) {
        return std::nullopt;
    }
    const std::deque<Time>& ends = found->second;
    return seconds(ends.back() - ends.front()) / static_cast<double>(ends.size() - 1);
}

std::optional<double> BusMeter::busyShare(Time now) const {
    if (!started_ || now <= *started_) {
        return std::nullopt;
    }
    return std::min(1.0, busySeconds_ / seconds(now - *started_));
}

} // namespace kestrin
