#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// A throw-away XDG data tree for tests: a user data directory and two system data directories, each with
/// an "applications" folder, set as XDG_DATA_HOME and XDG_DATA_DIRS while the fixture lives (the previous
/// values come back on destruction).
class XdgDataFixture
{
public:
    XdgDataFixture();
    ~XdgDataFixture();
    XdgDataFixture(const XdgDataFixture&) = delete;
    XdgDataFixture& operator=(const XdgDataFixture&) = delete;

    bool isValid() const { return m_dir.isValid(); }
    /// The fixture's root, for other files a test needs.
    QString path() const { return m_dir.path(); }
    QString dataHome() const;
    /// The system data directories, in search order.
    QStringList dataDirectories() const;
    /// The applications directories, user first.
    QStringList applicationDirectories() const;

    /// Writes "<desktopId>.desktop" with content into the applications folder of the data directory at
    /// index (0 = user, 1 and 2 = system) and returns its path.
    QString writeEntry(int index, const QString& desktopId, const QByteArray& content) const;
    /// A minimal application entry with the given Name and Exec lines.
    static QByteArray entry(const QString& name, const QString& exec);

private:
    QTemporaryDir m_dir;
    QByteArray m_savedDataHome;
    QByteArray m_savedDataDirs;
    bool m_hadDataHome;
    bool m_hadDataDirs;
};
