#pragma once

#include <cstdint>
#include <utility>
#include <variant>
#include <vector>

namespace kestrin {

// The decoded data of a read answer: exactly as many values as were requested, in address order.
struct ReadData {
    // Coils and discrete inputs.
    struct Bits {
        std::vector<bool> values;
        friend bool operator==(const Bits&, const Bits&) = default;
    };
    // Holding and input registers.
    struct Registers {
        std::vector<std::uint16_t> values;
        friend bool operator==(const Registers&, const Registers&) = default;
    };

    using Case = std::variant<Bits, Registers>;
    Case value;

    static ReadData bits(std::vector<bool> values) { return {Bits{std::move(values)}}; }
    static ReadData registers(std::vector<std::uint16_t> values) {
        return {Registers{std::move(values)}};
    }

    template <typename T>
    bool is() const noexcept {
        return std::holds_alternative<T>(value);
    }
    // The case's data, or null when the data are of the other case.
    template <typename T>
    const T* as() const noexcept {
        return std::get_if<T>(&value);
    }

    friend bool operator==(const ReadData&, const ReadData&) = default;
};

} // namespace kestrin
