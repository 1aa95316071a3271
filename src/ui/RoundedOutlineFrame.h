#pragma once

#include <QWidget>

/// Holds one widget inside a rounded outline (radius 8, 1 pixel, the secondary text colour at 20 %
/// opacity) on the base colour, like a text area in a native form. The child should have no frame.
class RoundedOutlineFrame : public QWidget
{
    Q_OBJECT

public:
    explicit RoundedOutlineFrame(QWidget* content, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};
