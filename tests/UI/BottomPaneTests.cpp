#include "BottomPane.h"
#include "ElidedLine.h"
#include "EmptyLogView.h"
#include "LanguageForTesting.h"
#include "NoticeBanner.h"
#include "UIFixture.h"

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

// The first log line hides the welcome, and clearing the log brings it back.
TEST(BottomPane, EmptyLogTellsWhatToDoNextUntilTheFirstLine) {
    const std::string title = L10n::texts().notice.emptyTitle();
    const struct {
        const char* name;
        bool adapterPresent;
        bool withDatapoints;
        std::string title;
        bool offersStart;
    } rows[] = {
        {"no adapter", false, true, L10n::texts().notice.emptyNoDevice(), false},
        {"adapter, empty poll", true, false, title, false},
        {"adapter and datapoints", true, true, title, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
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
        showAt(pane, 800, 300);
        EXPECT_EQ(child<QLabel>(pane, "emptyLogTitle")->text(), text(row.title));
        EXPECT_EQ(child(pane, "startReadingButton")->isVisible(), row.offersStart);

        auto* welcome = child<EmptyLogView>(pane);
        EXPECT_TRUE(welcome->isVisible());
        model->appendLog({{LogSegment::Kind::system, "--- line ---"}});
        EXPECT_FALSE(welcome->isVisible());
        click(child(pane, "clearLogButton"));
        EXPECT_TRUE(welcome->isVisible());
        EXPECT_EQ(child<ElidedLine>(pane, "statisticsLabel")->text(),
                  text(L10n::texts().footer.statistics(0, 0, 0, 0, 0)));
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
            auto* message = child<QLabel>(*welcome, "emptyLogMessage");
            for (const QSize size : {QSize(360, 260), QSize(1300, 300), QSize(700, 200)}) {
                welcome->setGeometry(QRect(QPoint(0, 0), size));
                QCoreApplication::processEvents();
                const QFontMetrics metrics(message->font());
                const QRect room(0, 0, message->contentsRect().width(), 10000);
                const int lines =
                    metrics.boundingRect(room, Qt::TextWordWrap | Qt::AlignHCenter, message->text())
                        .height();
                SCOPED_TRACE(L10n::texts().notice.emptyNoDeviceSteps() + " at " +
                             std::to_string(size.width()));
                EXPECT_GE(message->height(), lines);
                EXPECT_LT(message->height(), lines + metrics.lineSpacing());
                EXPECT_GE(message->geometry().top(), 0);
                EXPECT_LE(message->geometry().bottom(), size.height());
            }
        });
    }
}

TEST(BottomPane, NoticesFollowTheReadingState) {
    Testing::QuietTerminal terminal;
    ASSERT_FALSE(terminal.path().empty());
    const Poll poll = Testing::poll("Meter", {});
    auto model = PaneTest::model({}, poll);
    model->addTestDevice(terminal.path(), "Test terminal");
    BottomPane pane(*model);
    showAt(pane, 900, 300);
    auto* lost = child<NoticeBanner>(pane, "serialLostNotice");
    auto* silent = child<NoticeBanner>(pane, "noResponseNotice");

    model->start();
    ASSERT_TRUE(QTest::qWaitFor([&] { return model->state() == PollerState::running; }, 5000));
    EXPECT_FALSE(lost->isVisible() || silent->isVisible());
    for (int attempt = 0; attempt < 3; ++attempt) {
        model->handleEvent(timeoutOf(poll));
    }
    EXPECT_TRUE(silent->isVisible() && silent->isDismissable());
    click(child(*silent, "noticeDismiss"));
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
        click(child(pane, "chartPageButton"));
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
    const std::pair<const char*, bool (PollerModel::*)() const> toggles[] = {
        {"autoscrollToggle", &PollerModel::autoscroll},
        {"timestampsToggle", &PollerModel::showTimestamps},
        {"rawFramesToggle", &PollerModel::showRawFrames},
        {"onlyProblemsToggle", &PollerModel::logOnlyProblems},
    };
    for (const auto& [name, option] : toggles) {
        SCOPED_TRACE(name);
        auto* toggle = child<QCheckBox>(pane, name);
        const bool before = (*model.*option)();
        EXPECT_EQ(toggle->isChecked(), before);
        toggle->click();
        EXPECT_EQ((*model.*option)(), !before);
    }
}

} // namespace
} // namespace kestrin
