#include "HelpContent.h"

namespace kestrin::L10n {

const HelpContent& helpContent(Language language) {
    switch (language) {
    case Language::en:
        return englishHelp();
    case Language::nl:
        return dutchHelp();
    case Language::de:
        return germanHelp();
    case Language::fr:
        return frenchHelp();
    case Language::es:
        return spanishHelp();
    }
    return englishHelp();
}

} // namespace kestrin::L10n
