#pragma once

#include <QByteArray>
#include <QString>

#include <exception>

/// Base of every error a service throws. The view model catches these and shows description()
/// after a fixed prefix; nothing else ever sees them, so they must not escape a slot.
class ServiceError : public std::exception
{
public:
    /// The one-line, user-facing sentence, with the offending path, URI or identifier appended.
    virtual QString description() const = 0;

    const char* what() const noexcept override;

private:
    mutable QByteArray m_what;
};

/// An error reported by the operating system or Qt (a directory that cannot be made, a program that
/// cannot start), passed on with the platform's own wording.
class PlatformError final : public ServiceError
{
public:
    explicit PlatformError(QString description)
        : m_description(std::move(description))
    { }

    QString description() const override { return m_description; }

private:
    QString m_description;
};
