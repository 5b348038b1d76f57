#pragma once

#include "Language.h"

#include <functional>

namespace kestrin::L10n {

// Only for tests and the texts tool, which read every language in one process; the program's
// language is fixed at its first text. Runs body with the texts of this thread in the given
// language, then restores the previous one.
void withLanguageForTesting(Language language, const std::function<void()>& body);

} // namespace kestrin::L10n
