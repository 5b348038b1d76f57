#include "HelpTopic.h"
#include "HelpWindow.h"
#include "Screenshot.h"
#include "ShellFixture.h"

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

struct ScreenshotFixture {
    ScreenshotFixture()
        : model(makeModel(PollerProject::firstRun(), portsAt({"/dev/ttyUSB0"})))
        , window(*model) {
        window.show();
    }

    QImage render(const std::string& name, int maxWidth = 0) {
        const QString file = folder.filePath(QString::fromStdString(name) + ".png");
        const auto rendered = Screenshot::render(*model, window, name, file, maxWidth);
        EXPECT_TRUE(rendered.ok()) << (rendered.ok() ? "" : rendered.error());
        return QImage(file);
    }

    QTemporaryDir folder;
    std::unique_ptr<PollerModel> model;
    MainWindow window;
};

TEST(Screenshot, EveryViewRendersAPicture) {
    ScreenshotFixture fixture;
    const QSize window = fixture.render("window").size();
    ASSERT_FALSE(window.isEmpty());
    for (const std::string& name : Screenshot::names()) {
        const QImage image = fixture.render(name);
        EXPECT_FALSE(image.isNull()) << name;
        EXPECT_GE(image.width(), 600) << name;
        EXPECT_GE(image.height(), 300) << name;
    }
    // The chart is the bottom pane alone; the popovers are drawn into the whole window.
    EXPECT_EQ(fixture.render("chart").width(), window.width());
    EXPECT_LT(fixture.render("chart").height(), window.height());
    EXPECT_EQ(fixture.render("settings").size(), window);
}

TEST(Screenshot, APopoverIsDrawnIntoTheWindowPicture) {
    ScreenshotFixture fixture;
    const QImage plain = fixture.render("window");
    const QImage withPopover = fixture.render("write");
    ASSERT_EQ(plain.size(), withPopover.size());
    EXPECT_NE(plain, withPopover);
}

TEST(Screenshot, AWidthScalesDownButNeverUp) {
    ScreenshotFixture fixture;
    const QImage full = fixture.render("window");
    const QImage scaled = fixture.render("window", 632);
    EXPECT_EQ(scaled.width(), 632);
    EXPECT_NEAR(scaled.height(), full.height() * 632.0 / full.width(), 1);
    EXPECT_EQ(fixture.render("window", full.width() + 200).size(), full.size());
}

} // namespace
} // namespace kestrin::ShellTesting
