#include "BottomPane.h"
#include "ChartView.h"
#include "ElidedLine.h"
#include "EmptyLogView.h"
#include "LogFindBar.h"
#include "LogView.h"
#include "NoticeBanner.h"
#include "OutputBuffer.h"
#include "QtText.h"
#include "UIFixture.h"

#include <QScrollBar>
#include <QTextCursor>

namespace kestrin::UITesting {
namespace {

// The first log line hides the welcome, and clearing the log brings it back.
TEST(BottomPane, EmptyLogTellsWhatToDoNextUntilTheFirstLine) {
    const std::string title = L10n::texts().notice.emptyTitle();
    const std::vector<FakePortRegistry::Entry> adapter{usbAdapter("/dev/ttyUSB0")};
    const std::vector<Datapoint> power{Testing::holding("Power", 0)};
    using Row = std::tuple<const char*, std::vector<FakePortRegistry::Entry>,
                           std::vector<Datapoint>, std::string, bool>;
    const Row rows[] = {
        {"no adapter", {}, power, L10n::texts().notice.emptyNoDevice(), false},
        {"adapter, empty poll", adapter, {}, title, false},
        {"adapter and datapoints", adapter, power, title, true},
    };
    for (const auto& [situation, ports, datapoints, shownTitle, offersStart] : rows) {
        SCOPED_TRACE(situation);
        auto model = paneModel(ports, Testing::poll("Meter", datapoints));
        QCoreApplication::processEvents();
        BottomPane pane(*model);
        showAt(pane, 800, 300);
        EXPECT_EQ(child<QLabel>(pane, "emptyLogTitle")->text(), qt(shownTitle));
        EXPECT_EQ(child(pane, "startReadingButton")->isVisible(), offersStart);

        auto* welcome = child<EmptyLogView>(pane);
        EXPECT_TRUE(welcome->isVisible());
        model->appendLog({{LogSegment::Kind::system, "--- line ---"}});
        EXPECT_FALSE(welcome->isVisible());
        click(child(pane, "clearLogButton"));
        EXPECT_TRUE(welcome->isVisible());
        EXPECT_EQ(child<ElidedLine>(pane, "statisticsLabel")->text(),
                  qt(L10n::texts().footer.statistics(0, 0, 0, 0, 0)));
    }
}

// One view through narrow, wide and short: each width gets the height of its own lines.
TEST(BottomPane, WelcomeMessageShowsEveryWrappedLineAtAnyWidthInEveryLanguage) {
    for (const Language language : {Language::en, Language::de, Language::fr}) {
        L10n::withLanguageForTesting(language, [&] {
            auto model = paneModel({}, Testing::poll("Meter", {}));
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

// The listening notice stays all session long: the log keeps its lines below the notices.
TEST(BottomPane, NoticesFollowTheReadingStateAndHideNoLineOfTheLog) {
    Testing::QuietTerminal terminal;
    ASSERT_FALSE(terminal.path().empty());
    const Poll poll = Testing::poll("Meter", {});
    auto model = paneModel({}, poll);
    model->addTestDevice(terminal.path(), "Test terminal");
    BottomPane pane(*model);
    showAt(pane, 900, 300);
    auto* lost = child<NoticeBanner>(pane, "serialLostNotice");
    auto* silent = child<NoticeBanner>(pane, "noResponseNotice");

    model->start();
    ASSERT_TRUE(QTest::qWaitFor([&] { return model->state() == PollerState::running; }, 5000));
    EXPECT_FALSE(lost->isVisible() || silent->isVisible());
    for (int attempt = 0; attempt < 3; ++attempt) {
        model->handleEvent(ModelTesting::failedRead(poll.id, ReadBlock{}, PollFailure::timeout()));
    }
    EXPECT_TRUE(silent->isVisible() && silent->isDismissable());
    click(child(*silent, "noticeDismiss"));
    EXPECT_FALSE(silent->isVisible());
    EXPECT_FALSE(model->showNoResponseHint());

    model->handleEvent(PollerEvent{PollerEvent::SerialLost{terminal.path()}});
    EXPECT_TRUE(lost->isVisible());
    EXPECT_FALSE(lost->isDismissable());
    EXPECT_EQ(lost->text(), qt(L10n::texts().notice.serialLost()));
    model->stop();
    EXPECT_FALSE(lost->isVisible());

    model->listen();
    ASSERT_TRUE(QTest::qWaitFor([&] { return model->state() == PollerState::listening; }, 5000));
    EXPECT_TRUE(child(pane, "listeningNotice")->isVisible());
    for (const char* line : {"--- one ---", "--- two ---", "--- three ---"}) {
        model->appendLog({{LogSegment::Kind::system, line}});
    }
    auto* log = child<LogView>(pane);
    QCoreApplication::processEvents();
    log->verticalScrollBar()->setValue(0);
    QWidget* notices = child(pane, "noticeOverlays");
    const QRect firstLine = log->cursorRect(QTextCursor(log->document()));
    EXPECT_GE(log->viewport()->mapTo(&pane, firstLine.topLeft()).y(),
              notices->mapTo(&pane, QPoint(0, notices->height())).y());
    model->stop();
}

// The chart's period, chosen in the pane, too.
TEST(BottomPane, ChosenViewSurvivesANewPane) {
    auto model = paneModel({}, Testing::poll("Meter", {}));
    {
        BottomPane pane(*model);
        EXPECT_EQ(pane.page(), BottomPane::Page::log);
        EXPECT_EQ(pane.chartView()->periodSeconds(), ChartView::defaultPeriodSeconds);
        click(child(pane, "chartPageButton"));
        EXPECT_EQ(pane.page(), BottomPane::Page::chart);
        choose(child<QComboBox>(pane, "chartPeriod"), 0);
        EXPECT_EQ(pane.chartView()->periodSeconds(), 0);
    }
    EXPECT_EQ(QSettings("Kestrin", "Kestrin").value("bottomPane").toString(), "chart");
    BottomPane again(*model);
    EXPECT_EQ(again.page(), BottomPane::Page::chart);
    EXPECT_EQ(again.chartView()->periodSeconds(), 0);
    EXPECT_EQ(child<QComboBox>(again, "chartPeriod")->currentData().toInt(), 0);
    again.showFindBar();
    EXPECT_EQ(again.page(), BottomPane::Page::log);
}

TEST(BottomPane, LogOptionsChangeTheModel) {
    auto model = paneModel({}, Testing::poll("Meter", {}));
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

using Kind = LogSegment::Kind;

void appendLine(OutputBuffer& buffer, const std::vector<LogSegment>& line) {
    buffer.append(line);
}

// The format of the character at a position of the view's text.
QTextCharFormat formatAt(const LogView& view, int position) {
    QTextCursor cursor(view.document());
    cursor.setPosition(position + 1);
    return cursor.charFormat();
}

// Lines from before the view, appends, trims and a clear.
TEST(LogView, MirrorsTheBufferCharacterForCharacter) {
    // Small limits so that trimming happens many times.
    OutputBuffer buffer(300, 200);
    appendLine(buffer, {{Kind::system, "--- Reading started ---"}});
    LogView view(buffer);
    EXPECT_EQ(view.toPlainText(), buffer.text());
    EXPECT_EQ(LogPalette::kind(formatAt(view, 0)), Kind::system);
    for (int line = 0; line < 60; ++line) {
        appendLine(buffer, {{Kind::response, "← Unit 1 · FC 03 "},
                            {Kind::meta, "line " + std::to_string(line) + " · "},
                            {Kind::error, std::string(static_cast<std::size_t>(line % 7), 'x')}});
        ASSERT_EQ(view.toPlainText(), buffer.text()) << "after line " << line;
    }
    EXPECT_LE(buffer.length(), 300);
    EXPECT_TRUE(view.toPlainText().startsWith(QStringLiteral("← Unit 1")));

    buffer.clear();
    EXPECT_TRUE(view.toPlainText().isEmpty());
    appendLine(buffer, {{Kind::text, "again"}});
    EXPECT_EQ(view.toPlainText(), buffer.text());
}

// Text already shown takes the colours of a new palette too.
TEST(LogView, ColoursEachRunByItsRoleInTheCurrentPalette) {
    OutputBuffer buffer;
    LogView view(buffer);
    appendLine(buffer, {{Kind::timestamp, "12:00:00.000  "},
                        {Kind::request, "REQ"},
                        {Kind::warning, "WARN"},
                        {Kind::error, "ERR"},
                        {Kind::system, "SYS"},
                        {Kind::text, "PLAIN"}});
    const auto of = [&](const char* marker) {
        return formatAt(view, static_cast<int>(view.toPlainText().indexOf(marker)));
    };
    ASSERT_NE(LogPalette::red(view.palette()), LogPalette::red(darkPalette()));
    for (const QPalette& colours : {view.palette(), darkPalette()}) {
        view.setPalette(colours);
        const std::pair<const char*, QColor> rows[] = {
            {"12:00", LogPalette::secondaryLabel(colours)},
            {"REQ", LogPalette::blue(colours)},
            {"WARN", LogPalette::orange(colours)},
            {"ERR", LogPalette::red(colours)},
            {"SYS", LogPalette::teal(colours)},
            {"PLAIN", colours.color(QPalette::Text)}};
        for (const auto& [marker, colour] : rows) {
            EXPECT_EQ(of(marker).foreground().color(), colour) << marker;
        }
    }
    EXPECT_EQ(view.toPlainText(), buffer.text());
    const QTextCharFormat system = of("SYS");
    const QFont plain = of("REQ").font();
    EXPECT_EQ(system.font().weight(), QFont::Medium);
    EXPECT_LT(system.font().pointSizeF(), plain.pointSizeF());
    EXPECT_DOUBLE_EQ(plain.pointSizeF(), QApplication::font().pointSizeF());
}

TEST(LogFindBar, NextMatchWrapsAroundAndAMissingTextIsReported) {
    OutputBuffer buffer;
    LogView view(buffer);
    appendLine(buffer, {{Kind::text, "alpha one"}});
    appendLine(buffer, {{Kind::text, "beta"}});
    appendLine(buffer, {{Kind::text, "alpha two"}});
    LogFindBar bar(view);
    bar.open();
    auto* field = child<QLineEdit>(bar, "logFindField");

    field->setText("alpha");
    std::vector<int> lines;
    for (int step = 0; step < 3; ++step) {
        ASSERT_TRUE(bar.findNext());
        lines.push_back(view.textCursor().blockNumber());
    }
    EXPECT_EQ(lines, (std::vector<int>{0, 2, 0}));
    ASSERT_TRUE(bar.findPrevious());
    EXPECT_EQ(view.textCursor().blockNumber(), 2);

    field->setText("gamma");
    EXPECT_FALSE(bar.findNext());
}

TEST(LogPalette, RolesStayDistinctFromTheBackgroundInLightAndDark) {
    for (const QPalette& colours : {QPalette(), darkPalette()}) {
        const QColor background = colours.color(QPalette::Base);
        for (const Kind kind : Kind::allCases) {
            const QColor shown = LogPalette::color(kind, colours);
            EXPECT_GT(std::abs(shown.lightness() - background.lightness()), 60)
                << "role " << static_cast<int>(Kind::Case(kind)) << " dark "
                << LogPalette::isDark(colours);
        }
    }
}

} // namespace
} // namespace kestrin::UITesting
