// Fingerprints: the selected entry's, and the search for entries by fingerprint.

#include "SSHConfigViewModel.h"

using namespace Qt::StringLiterals;

namespace
{

const QString sha256Prefix = u"SHA256:"_s;

} // namespace

void SSHConfigViewModel::connectKnownHostTools()
{
    // Only a new selection or a changed entry can change the fingerprint; renumbering cannot.
    connect(this, &SSHConfigViewModel::selectedKnownHostEntryIDChanged, this,
        &SSHConfigViewModel::updateSelectedKnownHostFingerprints);
    connect(this, &SSHConfigViewModel::knownHostsReset, this, &SSHConfigViewModel::updateSelectedKnownHostFingerprints);
    connect(
        this, &SSHConfigViewModel::knownHostRecordsChanged, this, [this](qsizetype, qsizetype, bool lineNumberOnly) {
            if (!lineNumberOnly)
                updateSelectedKnownHostFingerprints();
        });
    connect(this, &SSHConfigViewModel::knownHostRecordRemoved, this,
        &SSHConfigViewModel::updateSelectedKnownHostFingerprints);
    connectHostLookup();
    connectHostLinks();
}

void SSHConfigViewModel::updateSelectedKnownHostFingerprints()
{
    const KnownHostEntry* entry = selectedEntry();
    // The selected entry was just removed or reloaded; the selection repair that follows asks again.
    if (!entry && m_selectedKnownHostEntryID)
        return;
    const std::optional<KnownHostFingerprints> fingerprints
        = entry ? knownHostFingerprints(entry->key()) : std::nullopt;
    change(m_selectedKnownHostFingerprints, fingerprints, &SSHConfigViewModel::selectedKnownHostFingerprintsChanged);
}

QString SSHConfigViewModel::knownHostsFingerprintQuery() const
{
    const QString text = m_knownHostsSearchText.trimmed();
    if (!text.startsWith(sha256Prefix, Qt::CaseInsensitive))
        return {};
    return sha256Prefix + QStringView(text).sliced(sha256Prefix.size());
}

bool SSHConfigViewModel::knownHostEntryMatchesFingerprint(const KnownHostEntry& entry, QStringView fingerprintQuery)
{
    if (fingerprintQuery.isEmpty())
        return false;
    const std::optional<QString> fingerprint = knownHostSha256Fingerprint(entry.key());
    return fingerprint && fingerprint->startsWith(fingerprintQuery);
}

bool SSHConfigViewModel::knownHostEntryMatchesSearch(
    const KnownHostEntry& entry, QStringView loweredQuery, QStringView fingerprintQuery)
{
    return knownHostEntryMatches(entry, loweredQuery) || knownHostEntryMatchesFingerprint(entry, fingerprintQuery);
}

void SSHConfigViewModel::reportFingerprintCopied()
{
    setStatusMessage(u"Fingerprint gekopieerd naar het klembord."_s);
}
