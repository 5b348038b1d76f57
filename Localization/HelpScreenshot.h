#pragma once

#include "Language.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace kestrin::HelpScreenshot {

// Whether the program carries a resource of this file name, "overview-de.png".
using ResourceExists = std::function<bool(const std::string&)>;

// The PNG to show for a help screenshot: the language's own ("overview-de.png"), else the
// English one, else none (a build without the images shows only the caption).
std::optional<std::string> resource(std::string_view name, Language language,
                                    const ResourceExists& exists);

} // namespace kestrin::HelpScreenshot
