#pragma once

#include "ServiceError.h"

#include <QString>

#include <utility>

/// Why a terminal launch failed. One kind per failure; the payload is the offending message, bundle
/// identifier, path or URI text, and description() is the Dutch sentence shown to the user.
class TerminalLaunchError final : public ServiceError
{
public:
    enum class Kind {
        appleScriptFailed, ///< payload: the script runner's message
        launchFailed, ///< payload: the bundle identifier
        warpConfigWriteFailed, ///< payload: the file's path
        invalidURI, ///< payload: the URI text
        uriOpenFailed, ///< payload: the URI text
    };

    static TerminalLaunchError appleScriptFailed(QString message)
    {
        return { Kind::appleScriptFailed, std::move(message) };
    }
    static TerminalLaunchError launchFailed(QString bundleIdentifier)
    {
        return { Kind::launchFailed, std::move(bundleIdentifier) };
    }
    static TerminalLaunchError warpConfigWriteFailed(QString path)
    {
        return { Kind::warpConfigWriteFailed, std::move(path) };
    }
    static TerminalLaunchError invalidURI(QString uri) { return { Kind::invalidURI, std::move(uri) }; }
    static TerminalLaunchError uriOpenFailed(QString uri) { return { Kind::uriOpenFailed, std::move(uri) }; }

    Kind kind() const { return m_kind; }
    /// The message, bundle identifier, path or URI text the error carries.
    const QString& payload() const { return m_payload; }

    QString description() const override;

    friend bool operator==(const TerminalLaunchError& left, const TerminalLaunchError& right)
    {
        return left.m_kind == right.m_kind && left.m_payload == right.m_payload;
    }

private:
    TerminalLaunchError(Kind kind, QString payload)
        : m_kind(kind)
        , m_payload(std::move(payload))
    { }

    Kind m_kind;
    QString m_payload;
};
