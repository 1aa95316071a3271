#pragma once

#include <QFrame>
#include <QString>

/// A one-line label that shortens its text with an ellipsis instead of widening its window; the whole
/// text is its tool tip. Used for texts of any length, such as status sentences naming file paths.
class ElidedLabel : public QFrame
{
    Q_OBJECT
    Q_PROPERTY(QString text READ text WRITE setText)

public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    QString text() const { return m_text; }
    void setText(const QString& text);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_text;
};
