#include "KnownHostFingerprintView.h"

#include "AccessibleText.h"
#include "SSHConfigViewModel.h"
#include "TextStyle.h"

#include <QClipboard>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

QLabel* fingerprintLabel(QWidget* parent, const QString& objectName)
{
    auto* label = new QLabel(parent);
    label->setObjectName(objectName);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    label->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    // The whole fingerprint is what people compare, so it wraps rather than being cut.
    label->setWordWrap(true);
    label->setMinimumWidth(1);
    return label;
}

} // namespace

KnownHostFingerprintView::KnownHostFingerprintView(SSHConfigViewModel& viewModel, QWidget* parent)
    : QWidget(parent)
    , m_viewModel(viewModel)
{
    setObjectName(u"knownHostFingerprintView"_s);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    auto* title = new QLabel(u"Fingerprint"_s, this);
    applyTextStyle(title, TextStyle::caption);
    makeSecondaryText(title);
    layout->addWidget(title);

    auto* row = new QHBoxLayout;
    row->setSpacing(10);
    m_sha256 = fingerprintLabel(this, u"knownHostSha256Label"_s);
    m_copy = new QPushButton(u"Kopieer"_s, this);
    m_copy->setObjectName(u"knownHostCopyFingerprintButton"_s);
    m_showMd5 = new QPushButton(u"MD5"_s, this);
    m_showMd5->setObjectName(u"knownHostShowMd5Button"_s);
    m_showMd5->setCheckable(true);
    m_showMd5->setToolTip(u"Toon ook de MD5-fingerprint"_s);
    setAccessibleText(*m_copy, u"Kopieer fingerprint"_s, u"Zet de SHA256-fingerprint op het klembord."_s);
    setAccessibleText(*m_showMd5, u"MD5-fingerprint"_s, u"Toont ook de MD5-fingerprint van de sleutel."_s);
    row->addWidget(m_sha256, 1);
    row->addWidget(m_copy);
    row->addWidget(m_showMd5);
    layout->addLayout(row);

    m_md5 = fingerprintLabel(this, u"knownHostMd5Label"_s);
    layout->addWidget(m_md5);
    m_invalidKey = new QLabel(u"De sleutel is geen geldige base64; ssh slaat deze regel over, dus er is geen "
                              u"fingerprint."_s,
        this);
    m_invalidKey->setObjectName(u"knownHostInvalidKeyLabel"_s);
    m_invalidKey->setWordWrap(true);
    makeWarningText(m_invalidKey);
    layout->addWidget(m_invalidKey);

    connect(m_copy, &QPushButton::clicked, this, &KnownHostFingerprintView::copySha256);
    connect(m_showMd5, &QPushButton::toggled, this, &KnownHostFingerprintView::refresh);
    connect(&m_viewModel, &SSHConfigViewModel::selectedKnownHostFingerprintsChanged, this,
        &KnownHostFingerprintView::refresh);
    refresh();
}

void KnownHostFingerprintView::refresh()
{
    const std::optional<KnownHostFingerprints>& fingerprints = m_viewModel.selectedKnownHostFingerprints();
    m_sha256->setText(fingerprints ? fingerprints->sha256 : QString());
    m_md5->setText(fingerprints ? fingerprints->md5 : QString());
    m_sha256->setVisible(fingerprints.has_value());
    m_copy->setVisible(fingerprints.has_value());
    m_showMd5->setVisible(fingerprints.has_value());
    m_md5->setVisible(fingerprints && m_showMd5->isChecked());
    m_invalidKey->setVisible(!fingerprints);
}

void KnownHostFingerprintView::copySha256()
{
    const std::optional<KnownHostFingerprints>& fingerprints = m_viewModel.selectedKnownHostFingerprints();
    if (!fingerprints)
        return;
    QGuiApplication::clipboard()->setText(fingerprints->sha256);
    m_viewModel.reportFingerprintCopied();
}
