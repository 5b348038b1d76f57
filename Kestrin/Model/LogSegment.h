#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace kestrin {

// A piece of a communication-log line with the role that decides its colour and font; the view
// maps roles to the platform's palette.
struct LogSegment {
    class Kind {
    public:
        enum Case : std::uint8_t {
            text,
            timestamp,
            meta,
            request,
            response,
            warning,
            error,
            system
        };
        static constexpr std::array allCases{text,     timestamp, meta,  request,
                                             response, warning,   error, system};

        constexpr Kind() noexcept = default;
        constexpr Kind(Case c) noexcept
            : case_(c) {}
        constexpr operator Case() const noexcept { return case_; }

        // Start, stop and reopen lines stand out in a medium-weight face; all else uses the
        // buffer font.
        constexpr bool isEmphasised() const noexcept { return case_ == system; }

    private:
        Case case_ = text;
    };

    Kind kind;
    std::string text; // UTF-8

    friend bool operator==(const LogSegment& a, const LogSegment& b) {
        return a.kind == b.kind && a.text == b.text;
    }
};

// One line of the log, without its line break.
using LogLineSegments = std::vector<LogSegment>;

} // namespace kestrin
