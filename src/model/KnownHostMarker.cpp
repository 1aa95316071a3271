#include "KnownHostMarker.h"

#include <QHashFunctions>

using namespace Qt::StringLiterals;

QString knownHostMarkerRawValue(KnownHostMarker marker)
{
    switch (marker) {
    case KnownHostMarker::certAuthority:
        return u"@cert-authority"_s;
    case KnownHostMarker::revoked:
        return u"@revoked"_s;
    }
    return {};
}

QString knownHostMarkerTitle(KnownHostMarker marker)
{
    switch (marker) {
    case KnownHostMarker::certAuthority:
        return u"Certification Authority"_s;
    case KnownHostMarker::revoked:
        return u"Revoked"_s;
    }
    return {};
}

std::optional<KnownHostMarker> knownHostMarkerFromRawValue(QStringView rawValue)
{
    for (const KnownHostMarker marker : allKnownHostMarkers) {
        if (rawValue == knownHostMarkerRawValue(marker))
            return marker;
    }
    return std::nullopt;
}

size_t qHash(KnownHostMarker marker, size_t seed) noexcept
{
    return qHash(knownHostMarkerRawValue(marker), seed);
}
