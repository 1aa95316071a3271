#include "ExtraOptionsList.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

QLabel* secondaryLabel(const QString& text, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    label->setForegroundRole(QPalette::PlaceholderText);
    return label;
}

} // namespace

ExtraOptionsList::ExtraOptionsList(QWidget* parent)
    : QWidget(parent)
    , m_layout(new QVBoxLayout(this))
{
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(8);
    rebuild();
}

void ExtraOptionsList::setOptions(const QList<SSHOption>& options)
{
    if (options == m_options)
        return;
    m_options = options;
    rebuild();
}

void ExtraOptionsList::rebuild()
{
    while (QLayoutItem* item = m_layout->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    if (m_options.isEmpty()) {
        QLabel* empty = secondaryLabel(u"Nog geen extra opties."_s, this);
        empty->setObjectName(u"noExtraOptionsLabel"_s);
        m_layout->addWidget(empty);
        return;
    }
    for (const SSHOption& option : m_options)
        m_layout->addWidget(makeRow(option));
}

QWidget* ExtraOptionsList::makeRow(const SSHOption& option)
{
    auto* row = new QWidget(this);
    row->setObjectName(u"extraOptionRow"_s);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);

    auto* key = new QLabel(option.key, row);
    key->setObjectName(u"extraOptionKey"_s);
    QFont keyFont = key->font();
    keyFont.setWeight(QFont::DemiBold);
    key->setFont(keyFont);

    auto* value = new QLabel(option.value, row);
    value->setObjectName(u"extraOptionValue"_s);
    QFont valueFont = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    valueFont.setPointSizeF(font().pointSizeF());
    value->setFont(valueFont);
    value->setTextInteractionFlags(Qt::TextSelectableByMouse);
    value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    value->setWordWrap(true);

    // The value takes the room left of the key, so a long value wraps only when it must.
    layout->addWidget(key, 0, Qt::AlignTop);
    layout->addWidget(value, 1, Qt::AlignTop);
    return row;
}
