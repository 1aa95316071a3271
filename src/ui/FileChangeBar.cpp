#include "FileChangeBar.h"

#include "AccessibleText.h"
#include "SymbolIcon.h"
#include "TextStyle.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

using namespace Qt::StringLiterals;

using SSHFile = SSHConfigViewModel::SSHFile;
using NoticeKind = SSHConfigViewModel::FileChangeNotice::Kind;

FileChangeBar::FileChangeBar(SSHConfigViewModel& viewModel, SSHFile file, QWidget* parent)
    : QFrame(parent)
    , m_viewModel(viewModel)
    , m_file(file)
    , m_text(new QLabel(this))
{
    setObjectName(file == SSHFile::config ? u"configChangeBar"_s : u"knownHostsChangeBar"_s);
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    m_text->setObjectName(u"fileChangeText"_s);
    m_text->setWordWrap(true);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);

    auto* icon = new QLabel(this);
    const int side = fontMetrics().height();
    icon->setPixmap(symbolIcon(u"exclamationmark.triangle", warningOrange()).pixmap(QSize(side, side)));

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(10, 6, 10, 6);
    layout->addWidget(icon, 0, Qt::AlignTop);
    layout->addWidget(m_text, 1);
    m_reload = addAction(u"Herladen"_s, u"reloadChangedFileButton"_s, &FileChangeBar::reload);
    m_keepMine = addAction(u"Mijn versie bewaren"_s, u"keepMyVersionButton"_s, &FileChangeBar::keepMine);
    m_close = addAction(u"Sluiten"_s, u"closeFileChangeButton"_s, &FileChangeBar::close);
    setAccessibleText(
        *m_reload, u"Herladen"_s, u"Leest het gewijzigde bestand opnieuw en laat je wijzigingen vallen."_s);
    setAccessibleText(*m_keepMine, u"Mijn versie bewaren"_s,
        u"Houdt je versie; de volgende keer opslaan vervangt het gewijzigde bestand."_s);
    setAccessibleText(*m_close, u"Sluiten"_s, u"Sluit deze melding."_s);

    const auto changed = file == SSHFile::config ? &SSHConfigViewModel::configChangeNoticeChanged
                                                 : &SSHConfigViewModel::knownHostsChangeNoticeChanged;
    connect(&m_viewModel, changed, this, &FileChangeBar::showNotice);
    showNotice();
}

QPushButton* FileChangeBar::addAction(const QString& text, const QString& objectName, void (FileChangeBar::*act)())
{
    auto* button = new QPushButton(text, this);
    button->setObjectName(objectName);
    connect(button, &QPushButton::clicked, this, act);
    layout()->addWidget(button);
    return button;
}

const SSHConfigViewModel::FileChangeNotice& FileChangeBar::notice() const
{
    return m_file == SSHFile::config ? m_viewModel.configChangeNotice() : m_viewModel.knownHostsChangeNotice();
}

void FileChangeBar::showNotice()
{
    const SSHConfigViewModel::FileChangeNotice& current = notice();
    setVisible(current.kind != NoticeKind::none);
    m_text->setText(current.text);
    const bool conflict = current.kind == NoticeKind::conflict;
    m_reload->setVisible(conflict);
    m_keepMine->setVisible(conflict);
    m_close->setVisible(current.kind == NoticeKind::merged);
    QPalette palette = this->palette();
    const QColor accent = conflict ? warningOrange() : palette.color(QPalette::Highlight);
    palette.setColor(QPalette::Window, messageBarColor(accent, QWidget::palette().color(QPalette::Base)));
    setPalette(palette);
}

void FileChangeBar::reload()
{
    m_viewModel.reloadChangedFile(m_file);
}

void FileChangeBar::keepMine()
{
    m_viewModel.keepMyVersion(m_file);
}

void FileChangeBar::close()
{
    m_viewModel.dismissChangeNotice(m_file);
}
