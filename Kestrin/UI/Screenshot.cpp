#include "Screenshot.h"

#include "HelpWindow.h"
#include "MainWindow.h"
#include "SerialSettingsPopover.h"
#include "TopBar.h"

#include <QApplication>
#include <QPixmap>

namespace kestrin {

namespace Screenshot {

const std::vector<std::string>& names() {
    static const std::vector<std::string> all{"window", "settings", "help"};
    return all;
}

Result<void, std::string> render(MainWindow& window, const std::string& name, const QString& file) {
    QWidget* view = nullptr;
    if (name == "window") {
        view = &window;
    } else if (name == "settings") {
        window.topBar()->showSerialSettings();
        view = window.topBar()->serialSettings();
    } else if (name == "help") {
        HelpWindow::showSingle(&window);
        view = HelpWindow::single();
    }
    if (view == nullptr) {
        return "unknown view " + name;
    }
    QApplication::processEvents();
    if (!view->grab().save(file, "PNG")) {
        return "cannot write " + file.toStdString();
    }
    return {};
}

} // namespace Screenshot

} // namespace kestrin
