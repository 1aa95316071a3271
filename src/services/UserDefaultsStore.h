#pragma once

#include <QHash>
#include <QString>

#include <optional>

/// The persistent key-value store for the user's preferences.
///
/// The application keeps a single string in it; tests and tools use the in-memory store below.
class UserDefaultsStore
{
public:
    virtual ~UserDefaultsStore() = default;

    /// The stored string for key, or nothing when the key has never been written.
    virtual std::optional<QString> string(const QString& key) const = 0;
    virtual void setString(const QString& key, const QString& value) = 0;
};

class InMemoryUserDefaultsStore final : public UserDefaultsStore
{
public:
    std::optional<QString> string(const QString& key) const override;
    void setString(const QString& key, const QString& value) override;

private:
    QHash<QString, QString> m_values;
};
