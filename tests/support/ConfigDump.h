#pragma once

#include "SSHConfigDocument.h"

#include <QStringList>

/// The content of a document as one readable line per element, ids left out, so tests compare
/// documents from different parses with QCOMPARE and see the first differing line on failure.
QStringList dumpIgnoringIds(const SSHConfigDocument& document);

/// One readable line per error: "line: message".
QStringList dumpErrors(const QList<SSHParseError>& errors);
