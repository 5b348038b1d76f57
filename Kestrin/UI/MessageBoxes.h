#pragma once

class QMessageBox;

namespace kestrin::MessageBoxes {

// Widens a question so that its whole title fits in the window manager's title bar, beside the
// bar's icon and buttons: Qt sizes a message box by its text and allows the title little room.
void fitTitle(QMessageBox& box);

} // namespace kestrin::MessageBoxes
