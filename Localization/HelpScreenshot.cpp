#include "HelpScreenshot.h"

namespace kestrin::HelpScreenshot {

std::optional<std::string> resource(std::string_view name, Language language,
                                    const ResourceExists& exists) {
    for (Language candidate : {language, Language(Language::en)}) {
        std::string file = std::string(name) + "-" + std::string(candidate.rawValue()) + ".png";
        if (exists(file)) {
            return file;
        }
    }
    return std::nullopt;
}

} // namespace kestrin::HelpScreenshot
