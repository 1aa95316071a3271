#include "SettingsUserDefaultsStore.h"

using namespace Qt::StringLiterals;

SettingsUserDefaultsStore::SettingsUserDefaultsStore()
    : m_settings(QSettings::NativeFormat, QSettings::UserScope, u"Tarnwick"_s, u"Tarnwick"_s)
{ }

std::optional<QString> SettingsUserDefaultsStore::string(const QString& key) const
{
    const QVariant value = m_settings.value(key);
    if (!value.isValid())
        return std::nullopt;
    return value.toString();
}

void SettingsUserDefaultsStore::setString(const QString& key, const QString& value)
{
    m_settings.setValue(key, value);
    m_settings.sync();
}
