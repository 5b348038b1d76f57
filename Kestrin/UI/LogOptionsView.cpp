#include "LogOptionsView.h"

#include "L10n.h"
#include "LogPalette.h"
#include "PollerModel.h"

#include <QCheckBox>
#include <QLabel>
#include <QVBoxLayout>

namespace kestrin {

namespace {

QString text(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

QCheckBox* addToggle(QVBoxLayout* layout, const char* name, const std::string& title,
                     QWidget* parent) {
    auto* toggle = new QCheckBox(text(title), parent);
    toggle->setObjectName(name);
    layout->addWidget(toggle);
    return toggle;
}

void addExplanation(QVBoxLayout* layout, const std::string& explanation, QWidget* parent) {
    auto* label = new QLabel(text(explanation), parent);
    label->setWordWrap(true);
    QFont small = label->font();
    small.setPointSizeF(small.pointSizeF() * 0.85);
    label->setFont(small);
    QPalette muted = label->palette();
    muted.setColor(QPalette::WindowText, LogPalette::secondaryLabel(parent->palette()));
    label->setPalette(muted);
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

    auto* title = new QLabel(text(L10n::texts().footer.options()), this);
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
