#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

#include <optional>

/// The fingerprints of a known_hosts key, in the forms ssh-keygen -l prints them. Only computed on
/// request: hashing every key of a large file up front would cost more than showing the file.
struct KnownHostFingerprints
{
    /// "SHA256:" and the unpadded base64 of the SHA-256 of the key blob.
    QString sha256;
    /// "MD5:" and the MD5 of the key blob as colon-separated lower-case hex pairs (ssh-keygen -E md5).
    QString md5;

    friend bool operator==(const KnownHostFingerprints&, const KnownHostFingerprints&) = default;
};

/// The key blob a key field encodes, or nothing when the field is not strict base64 (wrong alphabet,
/// bad padding, a length that is not a multiple of four) or encodes nothing at all. ssh skips such a
/// line, so it has no fingerprint.
std::optional<QByteArray> decodedKnownHostKey(QStringView keyField);

/// "SHA256:" followed by the SHA-256 of blob in base64 without "=" padding.
QString sha256Fingerprint(QByteArrayView blob);

/// "MD5:" followed by the MD5 of blob as lower-case hex pairs joined by ":".
QString md5Fingerprint(QByteArrayView blob);

/// Both fingerprints of a key field, or nothing when it is not valid base64.
std::optional<KnownHostFingerprints> knownHostFingerprints(QStringView keyField);

/// Only the SHA-256 form, for the search, which must not pay for MD5 as well.
std::optional<QString> knownHostSha256Fingerprint(QStringView keyField);
