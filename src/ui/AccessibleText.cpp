#include "AccessibleText.h"

#include <QWidget>

void setAccessibleText(QWidget& widget, const QString& name, const QString& description)
{
    widget.setAccessibleName(name);
    widget.setAccessibleDescription(description);
}
