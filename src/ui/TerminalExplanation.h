#pragma once

#include <QString>

/// The caption under the terminal picker: which terminals run `ssh` themselves and what happens with any
/// other. It names the terminals this platform can drive, and the paste keys of this platform's
/// terminals.
QString terminalExplanation();
