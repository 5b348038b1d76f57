#include "MessageBoxes.h"

#include <QApplication>
#include <QFontMetrics>
#include <QGridLayout>
#include <QMessageBox>
#include <QSpacerItem>

namespace kestrin::MessageBoxes {

namespace {

// The title bar's icon, its three buttons and the margins between them, in a common theme.
constexpr int titleBarExtras = 160;

} // namespace

void fitTitle(QMessageBox& box) {
    auto* grid = qobject_cast<QGridLayout*>(box.layout());
    if (grid == nullptr) {
        return;
    }
    QFont font = QApplication::font("QMdiSubWindowTitleBar");
    font.setBold(true);
    const int width = QFontMetrics(font).horizontalAdvance(box.windowTitle()) + titleBarExtras;
    grid->addItem(new QSpacerItem(width, 0, QSizePolicy::Fixed, QSizePolicy::Minimum),
                  grid->rowCount(), 0, 1, grid->columnCount());
}

} // namespace kestrin::MessageBoxes
