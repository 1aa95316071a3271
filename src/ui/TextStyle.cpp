#include "TextStyle.h"

#include <QPalette>
#include <QWidget>

QFont textStyleFont(TextStyle style, const QFont& base)
{
    QFont font = base;
    const qreal body = font.pointSizeF() > 0 ? font.pointSizeF() : 10.0;
    switch (style) {
    case TextStyle::headline:
        font.setBold(true);
        break;
    case TextStyle::subheadline:
        font.setPointSizeF(body * 0.95);
        break;
    case TextStyle::footnote:
        font.setPointSizeF(body * 0.9);
        break;
    case TextStyle::caption:
        font.setPointSizeF(body * 0.85);
        break;
    case TextStyle::caption2:
        font.setPointSizeF(body * 0.78);
        break;
    }
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
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text})
        palette.setColor(role, warningOrange());
    widget->setPalette(palette);
}

QColor warningOrange()
{
    return QColor(255, 149, 0);
}

QColor messageBarColor(const QColor& accent, const QColor& window)
{
    constexpr double share = 0.2;
    return QColor::fromRgbF(static_cast<float>(window.redF() * (1 - share) + accent.redF() * share),
                            static_cast<float>(window.greenF() * (1 - share) + accent.greenF() * share),
                            static_cast<float>(window.blueF() * (1 - share) + accent.blueF() * share));
}
