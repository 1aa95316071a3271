#pragma once

#include <QString>

class QWidget;

/// Gives widget the name and the description that assistive technology reads out for it. The name
/// says what the control is (for a text field, what its placeholder only hints at); the description
/// says what using it does.
void setAccessibleText(QWidget& widget, const QString& name, const QString& description);
