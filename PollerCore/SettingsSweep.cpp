#include "SettingsSweep.h"

#include "SerialLink.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace kestrin::SettingsSweep {

namespace {

constexpr std::array commonRates{9600, 19200, 38400, 115200};
constexpr std::array rareRates{57600, 4800, 2400, 1200};
constexpr std::array commonFrames{"8E1", "8N1", "8N2"};
constexpr std::array allFrames{"8E1", "8N1", "8N2", "8O1"};

void append(std::vector<SerialConfiguration>& list, const SerialConfiguration& base,
            std::span<const int> rates, std::span<const char* const> frames) {
    for (const int rate : rates) {
        for (const char* frame : frames) {
            SerialConfiguration serial = *base.withFrame(frame);
            serial.baudRate = rate;
            list.push_back(serial);
        }
    }
}

double timeoutAt(const SerialConfiguration& serial, std::optional<double> timeout) {
    return timeout.value_or(UnitScan::defaultTimeout(serial));
}

// The first of units that answers at serial; nothing when none does or the rate is refused.
Result<std::optional<UnitScan::Answer>, SerialLinkError>
tryOne(const Line& line, const SerialConfiguration& serial, const std::vector<std::uint8_t>& units,
       std::optional<double> timeout) {
    SerialLink link(line.path, serial, line.allowsTestDevice);
    if (line.cancel != nullptr) {
        link.cancelWith(*line.cancel);
    }
    if (auto opened = link.open(); !opened) {
        if (opened.error().is<SerialLinkError::UnsupportedBaudRate>()) {
            return std::optional<UnitScan::Answer>();
        }
        return opened.error();
    }
    // A late answer proves the device at this setting too; at the next one it would arrive
    // as garbage, or be misread as an answer there. One from a unit never asked is noise that
    // happens to look like an answer.
    const auto asked = [&](const UnitScan::Answer& late) {
        return std::ranges::find(units, late.unit) != units.end();
    };
    const double wait = timeoutAt(serial, timeout);
    for (const std::uint8_t unit : units) {
        std::vector<UnitScan::Answer> late;
        auto answer = UnitScan::probe(link, unit, wait, &late);
        if (!answer || answer.value()) {
            return answer;
        }
        if (const auto found = std::ranges::find_if(late, asked); found != late.end()) {
            return std::optional(*found);
        }
    }
    auto late = UnitScan::lateAnswer(link, wait);
    if (late && late.value() && !asked(*late.value())) {
        return std::optional<UnitScan::Answer>();
    }
    return late;
}

} // namespace

double silentSeconds(std::span<const SerialConfiguration> settings, std::size_t units,
                     std::optional<double> timeout) {
    return std::accumulate(
        settings.begin(), settings.end(), 0.0, [&](double sum, const SerialConfiguration& serial) {
            return sum + UnitScan::silentSeconds(serial, timeoutAt(serial, timeout),
                                                 static_cast<int>(units));
        });
}

std::vector<SerialConfiguration> candidates(const SerialConfiguration& base) {
    std::vector<SerialConfiguration> list;
    append(list, base, commonRates, commonFrames);
    append(list, base, commonRates, std::span(allFrames).subspan(commonFrames.size()));
    append(list, base, rareRates, allFrames);
    return list;
}

Result<std::optional<Found>, SerialLinkError> run(const Line& line, const SerialConfiguration& base,
                                                  const std::vector<std::uint8_t>& units,
                                                  std::optional<double> timeout,
                                                  const ProgressCallback& progress) {
    const std::vector<SerialConfiguration> settings = candidates(base);
    for (std::size_t index = 0; index < settings.size(); ++index) {
        const auto answer = tryOne(line, settings[index], units, timeout);
        if (!answer) {
            return answer.error();
        }
        if (progress) {
            const auto rest = std::span(settings).subspan(index + 1);
            progress({static_cast<int>(index + 1), static_cast<int>(settings.size()),
                      answer.value() ? 0.0 : silentSeconds(rest, units.size(), timeout),
                      settings[index]});
        }
        if (answer.value()) {
            return std::optional(Found{settings[index], *answer.value()});
        }
    }
    return std::optional<Found>();
}

} // namespace kestrin::SettingsSweep
