#pragma once

#include <functional>
#include <stdexcept>
#include <string>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

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
