#pragma once

#include <QAbstractButton>
#include <QMessageBox>
#include <gtest/gtest.h>

namespace kestrin {

// Clicks the question's button of that text; a missing button fails the test and rejects the
// question, so that the test does not hang on it.
inline void clickButton(QMessageBox* question, const QString& choice) {
    for (QAbstractButton* button : question->buttons()) {
        if (button->text() == choice) {
            button->click();
            return;
        }
    }
    ADD_FAILURE() << "no button " << choice.toStdString();
    question->reject();
}

} // namespace kestrin
