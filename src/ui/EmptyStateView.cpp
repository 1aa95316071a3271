#include "EmptyStateView.h"

#include "SymbolIcon.h"

#include <QEvent>
#include <QLabel>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{
constexpr int iconSide = 48;

QLabel* makeLabel(const QString& text, const QString& objectName, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    label->setObjectName(objectName);
    label->setAlignment(Qt::AlignHCenter);
    label->setWordWrap(true);
    // Any width will do: the text wraps to it.
    label->setMinimumWidth(1);
    label->setTextFormat(Qt::PlainText);
    return label;
}
} // namespace

EmptyStateView::EmptyStateView(
    QStringView symbolName, const QString& title, const QString& description, QWidget* parent)
    : QWidget(parent)
    , m_symbolName(symbolName.toString())
    , m_icon(new QLabel(this))
    , m_title(makeLabel(title, u"emptyStateTitle"_s, this))
    , m_description(makeLabel(description, u"emptyStateDescription"_s, this))
{
    m_icon->setObjectName(u"emptyStateIcon"_s);
    m_icon->setAlignment(Qt::AlignHCenter);
    m_icon->setEnabled(false); // the disabled palette gives the muted, secondary look
    updateIcon();

    QFont titleFont = m_title->font();
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.35);
    titleFont.setBold(true);
    m_title->setFont(titleFont);
    m_description->setForegroundRole(QPalette::PlaceholderText);
    m_description->setMaximumWidth(360);

    // The texts are added without an alignment: an aligned item is given its one-line size hint, so a
    // text that must wrap would be cut after its first line. Narrower than the column, a widget is
    // centred by the layout anyway.
    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(8);
    layout->addStretch(1);
    layout->addWidget(m_icon, 0, Qt::AlignHCenter);
    layout->addSpacing(4);
    layout->addWidget(m_title);
    layout->addWidget(m_description);
    layout->addStretch(1);
}

QString EmptyStateView::title() const
{
    return m_title->text();
}

QString EmptyStateView::description() const
{
    return m_description->text();
}

void EmptyStateView::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    // A pixmap does not follow a palette change (dark mode) by itself.
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange)
        updateIcon();
}

void EmptyStateView::updateIcon()
{
    m_icon->setPixmap(symbolIcon(m_symbolName).pixmap(QSize(iconSide, iconSide), devicePixelRatioF(), QIcon::Disabled));
}
