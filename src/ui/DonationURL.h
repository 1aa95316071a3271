#pragma once

#include <QString>
#include <QUrl>

#include <optional>

/// The donation page for address: a valid absolute web address (http or https), else nothing, in which
/// case the window shows no donation link.
std::optional<QUrl> donationURLFromAddress(const QString& address);

/// The donation page this build was configured with (the TARNWICK_DONATION_URL build setting), or nothing.
std::optional<QUrl> configuredDonationURL();
