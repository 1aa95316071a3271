#include "KnownHostNameMatch.h"

#include <QCryptographicHash>
#include <QMessageAuthenticationCode>

using namespace Qt::StringLiterals;

namespace
{

char16_t asciiLower(char16_t c)
{
    return (c >= u'A' && c <= u'Z') ? static_cast<char16_t>(c - u'A' + u'a') : c;
}

// Iterative glob with one backtrack point, so a pattern of many stars cannot take exponential time.
bool globMatches(QStringView pattern, QStringView name)
{
    qsizetype p = 0;
    qsizetype n = 0;
    qsizetype starAt = -1;
    qsizetype starName = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern.at(p) == u'*') {
            starAt = p++;
            starName = n;
        } else if (p < pattern.size()
            && (pattern.at(p) == u'?' || asciiLower(pattern.at(p).unicode()) == asciiLower(name.at(n).unicode()))) {
            ++p;
            ++n;
        } else if (starAt >= 0) {
            p = starAt + 1;
            n = ++starName;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern.at(p) == u'*')
        ++p;
    return p == pattern.size();
}

QByteArray strictBase64(QStringView text)
{
    const QByteArray::FromBase64Result decoded
        = QByteArray::fromBase64Encoding(text.toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    return decoded ? decoded.decoded : QByteArray();
}

} // namespace

QString asciiLowered(QStringView text)
{
    QString lowered = text.toString();
    for (QChar& c : lowered)
        c = asciiLower(c.unicode());
    return lowered;
}

bool isLiteralHostsField(QStringView hostsField)
{
    return !hostsField.contains(u'*') && !hostsField.contains(u'?') && !hostsField.contains(u'!');
}

QString knownHostLookupName(QStringView host, QStringView port)
{
    if (port.isEmpty() || port == u"22")
        return host.toString();
    return u'[' + host + u"]:"_s + port;
}

bool knownHostPatternMatches(QStringView pattern, QStringView name)
{
    return globMatches(pattern, name);
}

bool knownHostsFieldMatches(QStringView hostsField, QStringView name)
{
    if (hostsField.startsWith(u'|'))
        return hashedHostNameMatches(hostsField, name);
    bool positive = false;
    for (const QStringView pattern : hostsField.tokenize(u',', Qt::SkipEmptyParts)) {
        const bool negated = pattern.startsWith(u'!');
        if (!globMatches(negated ? pattern.sliced(1) : pattern, name))
            continue;
        if (negated)
            return false;
        positive = true;
    }
    return positive;
}

HashedHostName parseHashedHostName(QStringView text)
{
    if (!text.startsWith(u"|1|"))
        return {};
    const QStringView rest = text.sliced(3);
    const qsizetype separator = rest.indexOf(u'|');
    if (separator <= 0)
        return {};
    HashedHostName hashed { strictBase64(rest.first(separator)), strictBase64(rest.sliced(separator + 1)) };
    // ssh compares the whole base64 text, so a salt or hash of another length can never match.
    if (hashed.salt.size() != 20 || hashed.hash.size() != 20)
        return {};
    return hashed;
}

bool hashedHostNameMatches(const HashedHostName& hashed, const QByteArray& nameUtf8)
{
    if (!hashed.isValid())
        return false;
    return QMessageAuthenticationCode::hash(nameUtf8, hashed.salt, QCryptographicHash::Sha1) == hashed.hash;
}

bool hashedHostNameMatches(QStringView hashedName, QStringView name)
{
    return hashedHostNameMatches(parseHashedHostName(hashedName), name.toUtf8());
}
