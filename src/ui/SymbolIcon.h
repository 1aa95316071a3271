#pragma once

#include <QColor>
#include <QIcon>
#include <QStringList>
#include <QStringView>

/// The icon for a system symbol name as the views name their pictures ("plus", "plus.circle", "trash",
/// "terminal", "square.and.arrow.down", "arrow.clockwise", "rectangle.stack", "exclamationmark.triangle",
/// "cup.and.saucer.fill", "number", "lock.fill", "key.horizontal", "checkmark.circle", "xmark.circle",
/// "magnifyingglass", "doc.text", "gearshape").
///
/// Takes the matching icon of the desktop's icon theme when the theme has one, else the application's
/// own drawing, so the result is never null: a name without any picture gets a plain dot.
QIcon symbolIcon(QStringView systemName);

/// The application's own drawing of systemName in one fixed colour, for labels that carry a colour of
/// their own (an orange warning). Never null.
QIcon symbolIcon(QStringView systemName, const QColor& tint);

/// The freedesktop icon-theme names tried for systemName, best first; empty for names no theme covers.
QStringList symbolThemeNames(QStringView systemName);
