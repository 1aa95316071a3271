#pragma once

#include <QString>

class QAction;
class QMenu;

/// Adds to menu an item that stands for source, a toolbar action: it triggers source, and is enabled
/// and shown exactly when source is. Its text is source's text with a mnemonic on the first letter, so
/// that the menu reaches the action from the keyboard while the toolbar keeps its own text. It takes
/// no keyboard shortcut of its own. objectName names the menu item.
QAction* addMirrorAction(QMenu& menu, QAction& source, const QString& objectName);
