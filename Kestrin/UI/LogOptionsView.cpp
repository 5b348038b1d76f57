#include "LogOptionsView.h"

#include "FaintText.h"
#include "L10n.h"
#include "PollerModel.h"
#include "QtText.h"

#include <QCheckBox>
#include <QLabel>
#include <QVBoxLayout>

namespace kestrin {

namespace {

QCheckBox* addToggle(QVBoxLayout* layout, const char* name, const std::string& title,
                     QWidget* parent) {
    auto* toggle = new QCheckBox(qt(title), parent);
    toggle->setObjectName(name);
    layout->addWidget(toggle);
    return toggle;
}

void addExplanation(QVBoxLayout* layout, const std::string& explanation, QWidget* parent) {
    QLabel* label = FaintText::note(qt(explanation), parent);
    // Lines up with the toggle's text rather than its box.
    label->setContentsMargins(22, 0, 0, 4);
    layout->addWidget(label);
}

} // namespace

LogOptionsView::LogOptionsView(PollerModel& model, QWidget* parent)
    : Popover(parent)
    , model_(model) {
    setObjectName("logOptions");
    setFixedWidth(popoverWidth);
    QVBoxLayout* layout = contentLayout();

    auto* title = new QLabel(qt(L10n::texts().footer.options()), this);
    QFont headline = title->font();
    headline.setWeight(QFont::DemiBold);
    title->setFont(headline);
    layout->addWidget(title);

    autoscroll_ = addToggle(layout, "autoscrollToggle", L10n::texts().footer.autoscroll(), this);
    timestamps_ = addToggle(layout, "timestampsToggle", L10n::texts().footer.timestamps(), this);
    rawFrames_ = addToggle(layout, "rawFramesToggle", L10n::texts().footer.rawFrames(), this);
    addExplanation(layout, L10n::texts().footer.rawFramesHelp(), this);
    onlyProblems_ =
        addToggle(layout, "onlyProblemsToggle", L10n::texts().footer.onlyProblems(), this);
    addExplanation(layout, L10n::texts().footer.onlyProblemsHelp(), this);

    connect(autoscroll_, &QCheckBox::toggled, &model_, &PollerModel::setAutoscroll);
    connect(timestamps_, &QCheckBox::toggled, &model_, &PollerModel::setShowTimestamps);
    connect(rawFrames_, &QCheckBox::toggled, &model_, &PollerModel::setShowRawFrames);
    connect(onlyProblems_, &QCheckBox::toggled, &model_, &PollerModel::setLogOnlyProblems);
    connect(&model_, &PollerModel::logOptionsChanged, this, &LogOptionsView::refresh);
    refresh();
}

void LogOptionsView::refresh() {
    const auto set = [](QCheckBox* toggle, bool on) {
        const QSignalBlocker quiet(toggle);
        toggle->setChecked(on);
    };
    set(autoscroll_, model_.autoscroll());
    set(timestamps_, model_.showTimestamps());
    set(rawFrames_, model_.showRawFrames());
    set(onlyProblems_, model_.logOnlyProblems());
}

} // namespace kestrin
