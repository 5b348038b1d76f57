#include "ChartView.h"

#include "ChartLines.h"
#include "ChartSeries.h"
#include "FaintText.h"
#include "Icons.h"
#include "L10n.h"
#include "LogPalette.h"
#include "PollerModel.h"
#include "QtText.h"
#include "TimeScale.h"
#include "ValueScale.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <QChart>
#include <QChartView>
#include <QComboBox>
#include <QDateTimeAxis>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLegend>
#include <QLineSeries>
#include <QSettings>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <QValueAxis>

namespace kestrin {

namespace {

constexpr const char* periodPreference = "chartWindow";
constexpr int emptyMessageWidth = 420;
constexpr int emptySymbolSide = 44;
// The time axis of "All" before anything is recorded.
constexpr int minimumSpanSeconds = 60;
// More polls missed in a row than this, and the line breaks: reading stopped or the device
// fell silent.
constexpr std::int64_t gapIntervals = 3;

int storedPeriod() {
    bool ok = false;
    const int stored = QSettings("Kestrin", "Kestrin").value(periodPreference).toInt(&ok);
    const auto& offered = ChartSeries::periods;
    if (ok && std::find(offered.begin(), offered.end(), stored) != offered.end()) {
        return stored;
    }
    return ChartView::defaultPeriodSeconds;
}

QWidget* makeEmptyView(QWidget* parent) {
    auto* view = new QWidget(parent);
    view->setObjectName("chartEmpty");
    // The chart's own background, so that switching between the two does not flash.
    view->setBackgroundRole(QPalette::Base);
    view->setAutoFillBackground(true);
    auto* column = new QVBoxLayout(view);
    column->setSpacing(10);
    column->addStretch(1);
    const QColor secondary = LogPalette::secondaryLabel(parent->palette());

    auto* symbol = new QLabel(view);
    symbol->setPixmap(
        Icons::tinted(Symbol::chart, secondary).pixmap(emptySymbolSide, emptySymbolSide));
    column->addWidget(symbol, 0, Qt::AlignHCenter);

    auto* title = new QLabel(qt(L10n::texts().chart.emptyTitle()), view);
    title->setObjectName("chartEmptyTitle");
    QFont headline = title->font();
    headline.setWeight(QFont::DemiBold);
    title->setFont(headline);
    column->addWidget(title, 0, Qt::AlignHCenter);

    auto* message = new QLabel(qt(L10n::texts().chart.emptyText()), view);
    message->setWordWrap(true);
    message->setAlignment(Qt::AlignCenter);
    message->setFixedWidth(emptyMessageWidth);
    FaintText::fade(*message);
    column->addWidget(message, 0, Qt::AlignHCenter);
    column->addStretch(1);
    return view;
}

} // namespace

ChartView::ChartView(PollerModel& model, QWidget* parent)
    : QWidget(parent)
    , model_(model)
    , periodSeconds_(storedPeriod())
    , period_(new QComboBox(this))
    , pages_(new QStackedWidget(this))
    , chart_(new QChart())
    , chartView_(new QChartView(chart_, pages_))
    , timeAxis_(new QDateTimeAxis(chart_))
    , valueAxis_(new QValueAxis(chart_))
    , lines_(new ChartLines(chart_)) {
    setObjectName("chartView");
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);

    period_->setObjectName("chartPeriod");
    period_->setAccessibleName(qt(L10n::texts().chart.window()));
    period_->setToolTip(qt(L10n::texts().chart.windowHelp()));
    for (const int seconds : ChartSeries::periods) {
        period_->addItem(qt(L10n::Chart::windowLabel(seconds)), seconds);
    }
    period_->setCurrentIndex(period_->findData(periodSeconds_));
    connect(period_, &QComboBox::activated, this,
            [this](int index) { setPeriodSeconds(period_->itemData(index).toInt()); });

    chartView_->setObjectName("chart");
    chartView_->setRenderHint(QPainter::Antialiasing);
    chart_->legend()->setAlignment(Qt::AlignTop);
    chart_->setMargins(QMargins(4, 4, 4, 4));
    applyTheme();
    timeAxis_->setTitleText(qt(L10n::texts().chart.time()));
    timeAxis_->setFormat("HH:mm:ss");
    timeAxis_->setTickCount(6);
    // The axis starts with an empty range; laid out once like that, it never draws again.
    const QDateTime now = QDateTime::currentDateTime();
    timeAxis_->setRange(now.addSecs(-std::max(periodSeconds_, minimumSpanSeconds)), now);
    chart_->addAxis(timeAxis_, Qt::AlignBottom);
    valueAxis_->setTitleText(qt(L10n::texts().table.value()));
    chart_->addAxis(valueAxis_, Qt::AlignLeft);

    pages_->addWidget(chartView_);
    pages_->addWidget(makeEmptyView(pages_));
    column->addWidget(pages_, 1);
    period_->raise();

    connect(&model_, &PollerModel::historyVersionChanged, this, &ChartView::refresh);
    connect(&model_, &PollerModel::pollsChanged, this, &ChartView::refresh);
    connect(&model_, &PollerModel::selectedPollIDChanged, this, &ChartView::refresh);
}

void ChartView::setPeriodSeconds(int seconds) {
    if (seconds == periodSeconds_) {
        return;
    }
    periodSeconds_ = seconds;
    period_->setCurrentIndex(period_->findData(seconds));
    QSettings("Kestrin", "Kestrin").setValue(periodPreference, seconds);
    refresh();
}

void ChartView::refresh() {
    stale_ = true;
    if (isVisible()) {
        redraw();
    }
}

void ChartView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    // In the top trailing corner, beside the legend.
    const QSize size = period_->sizeHint();
    period_->setGeometry(width() - size.width() - 8, 6, size.width(), size.height());
}

void ChartView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (stale_) {
        redraw();
    }
}

void ChartView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        applyTheme();
        stale_ = true;
        if (isVisible()) {
            redraw();
        }
    }
}

void ChartView::applyTheme() {
    chart_->setTheme(LogPalette::isDark(palette()) ? QChart::ChartThemeDark
                                                   : QChart::ChartThemeLight);
    chart_->setBackgroundBrush(palette().color(QPalette::Base));
    chartView_->setBackgroundBrush(palette().color(QPalette::Base));
}

void ChartView::matchSeries(const std::vector<ChartSeries>& lines) {
    // The series stay empty: they give the legend its entries and the theme's colours, while
    // ChartLines draws the samples.
    const QList<QAbstractSeries*> shown = chart_->series();
    const bool sameLines = shown.size() == static_cast<qsizetype>(lines.size()) &&
                           std::equal(lines.begin(), lines.end(), shown.begin(),
                                      [](const ChartSeries& line, const QAbstractSeries* series) {
                                          return series->name() == qt(line.label);
                                      });
    if (!sameLines) {
        chart_->removeAllSeries();
        for (const ChartSeries& line : lines) {
            auto* series = new QLineSeries(chart_);
            series->setName(qt(line.label));
            chart_->addSeries(series);
            series->attachAxis(timeAxis_);
            series->attachAxis(valueAxis_);
        }
    }
}

QRectF ChartView::fitAxes(qint64 first, qint64 last, double low, double high) {
    if (first > last) {
        first = last = QDateTime::currentMSecsSinceEpoch();
    }
    const TimeScale times = TimeScale::around(
        first, last, 1000LL * QDateTime::fromMSecsSinceEpoch(first).offsetFromUtc());
    // Setting even the same format or count lays the chart out again.
    if (timeAxis_->format() != times.format) {
        timeAxis_->setFormat(times.format);
    }
    if (timeAxis_->tickCount() != times.ticks) {
        timeAxis_->setTickCount(times.ticks);
    }
    timeAxis_->setRange(QDateTime::fromMSecsSinceEpoch(times.startMs),
                        QDateTime::fromMSecsSinceEpoch(times.endMs));
    const ValueScale scale = ValueScale::around(low, high);
    valueAxis_->setRange(scale.low, scale.high);
    valueAxis_->setTickCount(scale.ticks);
    const QString labels = QStringLiteral("%.%1f").arg(scale.decimals);
    if (valueAxis_->labelFormat() != labels) {
        valueAxis_->setLabelFormat(labels);
    }
    return {static_cast<double>(times.startMs), scale.low,
            static_cast<double>(times.endMs - times.startMs), scale.high - scale.low};
}

void ChartView::redraw() {
    stale_ = false;
    const std::vector<ChartSeries> lines =
        model_.chartSeries(QDateTime::currentDateTimeUtc(), periodSeconds_);
    matchSeries(lines);
    if (lines.empty()) {
        lines_->setLines({}, {});
        pages_->setCurrentIndex(1);
        return;
    }
    std::vector<ChartLines::Line> drawn;
    drawn.reserve(lines.size());
    qint64 first = std::numeric_limits<qint64>::max();
    qint64 last = std::numeric_limits<qint64>::min();
    double low = std::numeric_limits<double>::infinity();
    double high = -std::numeric_limits<double>::infinity();
    const QList<QAbstractSeries*> series = chart_->series();
    const Poll* poll = model_.selectedPoll();
    const double maxGapMs =
        static_cast<double>(gapIntervals * (poll != nullptr ? poll->intervalMs : 0));
    for (std::size_t index = 0; index < lines.size(); ++index) {
        ChartLines::Run points;
        points.reserve(static_cast<qsizetype>(lines[index].points.size()));
        for (const Sample& sample : lines[index].points) {
            // The chart draws doubles: a 64-bit counter is plotted to its nearest one.
            const double value = sample.value.toDouble();
            // A decoded NaN or infinity has no place on the value axis.
            if (!std::isfinite(value)) {
                continue;
            }
            const qint64 time = sample.time.toMSecsSinceEpoch();
            points.append(QPointF(static_cast<double>(time), value));
            first = std::min(first, time);
            last = std::max(last, time);
            low = std::min(low, value);
            high = std::max(high, value);
        }
        drawn.push_back({static_cast<QLineSeries*>(series[static_cast<qsizetype>(index)])->pen(),
                         ChartLines::split(points, maxGapMs)});
    }
    const QRectF domain = fitAxes(first, last, low, high);
    lines_->setLines(std::move(drawn), domain);
    pages_->setCurrentIndex(0);
}

} // namespace kestrin
