#pragma once

#include <QStringView>

/// What is left of two texts without the whole lines they begin and end with in common. Counting the
/// lines of what is left gives the same difference as counting the lines of the whole texts, since a
/// line both texts share in the same place is counted once on each side. Lines end at LF.
struct DifferingLines
{
    QStringView first;
    QStringView second;

    static DifferingLines of(QStringView first, QStringView second);
};
