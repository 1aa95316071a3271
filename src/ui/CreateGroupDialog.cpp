#include "CreateGroupDialog.h"

#include "AccessibleText.h"
#include "SSHConfigViewModel.h"
#include "TextStyle.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

CreateGroupDialog::CreateGroupDialog(SSHConfigViewModel& viewModel, QWidget* parent)
    : QDialog(parent, Qt::Sheet)
    , m_viewModel(viewModel)
    , m_name(new QLineEdit(this))
    , m_cancel(new QPushButton(u"Cancel"_s, this))
    , m_add(new QPushButton(u"Add Group"_s, this))
{
    setObjectName(u"createGroupDialog"_s);
    setWindowTitle(u"Nieuwe groep"_s);
    setWindowModality(Qt::WindowModal);
    setFixedWidth(420);

    auto* heading = new QLabel(u"Nieuwe groep"_s, this);
    applyTextStyle(heading, TextStyle::headline);
    auto* explanation
        = new QLabel(u"Voeg een groepsnaam toe. De groep wordt gekoppeld aan de geselecteerde host."_s, this);
    explanation->setWordWrap(true);
    applyTextStyle(explanation, TextStyle::caption);
    makeSecondaryText(explanation);
    m_name->setObjectName(u"newGroupNameField"_s);
    setAccessibleText(*m_name, u"Groepsnaam"_s, u"Naam van de nieuwe groep voor de geselecteerde host."_s);
    m_name->setPlaceholderText(u"Bijv. PLOVRA SERVERS"_s);
    m_cancel->setObjectName(u"cancelButton"_s);
    setAccessibleText(*m_cancel, u"Cancel"_s, u"Sluit zonder een groep te maken."_s);
    m_cancel->setAutoDefault(false);
    m_add->setObjectName(u"addGroupButton"_s);
    setAccessibleText(*m_add, u"Add Group"_s, u"Maakt de groep en koppelt die aan de geselecteerde host."_s);
    m_add->setDefault(true);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(m_cancel);
    buttons->addWidget(m_add);
    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(12);
    layout->addWidget(heading);
    layout->addWidget(explanation);
    layout->addWidget(m_name);
    layout->addLayout(buttons);

    connect(m_cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_add, &QPushButton::clicked, this, &CreateGroupDialog::addGroup);
}

QString CreateGroupDialog::newGroupName() const
{
    return m_name->text();
}

void CreateGroupDialog::present()
{
    m_name->clear();
    m_name->setFocus();
    open();
}

void CreateGroupDialog::addGroup()
{
    if (!m_viewModel.createGroupForSelectedHost(m_name->text()))
        return;
    m_name->clear();
    accept();
}
