#pragma once

#include <QString>
#include <QWidget>

class QLabel;

/// The panel a view shows when it has nothing to show: a large symbol, a title and a short description,
/// centred in the available space. The texts are fixed at construction.
///
/// Child object names: "emptyStateIcon", "emptyStateTitle", "emptyStateDescription".
class EmptyStateView : public QWidget
{
    Q_OBJECT

public:
    EmptyStateView(QStringView symbolName, const QString& title, const QString& description, QWidget* parent = nullptr);

    QString symbolName() const { return m_symbolName; }
    QString title() const;
    QString description() const;

protected:
    void changeEvent(QEvent* event) override;

private:
    void updateIcon();

    QString m_symbolName;
    QLabel* m_icon;
    QLabel* m_title;
    QLabel* m_description;
};
