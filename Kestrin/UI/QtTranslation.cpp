#include "QtTranslation.h"

#include <QCoreApplication>
#include <QLibraryInfo>

namespace kestrin {

QtTranslation::QtTranslation(Language language) {
    const QString name = QStringLiteral("qtbase_") + QString::fromUtf8(language.rawValue());
    if (translator_.load(name, QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        installed_ = QCoreApplication::installTranslator(&translator_);
    }
}

QtTranslation::~QtTranslation() {
    if (installed_) {
        QCoreApplication::removeTranslator(&translator_);
    }
}

} // namespace kestrin
