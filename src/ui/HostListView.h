#pragma once

#include <QListView>
#include <QPersistentModelIndex>

class HostFilterModel;
class HostListModel;
class SSHConfigViewModel;

/// The sidebar's host list: the view model's hosts as its search text and group filter leave them, one
/// HostRowDelegate row each, with a single selection bound both ways to the view model's selectedHostID.
///
/// Rows can be dragged to a new place only while the view model allows reordering (no search, no group
/// filter); a drop hands the dragged position and the drop position to moveHosts(). A selected host
/// that the filter hides stays selected in the view model; it is shown selected again when it comes back.
class HostListView : public QListView
{
    Q_OBJECT

public:
    explicit HostListView(SSHConfigViewModel& viewModel, QWidget* parent = nullptr);
    ~HostListView() override;

    /// The MIME type of a dragged host row: the host's document position in decimal.
    static QString positionsMimeType();

    /// The document position a drop at point (viewport coordinates) moves hosts to: before the row under
    /// the point's upper half, after the row under its lower half, at the end below the last row.
    qsizetype dropPosition(const QPoint& point) const;

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void followRowChanges();
    void showViewModelSelection();
    void takeUserSelection();
    void startReorderDrag();
    bool acceptsReorderDrop(const QDropEvent& event) const;
    void clearDropIndicator();

    SSHConfigViewModel& m_viewModel;
    HostListModel* m_hosts;
    HostFilterModel* m_filtered;
    bool m_showingViewModelSelection = false;
    int m_rowsChanging = 0;
    QPersistentModelIndex m_pressedIndex;
    QPoint m_pressPosition;
    int m_dropIndicatorRow = -1;
};
