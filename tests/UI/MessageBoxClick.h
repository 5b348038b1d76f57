#pragma once

#include <functional>

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

namespace kestrin {

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
