#pragma once

#include <string_view>

#include <QString>

namespace kestrin {

// The libraries below the window speak UTF-8; Qt's widgets want QString.
inline QString qt(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

} // namespace kestrin
