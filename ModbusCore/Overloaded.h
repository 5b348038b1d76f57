#pragma once

namespace kestrin {

// Builds a std::visit visitor from lambdas, one per alternative.
template <typename... Fs>
struct Overloaded : Fs... {
    using Fs::operator()...;
};
template <typename... Fs>
Overloaded(Fs...) -> Overloaded<Fs...>;

} // namespace kestrin
