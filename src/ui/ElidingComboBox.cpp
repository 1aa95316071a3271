#include "ElidingComboBox.h"

#include <QStyleOptionComboBox>
#include <QStylePainter>

ElidingComboBox::ElidingComboBox(QWidget* parent)
    : QComboBox(parent)
{
    connect(this, &QComboBox::currentTextChanged, this, &ElidingComboBox::showWholeTextAsToolTip);
}

QRect ElidingComboBox::textRect() const
{
    QStyleOptionComboBox option;
    initStyleOption(&option);
    return style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
}

QString ElidingComboBox::shownText() const
{
    return fontMetrics().elidedText(currentText(), Qt::ElideRight, textRect().width());
}

void ElidingComboBox::paintEvent(QPaintEvent*)
{
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    option.currentText = shownText();
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

void ElidingComboBox::showWholeTextAsToolTip()
{
    setToolTip(currentText());
}
