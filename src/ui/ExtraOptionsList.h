#pragma once

#include "SSHOption.h"

#include <QList>
#include <QWidget>

class QVBoxLayout;

/// The read-only list of a host's extra options: key in semibold, value in a monospaced font on the
/// right, or "Nog geen extra opties." when there are none.
class ExtraOptionsList : public QWidget
{
    Q_OBJECT

public:
    explicit ExtraOptionsList(QWidget* parent = nullptr);

    const QList<SSHOption>& options() const { return m_options; }
    /// Shows options in the given order; rebuilds the rows only when they really differ, so typing in
    /// another field does not churn the rows.
    void setOptions(const QList<SSHOption>& options);

private:
    void rebuild();
    QWidget* makeRow(const SSHOption& option);

    QList<SSHOption> m_options;
    QVBoxLayout* m_layout;
};
