#include "KnownHostLookupBar.h"

#include "AccessibleText.h"
#include "SSHConfigViewModel.h"
#include "TextStyle.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::StringLiterals;

KnownHostLookupBar::KnownHostLookupBar(SSHConfigViewModel& viewModel, QWidget* parent)
    : QWidget(parent)
    , m_viewModel(viewModel)
{
    setObjectName(u"knownHostLookupBar"_s);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    m_field = new QLineEdit(this);
    m_field->setObjectName(u"knownHostLookupField"_s);
    m_field->setPlaceholderText(u"Zoek host: naam of naam:poort, ook gehashte namen"_s);
    m_field->setClearButtonEnabled(true);
    auto* findButton = new QPushButton(u"Zoek host"_s, this);
    findButton->setObjectName(u"knownHostLookupButton"_s);
    m_result = new QLabel(this);
    m_result->setObjectName(u"knownHostLookupResult"_s);
    m_result->setTextFormat(Qt::PlainText);
    applyTextStyle(m_result, TextStyle::caption);
    makeSecondaryText(m_result);
    m_clear = new QPushButton(u"Toon alle entries"_s, this);
    setAccessibleText(*m_field, u"Zoek host"_s,
        u"Een hostnaam, eventueel met poort; Enter toont de entries die ssh ervoor gebruikt."_s);
    setAccessibleText(*findButton, u"Zoek host"_s, u"Toont alleen de entries die ssh voor deze host gebruikt."_s);
    setAccessibleText(*m_clear, u"Toon alle entries"_s, u"Beëindigt het zoeken op host."_s);
    m_clear->setObjectName(u"knownHostLookupClearButton"_s);
    layout->addWidget(m_field, 1);
    layout->addWidget(findButton);
    layout->addWidget(m_result);
    layout->addWidget(m_clear);

    connect(m_field, &QLineEdit::returnPressed, this, &KnownHostLookupBar::find);
    connect(findButton, &QPushButton::clicked, this, &KnownHostLookupBar::find);
    connect(m_clear, &QPushButton::clicked, &m_viewModel, &SSHConfigViewModel::clearKnownHostLookup);
    connect(&m_viewModel, &SSHConfigViewModel::knownHostLookupChanged, this, &KnownHostLookupBar::showLookup);
    showLookup();
}

void KnownHostLookupBar::find()
{
    m_viewModel.findKnownHostEntriesForHost(m_field->text());
}

void KnownHostLookupBar::showLookup()
{
    const std::optional<SSHConfigViewModel::KnownHostLookup>& lookup = m_viewModel.knownHostLookup();
    m_result->setVisible(lookup.has_value());
    m_clear->setVisible(lookup.has_value());
    if (!lookup)
        return;
    const qsizetype count = lookup->entryIDs.size();
    m_result->setText(QString::number(count) + (count == 1 ? u" entry voor "_s : u" entries voor "_s) + lookup->name);
    // A lookup started elsewhere (the host editor's link) shows its name here too.
    if (!m_field->hasFocus())
        m_field->setText(lookup->name);
}
