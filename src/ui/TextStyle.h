#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>

class QWidget;

/// The few text styles the windows use, named after the roles of a desktop type ramp.
enum class TextStyle {
    headline, // bold body text: titles inside a pane
    subheadline, // slightly smaller body text
    footnote, // small text: the status line
    caption, // smaller text: hints and secondary lines
    caption2, // smallest text: badges
};

/// The font of style, derived from base (the widget's or the view item's font).
QFont textStyleFont(TextStyle style, const QFont& base);

/// Gives widget the font of style.
void applyTextStyle(QWidget* widget, TextStyle style);

/// Draws widget's text in the muted colour used for secondary information.
void makeSecondaryText(QWidget* widget);

/// The muted colour of secondary text in palette.
QColor secondaryTextColor(const QPalette& palette);

/// Draws widget's text in the orange of warnings.
void makeWarningText(QWidget* widget);

/// The orange of warnings ("Unsaved changes", parse-error counts).
QColor warningOrange();

/// The red of errors and destructive actions (parse errors, Remove).
QColor errorRed();

/// The background of a message bar: a light tint of accent over window, so the bar reads in light and
/// dark themes alike.
QColor messageBarColor(const QColor& accent, const QColor& window);
