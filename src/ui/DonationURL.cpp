#include "DonationURL.h"

using namespace Qt::StringLiterals;

#ifndef TARNWICK_DONATION_URL
#define TARNWICK_DONATION_URL ""
#endif

std::optional<QUrl> donationURLFromAddress(const QString& address)
{
    const QUrl url(address.trimmed(), QUrl::StrictMode);
    if (!url.isValid() || url.host().isEmpty())
        return std::nullopt;
    if (url.scheme() != u"https"_s && url.scheme() != u"http"_s)
        return std::nullopt;
    return url;
}

std::optional<QUrl> configuredDonationURL()
{
    return donationURLFromAddress(QString::fromUtf8(TARNWICK_DONATION_URL));
}
