#pragma once

#include <QHashFunctions>
#include <QString>
#include <QStringList>

#include <optional>

/// One installed terminal application that Connect can drive.
///
/// The bundle identifier is the app's identity (the preference stores it); on freedesktop systems it is the
/// desktop-entry id. A plain value: equality and hashing cover every field.
class TerminalApp
{
public:
    /// How the launcher drives the app. Raw values are stable: they may be stored and exchanged.
    enum class LaunchMode {
        appleTerminal, ///< "appleTerminal": AppleScript to the Terminal application
        iTerm2, ///< "iTerm2": AppleScript to iTerm2
        warp, ///< "warp": Warp launch-configuration file and launch URI
        generic, ///< "generic": open the app and put the command on the clipboard
        commandLine, ///< "commandLine": start the terminal's program with the command on its command line
    };

    /// The mode whose raw value is exactly rawValue (case-sensitive), or nothing for any other text.
    static std::optional<LaunchMode> launchModeFromRawValue(const QString& rawValue);
    /// The raw value of mode, e.g. "appleTerminal".
    static QString rawValue(LaunchMode mode);

    TerminalApp(QString bundleIdentifier, QString displayName, LaunchMode launchMode,
        std::optional<QString> uriScheme = std::nullopt);

    const QString& bundleIdentifier() const { return m_bundleIdentifier; }
    const QString& displayName() const { return m_displayName; }
    LaunchMode launchMode() const { return m_launchMode; }

    /// The scheme under which the app accepts launch URIs; only the warp mode uses it.
    const std::optional<QString>& uriScheme() const { return m_uriScheme; }
    void setUriScheme(std::optional<QString> uriScheme) { m_uriScheme = std::move(uriScheme); }

    /// For the commandLine mode: the terminal's program followed by the arguments it expects before a
    /// command (e.g. {"/usr/bin/xterm", "-e"}). Empty for every other mode.
    const QStringList& commandPrefix() const { return m_commandPrefix; }
    void setCommandPrefix(QStringList commandPrefix) { m_commandPrefix = std::move(commandPrefix); }

    friend bool operator==(const TerminalApp& left, const TerminalApp& right) = default;

private:
    QString m_bundleIdentifier;
    QString m_displayName;
    LaunchMode m_launchMode;
    std::optional<QString> m_uriScheme;
    QStringList m_commandPrefix;
};

size_t qHash(const TerminalApp& app, size_t seed = 0) noexcept;
