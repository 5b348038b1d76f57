#include "NumberStyle.h"

#include <langinfo.h>
#include <locale.h>

namespace kestrin {

namespace {

NumberStyle readFromEnvironment() {
    NumberStyle style;
    // A locale object of its own: the process locale (setlocale) stays untouched, and the
    // environment decides as it does for every other program of the user.
    locale_t locale = newlocale(LC_NUMERIC_MASK, "", static_cast<locale_t>(nullptr));
    if (locale == static_cast<locale_t>(nullptr)) {
        return style;
    }
    const char* radix = nl_langinfo_l(RADIXCHAR, locale);
    if (radix != nullptr && *radix != '\0') {
        style.decimalSeparator = radix;
    }
    freelocale(locale);
    return style;
}

} // namespace

std::string NumberStyle::localized(std::string number) const {
    if (const auto point = number.find('.'); point != std::string::npos) {
        number.replace(point, 1, decimalSeparator);
    }
    return number;
}

const NumberStyle& NumberStyle::current() {
    static const NumberStyle style = readFromEnvironment();
    return style;
}

} // namespace kestrin
