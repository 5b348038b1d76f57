#include "LatencyNotice.h"

#include "AdapterFacts.h"
#include "L10n.h"
#include "LineRate.h"
#include "NumberText.h"

#include <cmath>
#include <utility>

namespace kestrin {

std::optional<LatencyNotice> LatencyNotice::check(const std::string& path, std::string adapter,
                                                  std::span<const PollPlan> plans,
                                                  const SerialConfiguration& serial,
                                                  const SystemRoot& root) {
    const std::optional<AdapterFacts::LatencyTimer> timer = AdapterFacts::latencyTimer(path, root);
    if (!timer || timer->milliseconds <= bestTimerMs) {
        return std::nullopt;
    }
    const auto rate = [&](int ms) {
        return LineRate::requestsPerSecond(plans, serial, ms / 1000.0);
    };
    const std::optional<double> now = rate(timer->milliseconds);
    const std::optional<double> best = rate(bestTimerMs);
    if (!now || !best) {
        return std::nullopt;
    }
    return LatencyNotice{path,
                         timer->milliseconds,
                         static_cast<int>(std::lround(*now)),
                         static_cast<int>(std::lround(*best)),
                         timer->writable,
                         std::move(adapter)};
}

std::string LatencyNotice::adapterKey(const std::optional<PortIdentity>& identity,
                                      const std::string& path) {
    if (!identity || !identity->serialNumber) {
        return path;
    }
    // Vendor and product as the four hexadecimal digits adapters are known by, without "0x".
    return NumberText::hexadecimal(static_cast<std::uint64_t>(identity->vendorID), 4).substr(2) +
           ":" +
           NumberText::hexadecimal(static_cast<std::uint64_t>(identity->productID), 4).substr(2) +
           ":" + *identity->serialNumber;
}

std::string LatencyNotice::text() const {
    const auto& texts = L10n::texts().adapter;
    return texts.latencyHeld(timerMs, path) + " " +
           texts.latencyCost(timerMs, requestsPerSecond, requestsPerSecondAtBest);
}

} // namespace kestrin
