#pragma once

#include <QComboBox>

/// A combo box that shortens a current text too long for the box with "…" instead of cutting it off
/// mid-letter, and shows the whole text as its tool tip. The popup list shows every item whole.
class ElidingComboBox : public QComboBox
{
    Q_OBJECT

public:
    explicit ElidingComboBox(QWidget* parent = nullptr);

    /// The current text as the box draws it: whole when it fits, else shortened with "…".
    QString shownText() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QRect textRect() const;
    void showWholeTextAsToolTip();
};
