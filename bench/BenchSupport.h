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
