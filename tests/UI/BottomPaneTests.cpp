#include "BottomPane.h"
#include "ElidedLine.h"
#include "EmptyLogView.h"
#include "L10n.h"
#include "LanguageForTesting.h"
#include "NoticeBanner.h"
#include "OutputArea.h"
#include "PaneTestModel.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QTest>
#include <QToolButton>
#include <gtest/gtest.h>

namespace kestrin {
namespace {

QString text(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

PollerEvent timeoutOf(const Poll& poll) {
    return PollerEvent{
        PollerEvent::Read{poll.id, ReadBlock{}, PollFailureError{PollFailure::timeout()},
                          Bytes{0x01, 0x03, 0x00, 0x00, 0x00, 0x01, 0x84, 0x0A}, Bytes{}, 1.0}};
}

TEST(BottomPane, EmptyLogTellsWhatToDoNext) {
    const struct {
        const char* name;
        bool adapterPresent;
        bool withDatapoints;
        std::string title;
        bool offersStart;
    } rows[] = {
        {"no adapter", false, true, L10n::texts().notice.emptyNoDevice(), false},
        {"adapter, empty poll", true, false, L10n::texts().notice.emptyTitle(), false},
        {"adapter and datapoints", true, true, L10n::texts().notice.emptyTitle(), true},
    };
    for (const auto& row : rows) {
        std::vector<FakePortRegistry::Entry> ports;
        if (row.adapterPresent) {
            ports.push_back(PaneTest::usbAdapter("/dev/ttyUSB0"));
        }
        std::vector<Datapoint> datapoints;
        if (row.withDatapoints) {
            datapoints.push_back(PaneTest::holding("Power", 0));
        }
        auto model =
            PaneTest::model(std::move(ports), Testing::poll("Meter", std::move(datapoints)));
        QCoreApplication::processEvents();
        BottomPane pane(*model);
        pane.resize(800, 300);
        pane.show();
        auto* title = pane.findChild<QLabel*>("emptyLogTitle");
        auto* start = pane.findChild<QPushButton*>("startReadingButton");
        ASSERT_NE(title, nullptr);
        ASSERT_NE(start, nullptr);
        EXPECT_EQ(title->text(), text(row.title)) << row.name;
        EXPECT_EQ(start->isVisible(), row.offersStart) << row.name;
    }
}

// One view through narrow, wide and short: each width gets the height of its own lines.
TEST(BottomPane, WelcomeMessageShowsEveryWrappedLineAtAnyWidthInEveryLanguage) {
    for (const Language language : {Language::en, Language::de, Language::fr}) {
        L10n::withLanguageForTesting(language, [&] {
            auto model = PaneTest::model({}, Testing::poll("Meter", {}));
            // Placed over the log as the log area does, not a window the layout could widen.
            QWidget host;
            host.resize(1400, 400);
            auto* welcome = new EmptyLogView(*model, &host);
            host.show();
            auto* message = welcome->findChild<QLabel*>("emptyLogMessage");
            ASSERT_NE(message, nullptr);
            for (const QSize size : {QSize(360, 260), QSize(1300, 300), QSize(700, 200)}) {
                welcome->setGeometry(QRect(QPoint(0, 0), size));
                QCoreApplication::processEvents();
                const QFontMetrics metrics(message->font());
                const int lines =
                    metrics
                        .boundingRect(QRect(0, 0, message->contentsRect().width(), 10000),
                                      Qt::TextWordWrap | Qt::AlignHCenter, message->text())
                        .height();
                const std::string where = L10n::texts().notice.emptyNoDeviceSteps() + " at " +
                                          std::to_string(size.width());
                EXPECT_GE(message->height(), lines) << where;
                EXPECT_LT(message->height(), lines + metrics.lineSpacing()) << where;
                EXPECT_GE(message->geometry().top(), 0) << where;
                EXPECT_LE(message->geometry().bottom(), size.height()) << where;
            }
        });
    }
}

TEST(BottomPane, FirstLogLineReplacesTheWelcomeAndClearingBringsItBack) {
    auto model = PaneTest::model({}, Testing::poll("Meter", {}));
    BottomPane pane(*model);
    pane.resize(800, 300);
    pane.show();
    auto* welcome = pane.findChild<EmptyLogView*>();
    ASSERT_NE(welcome, nullptr);
    EXPECT_TRUE(welcome->isVisible());

    model->appendLog({{LogSegment::Kind::system, "--- line ---"}});
    EXPECT_FALSE(welcome->isVisible());

    QTest::mouseClick(pane.findChild<QPushButton*>("clearLogButton"), Qt::LeftButton);
    EXPECT_TRUE(welcome->isVisible());
    EXPECT_EQ(pane.findChild<ElidedLine*>("statisticsLabel")->text(),
              text(L10n::texts().footer.statistics(0, 0, 0, 0, 0)));
}

TEST(BottomPane, NoticesFollowTheReadingState) {
    Testing::QuietTerminal terminal;
    ASSERT_FALSE(terminal.path().empty());
    const Poll poll = Testing::poll("Meter", {});
    auto model = PaneTest::model({}, poll);
    model->addTestDevice(terminal.path(), "Test terminal");
    BottomPane pane(*model);
    pane.resize(900, 300);
    pane.show();
    auto* lost = pane.findChild<NoticeBanner*>("serialLostNotice");
    auto* silent = pane.findChild<NoticeBanner*>("noResponseNotice");
    ASSERT_NE(lost, nullptr);
    ASSERT_NE(silent, nullptr);

    model->start();
    ASSERT_TRUE(QTest::qWaitFor([&] { return model->state() == PollerState::running; }, 5000));
    EXPECT_FALSE(lost->isVisible());
    EXPECT_FALSE(silent->isVisible());

    for (int attempt = 0; attempt < 3; ++attempt) {
        model->handleEvent(timeoutOf(poll));
    }
    EXPECT_TRUE(silent->isVisible());
    EXPECT_TRUE(silent->isDismissable());
    QTest::mouseClick(silent->findChild<QToolButton*>("noticeDismiss"), Qt::LeftButton);
    EXPECT_FALSE(silent->isVisible());
    EXPECT_FALSE(model->showNoResponseHint());

    model->handleEvent(PollerEvent{PollerEvent::SerialLost{terminal.path()}});
    EXPECT_TRUE(lost->isVisible());
    EXPECT_FALSE(lost->isDismissable());
    EXPECT_EQ(lost->text(), text(L10n::texts().notice.serialLost()));

    model->stop();
    EXPECT_FALSE(lost->isVisible());
}

TEST(BottomPane, ChosenViewSurvivesANewPane) {
    auto model = PaneTest::model({}, Testing::poll("Meter", {}));
    {
        BottomPane pane(*model);
        EXPECT_EQ(pane.page(), BottomPane::Page::log);
        QTest::mouseClick(pane.findChild<QToolButton*>("chartPageButton"), Qt::LeftButton);
        EXPECT_EQ(pane.page(), BottomPane::Page::chart);
    }
    EXPECT_EQ(QSettings("Kestrin", "Kestrin").value("bottomPane").toString(), "chart");
    BottomPane again(*model);
    EXPECT_EQ(again.page(), BottomPane::Page::chart);
    again.showFindBar();
    EXPECT_EQ(again.page(), BottomPane::Page::log);
}

TEST(BottomPane, LogOptionsChangeTheModel) {
    auto model = PaneTest::model({}, Testing::poll("Meter", {}));
    BottomPane pane(*model);
    pane.show();
    pane.toggleLogOptions();
    const struct {
        const char* toggle;
        bool (PollerModel::*option)() const;
    } rows[] = {
        {"autoscrollToggle", &PollerModel::autoscroll},
        {"timestampsToggle", &PollerModel::showTimestamps},
        {"rawFramesToggle", &PollerModel::showRawFrames},
        {"onlyProblemsToggle", &PollerModel::logOnlyProblems},
    };
    for (const auto& row : rows) {
        auto* toggle = pane.findChild<QCheckBox*>(row.toggle);
        ASSERT_NE(toggle, nullptr) << row.toggle;
        const bool before = (model.get()->*row.option)();
        EXPECT_EQ(toggle->isChecked(), before) << row.toggle;
        toggle->click();
        EXPECT_EQ((model.get()->*row.option)(), !before) << row.toggle;
    }
}

} // namespace
} // namespace kestrin
