// What sits at ~/.ssh/config is not always a file: a named pipe, a link to a device, a directory, a link
// loop or a huge file must each be refused with a sentence naming the path, never hang or exhaust the
// memory on reading, and be left exactly as they were by a save.

#include "FileManager.h"
#include "SSHFileService.h"
#include "ServiceError.h"
#include "ServiceInHome.h"
#include "TestFiles.h"

#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
// Puts the thing named kind at path; false when that fails.
bool place(const QString& kind, const QString& path)
{
    const QByteArray native = QFile::encodeName(path);
    if (kind == u"named pipe"_s)
        return ::mkfifo(native.constData(), 0600) == 0;
    if (kind == u"link to /dev/zero"_s)
        return ::symlink("/dev/zero", native.constData()) == 0;
    if (kind == u"directory"_s)
        return QDir().mkdir(path);
    if (kind == u"link loop"_s)
        return ::symlink("config-loop", native.constData()) == 0
            && ::symlink("config", QFile::encodeName(path + u"-loop"_s).constData()) == 0;
    // A sparse file: one byte over the limit costs no disk.
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.resize(FileManager::readLimit + 1);
}

// What lies at path, without following a link: its type, its size and where a link points.
QString fingerprint(const QString& path)
{
    std::error_code error;
    const std::filesystem::path native(QFile::encodeName(path).toStdString());
    const std::filesystem::file_status status = std::filesystem::symlink_status(native, error);
    QString print = QString::number(static_cast<int>(status.type()));
    if (status.type() == std::filesystem::file_type::symlink)
        print += u" -> "_s + QString::fromStdString(std::filesystem::read_symlink(native, error).string());
    else if (status.type() == std::filesystem::file_type::regular)
        print += u" of "_s + QString::number(std::filesystem::file_size(native, error));
    return print;
}

QString systemReason(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

void addSpecialFileRows()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("reason");
    QTest::newRow("named pipe") << u"named pipe"_s << u"dit is een named pipe, geen gewoon bestand"_s;
    QTest::newRow("link to /dev/zero") << u"link to /dev/zero"_s << u"dit is een apparaat, geen gewoon bestand"_s;
    QTest::newRow("directory") << u"directory"_s << u"dit is een map, geen gewoon bestand"_s;
    QTest::newRow("link loop") << u"link loop"_s << systemReason(ELOOP);
}
} // namespace

class TestSSHFileServiceSpecialFiles : public QObject
{
    Q_OBJECT

private slots:
    void specialFilesAreRefused_data()
    {
        addSpecialFileRows();
        QTest::newRow("one byte over the limit") << u"oversized"_s << u"het bestand is groter dan 1 GiB"_s;
    }

    void specialFilesAreRefused()
    {
        QFETCH(QString, kind);
        QFETCH(QString, reason);
        QTemporaryDir home;
        const SSHFileService service = serviceIn(home.path());
        const QString path = service.configURL();
        QVERIFY(QDir(home.path()).mkdir(u".ssh"_s) && place(kind, path));
        const QString before = fingerprint(path);
        const QStringList entriesBefore = QDir(home.path() + u"/.ssh"_s).entryList(QDir::AllEntries | QDir::System);

        QCOMPARE(
            errorOf<PlatformError>([&] { service.readConfig(); }), u"Lezen mislukt op "_s + path + u": "_s + reason);
        QCOMPARE(errorOf<PlatformError>([&] { service.writeConfig(u"Host new\n"_s); }),
            u"Schrijven mislukt op "_s + path + u": "_s + reason);

        QCOMPARE(fingerprint(path), before);
        QCOMPARE(QDir(home.path() + u"/.ssh"_s).entryList(QDir::AllEntries | QDir::System), entriesBefore);
    }

    // The writer guards itself too, for callers that skip the service's check; the size limit is the
    // service's alone, as it matters for the backup.
    void writerRefusesWhatIsNotARegularFile_data() { addSpecialFileRows(); }
    void writerRefusesWhatIsNotARegularFile()
    {
        QFETCH(QString, kind);
        QFETCH(QString, reason);
        QTemporaryDir dir;
        const QString path = dir.filePath(u"config"_s);
        QVERIFY(place(kind, path));
        const QString before = fingerprint(path);
        QCOMPARE(errorOf<PlatformError>([&] { FileManager::writeWithSaveFile(path, "Host new\n"); }),
            u"Schrijven mislukt op "_s + path + u": "_s + reason);
        QCOMPARE(fingerprint(path), before);
    }

    void danglingLinkReadsAsMissing()
    {
        QTemporaryDir home;
        const SSHFileService service = serviceIn(home.path());
        QVERIFY(QDir(home.path()).mkdir(u".ssh"_s));
        QVERIFY(QFile::link(home.filePath(u"nowhere"_s), service.configURL()));
        QCOMPARE(service.readConfig(), QString());
    }

    void regularFileBehindALinkIsRead()
    {
        QTemporaryDir home;
        const SSHFileService service = serviceIn(home.path());
        QVERIFY(writeBytes(home.filePath(u"dotfiles/config"_s), "Host a\n"));
        QVERIFY(QDir(home.path()).mkdir(u".ssh"_s));
        QVERIFY(QFile::link(home.filePath(u"dotfiles/config"_s), service.configURL()));
        QCOMPARE(service.readConfig(), u"Host a\n"_s);
    }
};

QTEST_GUILESS_MAIN(TestSSHFileServiceSpecialFiles)
#include "test_ssh_file_service_irregular_files.moc"
