#include "DatapointImport.h"

#include "L10n.h"

#include <algorithm>
#include <cstddef>

#include <QByteArray>
#include <QString>
#include <QStringDecoder>

namespace kestrin::DatapointImport {

namespace {

// The question names at most this many skipped lines; the count says how many there were.
constexpr std::size_t listedIssues = 5;

} // namespace

std::string decodedText(std::string_view bytes) {
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QByteArrayView view(bytes.data(), static_cast<qsizetype>(bytes.size()));
    QString text = utf8.decode(view);
    if (utf8.hasError()) {
        text = QString::fromLatin1(view);
    }
    return text.toStdString();
}

Result<Question, std::string> question(const DatapointCSV::ImportResult& result) {
    if (result.datapoints.empty()) {
        return L10n::texts().errors.importNothing(
            result.issues.empty() ? std::string() : L10n::Errors::describe(result.issues.front()));
    }
    Question asked{L10n::texts().import.title(static_cast<int>(result.datapoints.size())),
                   L10n::texts().import.question()};
    if (!result.issues.empty()) {
        asked.text += "\n\n" + L10n::texts().import.skipped(static_cast<int>(result.issues.size()));
        const std::size_t listed = std::min(result.issues.size(), listedIssues);
        for (std::size_t index = 0; index < listed; ++index) {
            asked.text += "\n" + L10n::Errors::describe(result.issues[index]);
        }
    }
    return asked;
}

} // namespace kestrin::DatapointImport
