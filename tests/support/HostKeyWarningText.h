#pragma once

// The text OpenSSH 9.x prints (sshconnect.c's warn_changed_key() and check_host_key()) when a host's key
// has changed, joined as a terminal shows it: ssh ends each line with CR LF while it talks to a terminal.

#include <QString>
#include <QStringList>

/// typePrefix: newer versions start the last sentence with the key type instead of "Host key for".
inline QString changedHostKeyText(const QString& type, const QString& newFingerprint, const QString& file, int line,
    const QString& host, bool typePrefix = false)
{
    using namespace Qt::StringLiterals;
    const QStringList lines = {
        u"@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@"_s,
        u"@    WARNING: REMOTE HOST IDENTIFICATION HAS CHANGED!     @"_s,
        u"@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@"_s,
        u"IT IS POSSIBLE THAT SOMEONE IS DOING SOMETHING NASTY!"_s,
        u"Someone could be eavesdropping on you right now (man-in-the-middle attack)!"_s,
        u"It is also possible that a host key has just been changed."_s,
        u"The fingerprint for the "_s + type + u" key sent by the remote host is"_s,
        newFingerprint + u"."_s,
        u"Please contact your system administrator."_s,
        u"Add correct host key in "_s + file + u" to get rid of this message."_s,
        u"Offending "_s + type + u" key in "_s + file + u":"_s + QString::number(line),
        u"  remove with:"_s,
        u"  ssh-keygen -f \""_s + file + u"\" -R \""_s + host + u"\""_s,
        (typePrefix ? type + u" host key for "_s : u"Host key for "_s) + host
            + u" has changed and you have requested strict checking."_s,
        u"Host key verification failed."_s,
    };
    return lines.join(u"\r\n"_s) + u"\r\n"_s;
}
