#pragma once

#include "UserDefaultsStore.h"

#include <QSettings>

/// The user-defaults store on QSettings: the native preferences system on macOS,
/// an ini file under the XDG config directory elsewhere.
class SettingsUserDefaultsStore final : public UserDefaultsStore
{
public:
    SettingsUserDefaultsStore();

    std::optional<QString> string(const QString& key) const override;
    void setString(const QString& key, const QString& value) override;

private:
    mutable QSettings m_settings;
};
