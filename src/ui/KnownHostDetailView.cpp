#include "KnownHostDetailView.h"

#include "AccessibleText.h"
#include "EmptyStateView.h"
#include "FlowLayout.h"
#include "KnownHostConfigHostsView.h"
#include "KnownHostFingerprintView.h"
#include "KnownHostNamesView.h"
#include "SSHConfigViewModel.h"
#include "SymbolIcon.h"
#include "SymbolLabel.h"
#include "TextStyle.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QStackedLayout>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

QLabel* selectableLabel(QWidget* parent, const QString& objectName)
{
    auto* label = new QLabel(parent);
    label->setObjectName(objectName);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    label->setWordWrap(true);
    // A long hashed name must not widen the pane beyond the split view's share.
    label->setMinimumWidth(1);
    return label;
}

QPushButton* actionButton(QWidget* parent, const QString& objectName, const QString& text)
{
    auto* button = new QPushButton(text, parent);
    button->setObjectName(objectName);
    return button;
}

// The picker's rows: none first, then every marker in declaration order.
std::optional<KnownHostMarker> markerAtRow(int row)
{
    if (row <= 0 || row > static_cast<int>(allKnownHostMarkers.size()))
        return std::nullopt;
    return allKnownHostMarkers.at(static_cast<size_t>(row - 1));
}

int rowOfMarker(std::optional<KnownHostMarker> marker)
{
    for (size_t i = 0; marker && i < allKnownHostMarkers.size(); ++i) {
        if (allKnownHostMarkers.at(i) == *marker)
            return static_cast<int>(i) + 1;
    }
    return 0;
}

} // namespace

KnownHostDetailView::KnownHostDetailView(SSHConfigViewModel& viewModel, QWidget* parent)
    : QWidget(parent)
    , m_viewModel(viewModel)
{
    setObjectName(u"knownHostDetailView"_s);
    m_pages = new QStackedLayout(this);
    m_emptyState = new EmptyStateView(u"key.horizontal", u"Geen known_hosts entry geselecteerd"_s,
        u"Selecteer links een known_hosts entry om acties uit te voeren."_s, this);
    m_emptyState->setObjectName(u"knownHostEmptyState"_s);
    m_pages->addWidget(m_emptyState);
    // An entry may list hundreds of hosts; the pane scrolls rather than growing the window.
    m_detailsScroll = new QScrollArea(this);
    m_detailsScroll->setObjectName(u"knownHostDetailsScrollArea"_s);
    m_detailsScroll->setFrameShape(QFrame::NoFrame);
    // The buttons inside take the focus; a Tab stop on the frameless area itself would show nothing.
    m_detailsScroll->setFocusPolicy(Qt::NoFocus);
    m_detailsScroll->setWidgetResizable(true);
    m_detailsScroll->setWidget(buildDetails());
    m_pages->addWidget(m_detailsScroll);
    connectToViewModel();
    refresh();
}

QWidget* KnownHostDetailView::buildDetails()
{
    m_details = new QWidget;
    m_details->setObjectName(u"knownHostDetails"_s);
    auto* layout = new QVBoxLayout(m_details);
    layout->setSpacing(10);
    auto* title = new QLabel(u"Host(s)"_s, m_details);
    applyTextStyle(title, TextStyle::headline);
    layout->addWidget(title);
    m_hosts = selectableLabel(m_details, u"knownHostHostsLabel"_s);
    layout->addWidget(m_hosts);
    layout->addWidget(buildFactsRow());
    layout->addWidget(new KnownHostFingerprintView(m_viewModel, m_details));
    layout->addWidget(buildButtonRow());
    layout->addWidget(new KnownHostNamesView(m_viewModel, m_details));
    layout->addWidget(new KnownHostConfigHostsView(m_viewModel, m_details));
    layout->addWidget(buildCommentSection());
    layout->addStretch(1);
    return m_details;
}

QWidget* KnownHostDetailView::buildFactsRow()
{
    // Both rows wrap rather than be cut when the pane is at its narrowest or the font is large.
    auto* row = new QWidget(m_details);
    auto* layout = new FlowLayout(14, 6, row);
    auto* facts = new QWidget(row);
    applyTextStyle(facts, TextStyle::caption);
    // Set as palette colour so the key type and both symbol labels inside inherit it.
    QPalette factsPalette = facts->palette();
    factsPalette.setColor(QPalette::WindowText, secondaryTextColor(factsPalette));
    facts->setPalette(factsPalette);
    auto* factsLayout = new FlowLayout(6, 4, facts);
    m_keyType = new QLabel(facts);
    m_keyType->setObjectName(u"knownHostKeyTypeLabel"_s);
    m_keyType->setTextFormat(Qt::PlainText);
    m_hashed = new SymbolLabel(u"lock.fill", u"Hashed"_s, facts);
    m_hashed->setObjectName(u"knownHostHashedLabel"_s);
    m_commentedOut = new SymbolLabel(u"number", u"Commented out"_s, facts);
    m_commentedOut->setObjectName(u"knownHostCommentedOutLabel"_s);
    factsLayout->addWidget(m_keyType);
    factsLayout->addWidget(m_hashed);
    factsLayout->addWidget(m_commentedOut);
    layout->addWidget(facts);

    auto* markerGroup = new QWidget(row);
    auto* markerLayout = new QHBoxLayout(markerGroup);
    markerLayout->setContentsMargins(0, 0, 0, 0);
    auto* markerTitle = new QLabel(u"Marker"_s, markerGroup);
    m_markerPicker = new QComboBox(markerGroup);
    m_markerPicker->setObjectName(u"knownHostMarkerPicker"_s);
    setAccessibleText(*m_markerPicker, u"Marker"_s, u"Zet of verwijdert de marker van de geselecteerde entry."_s);
    m_markerPicker->addItem(u"None"_s);
    for (KnownHostMarker marker : allKnownHostMarkers)
        m_markerPicker->addItem(knownHostMarkerTitle(marker));
    markerTitle->setBuddy(m_markerPicker);
    markerLayout->addWidget(markerTitle);
    markerLayout->addWidget(m_markerPicker);
    layout->addWidget(markerGroup);
    // activated fires for the user's choice only, so showing the model's marker never writes it back.
    connect(m_markerPicker, &QComboBox::activated, this, &KnownHostDetailView::markerChosen);
    return row;
}

QWidget* KnownHostDetailView::buildButtonRow()
{
    auto* row = new QWidget(m_details);
    auto* layout = new FlowLayout(10, 6, row);
    QPushButton* connectButton = actionButton(row, u"knownHostConnectButton"_s, u"Connect"_s);
    connectButton->setIcon(symbolIcon(u"terminal"));
    m_commentButton = actionButton(row, u"knownHostCommentButton"_s, u"Comment Out"_s);
    QPushButton* openHost = actionButton(row, u"knownHostFindCreateHostButton"_s, u"Find/Create SSH Host"_s);
    QPushButton* remove = actionButton(row, u"knownHostRemoveButton"_s, u"Remove"_s);
    // A destructive action reads in red, as the desktop shows such buttons elsewhere.
    QPalette removePalette = remove->palette();
    removePalette.setColor(QPalette::ButtonText, errorRed());
    remove->setPalette(removePalette);
    setAccessibleText(*connectButton, u"Connect"_s, u"Start ssh naar de host van deze entry in je terminal."_s);
    // The name follows the button's text (Comment Out or Uncomment) by itself.
    m_commentButton->setAccessibleDescription(
        u"Zet de entry als commentaar in known_hosts, of haalt het commentaar weg."_s);
    setAccessibleText(
        *openHost, u"Find/Create SSH Host"_s, u"Selecteert de host met deze naam in de SSH config, of maakt er een."_s);
    setAccessibleText(
        *remove, u"Remove"_s, u"Verwijdert de entry zonder te vragen; het bestand verandert pas bij opslaan."_s);
    for (QPushButton* button : { connectButton, m_commentButton, openHost, remove })
        layout->addWidget(button);
    SSHConfigViewModel* viewModel = &m_viewModel;
    connect(connectButton, &QPushButton::clicked, viewModel, &SSHConfigViewModel::connectSelectedKnownHostEntry);
    connect(
        m_commentButton, &QPushButton::clicked, viewModel, &SSHConfigViewModel::toggleCommentOnSelectedKnownHostEntry);
    connect(openHost, &QPushButton::clicked, viewModel, &SSHConfigViewModel::openSSHHostForSelectedKnownHostEntry);
    connect(remove, &QPushButton::clicked, viewModel, &SSHConfigViewModel::deleteSelectedKnownHostEntry);
    return row;
}

QWidget* KnownHostDetailView::buildCommentSection()
{
    m_commentSection = new QWidget(m_details);
    m_commentSection->setObjectName(u"knownHostCommentSection"_s);
    auto* layout = new QVBoxLayout(m_commentSection);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    auto* title = new QLabel(u"Comment"_s, m_commentSection);
    applyTextStyle(title, TextStyle::caption);
    makeSecondaryText(title);
    m_comment = selectableLabel(m_commentSection, u"knownHostCommentText"_s);
    layout->addWidget(title);
    layout->addWidget(m_comment);
    return m_commentSection;
}

void KnownHostDetailView::connectToViewModel()
{
    connect(&m_viewModel, &SSHConfigViewModel::selectedKnownHostEntryIDChanged, this, &KnownHostDetailView::refresh);
    connect(&m_viewModel, &SSHConfigViewModel::knownHostsReset, this, &KnownHostDetailView::refresh);
    connect(&m_viewModel, &SSHConfigViewModel::knownHostRecordsChanged, this,
        [this](qsizetype, qsizetype, bool lineNumberOnly) {
            if (!lineNumberOnly)
                refresh();
        });
}

void KnownHostDetailView::refresh()
{
    const std::optional<KnownHostEntry> entry = m_viewModel.selectedKnownHostEntry();
    if (!entry) {
        m_pages->setCurrentWidget(m_emptyState);
        return;
    }
    m_hosts->setText(entry->hosts().join(u", "_s));
    m_keyType->setText(u"Key type: "_s + entry->keyType());
    m_hashed->setVisible(entry->isHashed());
    m_commentedOut->setVisible(entry->isCommentedOut());
    {
        const QSignalBlocker blocker(m_markerPicker);
        m_markerPicker->setCurrentIndex(rowOfMarker(entry->marker()));
    }
    m_commentButton->setText(m_viewModel.knownHostCommentActionTitle());
    m_commentSection->setVisible(!entry->comment().trimmed().isEmpty());
    m_comment->setText(entry->comment().toString());
    m_pages->setCurrentWidget(m_detailsScroll);
}

void KnownHostDetailView::markerChosen(int index)
{
    const std::optional<KnownHostMarker> marker = markerAtRow(index);
    const std::optional<KnownHostEntry> entry = m_viewModel.selectedKnownHostEntry();
    if (entry && entry->marker() != marker)
        m_viewModel.setMarkerOnSelectedKnownHostEntry(marker);
}
