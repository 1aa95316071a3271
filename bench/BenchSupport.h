#pragma once

// Stand-ins and text pieces shared by the benchmarks that build a whole view model.

#include "TerminalDiscovering.h"
#include "TerminalLaunching.h"

#include <QByteArray>

#include <random>

class NoTerminals final : public TerminalDiscovering
{
public:
    QList<TerminalApp> discoverTerminalApps() const override { return {}; }
};

class NoLaunch final : public TerminalLaunching
{
public:
    bool launch(const TerminalApp&, const QString&) override { return false; }
};

/// length characters of base64 alphabet, as key and hash material.
inline QByteArray base64Text(std::mt19937& random, int length)
{
    static const char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    QByteArray text(length, '\0');
    std::uniform_int_distribution<int> pick(0, 63);
    for (char& c : text)
        c = alphabet[pick(random)];
    return text;
}

/// A known_hosts file like a long-lived one: plain names with addresses, hashed names, bracketed
/// ports, the odd marker, commented-out entry and comment line, and the key lengths of ed25519,
/// ECDSA and RSA-3072.
inline QByteArray realisticKnownHostsText(int entries)
{
    std::mt19937 random(20240131);
    QByteArray text;
    for (int i = 0; i < entries; ++i) {
        const QByteArray n = QByteArray::number(i);
        if (i % 1000 == 0)
            text += "# imported batch " + n + "\n";
        if (i % 89 == 0)
            text += "# ";
        if (i % 97 == 0)
            text += "@revoked ";
        if (i % 3 == 0)
            text += "|1|" + base64Text(random, 27) + "=|" + base64Text(random, 27) + "= ";
        else if (i % 7 == 0)
            text += "[git" + n + ".example.com]:2222 ";
        else
            text += "host" + n + ".example.com,10." + QByteArray::number(i % 250) + ".1."
                + QByteArray::number(i / 250 % 250) + " ";
        switch (i % 5) {
        case 0:
            text += "ssh-rsa AAAAB3NzaC1yc2E" + base64Text(random, 521);
            break;
        case 1:
            text += "ecdsa-sha2-nistp256 AAAAE2VjZHNh" + base64Text(random, 128);
            break;
        default:
            text += "ssh-ed25519 AAAAC3NzaC1lZDI1NTE5" + base64Text(random, 48);
            break;
        }
        text += i % 11 == 0 ? " admin@laptop\n" : "\n";
    }
    return text;
}
