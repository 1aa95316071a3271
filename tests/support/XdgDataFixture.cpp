#include "XdgDataFixture.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

XdgDataFixture::XdgDataFixture()
    : m_savedDataHome(qgetenv("XDG_DATA_HOME"))
    , m_savedDataDirs(qgetenv("XDG_DATA_DIRS"))
    , m_hadDataHome(qEnvironmentVariableIsSet("XDG_DATA_HOME"))
    , m_hadDataDirs(qEnvironmentVariableIsSet("XDG_DATA_DIRS"))
{
    for (const QString& directory : applicationDirectories())
        QDir().mkpath(directory);
    qputenv("XDG_DATA_HOME", QFile::encodeName(dataHome()));
    qputenv("XDG_DATA_DIRS", QFile::encodeName(dataDirectories().join(u':')));
}

XdgDataFixture::~XdgDataFixture()
{
    if (m_hadDataHome)
        qputenv("XDG_DATA_HOME", m_savedDataHome);
    else
        qunsetenv("XDG_DATA_HOME");
    if (m_hadDataDirs)
        qputenv("XDG_DATA_DIRS", m_savedDataDirs);
    else
        qunsetenv("XDG_DATA_DIRS");
}

QString XdgDataFixture::dataHome() const
{
    return m_dir.filePath(u"user/share"_s);
}

QStringList XdgDataFixture::dataDirectories() const
{
    return { m_dir.filePath(u"usr/local/share"_s), m_dir.filePath(u"usr/share"_s) };
}

QStringList XdgDataFixture::applicationDirectories() const
{
    QStringList directories;
    for (const QString& base : QStringList { dataHome() } + dataDirectories())
        directories << base + u"/applications"_s;
    return directories;
}

QString XdgDataFixture::writeEntry(int index, const QString& desktopId, const QByteArray& content) const
{
    const QString path = applicationDirectories().at(index) + u'/' + desktopId + u".desktop"_s;
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        file.write(content);
    return path;
}

QByteArray XdgDataFixture::entry(const QString& name, const QString& exec)
{
    return "[Desktop Entry]\nType=Application\nName=" + name.toUtf8() + "\nExec=" + exec.toUtf8() + "\n";
}
