#include "TextStyle.h"

#include <QPalette>
#include <QWidget>

namespace
{
qreal sizeFactor(TextStyle style)
{
    switch (style) {
    case TextStyle::headline:
        return 1.0;
    case TextStyle::subheadline:
        return 0.95;
    case TextStyle::footnote:
        return 0.9;
    case TextStyle::caption:
        return 0.85;
    case TextStyle::caption2:
        return 0.78;
    }
    return 1.0;
}
} // namespace

QFont textStyleFont(TextStyle style, const QFont& base)
{
    QFont font = base;
    if (style == TextStyle::headline)
        font.setBold(true);
    const qreal factor = sizeFactor(style);
    if (factor == 1.0)
        return font;
    // A font given in pixels (some platform themes do that) is scaled in pixels.
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * factor);
    else if (font.pixelSize() > 0)
        font.setPixelSize(qMax(1, qRound(font.pixelSize() * factor)));
    return font;
}

void applyTextStyle(QWidget* widget, TextStyle style)
{
    widget->setFont(textStyleFont(style, widget->font()));
}

void makeSecondaryText(QWidget* widget)
{
    // PlaceholderText is the palette's muted text colour and follows light and dark themes.
    widget->setForegroundRole(QPalette::PlaceholderText);
}

QColor secondaryTextColor(const QPalette& palette)
{
    return palette.color(QPalette::PlaceholderText);
}

void makeWarningText(QWidget* widget)
{
    QPalette palette = widget->palette();
    for (const QPalette::ColorRole role : { QPalette::WindowText, QPalette::Text })
        palette.setColor(role, warningOrange());
    widget->setPalette(palette);
}

QColor warningOrange()
{
    return QColor(255, 149, 0);
}

QColor errorRed()
{
    return QColor(0xd7, 0x26, 0x1e);
}

QColor messageBarColor(const QColor& accent, const QColor& window)
{
    constexpr double share = 0.2;
    return QColor::fromRgbF(static_cast<float>(window.redF() * (1 - share) + accent.redF() * share),
        static_cast<float>(window.greenF() * (1 - share) + accent.greenF() * share),
        static_cast<float>(window.blueF() * (1 - share) + accent.blueF() * share));
}
