#include "CycleLabel.h"

#include "L10n.h"
#include "LogPalette.h"
#include "PollBudgets.h"
#include "PollerModel.h"
#include "QtText.h"

#include <algorithm>
#include <iterator>

#include <QStringList>

namespace kestrin {

CycleLabel::CycleLabel(PollerModel& model, QWidget* parent)
    : QLabel(parent)
    , model_(model) {
    setObjectName(QStringLiteral("pollCycleLabel"));
    setTextFormat(Qt::PlainText);
    // The datapoints, the interval, the frame settings and the gap all change the requests or
    // their length; the time-out decides whether the answers arrive in time.
    for (const auto changed : {&PollerModel::pollsChanged, &PollerModel::selectedPollIDChanged,
                               &PollerModel::serialChanged, &PollerModel::maxGapChanged,
                               &PollerModel::timeoutMsChanged}) {
        connect(&model_, changed, this, &CycleLabel::refresh);
    }
    refresh();
}

void CycleLabel::refresh() {
    const std::vector<Poll>& polls = model_.polls();
    const auto selected = std::find_if(polls.begin(), polls.end(), [&](const Poll& poll) {
        return poll.id == model_.selectedPollID();
    });
    const auto budget = PollBudgets::of(polls, model_.serial(), model_.maxGap());
    if (selected == polls.end() || !budget) {
        hide();
        return;
    }
    const BusBudget::PollBudget& poll =
        budget->polls.at(static_cast<std::size_t>(std::distance(polls.begin(), selected)));
    if (poll.requests.empty()) {
        hide();
        return;
    }
    const auto& texts = L10n::texts().polls;
    const std::optional<std::string> warning =
        PollBudgets::warning(poll, *budget, model_.timeoutMs());
    setText(qt(warning.value_or(texts.cycle(PollBudgets::milliseconds(poll.cycle)))));
    QStringList tip{
        qt(texts.cycleHelp(PollBudgets::milliseconds(BusBudget::Turnarounds::typicalSeconds)))};
    for (const BusBudget::Request& request : poll.requests) {
        tip << qt(PollBudgets::requestLine(request));
    }
    tip << qt(texts.lineLoad(static_cast<int>(std::lround(budget->lineLoad * 100))));
    setToolTip(tip.join(QLatin1Char('\n')));
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
