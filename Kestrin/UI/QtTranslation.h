#pragma once

#include "Language.h"

#include <QTranslator>

namespace kestrin {

// Qt's own texts in Kestrin's language, installed for as long as this object lives: the standard
// dialog buttons, the context menus of text fields and the key names of shortcuts, so that menus
// show "Strg+R" where the texts and the help say "Strg+R". Qt's translations come from the
// system's qt6-translations-l10n; without them Qt stays English and nothing else changes.
class QtTranslation {
public:
    explicit QtTranslation(Language language);
    ~QtTranslation();
    QtTranslation(const QtTranslation&) = delete;
    QtTranslation& operator=(const QtTranslation&) = delete;

    bool installed() const { return installed_; }

private:
    QTranslator translator_;
    bool installed_ = false;
};

} // namespace kestrin
