#pragma once

#include <cassert>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>

namespace kestrin {

// The outcome of an operation that can fail: a value or a typed error, never both. Failures in
// Kestrin are values so that callers must look at them and tests can compare them whole.
template <typename T, typename E>
class [[nodiscard]] Result {
    static_assert(!std::is_same_v<T, E>, "a Result needs distinct value and error types");

public:
    Result(T value) : storage_(std::in_place_index<0>, std::move(value)) {}
    Result(E error) : storage_(std::in_place_index<1>, std::move(error)) {}

    bool ok() const noexcept { return storage_.index() == 0; }
    explicit operator bool() const noexcept { return ok(); }

    const T& value() const& {
        assert(ok());
        return std::get<0>(storage_);
    }
    T& value() & {
        assert(ok());
        return std::get<0>(storage_);
    }
    T&& value() && {
        assert(ok());
        return std::get<0>(std::move(storage_));
    }
    const E& error() const& {
        assert(!ok());
        return std::get<1>(storage_);
    }

    friend bool operator==(const Result&, const Result&) = default;

private:
    std::variant<T, E> storage_;
};

// An operation that returns nothing when it succeeds.
template <typename E>
class [[nodiscard]] Result<void, E> {
public:
    Result() = default;
    Result(E error) : error_(std::move(error)) {}

    bool ok() const noexcept { return !error_.has_value(); }
    explicit operator bool() const noexcept { return ok(); }
    const E& error() const& {
        assert(!ok());
        return *error_;
    }

    friend bool operator==(const Result&, const Result&) = default;

private:
    std::optional<E> error_;
};

} // namespace kestrin
