#pragma once

#include <QStringList>
#include <QStringView>

/// True when a and b are the same Unicode text up to canonical equivalence ("é" precomposed equals
/// "e" with a combining accent). Letter case counts. Plain code-unit equality decides the common case.
bool canonicallyEqual(QStringView a, QStringView b);

/// Element by element, in order, with canonicallyEqual.
bool canonicallyEqual(const QStringList& a, const QStringList& b);
