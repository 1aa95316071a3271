#include "SSHHostKeyWarning.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace
{

// The sentences are those of OpenSSH's sshconnect.c; a terminal may have wrapped nothing else in.
const QRegularExpression offendingKey(
    u"Offending (\\S+) key in (.+):(\\d+)\\s*$"_s, QRegularExpression::MultilineOption);
const QRegularExpression offendingAddress(
    u"Offending key for IP in (.+):(\\d+)\\s*$"_s, QRegularExpression::MultilineOption);
const QRegularExpression changedHost(u"host key for (\\S+) has changed"_s, QRegularExpression::CaseInsensitiveOption);
const QRegularExpression sentKey(u"The fingerprint for the (\\S+) key sent by the remote host is\\s+(\\S+?)\\.?\\s*$"_s,
    QRegularExpression::MultilineOption);
const QRegularExpression anyFingerprint(u"\\b(SHA256:[A-Za-z0-9+/]+|MD5(?::[0-9a-f]{2}){16})"_s);

} // namespace

std::optional<SSHHostKeyWarning> parseSSHHostKeyWarning(QStringView pasted)
{
    const QString text = pasted.toString().remove(u'\r');
    SSHHostKeyWarning warning;
    if (const QRegularExpressionMatch m = offendingKey.match(text); m.hasMatch()) {
        warning.offendingKeyType = m.captured(1);
        warning.offendingFile = m.captured(2).trimmed();
        warning.offendingLine = m.captured(3).toInt();
    } else if (const QRegularExpressionMatch a = offendingAddress.match(text); a.hasMatch()) {
        warning.offendingFile = a.captured(1).trimmed();
        warning.offendingLine = a.captured(2).toInt();
    }
    if (const QRegularExpressionMatch m = changedHost.match(text); m.hasMatch())
        warning.host = m.captured(1);
    if (const QRegularExpressionMatch m = sentKey.match(text); m.hasMatch()) {
        warning.newKeyType = m.captured(1);
        warning.newFingerprint = m.captured(2);
    } else if (const QRegularExpressionMatch f = anyFingerprint.match(text); f.hasMatch()) {
        warning.newFingerprint = f.captured(1);
    }
    if (warning.offendingLine <= 0 && warning.host.isEmpty())
        return std::nullopt;
    return warning;
}
