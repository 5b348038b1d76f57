#include "TranslatedKeys.h"

#include <array>
#include <cstddef>
#include <type_traits>
#include <utility>

namespace kestrin {

namespace {

template <typename Value>
Value marker(std::size_t position) {
    constexpr std::array<std::string_view, 5> texts{"<1>", "<2>", "<3>", "<4>", "<5>"};
    if constexpr (std::is_same_v<Value, std::string_view>) {
        return texts.at(position - 1);
    } else {
        static_assert(std::is_integral_v<Value>);
        return static_cast<Value>(101 * position);
    }
}

void add(std::vector<TranslatedKey>& keys, const std::string& name, const L10n::Literal& text) {
    keys.push_back({name, text(), {}});
}

template <typename... Values, std::size_t... Positions>
void addCalled(std::vector<TranslatedKey>& keys, const std::string& name,
               const L10n::Fn<std::string(Values...)>& text, std::index_sequence<Positions...>) {
    keys.push_back({name,
                    text(marker<Values>(Positions + 1)...),
                    {L10n::concat(marker<Values>(Positions + 1))...}});
}

template <typename... Values>
void add(std::vector<TranslatedKey>& keys, const std::string& name,
         const L10n::Fn<std::string(Values...)>& text) {
    addCalled(keys, name, text, std::index_sequence_for<Values...>{});
}

// A group: its keys are named below its own name.
template <typename Group>
void add(std::vector<TranslatedKey>& keys, const std::string& name, const Group& group) {
    group.forEach([&](std::string_view key, const auto& member) {
        add(keys, name.empty() ? std::string(key) : name + "." + std::string(key), member);
    });
}

} // namespace

std::vector<TranslatedKey> translatedKeys(const L10n::Texts& texts) {
    std::vector<TranslatedKey> keys;
    add(keys, "", texts);
    return keys;
}

} // namespace kestrin
