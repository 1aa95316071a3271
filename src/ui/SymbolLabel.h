#pragma once

#include <QString>
#include <QWidget>

class QLabel;

/// A short text with a small symbol in front of it, e.g. a lock before "Hashed". The symbol is drawn in
/// the text's colour and scaled to its font; both follow palette and font changes.
class SymbolLabel : public QWidget
{
    Q_OBJECT

public:
    SymbolLabel(QStringView symbolName, const QString& text, QWidget* parent = nullptr);

    QString text() const;

protected:
    void changeEvent(QEvent* event) override;

private:
    void updateSymbol();

    QString m_symbolName;
    QLabel* m_symbol;
    QLabel* m_text;
};
