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
