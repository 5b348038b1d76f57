#include "CycleLabel.h"

#include "L10n.h"
#include "LogPalette.h"
#include "PollBudgets.h"
#include "PollerCommands.h"
#include "PollerModel.h"
#include "QtText.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <string>

#include <QStringList>

namespace kestrin {

namespace {

// As often as the Bus popover shows the meter's figures.
constexpr std::chrono::milliseconds measuredRefresh(500);

// The assumption the cycle rests on, the requests, then the line's load.
QString toolTipOf(const BusBudget::PollBudget& poll, const BusBudget::Budget& budget,
                  const BusBudget::Turnarounds& turnarounds) {
    const auto& texts = L10n::texts().polls;
    QStringList tip;
    if (!turnarounds.measured.empty()) {
        std::string units;
        for (const auto& [unit, seconds] : turnarounds.measured) {
            units += (units.empty() ? "" : ", ") + std::to_string(unit);
        }
        tip << qt(texts.measuredUnits(units));
    }
    tip << qt(texts.cycleHelp(PollBudgets::milliseconds(BusBudget::Turnarounds::typicalSeconds)));
    for (const BusBudget::Request& request : poll.requests) {
        tip << qt(PollBudgets::requestLine(request));
    }
    tip << qt(texts.lineLoad(PollBudgets::percent(budget.lineLoad)));
    return tip.join(QLatin1Char('\n'));
}

} // namespace

CycleLabel::CycleLabel(PollerModel& model, QWidget* parent)
    : QLabel(parent)
    , model_(model) {
    setObjectName(QStringLiteral("pollCycleLabel"));
    setTextFormat(Qt::PlainText);
    pending_.setSingleShot(true);
    pending_.setInterval(0);
    connect(&pending_, &QTimer::timeout, this, &CycleLabel::refresh);
    measured_.setSingleShot(true);
    measured_.setInterval(measuredRefresh);
    connect(&measured_, &QTimer::timeout, this, &CycleLabel::refresh);
    // The datapoints, the interval, the frame settings and the gap all change the requests or
    // their length; another port may hold answers back longer; the time-out decides whether the
    // answers arrive in time; a start begins a new measurement.
    for (const auto changed : {&PollerModel::pollsChanged, &PollerModel::selectedPollIDChanged,
                               &PollerModel::serialChanged, &PollerModel::maxGapChanged,
                               &PollerModel::selectedPathChanged, &PollerModel::timeoutMsChanged,
                               &PollerModel::stateChanged}) {
        connect(&model_, changed, &pending_, qOverload<>(&QTimer::start));
    }
    connect(&model_, &PollerModel::statisticsChanged, this, [this] {
        if (!measured_.isActive()) {
            measured_.start();
        }
    });
    refresh();
}

void CycleLabel::refresh() {
    pending_.stop();
    const std::vector<Poll>& polls = model_.polls();
    const auto selected = std::find_if(polls.begin(), polls.end(), [&](const Poll& poll) {
        return poll.id == model_.selectedPollID();
    });
    const BusBudget::Turnarounds turnarounds = PollBudgets::turnarounds(model_.busMeter());
    const auto budget = PollBudgets::of(polls, model_.serial(), model_.maxGap(), turnarounds,
                                        model_.handoverSeconds());
    // While listening the other master sets the pace: a cycle of Kestrin's own says nothing.
    if (selected == polls.end() || !budget || PollerCommands::of(model_).listening) {
        hide();
        return;
    }
    const BusBudget::PollBudget& poll =
        budget->polls.at(static_cast<std::size_t>(std::distance(polls.begin(), selected)));
    if (poll.requests.empty()) {
        hide();
        return;
    }
    const std::optional<std::string> warning =
        PollBudgets::warning(poll, *budget, model_.timeoutMs());
    setText(qt(warning.value_or(L10n::texts().polls.cycle(PollBudgets::milliseconds(poll.cycle)))));
    setToolTip(toolTipOf(poll, *budget, turnarounds));
    setWarning(warning.has_value());
    show();
}

void CycleLabel::setWarning(bool warning) {
    warning_ = warning;
    QPalette tinted = palette();
    tinted.setColor(QPalette::WindowText,
                    warning ? LogPalette::orange(tinted) : LogPalette::secondaryLabel(tinted));
    setPalette(tinted);
}

} // namespace kestrin
