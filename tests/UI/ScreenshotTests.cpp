#include "HelpTopic.h"
#include "HelpWindow.h"
#include "Screenshot.h"
#include "UIFixture.h"

#include <QFile>
#include <QImage>
#include <QTemporaryDir>

namespace kestrin::ShellTesting {
namespace {

// Every picture a help topic names, in every language, is compiled into the program.
TEST(Screenshot, EveryHelpPictureIsAResourceInEveryLanguage) {
    for (const Language language : Language::allCases) {
        for (const HelpTopic& topic : HelpTopic::all(language)) {
            for (const HelpBlock& block : topic.blocks) {
                const auto* shot = std::get_if<HelpBlock::Screenshot>(&block.value);
                if (shot == nullptr) {
                    continue;
                }
                const QString resource = QString::fromLatin1(HelpWindow::screenshotFolder) +
                                         QString::fromStdString(shot->name) + "-" +
                                         QString::fromLatin1(language.rawValue()) + ".png";
                EXPECT_TRUE(QFile::exists(resource)) << resource.toStdString();
                EXPECT_FALSE(QImage(resource).isNull()) << resource.toStdString();
            }
        }
    }
}

TEST(Screenshot, EveryViewRendersAPicture) {
    QTemporaryDir folder;
    const auto model = makeModel(PollerProject::firstRun(), portsAt({"/dev/ttyUSB0"}));
    MainWindow shown(*model);
    shown.show();
    const auto render = [&](const std::string& name, int maxWidth = 0) {
        const QString file = folder.filePath(QString::fromStdString(name) + ".png");
        const auto rendered = Screenshot::render(*model, shown, name, file, maxWidth);
        EXPECT_TRUE(rendered.ok()) << (rendered.ok() ? "" : rendered.error());
        return QImage(file);
    };
    const QImage plain = render("window");
    const QSize window = plain.size();
    ASSERT_FALSE(window.isEmpty());
    for (const std::string& name : Screenshot::names()) {
        const QImage image = render(name);
        EXPECT_FALSE(image.isNull()) << name;
        EXPECT_GE(image.width(), 600) << name;
        EXPECT_GE(image.height(), 300) << name;
    }
    // The chart is the bottom pane alone; the popovers are drawn into the whole window.
    EXPECT_EQ(render("chart").width(), window.width());
    EXPECT_LT(render("chart").height(), window.height());
    EXPECT_EQ(render("settings").size(), window);
    const QImage withPopover = render("write");
    ASSERT_EQ(withPopover.size(), window);
    EXPECT_NE(withPopover, plain);

    // A width scales down, never up.
    const QImage scaled = render("window", 632);
    EXPECT_EQ(scaled.width(), 632);
    EXPECT_NEAR(scaled.height(), window.height() * 632.0 / window.width(), 1);
    EXPECT_EQ(render("window", window.width() + 200).size(), window);
}

} // namespace
} // namespace kestrin::ShellTesting
