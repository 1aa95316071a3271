#pragma once

#include <QUuid>

/// A fresh random (version 4, variant 1) UUID.
///
/// Parsing a large file makes an id for every line, so this draws from a per-thread generator
/// seeded once from the system's entropy source instead of asking the system for every id.
QUuid createRandomUuid();
