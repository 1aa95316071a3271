#include "KnownHostFingerprint.h"

#include <QCryptographicHash>

using namespace Qt::StringLiterals;

namespace
{

bool isBase64Character(char16_t c)
{
    return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9') || c == u'+' || c == u'/';
}

// At most two "=" and only at the very end, after a whole number of four-character groups: what
// OpenSSH's decoder accepts, where Qt's would also take unpadded or oddly padded text.
bool isStrictBase64(QStringView text)
{
    if (text.isEmpty() || text.size() % 4 != 0)
        return false;
    qsizetype padding = 0;
    while (padding < 2 && text.at(text.size() - 1 - padding) == u'=')
        ++padding;
    const QStringView body = text.first(text.size() - padding);
    for (const QChar c : body) {
        if (!isBase64Character(c.unicode()))
            return false;
    }
    return true;
}

} // namespace

std::optional<QByteArray> decodedKnownHostKey(QStringView keyField)
{
    if (!isStrictBase64(keyField))
        return std::nullopt;
    const QByteArray::FromBase64Result decoded
        = QByteArray::fromBase64Encoding(keyField.toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded || decoded.decoded.isEmpty())
        return std::nullopt;
    return decoded.decoded;
}

QString sha256Fingerprint(QByteArrayView blob)
{
    const QByteArray digest = QCryptographicHash::hash(blob, QCryptographicHash::Sha256);
    return u"SHA256:"_s + QString::fromLatin1(digest.toBase64(QByteArray::OmitTrailingEquals));
}

QString md5Fingerprint(QByteArrayView blob)
{
    const QByteArray digest = QCryptographicHash::hash(blob, QCryptographicHash::Md5);
    return u"MD5:"_s + QString::fromLatin1(digest.toHex(':'));
}

std::optional<KnownHostFingerprints> knownHostFingerprints(QStringView keyField)
{
    const std::optional<QByteArray> blob = decodedKnownHostKey(keyField);
    if (!blob)
        return std::nullopt;
    return KnownHostFingerprints { sha256Fingerprint(*blob), md5Fingerprint(*blob) };
}

std::optional<QString> knownHostSha256Fingerprint(QStringView keyField)
{
    const std::optional<QByteArray> blob = decodedKnownHostKey(keyField);
    return blob ? std::optional<QString>(sha256Fingerprint(*blob)) : std::nullopt;
}
