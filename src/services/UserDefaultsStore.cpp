#include "UserDefaultsStore.h"

std::optional<QString> InMemoryUserDefaultsStore::string(const QString& key) const
{
    const auto it = m_values.constFind(key);
    if (it == m_values.cend())
        return std::nullopt;
    return *it;
}

void InMemoryUserDefaultsStore::setString(const QString& key, const QString& value)
{
    m_values.insert(key, value);
}
