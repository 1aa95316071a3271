#pragma once

#include <QString>

/// What an installed application's own description says about it: a bundle's information list on macOS,
/// a desktop entry elsewhere. A text the description does not give is empty, as is one that is no text.
struct ApplicationInformation
{
    /// The name the bundle asks to be shown under ("CFBundleDisplayName"); desktop entries have none.
    QString displayName;
    /// The bundle's "CFBundleName", or a desktop entry's Name in the user's language.
    QString name;
    /// A desktop entry's Exec line as written, before splitting; bundles have none.
    QString execLine;

    friend bool operator==(const ApplicationInformation&, const ApplicationInformation&) = default;
};
