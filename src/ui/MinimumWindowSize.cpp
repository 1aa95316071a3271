#include "MinimumWindowSize.h"

QSize minimumWindowSize(QSize wanted, const QRect& available)
{
    if (available.isEmpty())
        return wanted;
    return wanted.boundedTo(available.size());
}
