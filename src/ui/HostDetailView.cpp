#include "HostDetailView.h"

#include "AccessibleText.h"
#include "ExtraOptionsList.h"
#include "HostDetailRules.h"
#include "HostKnownHostsLinkView.h"
#include "SSHConfigViewModel.h"
#include "TextStyle.h"

#include <QCheckBox>
#include <QFrame>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

QVBoxLayout* groupLayout(QGroupBox* box, int spacing)
{
    auto* layout = new QVBoxLayout(box);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->setSpacing(spacing);
    return layout;
}

// The placeholder of the HostName field: a name under a domain reserved for examples.
const QString hostNamePlaceholder = u"server.example.com"_s;

} // namespace

HostDetailView::HostDetailView(SSHConfigViewModel& viewModel, QWidget* parent)
    : QWidget(parent)
    , m_viewModel(viewModel)
{
    setObjectName(u"hostDetailView"_s);
    auto* scrollArea = new QScrollArea(this);
    scrollArea->setObjectName(u"hostDetailScrollArea"_s);
    scrollArea->setWidgetResizable(true);
    scrollArea->setFrameShape(QFrame::NoFrame);
    // The fields inside take the focus; a Tab stop on the frameless area itself would show nothing.
    scrollArea->setFocusPolicy(Qt::NoFocus);
    scrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);

    m_form = new QWidget(scrollArea);
    auto* stack = new QVBoxLayout(m_form);
    stack->setSpacing(16);
    stack->addWidget(makeHostGroup());
    stack->addWidget(makeCommonOptionsGroup());
    stack->addWidget(makeExtraOptionsGroup());
    stack->addStretch(1);
    scrollArea->setWidget(m_form);

    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(scrollArea);

    connectViewModel();
    refreshFromHost();
    updateAddButton();
}

HostDetailView::~HostDetailView()
{
    // Closing the window moves the focus out of a field while QWidget's destructor runs, and the
    // field's editingFinished would reach this view after its members are gone.
    for (QObject* child : findChildren<QObject*>())
        disconnect(child, nullptr, this, nullptr);
}

QWidget* HostDetailView::makeHostGroup()
{
    auto* box = new QGroupBox(u"Host"_s, m_form);
    box->setObjectName(u"hostGroupBox"_s);
    QVBoxLayout* layout = groupLayout(box, 12);
    // Made in reading order, which is also the Tab order.
    layout->addWidget(makePatternsField(box));
    layout->addWidget(makeGroupsField(box));
    m_enabledToggle = new QCheckBox(u"Host actief"_s, box);
    m_enabledToggle->setObjectName(u"hostEnabledToggle"_s);
    setAccessibleText(
        *m_enabledToggle, u"Host actief"_s, u"Uit zet het hostblok regel voor regel als commentaar in de config."_s);
    connect(m_enabledToggle, &QCheckBox::toggled, this, [this](bool on) {
        editHost([on](SSHHost& host) {
            host.isEnabled = on;
            return true;
        });
    });
    // The known_hosts link shares the toggle's row, so the form stays short enough for the smallest window.
    auto* lastRow = new QHBoxLayout;
    lastRow->setSpacing(16);
    lastRow->addWidget(m_enabledToggle);
    lastRow->addWidget(new HostKnownHostsLinkView(m_viewModel, box), 1);
    layout->addLayout(lastRow);
    return box;
}

QLineEdit* HostDetailView::makePatternsField(QWidget* parent)
{
    m_patternsField = new QLineEdit(parent);
    m_patternsField->setObjectName(u"hostPatternsField"_s);
    setAccessibleText(
        *m_patternsField, u"Host patterns"_s, u"De patronen van de Host-regel, gescheiden door spaties."_s);
    m_patternsField->setPlaceholderText(u"Host patterns (spatie-gescheiden)"_s);
    connect(m_patternsField, &QLineEdit::textEdited, this, [this](const QString& text) {
        editHost([&text](SSHHost& host) {
            host.patterns = HostDetailRules::patternsFromText(text);
            return true;
        });
    });
    bindField(
        m_patternsField, [](const SSHHost& host) { return HostDetailRules::patternsText(host.patterns); },
        [](const QString& text, const SSHHost& host) {
            return HostDetailRules::patternsFromText(text) == host.patterns;
        });
    return m_patternsField;
}

QLineEdit* HostDetailView::makeGroupsField(QWidget* parent)
{
    m_groupsField = new QLineEdit(parent);
    m_groupsField->setObjectName(u"hostGroupsField"_s);
    setAccessibleText(*m_groupsField, u"Groepen"_s, u"De groepen van deze host, gescheiden door komma's."_s);
    m_groupsField->setPlaceholderText(u"Groepen (komma-gescheiden)"_s);
    connect(m_groupsField, &QLineEdit::textEdited, this, [this](const QString& text) {
        editHost([&text](SSHHost& host) {
            host.groups = HostDetailRules::groupsFromText(text);
            return true;
        });
    });
    bindField(
        m_groupsField, [](const SSHHost& host) { return HostDetailRules::groupsText(host.groups); },
        [](const QString& text, const SSHHost& host) { return HostDetailRules::groupsFromText(text) == host.groups; });
    return m_groupsField;
}

QWidget* HostDetailView::makeCommonOptionsGroup()
{
    auto* box = new QGroupBox(u"Veelgebruikte opties"_s, m_form);
    box->setObjectName(u"commonOptionsGroupBox"_s);
    QVBoxLayout* layout = groupLayout(box, 10);
    const QStringList placeholders { hostNamePlaceholder, u"deploy"_s, u"22"_s, u"~/.ssh/id_ed25519"_s };
    const QStringList& keys = HostDetailRules::commonOptionKeys();
    for (qsizetype i = 0; i < keys.size(); ++i)
        layout->addWidget(makeCommonOptionRow(keys.at(i), placeholders.at(i)));
    return box;
}

// The key stands as a small caption above the field's leading edge, so the rows read like a form
// without a separate label column.
QWidget* HostDetailView::makeCommonOptionRow(const QString& key, const QString& placeholder)
{
    auto* row = new QWidget(m_form);
    auto* layout = new QVBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);

    auto* caption = new QLabel(key, row);
    caption->setObjectName(u"optionCaption_"_s + key);
    applyTextStyle(caption, TextStyle::caption);
    caption->setForegroundRole(QPalette::PlaceholderText);
    caption->setContentsMargins(10, 0, 0, 0);

    auto* field = new QLineEdit(row);
    field->setObjectName(u"optionField_"_s + key);
    field->setPlaceholderText(placeholder);
    caption->setBuddy(field);
    connect(field, &QLineEdit::textEdited, this, [this, key](const QString& text) {
        editHost([&](SSHHost& host) { return HostDetailRules::setOptionValue(host, text, key); });
    });
    bindField(
        field, [key](const SSHHost& host) { return HostDetailRules::optionValue(host, key); },
        [key](const QString& text, const SSHHost& host) {
            return text.trimmed() == HostDetailRules::optionValue(host, key);
        });

    layout->addWidget(caption);
    layout->addWidget(field);
    return row;
}

QWidget* HostDetailView::makeExtraOptionsGroup()
{
    auto* box = new QGroupBox(u"Extra opties"_s, m_form);
    box->setObjectName(u"extraOptionsGroupBox"_s);
    QVBoxLayout* layout = groupLayout(box, 8);
    m_extraOptions = new ExtraOptionsList(box);
    m_extraOptions->setObjectName(u"extraOptionsList"_s);
    auto* divider = new QFrame(box);
    divider->setFrameShape(QFrame::HLine);
    divider->setFrameShadow(QFrame::Sunken);
    layout->addWidget(m_extraOptions);
    layout->addWidget(divider);
    layout->addWidget(makeEntryRow());
    return box;
}

QWidget* HostDetailView::makeEntryRow()
{
    auto* row = new QWidget(m_form);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    m_newOptionKeyField = new QLineEdit(row);
    m_newOptionKeyField->setObjectName(u"newOptionKeyField"_s);
    setAccessibleText(
        *m_newOptionKeyField, u"Option"_s, u"Naam van de optie die je toevoegt, wijzigt of verwijdert."_s);
    m_newOptionKeyField->setPlaceholderText(u"Option"_s);
    m_newOptionValueField = new QLineEdit(row);
    m_newOptionValueField->setObjectName(u"newOptionValueField"_s);
    setAccessibleText(*m_newOptionValueField, u"Value"_s, u"Waarde van de optie; leeg laten verwijdert de optie."_s);
    m_newOptionValueField->setPlaceholderText(u"Value"_s);
    m_addUpdateButton = new QPushButton(u"Add / Update"_s, row);
    m_addUpdateButton->setObjectName(u"addUpdateOptionButton"_s);
    setAccessibleText(
        *m_addUpdateButton, u"Add / Update"_s, u"Voegt de optie toe of wijzigt de eerste optie met die naam."_s);

    connect(m_newOptionKeyField, &QLineEdit::textChanged, this, &HostDetailView::updateAddButton);
    connect(m_addUpdateButton, &QPushButton::clicked, this, &HostDetailView::addOrUpdateOption);
    // Return in either entry field does what the button does, as a form's default action would.
    for (QLineEdit* field : { m_newOptionKeyField, m_newOptionValueField })
        connect(field, &QLineEdit::returnPressed, this, &HostDetailView::addOrUpdateOption);

    layout->addWidget(m_newOptionKeyField, 1);
    layout->addWidget(m_newOptionValueField, 2);
    layout->addWidget(m_addUpdateButton);
    return row;
}

void HostDetailView::connectViewModel()
{
    connect(&m_viewModel, &SSHConfigViewModel::selectedHostIDChanged, this, &HostDetailView::refreshFromHost);
    connect(&m_viewModel, &SSHConfigViewModel::hostsReset, this, &HostDetailView::refreshFromHost);
    connect(&m_viewModel, &SSHConfigViewModel::hostRemoved, this, &HostDetailView::refreshFromHost);
    connect(&m_viewModel, &SSHConfigViewModel::hostChanged, this, [this](qsizetype position) {
        if (m_viewModel.selectedHostIndex() == position)
            refreshFromHost();
    });
}

std::optional<SSHHost> HostDetailView::currentHost() const
{
    const std::optional<qsizetype> position = m_viewModel.selectedHostIndex();
    if (!position)
        return std::nullopt;
    return m_viewModel.host(*position);
}

// Every edit reads the host afresh, changes one field and writes the whole host back, so an edit
// never undoes what another window changed meanwhile. change() returns false when there is nothing
// to write.
void HostDetailView::editHost(const std::function<bool(SSHHost&)>& change)
{
    const std::optional<qsizetype> position = m_viewModel.selectedHostIndex();
    if (!position)
        return;
    SSHHost host = m_viewModel.host(*position);
    if (!change(host))
        return;
    m_viewModel.updateHost(host, *position);
    m_viewModel.setRawEditorDirty(true);
}

void HostDetailView::bindField(QLineEdit* field, std::function<QString(const SSHHost&)> shownText,
    std::function<bool(const QString&, const SSHHost&)> sameMeaning)
{
    m_bindings.append({ field, std::move(shownText), std::move(sameMeaning) });
    connect(field, &QLineEdit::editingFinished, this, [this, field] {
        for (const FieldBinding& binding : std::as_const(m_bindings)) {
            if (binding.field == field)
                finishEditing(binding);
        }
    });
}

void HostDetailView::refreshFromHost()
{
    const std::optional<SSHHost> host = currentHost();
    m_form->setEnabled(host.has_value());
    const SSHHost shown = host.value_or(SSHHost({}, {}, false, {}));
    for (const FieldBinding& binding : std::as_const(m_bindings)) {
        QLineEdit* field = binding.field;
        const QString text = binding.shownText(shown);
        // A field being typed in keeps its separators, blanks and caret while it means the same.
        if (field->text() == text || (field->hasFocus() && binding.sameMeaning(field->text(), shown)))
            continue;
        const QSignalBlocker blocker(field);
        field->setText(text);
    }
    if (m_enabledToggle->isChecked() != shown.isEnabled) {
        const QSignalBlocker blocker(m_enabledToggle);
        m_enabledToggle->setChecked(shown.isEnabled);
    }
    m_extraOptions->setOptions(HostDetailRules::extraOptions(shown));
}

// Once the user leaves a field its text takes the host's own form ("web,  db" becomes "web, db",
// an emptied patterns field shows "*").
void HostDetailView::finishEditing(const FieldBinding& binding)
{
    const std::optional<SSHHost> host = currentHost();
    if (!host)
        return;
    const QString text = binding.shownText(*host);
    if (binding.field->text() == text)
        return;
    const QSignalBlocker blocker(binding.field);
    binding.field->setText(text);
}

void HostDetailView::updateAddButton()
{
    m_addUpdateButton->setEnabled(!m_newOptionKeyField->text().trimmed().isEmpty());
}

void HostDetailView::addOrUpdateOption()
{
    const QString key = m_newOptionKeyField->text().trimmed();
    if (key.isEmpty())
        return;
    const QString value = m_newOptionValueField->text();
    editHost([&](SSHHost& host) { return HostDetailRules::setOptionValue(host, value, key); });
    m_newOptionKeyField->clear();
    m_newOptionValueField->clear();
}
