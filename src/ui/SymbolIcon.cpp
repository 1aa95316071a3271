#include "SymbolIcon.h"

#include "DrawnSymbolIconEngine.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace
{
// Only names whose freedesktop counterpart means the same thing; the rest are always drawn.
const QHash<QString, QStringList>& themeNamesBySymbol()
{
    static const QHash<QString, QStringList> names = {
        { u"plus"_s, { u"list-add"_s } },
        { u"plus.circle"_s, { u"list-add"_s } },
        { u"trash"_s, { u"edit-delete"_s, u"user-trash"_s } },
        { u"terminal"_s, { u"utilities-terminal"_s, u"terminal"_s } },
        { u"square.and.arrow.down"_s, { u"document-save"_s } },
        { u"arrow.clockwise"_s, { u"view-refresh"_s } },
        { u"exclamationmark.triangle"_s, { u"dialog-warning"_s } },
        { u"lock.fill"_s, { u"changes-prevent"_s } },
        { u"key.horizontal"_s, { u"dialog-password"_s } },
        { u"checkmark.circle"_s, { u"emblem-ok"_s, u"dialog-ok"_s } },
        { u"xmark.circle"_s, { u"edit-clear"_s } },
        { u"magnifyingglass"_s, { u"edit-find"_s, u"system-search"_s } },
        { u"doc.text"_s, { u"text-x-generic"_s } },
        { u"gearshape"_s, { u"preferences-system"_s } },
    };
    return names;
}
} // namespace

QStringList symbolThemeNames(QStringView systemName)
{
    return themeNamesBySymbol().value(systemName.toString());
}

QIcon symbolIcon(QStringView systemName)
{
    for (const QString& themeName : symbolThemeNames(systemName)) {
        if (QIcon::hasThemeIcon(themeName))
            return QIcon::fromTheme(themeName);
    }
    return QIcon(new DrawnSymbolIconEngine(systemName.toString()));
}

QIcon symbolIcon(QStringView systemName, const QColor& tint)
{
    return QIcon(new DrawnSymbolIconEngine(systemName.toString(), tint));
}
