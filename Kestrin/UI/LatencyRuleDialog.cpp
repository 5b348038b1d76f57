#include "LatencyRuleDialog.h"

#include "AdapterFacts.h"
#include "L10n.h"
#include "QtText.h"

#include <QClipboard>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace kestrin {

namespace {

// A path or a command inside the sentence: in the terminal's type and never broken over lines,
// so it reads as what is typed.
QString code(std::string_view text) {
    return QStringLiteral("<code style=\"white-space: nowrap\">%1</code>")
        .arg(qt(text).toHtmlEscaped());
}

// The translated sentence escaped as a whole, then the path and the command put in.
QString stepsHtml() {
    // Private-use characters, which no translation holds.
    constexpr std::string_view file = "\uE000";
    constexpr std::string_view command = "\uE001";
    QString html = qt(L10n::texts().adapter.fixSteps(file, command)).toHtmlEscaped();
    html.replace(qt(file), code(AdapterFacts::latencyRulePath()));
    html.replace(qt(command), code(LatencyRuleDialog::reloadCommand));
    return html;
}

} // namespace

LatencyRuleDialog::LatencyRuleDialog(QWidget* parent)
    : QDialog(parent) {
    const auto& texts = L10n::texts().adapter;
    setObjectName(QStringLiteral("latencyRuleDialog"));
    setWindowTitle(qt(texts.fixTitle()));

    auto* steps = new QLabel(stepsHtml(), this);
    steps->setTextFormat(Qt::RichText);
    steps->setWordWrap(true);
    steps->setTextInteractionFlags(Qt::TextSelectableByMouse);

    // Wrapped on screen only: a selection still copies the one line udev reads.
    const QString rule = qt(AdapterFacts::latencyUdevRule());
    auto* ruleText = new QPlainTextEdit(rule, this);
    ruleText->setObjectName(QStringLiteral("latencyRule"));
    ruleText->setReadOnly(true);
    ruleText->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    ruleText->setMinimumWidth(ruleText->fontMetrics().horizontalAdvance(rule) / 2);
    ruleText->setFixedHeight(ruleText->fontMetrics().lineSpacing() * 3 + 12);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    QPushButton* copy = buttons->addButton(qt(texts.copyRule()), QDialogButtonBox::ActionRole);
    copy->setObjectName(QStringLiteral("copyLatencyRule"));
    connect(copy, &QPushButton::clicked, this,
            [rule] { QGuiApplication::clipboard()->setText(rule); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(steps);
    layout->addWidget(ruleText);
    layout->addWidget(buttons);
    setMinimumWidth(520);
}

} // namespace kestrin
