#pragma once

#include "L10n.h"
#include "LanguageForTesting.h"
#include "LogPalette.h"
#include "MainWindow.h"
#include "Model/ModelFixture.h"
#include "Model/TestFiles.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTimer>
#include <QToolButton>
#include <gtest/gtest.h>

// Failures show texts as text.
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

namespace kestrin {

// The named child, or the first of its type without a name. A missing one ends the test there,
// naming it, instead of crashing it later.
template <typename Widget = QWidget>
Widget* child(const QObject& parent, const char* name = nullptr) {
    auto* found = parent.findChild<Widget*>(name ? QString::fromLatin1(name) : QString());
    if (found == nullptr) {
        throw std::runtime_error(std::string("no child ") + (name ? name : "of that type"));
    }
    return found;
}

inline void click(QWidget* widget) {
    QTest::mouseClick(widget, Qt::LeftButton);
}

// Types over the field's text as the keyboard does and presses Return.
inline void typeIn(QLineEdit* field, const QString& text) {
    field->selectAll();
    QTest::keyClicks(field, text);
    QTest::keyClick(field, Qt::Key_Return);
}

// Picks the entry holding that value, as a click in the open list does.
inline void choose(QComboBox* picker, const QVariant& value) {
    const int index = picker->findData(value);
    if (index < 0) {
        throw std::runtime_error("no such entry in " + picker->objectName().toStdString());
    }
    picker->setCurrentIndex(index);
    emit picker->activated(index);
}

// A dark desktop's colours, for what must read on both.
inline QPalette darkPalette() {
    QPalette dark;
    dark.setColor(QPalette::Base, QColor(30, 30, 30));
    dark.setColor(QPalette::Text, QColor(235, 235, 235));
    dark.setColor(QPalette::Window, QColor(40, 40, 40));
    dark.setColor(QPalette::WindowText, QColor(235, 235, 235));
    return dark;
}

// On screen at that size, so that clicks and keys reach it.
inline void showAt(QWidget& widget, int width, int height) {
    widget.resize(width, height);
    widget.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&widget));
}

// Answers the modal question of that name, once it is up, with the button of that text, or with
// Escape for no text; the test may look at the question first. A missing button fails the test and
// rejects the question, so that the test does not hang on it.
inline void answerQuestion(const QString& name, const QString& choice,
                           const std::function<void(const QMessageBox&)>& look = {}) {
    QTimer::singleShot(0, [=] {
        auto* question = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(question, nullptr) << name.toStdString();
        EXPECT_EQ(question->objectName(), name);
        if (look) {
            look(*question);
        }
        if (choice.isEmpty()) {
            QTest::keyClick(question, Qt::Key_Escape);
            return;
        }
        for (QAbstractButton* button : question->buttons()) {
            if (button->text() == choice) {
                button->click();
                return;
            }
        }
        ADD_FAILURE() << "no button " << choice.toStdString();
        question->reject();
    });
}

} // namespace kestrin

namespace kestrin::UITesting {

using namespace std::chrono_literals;
using ModelTesting::SimulatorProcess;
using ModelTesting::waitUntil;
using Testing::datapoint;
using Testing::makeModel;
using Testing::poll;
using Testing::portsAt;
using Testing::project;
using Testing::QuietTerminal;

// A project of one poll, Plant, holding these datapoints.
inline PollerProject plant(std::vector<Datapoint> datapoints) {
    return project({poll("Plant", std::move(datapoints))});
}

// A model with no autosave and no system ports, its preferences in the test's own folder.
class TableFixture : public ModelTesting::ModelFixture {
protected:
    const Poll& poll() const { return model->polls().front(); }
};

// A shown main window that has the keyboard, so shortcuts reach it.
inline void activate(QWidget& window) {
    window.show();
    QApplication::setActiveWindow(&window);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
}

inline FakePortRegistry::Entry usbAdapter(const std::string& path) {
    FakePortRegistry::Entry entry;
    entry.path = path;
    entry.usb.vendorID = 0x0403;
    entry.usb.productID = 0x6001;
    entry.usb.productName = "FT232R USB UART";
    return entry;
}

// A model that reads nothing from disk, with the given ports present and one poll, and views that
// start from their default preferences. Recorded samples are published on the next turn of the
// event loop, so a view shows them at once.
inline std::unique_ptr<PollerModel> paneModel(std::vector<FakePortRegistry::Entry> ports,
                                              Poll shown) {
    QSettings("Kestrin", "Kestrin").clear();
    auto registry = std::make_shared<FakePortRegistry::State>();
    registry->entries = std::move(ports);
    PollerModel::Environment environment = Testing::environment(std::move(registry));
    environment.project = project({std::move(shown)});
    environment.delays.resume = 0ms;
    environment.delays.publication = 0ms;
    return std::make_unique<PollerModel>(std::move(environment));
}

} // namespace kestrin::UITesting
