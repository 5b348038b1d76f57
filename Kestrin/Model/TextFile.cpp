#include "TextFile.h"

#include <QLocale>
#include <QSaveFile>

namespace kestrin::TextFile {

QString stampedName(std::string_view prefix, const QDateTime& now, std::string_view extension) {
    const QString stamp =
        QLocale::c().toString(now.toLocalTime(), QStringLiteral("yyyy-MM-dd'T'HHmmss"));
    return QString::fromUtf8(prefix.data(), static_cast<qsizetype>(prefix.size())) + stamp +
           QString::fromUtf8(extension.data(), static_cast<qsizetype>(extension.size()));
}

Result<void, std::string> write(const QString& path, std::string_view bytes) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        return file.errorString().toStdString();
    }
    if (file.write(bytes.data(), static_cast<qint64>(bytes.size())) !=
        static_cast<qint64>(bytes.size())) {
        const std::string reason = file.errorString().toStdString();
        file.cancelWriting();
        return reason;
    }
    if (!file.commit()) {
        return file.errorString().toStdString();
    }
    return {};
}

} // namespace kestrin::TextFile
