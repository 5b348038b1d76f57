#include "HelpPage.h"

#include "L10n.h"

#include <QImageReader>
#include <QPalette>

namespace kestrin::HelpPage {

namespace {

QString escaped(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).toHtmlEscaped();
}

void appendInline(QString& out, std::string_view text) {
    std::size_t at = 0;
    while (at < text.size()) {
        if (text.substr(at, 2) == "**") {
            const std::size_t close = text.find("**", at + 2);
            if (close != std::string_view::npos && close > at + 2) {
                out += QStringLiteral("<b>");
                appendInline(out, text.substr(at + 2, close - at - 2));
                out += QStringLiteral("</b>");
                at = close + 2;
                continue;
            }
        } else if (text[at] == '`') {
            const std::size_t close = text.find('`', at + 1);
            if (close != std::string_view::npos && close > at + 1) {
                out += QStringLiteral("<code>") + escaped(text.substr(at + 1, close - at - 1)) +
                       QStringLiteral("</code>");
                at = close + 1;
                continue;
            }
        }
        // Up to the next possible mark, as plain text.
        std::size_t next = text.find_first_of("*`", at + 1);
        if (next == std::string_view::npos) {
            next = text.size();
        }
        out += escaped(text.substr(at, next - at));
        at = next;
    }
}

void appendScreenshot(QString& out, const HelpBlock::Screenshot& shot,
                      const ScreenshotPath& screenshot, int columnWidth, const QPalette& colours) {
    const std::optional<QString> path = screenshot ? screenshot(shot.name) : std::nullopt;
    if (path) {
        const QSize size = QImageReader(*path).size();
        const int width = size.isValid() ? std::min(size.width(), columnWidth) : columnWidth;
        out += QStringLiteral("<table cellspacing=\"0\" cellpadding=\"0\" border=\"1\" "
                              "style=\"border-collapse: collapse; border-color: %1\"><tr><td>"
                              "<img src=\"%2\" width=\"%3\" alt=\"%4\"></td></tr></table>")
                   .arg(colours.color(QPalette::Mid).name(), path->toHtmlEscaped())
                   .arg(width)
                   .arg(escaped(shot.caption));
    }
    out += QStringLiteral("<p style=\"font-size: small; margin-top: 2px\">%1</p>")
               .arg(escaped(shot.caption));
}

} // namespace

QString inlineHtml(std::string_view text) {
    QString out;
    appendInline(out, text);
    return out;
}

QString html(const HelpTopic& topic, const ScreenshotPath& screenshot, int columnWidth,
             const QPalette& colours) {
    const QString divider = colours.color(QPalette::Midlight).name();
    const QString tipBackground = colours.color(QPalette::AlternateBase).name();
    QString out = QStringLiteral("<html><body>");
    out += QStringLiteral("<h1 style=\"font-weight: 600; margin-bottom: 12px\">%1</h1>")
               .arg(escaped(topic.title));
    for (const HelpBlock& block : topic.blocks) {
        if (const auto* paragraph = std::get_if<HelpBlock::Paragraph>(&block.value)) {
            out += QStringLiteral("<p>%1</p>").arg(inlineHtml(paragraph->text));
        } else if (const auto* heading = std::get_if<HelpBlock::Heading>(&block.value)) {
            out += QStringLiteral("<h3 style=\"font-weight: 600; margin-top: 16px\">%1</h3>")
                       .arg(escaped(heading->text));
        } else if (const auto* bullets = std::get_if<HelpBlock::Bullets>(&block.value)) {
            out += QStringLiteral("<table cellspacing=\"0\" cellpadding=\"0\">");
            for (const std::string& item : bullets->items) {
                out += QStringLiteral("<tr><td valign=\"top\" style=\"padding: 0 8px 8px 4px\">"
                                      "&#8226;</td><td style=\"padding-bottom: 8px\">%1</td></tr>")
                           .arg(inlineHtml(item));
            }
            out += QStringLiteral("</table>");
        } else if (const auto* table = std::get_if<HelpBlock::Table>(&block.value)) {
            out += QStringLiteral(
                "<table width=\"100%\" cellspacing=\"0\" cellpadding=\"5\" "
                "style=\"border-collapse: collapse; margin-top: 6px; margin-bottom: 6px\">");
            for (const HelpRow& row : table->rows) {
                out += QStringLiteral(
                           "<tr><td valign=\"top\" style=\"font-weight: 500; border-bottom: 1px "
                           "solid %1; white-space: nowrap\">%2</td>"
                           "<td valign=\"top\" style=\"border-bottom: 1px solid %1\">%3</td>"
                           "</tr>")
                           .arg(divider, escaped(row.key), inlineHtml(row.value));
            }
            out += QStringLiteral("</table>");
        } else if (const auto* tip = std::get_if<HelpBlock::Tip>(&block.value)) {
            out += QStringLiteral(
                       "<table width=\"100%\" cellspacing=\"0\" cellpadding=\"8\" "
                       "style=\"margin-top: 8px; margin-bottom: 8px; background-color: %1\">"
                       "<tr><td width=\"20\" valign=\"top\">"
                       "<img src=\"%2\" width=\"16\" height=\"16\"></td><td><b>%3</b> %4</td>"
                       "</tr></table>")
                       .arg(tipBackground, QString::fromLatin1(tipSymbolSource),
                            escaped(L10n::texts().help.tipLabel()), inlineHtml(tip->text));
        } else if (const auto* shot = std::get_if<HelpBlock::Screenshot>(&block.value)) {
            appendScreenshot(out, *shot, screenshot, columnWidth, colours);
        }
    }
    out += QStringLiteral("</body></html>");
    return out;
}

} // namespace kestrin::HelpPage
