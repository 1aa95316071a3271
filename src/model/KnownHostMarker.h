#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <cstddef>
#include <optional>

/// The marker a known_hosts line may start with. Identified (and hashed) by its raw value.
enum class KnownHostMarker {
    certAuthority, ///< "@cert-authority"
    revoked, ///< "@revoked"
};

/// Every marker, in the order the known_hosts view offers them.
inline constexpr std::array<KnownHostMarker, 2> allKnownHostMarkers { KnownHostMarker::certAuthority,
    KnownHostMarker::revoked };

/// The marker as written in the file: "@cert-authority" or "@revoked".
QString knownHostMarkerRawValue(KnownHostMarker marker);

/// The title the known_hosts view shows: "Certification Authority" or "Revoked".
QString knownHostMarkerTitle(KnownHostMarker marker);

/// The marker whose raw value is exactly rawValue (case-sensitive); nothing for any other text.
std::optional<KnownHostMarker> knownHostMarkerFromRawValue(QStringView rawValue);

/// Hashes a marker by its raw value, so it can key a QHash or QSet.
size_t qHash(KnownHostMarker marker, size_t seed = 0) noexcept;
