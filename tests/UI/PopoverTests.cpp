#include "LanguageForTesting.h"
#include "SerialSettingsPopover.h"
#include "ShellFixture.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>

namespace kestrin::ShellTesting {
namespace {

TEST(SerialSettings, EveryLabelAndChoiceShowsWholeInEveryLanguage) {
    auto model = makeModel(PollerProject::firstRun());
    for (const Language language : Language::allCases) {
        L10n::withLanguageForTesting(language, [&] {
            QWidget anchor;
            anchor.show();
            SerialSettingsPopover popover(*model);
            popover.showBelow(&anchor);
            QApplication::processEvents();
            for (const QLabel* label : popover.findChildren<QLabel*>()) {
                if (!label->wordWrap()) {
                    EXPECT_GE(label->width(), label->sizeHint().width())
                        << language.rawValue() << ": " << label->text().toStdString();
                }
            }
            for (const QComboBox* picker : popover.findChildren<QComboBox*>()) {
                EXPECT_GE(picker->width(), picker->sizeHint().width())
                    << language.rawValue() << ": " << picker->currentText().toStdString();
            }
        });
    }
}

// Sends one Escape keystroke to a widget as X11 delivers it, with the keystroke's time stamp.
void escape(QWidget* widget, QEvent::Type type, quint64 timestamp) {
    QKeyEvent key(type, Qt::Key_Escape, Qt::NoModifier);
    key.setTimestamp(timestamp);
    QApplication::sendEvent(widget, &key);
}

TEST(SerialSettings, EscapeInAnOpenListClosesOnlyTheList) {
    auto model = makeModel(PollerProject::firstRun());
    QWidget anchor;
    anchor.show();
    SerialSettingsPopover popover(*model);
    popover.showBelow(&anchor);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&popover));
    auto* picker = popover.findChild<QComboBox*>("gapPicker");
    ASSERT_NE(picker, nullptr);
    picker->showPopup();
    QWidget* list = picker->view();
    ASSERT_TRUE(waitUntil([&] { return list->isVisible(); }));
    // Under X11 the list closes on the keystroke's shortcut check, and the key itself then goes
    // to the popover, the popup that is left.
    escape(list, QEvent::ShortcutOverride, 1000);
    ASSERT_TRUE(waitUntil([&] { return !list->isVisible(); }));
    escape(&popover, QEvent::KeyPress, 1000);
    QApplication::processEvents();
    EXPECT_TRUE(popover.isVisible());
    escape(&popover, QEvent::KeyPress, 2000);
    EXPECT_TRUE(waitUntil([&] { return !popover.isVisible(); }));
}

} // namespace
} // namespace kestrin::ShellTesting
