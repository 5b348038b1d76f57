#pragma once

#include "Result.h"

#include <string>
#include <string_view>

#include <QDateTime>
#include <QString>

namespace kestrin::TextFile {

// Exported files: a proposed name stamped with the local time, and an atomic write.

// prefix + "2026-11-16T160512" + extension, in the time zone of now.
QString stampedName(std::string_view prefix, const QDateTime& now, std::string_view extension);
// All the bytes at once through TextFileWriter: the target is replaced whole or not at all; the
// error is the system's description.
Result<void, std::string> write(const QString& path, std::string_view bytes);

} // namespace kestrin::TextFile
