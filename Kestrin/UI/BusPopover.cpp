#include "BusPopover.h"

#include "FaintText.h"
#include "L10n.h"
#include "PollBudgets.h"
#include "PollerModel.h"
#include "QtText.h"

#include <chrono>
#include <cmath>

#include <QLabel>
#include <QStringList>
#include <QVBoxLayout>

namespace kestrin {

namespace {

constexpr std::chrono::milliseconds refreshInterval(500);

QString milliseconds(double seconds) {
    return QStringLiteral("%1 ms").arg(PollBudgets::milliseconds(seconds));
}

// "24 / 31 ms": the median and the 99th percentile.
QString spread(const BusMeter::Spread& spread) {
    return QStringLiteral("%1 / %2")
        .arg(PollBudgets::milliseconds(spread.median))
        .arg(milliseconds(spread.p99));
}

// A table of rows of plain texts under a row of headings; numbers line up on the right.
QString table(const QStringList& headings, const std::vector<QStringList>& rows) {
    QString html = QStringLiteral("<table cellspacing='0' cellpadding='2'><tr>");
    for (qsizetype column = 0; column < headings.size(); ++column) {
        html += QStringLiteral("<th align='%1'>%2&nbsp;&nbsp;</th>")
                    .arg(column == 0 ? QStringLiteral("left") : QStringLiteral("right"),
                         headings[column].toHtmlEscaped());
    }
    html += QStringLiteral("</tr>");
    for (const QStringList& row : rows) {
        html += QStringLiteral("<tr>");
        for (qsizetype column = 0; column < row.size(); ++column) {
            html += QStringLiteral("<td align='%1'>%2&nbsp;&nbsp;</td>")
                        .arg(column == 0 ? QStringLiteral("left") : QStringLiteral("right"),
                             row[column].toHtmlEscaped());
        }
        html += QStringLiteral("</tr>");
    }
    return html + QStringLiteral("</table>");
}

QString unitTable(const std::vector<BusMeter::UnitFigures>& units) {
    const auto& texts = L10n::texts();
    std::vector<QStringList> rows;
    rows.reserve(units.size());
    for (const BusMeter::UnitFigures& unit : units) {
        rows.push_back({QString::number(unit.unit), QString::number(unit.answers),
                        spread(unit.roundTrip), spread(unit.turnaround)});
    }
    return table({qt(texts.table.unitID()), qt(texts.bus.answers()), qt(texts.bus.roundTrip()),
                  qt(texts.bus.turnaround())},
                 rows);
}

QString pollTable(const PollerModel& model, const BusMeter& meter) {
    const auto& texts = L10n::texts();
    std::vector<QStringList> rows;
    for (const Poll& poll : model.polls()) {
        if (!poll.enabled) {
            continue;
        }
        const std::optional<double> got = meter.interval(poll.id);
        rows.push_back({qt(poll.name),
                        qt(L10n::Polls::intervalLabel(static_cast<int>(poll.intervalMs))),
                        got ? milliseconds(*got) : QStringLiteral("–")});
    }
    return table({qt(texts.bus.poll()), qt(texts.bus.intervalSet()), qt(texts.bus.intervalGot())},
                 rows);
}

QLabel* richText(QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setTextFormat(Qt::RichText);
    return label;
}

} // namespace

BusPopover::BusPopover(PollerModel& model, QWidget* parent)
    : Popover(parent)
    , model_(model)
    , units_(richText(this))
    , note_(FaintText::note(qt(L10n::texts().bus.spreadNote()), this))
    , polls_(richText(this))
    , busy_(new QLabel(this)) {
    setObjectName("busPopover");
    setFixedWidth(popoverWidth);
    units_->setObjectName("busUnits");
    polls_->setObjectName("busPolls");
    busy_->setObjectName("busShare");
    busy_->setWordWrap(true);
    QVBoxLayout* layout = contentLayout();

    auto* title = new QLabel(qt(L10n::texts().bus.title()), this);
    QFont headline = title->font();
    headline.setWeight(QFont::DemiBold);
    title->setFont(headline);
    layout->addWidget(title);
    layout->addWidget(units_);
    layout->addWidget(note_);
    layout->addWidget(polls_);
    layout->addWidget(busy_);

    timer_.setInterval(refreshInterval);
    connect(&timer_, &QTimer::timeout, this, &BusPopover::refresh);
    refresh();
}

void BusPopover::refresh() {
    const BusMeter* meter = model_.busMeter();
    const std::vector<BusMeter::UnitFigures> units =
        meter != nullptr ? meter->units() : std::vector<BusMeter::UnitFigures>{};
    // Before any unit answers, the polls and the line already show what reading does: a bus
    // that never answers is what the figures are most wanted for.
    units_->setText(units.empty() ? qt(L10n::texts().bus.nothingYet()).toHtmlEscaped()
                                  : unitTable(units));
    note_->setVisible(!units.empty());
    if (meter != nullptr) {
        polls_->setText(pollTable(model_, *meter));
    }
    polls_->setVisible(meter != nullptr);
    const std::optional<double> share = model_.busyShare();
    busy_->setVisible(share.has_value());
    if (share) {
        busy_->setText(
            qt(L10n::texts().bus.lineBusy(static_cast<int>(std::lround(*share * 100.0)))));
    }
    adjustSize();
}

void BusPopover::showEvent(QShowEvent* event) {
    refresh();
    timer_.start();
    Popover::showEvent(event);
}

void BusPopover::hideEvent(QHideEvent* event) {
    timer_.stop();
    Popover::hideEvent(event);
}

} // namespace kestrin
