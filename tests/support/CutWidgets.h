#pragma once

// Finds what a window shows only in part: a control narrower or lower than it needs, a wrapped text
// with fewer lines than it has, a widget that its parents cut off, a pane that scrolls sideways.

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QRect>
#include <QScrollArea>
#include <QScrollBar>
#include <QStringList>
#include <QWidget>

namespace cutWidgets
{
using namespace Qt::StringLiterals;

inline QString describe(const QWidget& widget)
{
    const QString name
        = widget.objectName().isEmpty() ? QString::fromLatin1(widget.metaObject()->className()) : widget.objectName();
    const auto* label = qobject_cast<const QLabel*>(&widget);
    const auto* button = qobject_cast<const QAbstractButton*>(&widget);
    const QString text = label ? label->text() : button ? button->text() : QString();
    return text.isEmpty() ? name : name + u" \""_s + text + u"\""_s;
}

// Whether the widget is smaller than its content needs.
inline bool tooSmall(const QWidget& widget)
{
    if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
        if (label->wordWrap())
            return widget.height() < label->heightForWidth(widget.width());
        return widget.width() < widget.minimumSizeHint().width();
    }
    if (qobject_cast<const QAbstractButton*>(&widget) || qobject_cast<const QComboBox*>(&widget)) {
        const QSize needed = widget.minimumSizeHint();
        return widget.width() < needed.width() || widget.height() < needed.height();
    }
    return false;
}

// Whether a parent cuts the widget off. Inside a scroll area only the sideways direction counts: what
// lies below the visible part is reached by scrolling down.
inline bool cutByParent(const QWidget& widget, const QWidget& window)
{
    QRect rect(QPoint(0, 0), widget.size());
    const QWidget* current = &widget;
    while (current != &window && current->parentWidget()) {
        rect.translate(current->pos());
        const QWidget* parent = current->parentWidget();
        const bool scrolls = parent->parentWidget() && qobject_cast<QScrollArea*>(parent->parentWidget());
        const QRect bounds(QPoint(0, 0), parent->size());
        if (scrolls ? rect.left() < 0 || rect.right() > bounds.right() : !bounds.contains(rect))
            return true;
        // From here up only the visible band of the scroll area matters, wherever the content lies in it.
        if (scrolls)
            rect = QRect(rect.left(), bounds.top(), rect.width(), bounds.height());
        current = parent;
    }
    return false;
}

inline bool isChecked(const QWidget& widget)
{
    // A line edit's own clear button is drawn to the field's size, not to its hint.
    if (qobject_cast<const QLineEdit*>(widget.parentWidget()))
        return false;
    return qobject_cast<const QLabel*>(&widget) || qobject_cast<const QAbstractButton*>(&widget)
        || qobject_cast<const QComboBox*>(&widget) || qobject_cast<const QLineEdit*>(&widget);
}
} // namespace cutWidgets

/// Every visible text or control of window that is not shown whole, with the reason.
inline QStringList cutWidgetsOf(const QWidget& window)
{
    using namespace Qt::StringLiterals;
    QStringList found;
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        if (!widget->isVisible())
            continue;
        if (const auto* scroll = qobject_cast<const QScrollArea*>(widget)) {
            if (scroll->horizontalScrollBar()->maximum() > 0)
                found.append(cutWidgets::describe(*widget) + u": scrolls sideways"_s);
        }
        if (!cutWidgets::isChecked(*widget))
            continue;
        if (cutWidgets::tooSmall(*widget))
            found.append(cutWidgets::describe(*widget) + u": smaller than its content"_s);
        else if (cutWidgets::cutByParent(*widget, window))
            found.append(cutWidgets::describe(*widget) + u": cut off by a parent"_s);
    }
    return found;
}
