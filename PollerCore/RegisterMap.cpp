#include "RegisterMap.h"

#include "ExceptionPDU.h"
#include "LineRate.h"
#include "PDU.h"
#include "RTUFrame.h"
#include "ReadBlock.h"
#include "SerialLink.h"
#include "WakeSignal.h"

#include <algorithm>
#include <bit>
#include <chrono>
#include <deque>
#include <numeric>
#include <string>

namespace kestrin {

namespace {

using Span = Datapoint::AddressRange;

// A unit that answered before and then leaves this many requests in a row without a word has
// gone away: each more would wait out twice its time-out for nothing.
constexpr int silentRequestsToGiveUp = 8;

// How often a request the device answered busy (exception 06) is asked again.
constexpr int busyRepeats = 3;

// How the device took one read.
enum class Answer : std::uint8_t {
    data,
    // Exception 02 and the rest: somewhere in the range is an address it will not read.
    missing,
    // Exception 01: not this table at all.
    unsupported,
    // Exception 06: it cannot take requests now.
    busy,
    // Exception 03 or a malformed answer: too much at once, or nothing there.
    refused,
    // No answer or a garbled one: too much at once, nothing there, or noise on the line.
    lost,
};

Answer fromException(std::uint8_t code) {
    switch (code) {
    case ModbusException::illegalFunction:
        return Answer::unsupported;
    case ModbusException::illegalDataValue:
        return Answer::refused;
    case ModbusException::serverDeviceBusy:
        return Answer::busy;
    default:
        return Answer::missing;
    }
}

int spanSize(const Span& span) {
    return span.last - span.first + 1;
}

int addressesIn(const std::vector<Span>& spans) {
    return std::accumulate(spans.begin(), spans.end(), 0,
                           [](int sum, const Span& span) { return sum + spanSize(span); });
}

// A span still to read, and what its sibling told: when both halves of a range with a hole
// have holes too, holes are everywhere, and reading each address alone costs less than halving
// on (an empty table costs one request an address instead of two).
struct Pending {
    enum class Role : std::uint8_t { whole, firstHalf, secondHalf, siblingMissing };
    Span span;
    Role role = Role::whole;
    // How often this very request was asked again after a busy answer, and after a silence:
    // apart, so that one busy answer leaves the silence its own second chance.
    int afterBusy = 0;
    int afterSilence = 0;
};

class Mapper {
public:
    Mapper(SerialLink& link, const RegisterMapOptions& options,
           const RegisterMapProgressHandler& progress)
        : link_(link)
        , options_(options)
        , progress_(progress) {
        map_.unit = options.unit;
    }

    Result<RegisterMap, SerialLinkError> run() {
        for (std::size_t index = 0; index < options_.tables.size(); ++index) {
            nextTable_ = index + 1;
            TableMap table{options_.tables[index], true, {}, {}};
            auto mapped = mapTable(table);
            if (!mapped && !mapped.error().is<SerialLinkError::Cancelled>()) {
                return mapped.error();
            }
            map_.tables.push_back(std::move(table));
            if (!mapped || map_.fellSilent) {
                map_.complete = false;
                break;
            }
            if (!map_.answered) {
                // Every size down to one address went unanswered: nobody is there to ask
                // about the other tables.
                break;
            }
        }
        return map_;
    }

private:
    Result<void, SerialLinkError> mapTable(TableMap& table) {
        pending_.assign(1, Pending{{options_.first, options_.last}});
        while (!pending_.empty()) {
            Pending next = pending_.front();
            pending_.pop_front();
            const int count = std::min(spanSize(next.span), limit(table.table));
            if (count < spanSize(next.span)) {
                pending_.push_front({{next.span.first + count, next.span.last}});
                next.span.last = next.span.first + count - 1;
                next.role = Pending::Role::whole;
            }
            const ReadBlock block{options_.unit, table.table,
                                  static_cast<std::uint16_t>(next.span.first), count};
            auto answer = ask(block);
            if (!answer) {
                return answer.error();
            }
            if (answer.value() == Answer::busy && next.afterBusy < busyRepeats) {
                if (auto paused = pause(); !paused) {
                    return paused.error();
                }
            }
            if (map_.fellSilent || !take(answer.value(), block, next, table)) {
                break;
            }
        }
        return {};
    }

    // Records what the answer tells about block, asked as next; false when the table is done.
    bool take(Answer answer, const ReadBlock& block, const Pending& next, TableMap& table) {
        const Span span{block.address, block.lastAddress()};
        if (answer == Answer::unsupported && table.ranges.empty()) {
            // What it was too busy to read before is no address of a table it does not have.
            table.supported = false;
            table.unknown.clear();
            return false;
        }
        if (answer == Answer::busy || (answer == Answer::lost && next.afterSilence == 0)) {
            retake(answer, next, table);
            return true;
        }
        int& largestAnswered = answered(table.table);
        const bool tooLarge = answer == Answer::refused || answer == Answer::lost;
        if (answer == Answer::data) {
            add(table.ranges, span);
            largestAnswered = std::max(largestAnswered, block.count);
        } else if (tooLarge && block.count > std::max(1, largestAnswered)) {
            // 125 becomes 64, then 32, 16 ...: the sizes devices are commonly limited to; never
            // below a size it has answered, which no refusal can prove too large.
            limit(table.table) = std::max(
                static_cast<int>(std::bit_floor(unsigned(block.count - 1))), largestAnswered);
            pending_.push_front({span, next.role});
        } else if (tooLarge && !map_.answered) {
            return false;
        } else if (block.count > 1) {
            split(span, next.role);
        }
        return true;
    }

    // A silence may be noise, and a busy device may be free in a moment: the same request once
    // more after a silence, a few times after busy; then the busy addresses are unknown, as
    // they may or may not exist.
    void retake(Answer answer, const Pending& next, TableMap& table) {
        if (answer == Answer::busy && next.afterBusy == busyRepeats) {
            add(table.unknown, next.span);
            return;
        }
        Pending again = next;
        ++(answer == Answer::busy ? again.afterBusy : again.afterSilence);
        pending_.push_front(again);
    }

    void split(const Span& span, Pending::Role role) {
        using enum Pending::Role;
        if (role == firstHalf && !pending_.empty() && pending_.front().role == secondHalf) {
            pending_.front().role = siblingMissing;
        }
        if (role == siblingMissing) {
            for (int address = span.last; address >= span.first; --address) {
                pending_.push_front({{address, address}});
            }
            return;
        }
        const int half = spanSize(span) / 2;
        pending_.push_front({{span.first + half, span.last}, secondHalf});
        pending_.push_front({{span.first, span.first + half - 1}, firstHalf});
    }

    static void add(std::vector<Span>& ranges, const Span& span) {
        if (!ranges.empty() && ranges.back().last + 1 == span.first) {
            ranges.back().last = span.last;
        } else {
            ranges.push_back(span);
        }
    }

    int& limit(RegisterTable table) {
        return table.isBit() ? map_.largestBitRead : map_.largestRegisterRead;
    }

    int& answered(RegisterTable table) {
        return table.isBit() ? largestBitsAnswered_ : largestRegistersAnswered_;
    }

    // Cut short only by the link's cancellation signal or the loss of the port.
    Result<void, SerialLinkError> pause() {
        const auto until = std::chrono::steady_clock::now() +
                           std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                               std::chrono::duration<double>(options_.busyPauseSeconds));
        return link_.idle(until, neverRaised_);
    }

    Result<Answer, SerialLinkError> ask(const ReadBlock& block) {
        const Bytes request = PDU::read(block.table, block.address, block.count);
        const double timeout =
            LineRate::readSeconds(block, link_.configuration(), options_.handoverSeconds) +
            options_.thinkSeconds;
        auto frame = link_.transact(RTUFrame::build(block.unit, request), true, timeout);
        if (!frame && !frame.error().is<SerialLinkError::Timeout>()) {
            return frame.error();
        }
        ++map_.requests;
        if (!frame) {
            // A slow device's answer to this very request is as good as a prompt one.
            frame = link_.lateAnswer(timeout);
            if (!frame) {
                return frame.error();
            }
        }
        if (frame.value().empty()) {
            return silence();
        }
        silentInRow_ = 0;
        auto pdu = RTUFrame::parseResponse(frame.value(), block.unit, request.front());
        if (!pdu) {
            return settled(link_.restOfAnswer());
        }
        map_.answered = true;
        report();
        if (const auto code = ExceptionPDU::exception(pdu.value())) {
            return fromException(*code);
        }
        return PDU::parseRead(pdu.value(), block.table, block.count) ? Answer::data
                                                                     : Answer::refused;
    }

    // Whatever still comes for a failed request is kept from the next one's answer.
    Result<Answer, SerialLinkError> settled(const Result<Bytes, SerialLinkError>& late) {
        if (!late) {
            return late.error();
        }
        report();
        return Answer::lost;
    }

    Answer silence() {
        if (map_.answered && ++silentInRow_ == silentRequestsToGiveUp) {
            map_.fellSilent = true;
        }
        report();
        return Answer::lost;
    }

    void report() const {
        if (progress_) {
            progress_({map_.requests, remainingSeconds()});
        }
    }

    // The pending spans and the tables not begun, read at the limits known now.
    double remainingSeconds() const {
        double seconds = 0.0;
        const auto readAll = [&](RegisterTable table, int size) {
            const int most = table.isBit() ? map_.largestBitRead : map_.largestRegisterRead;
            for (; size > 0; size -= most) {
                const ReadBlock block{options_.unit, table, 0, std::min(size, most)};
                seconds +=
                    LineRate::readSeconds(block, link_.configuration(), options_.handoverSeconds);
            }
        };
        const RegisterTable current = options_.tables[nextTable_ - 1];
        for (const Pending& next : pending_) {
            readAll(current, spanSize(next.span));
        }
        for (std::size_t index = nextTable_; index < options_.tables.size(); ++index) {
            readAll(options_.tables[index], options_.last - options_.first + 1);
        }
        return seconds;
    }

    SerialLink& link_;
    const RegisterMapOptions& options_;
    const RegisterMapProgressHandler& progress_;
    RegisterMap map_;
    // The spans of the current table still to read, in address order.
    std::deque<Pending> pending_;
    std::size_t nextTable_ = 0;
    int silentInRow_ = 0;
    int largestRegistersAnswered_ = 0;
    int largestBitsAnswered_ = 0;
    const WakeSignal neverRaised_;
};

} // namespace

int TableMap::addressCount() const noexcept {
    return addressesIn(ranges);
}

int TableMap::unknownCount() const noexcept {
    return addressesIn(unknown);
}

bool RegisterMap::found() const noexcept {
    return std::ranges::any_of(tables, [](const TableMap& table) { return !table.ranges.empty(); });
}

bool RegisterMap::busy() const noexcept {
    return std::ranges::any_of(tables,
                               [](const TableMap& table) { return !table.unknown.empty(); });
}

int RegisterMap::unknownCount() const noexcept {
    return std::accumulate(tables.begin(), tables.end(), 0, [](int sum, const TableMap& table) {
        return sum + table.unknownCount();
    });
}

std::string rangesText(const std::vector<Span>& ranges, std::string_view dash) {
    std::string text;
    for (const Span& span : ranges) {
        text += text.empty() ? "" : ", ";
        text += std::to_string(span.first);
        if (span.last != span.first) {
            text += std::string(dash) + std::to_string(span.last);
        }
    }
    return text;
}

Result<RegisterMap, SerialLinkError> mapRegisters(SerialLink& link,
                                                  const RegisterMapOptions& options,
                                                  const RegisterMapProgressHandler& progress) {
    return Mapper(link, options, progress).run();
}

std::vector<Datapoint> mappedDatapoints(const RegisterMap& map) {
    std::vector<Datapoint> datapoints;
    for (const TableMap& table : map.tables) {
        for (const Span& span : table.ranges) {
            for (int address = span.first; address <= span.last; ++address) {
                Datapoint datapoint;
                datapoint.name = std::string(table.table.code()) + " " + std::to_string(address);
                datapoint.unitID = map.unit;
                datapoint.address = static_cast<std::uint16_t>(address);
                datapoint.setTable(table.table);
                datapoints.push_back(std::move(datapoint));
            }
        }
    }
    return datapoints;
}

} // namespace kestrin
