#pragma once

// Shared set-up for the view model tests: the two ssh files in a temporary directory, a terminal
// discovery that answers what the test says, a launcher that records every call, and an in-memory
// preference store.

#include "SSHConfigViewModel.h"
#include "ServiceError.h"
#include "TerminalApps.h"
#include "TestFiles.h"
#include "WindowFixture.h"

#include <QTest>

#include <optional>

/// The view model tests use the same fixture as the widget tests: real files in a temporary directory,
/// a scripted discovery, a recording launcher and an in-memory preference store.
using ViewModelFixture = WindowFixture;

/// The first pattern of every host, in document order.
inline QStringList firstPatterns(const QList<SSHHost>& hosts)
{
    QStringList result;
    for (const SSHHost& host : hosts)
        result.append(host.patterns.value(0));
    return result;
}

/// The first pattern of the selected host, or an empty text.
inline QString selectedHostName(const SSHConfigViewModel& viewModel)
{
    const std::optional<qsizetype> index = viewModel.selectedHostIndex();
    return index ? viewModel.document().hosts.at(*index).patterns.value(0) : QString();
}

/// The first host of the selected known_hosts entry, or an empty text.
inline QString selectedEntryHost(const SSHConfigViewModel& viewModel)
{
    const std::optional<KnownHostEntry> entry = viewModel.selectedKnownHostEntry();
    return entry ? entry->hosts().value(0) : QString();
}
