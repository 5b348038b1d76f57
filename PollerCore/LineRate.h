#pragma once

#include "PollPlan.h"
#include "ReadBlock.h"
#include "SerialConfiguration.h"

#include <optional>
#include <span>

namespace kestrin {

// How long reads hold a serial line and how many of them it carries in a second, from the frame
// settings alone. Pure functions: the line's own figures, before any device takes time to think.
namespace LineRate {

// Seconds from the end of a request to the end of its answer when the device starts answering
// turnaroundSeconds after the request ended: what the response time-out must cover. The baud
// rate must be positive.
double answerSeconds(const ReadBlock& block, const SerialConfiguration& serial,
                     double turnaroundSeconds);

// Seconds one read holds the line when the device starts its answer turnaroundSeconds after the
// request ended: both frames on the wire, the turnaround, and the silence before the next
// request. The baud rate must be positive.
double exchangeSeconds(const ReadBlock& block, const SerialConfiguration& serial,
                       double turnaroundSeconds);

// Seconds one read holds the line with a device that answers as soon as the silence tells it the
// request ended, plus the wait until the adapter hands the answer over (handoverSeconds: a USB
// adapter's latency timer, 0 for a UART). The baud rate must be positive.
double readSeconds(const ReadBlock& block, const SerialConfiguration& serial,
                   double handoverSeconds);

// Reads a second when the plans' blocks follow one another without pause, each plan's as often
// as its interval asks relative to the others. Nothing when no plan has a block or the baud rate
// is not positive, as a hand-edited project may have it.
std::optional<double> requestsPerSecond(std::span<const PollPlan> plans,
                                        const SerialConfiguration& serial, double handoverSeconds);

} // namespace LineRate
} // namespace kestrin
