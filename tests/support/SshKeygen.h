#pragma once

// The real ssh-keygen, used by the known_hosts tests as the judge of what OpenSSH reads: it makes keys,
// prints their fingerprints, hashes host names and finds hosts in files the tests write.

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// What one ssh-keygen run printed and how it ended.
struct SshKeygenRun
{
    int exitCode = -1;
    QString output;
};

class SshKeygen
{
public:
    /// Looks ssh-keygen up on PATH; isAvailable() says whether it was found.
    SshKeygen();

    bool isAvailable() const { return !m_program.isEmpty() && m_directory.isValid(); }
    /// A scratch folder that lives as long as this object.
    QString filePath(const QString& name) const { return m_directory.filePath(name); }

    /// Runs ssh-keygen with arguments and waits for it; stdout only (its chatter on stderr is dropped).
    SshKeygenRun run(const QStringList& arguments) const;

    /// A fresh key pair of type ("ed25519", "rsa", "ecdsa", "dsa") and bits (0: the default); returns the
    /// public key as "type base64", without comment, or an empty text when ssh-keygen failed.
    QString generatePublicKey(const QString& type, int bits = 0);

    /// Security-key public keys cannot be generated without a token, so these are assembled from the parts
    /// of generated keys in the wire format OpenSSH uses ("type base64", as above).
    QString ed25519SkPublicKey();
    QString ecdsaSkPublicKey();

    /// Writes text to a file in the scratch folder and returns its path (empty on failure).
    QString writeFile(const QString& name, const QString& text) const;
    /// The file's text, or an empty text.
    static QString readFile(const QString& path);

private:
    QString m_program;
    QTemporaryDir m_directory;
    int m_keys = 0;
};
