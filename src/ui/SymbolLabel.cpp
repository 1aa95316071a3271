#include "SymbolLabel.h"

#include "SymbolIcon.h"

#include <QEvent>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QLabel>

SymbolLabel::SymbolLabel(QStringView symbolName, const QString& text, QWidget* parent)
    : QWidget(parent)
    , m_symbolName(symbolName.toString())
    , m_symbol(new QLabel(this))
    , m_text(new QLabel(text, this))
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(3);
    layout->addWidget(m_symbol);
    layout->addWidget(m_text);
    m_text->setObjectName(QStringLiteral("symbolLabelText"));
    m_symbol->setObjectName(QStringLiteral("symbolLabelSymbol"));
    updateSymbol();
}

QString SymbolLabel::text() const
{
    return m_text->text();
}

void SymbolLabel::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    // The text follows font and palette by inheritance; the symbol is a pixmap and has to be redrawn.
    if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange)
        updateSymbol();
}

void SymbolLabel::updateSymbol()
{
    const int side = QFontMetrics(font()).height();
    const QColor colour = palette().color(QPalette::WindowText);
    m_symbol->setPixmap(symbolIcon(m_symbolName, colour).pixmap(QSize(side, side), devicePixelRatio()));
    m_symbol->setFixedSize(side, side);
}
