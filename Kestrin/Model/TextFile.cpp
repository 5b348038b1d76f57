#include "TextFile.h"

#include "TextFileWriter.h"

#include <QLocale>

namespace kestrin::TextFile {

QString stampedName(std::string_view prefix, const QDateTime& now, std::string_view extension) {
    const QString stamp =
        QLocale::c().toString(now.toLocalTime(), QStringLiteral("yyyy-MM-dd'T'HHmmss"));
    return QString::fromUtf8(prefix.data(), static_cast<qsizetype>(prefix.size())) + stamp +
           QString::fromUtf8(extension.data(), static_cast<qsizetype>(extension.size()));
}

Result<void, std::string> write(const QString& path, std::string_view bytes) {
    TextFileWriter writer(path);
    writer.append(bytes);
    return writer.commit();
}

} // namespace kestrin::TextFile
