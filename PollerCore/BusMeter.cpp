#include "BusMeter.h"

#include "LineRate.h"
#include "SerialTiming.h"

#include <algorithm>
#include <cassert>
#include <chrono>
#include <cmath>

namespace kestrin {

namespace {

double seconds(BusMeter::Time::duration duration) {
    return std::chrono::duration<double>(duration).count();
}

// The nearest-rank percentile: a value that was really measured, never one between two.
double percentile(std::vector<double> values, double share) {
    assert(!values.empty());
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
    , handoverSeconds_(handoverSeconds) {
    setPlans(plans);
}

void BusMeter::setPlans(std::span<const PollPlan> plans) {
    std::map<Uuid, PollPlan> now;
    for (const PollPlan& plan : plans) {
        now.emplace(plan.id, plan);
    }
    // A cycle of the old plan and one of the new would make an interval neither takes.
    std::erase_if(cycleEnds_, [&](const auto& entry) {
        const auto old = plans_.find(entry.first);
        const auto found = now.find(entry.first);
        return old == plans_.end() || found == now.end() || found->second != old->second;
    });
    plans_ = std::move(now);
}

void BusMeter::add(const PollerEvent& event) {
    if (event.is<PollerEvent::Started>()) {
        // A port reopened after a loss goes on with the same reading and its time away counts
        // as time reading, but no cycle spans the outage.
        if (started_) {
            cycleEnds_.clear();
        } else {
            started_ = event.time;
        }
        failedUnit_.reset();
    } else if (const auto* read = event.as<PollerEvent::Read>()) {
        addRead(*read);
        cycleMayHaveEnded(read->poll, read->block, event.time);
    } else if (const auto* parts = event.as<PollerEvent::PartsRead>()) {
        cycleMayHaveEnded(parts->poll, parts->block, event.time);
    } else if (const auto* split = event.as<PollerEvent::ReadInParts>()) {
        busySeconds_ += split->duration;
    } else if (const auto* wrote = event.as<PollerEvent::Wrote>()) {
        busySeconds_ += wrote->duration + wrote->listenedAfter;
        if (!wrote->result && wrote->unit != 0) {
            failed(wrote->unit, wrote->result.error());
        }
    } else if (event.is<PollerEvent::LateAnswer>() && failedUnit_) {
        ++units_[*failedUnit_].timeouts;
    }
}

void BusMeter::failed(std::uint8_t unit, const PollFailureError& error) {
    failedUnit_ = unit;
    if (error.failure.kind == PollFailure::Kind::timeout) {
        ++units_[unit].timeouts;
    }
}

void BusMeter::addRead(const PollerEvent::Read& read) {
    busySeconds_ += read.duration + read.listenedAfter;
    if (!read.result) {
        // A failed read says nothing about how fast the device answers; an exception answer is
        // shorter than the read's answer, so its wire time would be wrong.
        failed(read.block.unit, read.result.error());
        return;
    }
    if (serial_.baudRate <= 0) {
        return;
    }
    const double delayBeforeSend =
        serial_.rs485 ? serial_.rs485->limited().delayBeforeSendMs / 1000.0 : 0.0;
    // Both frames on the wire and what holds the request back or the answer up besides the
    // device; the silence after the answer that exchangeSeconds adds belongs to the next request.
    const double line =
        LineRate::exchangeSeconds(read.block, serial_, handoverSeconds_ + delayBeforeSend) -
        SerialTiming::interFrameDelay(serial_.baudRate, serial_.bitsPerCharacter());
    const double turnaround = std::max(0.0, read.duration - read.waited - line);
    Unit& unit = units_[read.block.unit];
    ++unit.answers;
    unit.recent.push_back({read.duration, turnaround});
    if (unit.recent.size() > recentAnswers) {
        unit.recent.pop_front();
    }
}

void BusMeter::cycleMayHaveEnded(const Uuid& poll, const ReadBlock& block, Time time) {
    const auto plan = plans_.find(poll);
    if (plan == plans_.end() || plan->second.blocks.empty() ||
        plan->second.blocks.back() != block) {
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
        if (unit.answers > 0) {
            figures.push_back({number, unit.answers, unit.timeouts,
                               spread(unit.recent, &Answer::roundTrip),
                               spread(unit.recent, &Answer::turnaround)});
        }
    }
    return figures;
}

std::int64_t BusMeter::answers(std::uint8_t unit) const {
    const auto found = units_.find(unit);
    return found != units_.end() ? found->second.answers : 0;
}

std::int64_t BusMeter::timeouts() const {
    std::int64_t total = 0;
    for (const auto& entry : units_) {
        total += entry.second.timeouts;
    }
    return total;
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
