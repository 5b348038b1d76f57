#include "LogPalette.h"

#include <QFontDatabase>
#include <QGuiApplication>

namespace kestrin::LogPalette {

namespace {

// Where the role is kept in a character format.
constexpr int kindProperty = QTextFormat::UserProperty + 1;

QColor mixed(const QColor& a, const QColor& b, double amountOfA) {
    const double rest = 1.0 - amountOfA;
    return QColor::fromRgbF(static_cast<float>(a.redF() * amountOfA + b.redF() * rest),
                            static_cast<float>(a.greenF() * amountOfA + b.greenF() * rest),
                            static_cast<float>(a.blueF() * amountOfA + b.blueF() * rest));
}

// The light orange is also the Stop button's fill, which carries white text in either appearance.
constexpr QRgb lightOrange = 0xC45F00;

QColor either(const QPalette& palette, QRgb light, QRgb dark) {
    return QColor(isDark(palette) ? dark : light);
}

} // namespace

bool isDark(const QPalette& palette) {
    return palette.color(QPalette::Base).lightness() < palette.color(QPalette::Text).lightness();
}

QColor secondaryLabel(const QPalette& palette) {
    return mixed(palette.color(QPalette::Text), palette.color(QPalette::Base), 0.6);
}

QColor tertiaryLabel(const QPalette& palette) {
    return mixed(palette.color(QPalette::Text), palette.color(QPalette::Base), 0.4);
}

// Darker shades on light backgrounds keep the contrast of small monospaced text readable.
QColor blue(const QPalette& palette) {
    return either(palette, 0x0062CC, 0x409CFF);
}
QColor orange(const QPalette& palette) {
    return either(palette, lightOrange, 0xFF9F0A);
}
QColor fillOrange() {
    return QColor(lightOrange);
}
QColor accent() {
    return QColor(0, 129, 132);
}
QColor red(const QPalette& palette) {
    return either(palette, 0xD70015, 0xFF6961);
}
QColor teal(const QPalette& palette) {
    return either(palette, 0x00829A, 0x5DE6FF);
}
QColor green(const QPalette& palette) {
    return either(palette, 0x248A3D, 0x30D158);
}

QColor color(LogSegment::Kind kind, const QPalette& palette) {
    switch (kind) {
    case LogSegment::Kind::timestamp:
        return secondaryLabel(palette);
    case LogSegment::Kind::meta:
        return tertiaryLabel(palette);
    case LogSegment::Kind::request:
        return blue(palette);
    case LogSegment::Kind::warning:
        return orange(palette);
    case LogSegment::Kind::error:
        return red(palette);
    case LogSegment::Kind::system:
        return teal(palette);
    case LogSegment::Kind::text:
    case LogSegment::Kind::response:
        break;
    }
    return palette.color(QPalette::Text);
}

namespace {

// The log takes the desktop's interface size: a fixed 12 points is a third larger than the menus
// on a 9-point desktop, and a monospaced face already looks smaller than a proportional one.
QFont logFont(double scale, QFont::Weight weight) {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(QGuiApplication::font().pointSizeF() * scale);
    font.setWeight(weight);
    return font;
}

} // namespace

QFont bufferFont() {
    return logFont(1.0, QFont::Normal);
}

// One step below the log's text, as 12 points beside 13.
QFont systemFont() {
    return logFont(12.0 / 13.0, QFont::Medium);
}

QTextCharFormat format(LogSegment::Kind kind, const QPalette& palette) {
    QTextCharFormat result;
    result.setFont(kind.isEmphasised() ? systemFont() : bufferFont(),
                   QTextCharFormat::FontPropertiesAll);
    result.setForeground(color(kind, palette));
    result.setProperty(kindProperty, static_cast<int>(LogSegment::Kind::Case(kind)));
    return result;
}

LogSegment::Kind kind(const QTextCharFormat& format) {
    if (!format.hasProperty(kindProperty)) {
        return LogSegment::Kind::text;
    }
    const int raw = format.intProperty(kindProperty);
    for (const LogSegment::Kind::Case candidate : LogSegment::Kind::allCases) {
        if (static_cast<int>(candidate) == raw) {
            return candidate;
        }
    }
    return LogSegment::Kind::text;
}

} // namespace kestrin::LogPalette
