#include "SshKeygen.h"

#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QtEndian>

using namespace Qt::StringLiterals;

namespace
{

// One SSH wire-format string: a 32-bit big-endian length, then the bytes.
QByteArray wireString(const QByteArray& bytes)
{
    QByteArray out(4, '\0');
    qToBigEndian(static_cast<quint32>(bytes.size()), out.data());
    return out + bytes;
}

// The wire-format strings of a key blob, in order.
QList<QByteArray> wireStrings(const QByteArray& blob)
{
    QList<QByteArray> strings;
    qsizetype at = 0;
    while (at + 4 <= blob.size()) {
        const auto length = static_cast<qsizetype>(qFromBigEndian<quint32>(blob.constData() + at));
        strings.append(blob.mid(at + 4, length));
        at += 4 + length;
    }
    return strings;
}

QByteArray blobOf(const QString& publicKey)
{
    return QByteArray::fromBase64(publicKey.section(u' ', 1, 1).toLatin1());
}

QString publicKeyLine(const QByteArray& type, const QByteArray& blob)
{
    return QString::fromLatin1(type) + u' ' + QString::fromLatin1(blob.toBase64());
}

} // namespace

SshKeygen::SshKeygen()
    : m_program(QStandardPaths::findExecutable(u"ssh-keygen"_s))
{ }

SshKeygenRun SshKeygen::run(const QStringList& arguments) const
{
    QProcess process;
    process.setProcessChannelMode(QProcess::SeparateChannels);
    process.start(m_program, arguments);
    if (!process.waitForFinished(60'000))
        return {};
    return { process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()) };
}

QString SshKeygen::generatePublicKey(const QString& type, int bits)
{
    const QString path = filePath(u"key%1"_s.arg(++m_keys));
    QStringList arguments { u"-q"_s, u"-t"_s, type, u"-N"_s, QString(), u"-C"_s, QString(), u"-f"_s, path };
    if (bits > 0)
        arguments << u"-b"_s << QString::number(bits);
    if (run(arguments).exitCode != 0)
        return {};
    return readFile(path + u".pub"_s).section(u' ', 0, 1).trimmed();
}

QString SshKeygen::ed25519SkPublicKey()
{
    const QList<QByteArray> parts = wireStrings(blobOf(generatePublicKey(u"ed25519"_s)));
    if (parts.size() < 2)
        return {};
    const QByteArray type = "sk-ssh-ed25519@openssh.com";
    return publicKeyLine(type, wireString(type) + wireString(parts.at(1)) + wireString("ssh:"));
}

QString SshKeygen::ecdsaSkPublicKey()
{
    // The point must lie on the curve, so it comes from a real nistp256 key.
    const QList<QByteArray> parts = wireStrings(blobOf(generatePublicKey(u"ecdsa"_s, 256)));
    if (parts.size() < 3)
        return {};
    const QByteArray type = "sk-ecdsa-sha2-nistp256@openssh.com";
    return publicKeyLine(
        type, wireString(type) + wireString("nistp256") + wireString(parts.at(2)) + wireString("ssh:"));
}

QString SshKeygen::writeFile(const QString& name, const QString& text) const
{
    QString path = filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(text.toUtf8()) < 0)
        return {};
    return path;
}

QString SshKeygen::readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}
