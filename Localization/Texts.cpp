#include "Texts.h"

namespace kestrin::L10n {

const Texts& texts(Language language) {
    switch (language) {
    case Language::en:
        return englishTexts();
    case Language::nl:
        return dutchTexts();
    case Language::de:
        return germanTexts();
    case Language::fr:
        return frenchTexts();
    case Language::es:
        return spanishTexts();
    }
    return englishTexts();
}

} // namespace kestrin::L10n
