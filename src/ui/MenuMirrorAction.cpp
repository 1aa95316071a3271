#include "MenuMirrorAction.h"

#include <QAction>
#include <QMenu>

using namespace Qt::StringLiterals;

namespace
{
void follow(QAction& mirror, const QAction& source)
{
    mirror.setText(u"&"_s + source.text());
    mirror.setIcon(source.icon());
    mirror.setEnabled(source.isEnabled());
    mirror.setVisible(source.isVisible());
}
} // namespace

QAction* addMirrorAction(QMenu& menu, QAction& source, const QString& objectName)
{
    QAction* mirror = menu.addAction(QString());
    mirror->setObjectName(objectName);
    follow(*mirror, source);
    QObject::connect(&source, &QAction::changed, mirror, [mirror, &source] { follow(*mirror, source); });
    QObject::connect(mirror, &QAction::triggered, &source, &QAction::trigger);
    return mirror;
}
