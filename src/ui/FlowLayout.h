#pragma once

#include <QLayout>
#include <QList>

/// Lays its widgets out in a row, left to right, and starts a new row below when the next one would
/// not fit: a row of buttons that wraps instead of being cut when its pane is narrow. Each row is as
/// high as its highest item; items keep their size hints (never less than their minimum sizes).
class FlowLayout : public QLayout
{
public:
    /// horizontalSpacing between items of a row, verticalSpacing between rows.
    FlowLayout(int horizontalSpacing, int verticalSpacing, QWidget* parent = nullptr);
    ~FlowLayout() override;

    void addItem(QLayoutItem* item) override;
    int count() const override;
    QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;

    Qt::Orientations expandingDirections() const override;
    bool hasHeightForWidth() const override;
    int heightForWidth(int width) const override;
    QSize minimumSize() const override;
    QSize sizeHint() const override;
    void setGeometry(const QRect& rect) override;

private:
    /// Places the items in rect (or only measures, when place is false); returns the height used.
    int arrange(const QRect& rect, bool place) const;

    QList<QLayoutItem*> m_items;
    int m_horizontalSpacing;
    int m_verticalSpacing;
};
