#include "HomeDirectory.h"
#include "SSHFileService.h"
#include "SSHFileServiceError.h"
#include "ServiceError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace
{
void writeBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(file.errorString()));
    QCOMPARE(file.write(bytes), bytes.size());
}

QByteArray readBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>");
}

// Every backup of fileName in directory, by name.
QStringList backupsIn(const QString& directory, const QString& fileName)
{
    return QDir(directory).entryList(
        { fileName + u".backup-*"_s }, QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
}

// A service whose two files lie in directory/.ssh, writing through writer.
SSHFileService serviceIn(const QString& directory, FileManager fileManager = FileManager())
{
    return SSHFileService(directory + u"/.ssh/config"_s, directory + u"/.ssh/known_hosts"_s, std::move(fileManager));
}

// The writer a misbehaving disk or a racing process amounts to: what lands is not what was asked for.
FileManager landingWriter(std::function<QByteArray(const QByteArray&)> alter)
{
    return FileManager(
        [alter](const QString& path, const QByteArray& bytes) { FileManager::writeWithSaveFile(path, alter(bytes)); });
}

// Saves text with writeConfig or writeKnownHosts, as which names.
std::optional<QString> save(const SSHFileService& service, const QString& which, const QString& text)
{
    return which == u"config"_s ? service.writeConfig(text) : service.writeKnownHosts(text);
}

QString locationOf(const SSHFileService& service, const QString& which)
{
    return which == u"config"_s ? service.configURL() : service.knownHostsURL();
}

void addFileRows()
{
    QTest::addColumn<QString>("which");
    QTest::newRow("config") << u"config"_s;
    QTest::newRow("known_hosts") << u"known_hosts"_s;
}
} // namespace

class TestSSHFileService : public QObject
{
    Q_OBJECT

private slots:
    // Locations
    void defaultLocationsLieInTheUsersSshDirectory();
    void explicitLocationsAreKept();

    // Backup names
    void backupFileName_data();
    void backupFileName();
    void backupFileNamesInOneMillisecondDiffer();

    // The save procedure
    void savingWithoutDirectoryCreatesItAndMakesNoBackup_data() { addFileRows(); }
    void savingWithoutDirectoryCreatesItAndMakesNoBackup();
    void savingAnExistingFileLeavesAByteIdenticalBackup_data() { addFileRows(); }
    void savingAnExistingFileLeavesAByteIdenticalBackup();
    void quickSavesEachLeaveTheirOwnBackup();
    void savingTheEmptyText_data();
    void savingTheEmptyText();
    void textIsWrittenAsUtf8WithoutByteOrderMark_data();
    void textIsWrittenAsUtf8WithoutByteOrderMark();
    void backupExistsBeforeTheWriteStarts();
    void symbolicLinkStaysAndItsTargetIsReplaced();
    void danglingSymbolicLinkGetsItsTargetWritten();
    void permissionBitsAreKept();

    // Failures
    void verificationMismatchKeepsTheNewFileAndTheBackup();
    void canonicallyEquivalentReadBackIsNoMismatch();
    void invalidUtf8OnReadBackNamesThePath();
    void failingWriteLeavesTheOldFileByteIdentical_data();
    void failingWriteLeavesTheOldFileByteIdentical();
    void directoryThatCannotBeMadeNamesItsPath();
    void directoryAtTheLocationChangesNothing();

    // Reading
    void readingAMissingFileGivesEmptyText_data() { addFileRows(); }
    void readingAMissingFileGivesEmptyText();
    void readingKeepsEveryCharacter();
    void readingInvalidUtf8NamesThePath_data() { addFileRows(); }
    void readingInvalidUtf8NamesThePath();
};

void TestSSHFileService::defaultLocationsLieInTheUsersSshDirectory()
{
    const SSHFileService service;
    const QString home = userHomeDirectory();
    QCOMPARE(service.configURL(), QDir(home).filePath(u".ssh/config"_s));
    QCOMPARE(service.knownHostsURL(), QDir(home).filePath(u".ssh/known_hosts"_s));
    QVERIFY(QFileInfo(service.configURL()).isAbsolute());
}

void TestSSHFileService::explicitLocationsAreKept()
{
    const SSHFileService service(u"/tmp/x/config"_s, u"/tmp/y/hosts"_s);
    QCOMPARE(service.configURL(), u"/tmp/x/config"_s);
    QCOMPARE(service.knownHostsURL(), u"/tmp/y/hosts"_s);
}

void TestSSHFileService::backupFileName_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QDateTime>("moment");
    QTest::addColumn<QString>("uuid");
    QTest::addColumn<QString>("expected");
    QTest::newRow("afternoon, milliseconds padded")
        << u"config"_s << QDateTime(QDate(2024, 1, 31), QTime(14, 25, 1, 7))
        << u"3f2a9c1b-1111-4222-8333-444455556666"_s << u"config.backup-20240131-142501-007-3F2A9C1B"_s;
    QTest::newRow("midnight on new year")
        << u"known_hosts"_s << QDateTime(QDate(2024, 1, 1), QTime(0, 0)) << u"0b77e4d2-aaaa-4bbb-8ccc-dddddddddddd"_s
        << u"known_hosts.backup-20240101-000000-000-0B77E4D2"_s;
    QTest::newRow("last millisecond of the year")
        << u"config"_s << QDateTime(QDate(2023, 12, 31), QTime(23, 59, 59, 999))
        << u"ffffffff-0000-4000-8000-000000000000"_s << u"config.backup-20231231-235959-999-FFFFFFFF"_s;
}

void TestSSHFileService::backupFileName()
{
    QFETCH(QString, fileName);
    QFETCH(QDateTime, moment);
    QFETCH(QString, uuid);
    QFETCH(QString, expected);
    QCOMPARE(SSHFileService::backupFileName(fileName, moment, QUuid::fromString(uuid)), expected);
}

void TestSSHFileService::backupFileNamesInOneMillisecondDiffer()
{
    const QDateTime moment = QDateTime::currentDateTime();
    QSet<QString> names;
    for (int i = 0; i < 1000; ++i)
        names.insert(SSHFileService::backupFileName(u"config"_s, moment, QUuid::createUuid()));
    QCOMPARE(names.size(), 1000);
}

void TestSSHFileService::savingWithoutDirectoryCreatesItAndMakesNoBackup()
{
    QFETCH(QString, which);
    QTemporaryDir dir;
    const QString home = dir.filePath(u"nested/home"_s);
    const SSHFileService service = serviceIn(home);
    const std::optional<QString> backup = save(service, which, u"Host a\n"_s);
    QVERIFY(!backup.has_value());
    QVERIFY(QFileInfo(home + u"/.ssh"_s).isDir());
    QCOMPARE(readBytes(locationOf(service, which)), QByteArray("Host a\n"));
    QCOMPARE(backupsIn(home + u"/.ssh"_s, which), QStringList());
}

void TestSSHFileService::savingAnExistingFileLeavesAByteIdenticalBackup()
{
    QFETCH(QString, which);
    QTemporaryDir dir;
    const SSHFileService service = serviceIn(dir.path());
    const QByteArray old("# old\r\nHost caf\xc3\xa9\n\n  odd  spacing\t\n");
    QVERIFY(QDir(dir.path()).mkdir(u".ssh"_s));
    writeBytes(locationOf(service, which), old);

    const QDateTime before = QDateTime::currentDateTime();
    const std::optional<QString> backup = save(service, which, u"Host new\n"_s);
    const QDateTime after = QDateTime::currentDateTime();

    QVERIFY(backup.has_value());
    QCOMPARE(QFileInfo(*backup).absolutePath(), dir.path() + u"/.ssh"_s);
    const QRegularExpression pattern(u"^"_s + which + u"\\.backup-(\\d{8}-\\d{6}-\\d{3})-[0-9A-F]{8}$"_s);
    const QRegularExpressionMatch match = pattern.match(QFileInfo(*backup).fileName());
    QVERIFY2(match.hasMatch(), qPrintable(*backup));
    const QDateTime stamp = QDateTime::fromString(match.captured(1), u"yyyyMMdd-HHmmss-zzz"_s);
    QVERIFY2(stamp >= before && stamp <= after, qPrintable(match.captured(1)));
    QCOMPARE(readBytes(*backup), old);
    QCOMPARE(readBytes(locationOf(service, which)), QByteArray("Host new\n"));
    QCOMPARE(backupsIn(dir.path() + u"/.ssh"_s, which).size(), 1);
}

void TestSSHFileService::quickSavesEachLeaveTheirOwnBackup()
{
    // Saves this close together share milliseconds; the UUID part must still keep every backup apart.
    QTemporaryDir dir;
    const SSHFileService service = serviceIn(dir.path());
    QSet<QString> reported;
    for (int i = 0; i <= 30; ++i) {
        if (const std::optional<QString> backup = service.writeConfig(u"Host v%1\n"_s.arg(i)))
            reported.insert(*backup);
    }
    QCOMPARE(reported.size(), 30);
    QSet<QByteArray> contents;
    for (const QString& name : backupsIn(dir.path() + u"/.ssh"_s, u"config"_s))
        contents.insert(readBytes(dir.path() + u"/.ssh/"_s + name));
    QCOMPARE(contents.size(), 30);
    for (int i = 0; i < 30; ++i)
        QVERIFY(contents.contains(u"Host v%1\n"_s.arg(i).toUtf8()));
}

void TestSSHFileService::savingTheEmptyText_data()
{
    QTest::addColumn<bool>("fileExists");
    QTest::newRow("no file yet") << false;
    QTest::newRow("replacing a file") << true;
}

void TestSSHFileService::savingTheEmptyText()
{
    QFETCH(bool, fileExists);
    QTemporaryDir dir;
    const SSHFileService service = serviceIn(dir.path());
    if (fileExists)
        service.writeConfig(u"Host a\n"_s);
    const std::optional<QString> backup = service.writeConfig(QString());
    QCOMPARE(backup.has_value(), fileExists);
    QVERIFY(QFileInfo::exists(service.configURL()));
    QCOMPARE(QFileInfo(service.configURL()).size(), 0);
}

void TestSSHFileService::textIsWrittenAsUtf8WithoutByteOrderMark_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("accents and emoji") << u"# café 🔑\nHost ü\n"_s
                                       << QByteArray("# caf\xc3\xa9 \xf0\x9f\x94\x91\nHost \xc3\xbc\n");
    QTest::newRow("CR LF kept") << u"Host a\r\n  Port 22\r\n"_s << QByteArray("Host a\r\n  Port 22\r\n");
    QTest::newRow("no final newline") << u"Host a"_s << QByteArray("Host a");
    QTest::newRow("user's own U+FEFF stays") << u"\uFEFFHost a\n"_s << QByteArray("\xef\xbb\xbfHost a\n");
}

void TestSSHFileService::textIsWrittenAsUtf8WithoutByteOrderMark()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, bytes);
    QTemporaryDir dir;
    const SSHFileService service = serviceIn(dir.path());
    service.writeKnownHosts(text);
    QCOMPARE(readBytes(service.knownHostsURL()), bytes);
    QCOMPARE(service.readKnownHosts(), text);
}

void TestSSHFileService::backupExistsBeforeTheWriteStarts()
{
    QTemporaryDir dir;
    const QString sshDirectory = dir.path() + u"/.ssh"_s;
    QStringList seenAtWrite;
    const SSHFileService service = serviceIn(dir.path(), FileManager([&](const QString& path, const QByteArray& bytes) {
        const QStringList backups = backupsIn(sshDirectory, u"config"_s);
        seenAtWrite << QString::number(backups.size());
        if (!backups.isEmpty())
            seenAtWrite << QString::fromUtf8(readBytes(sshDirectory + u"/"_s + backups.constFirst()));
        FileManager::writeWithSaveFile(path, bytes);
    }));
    QVERIFY(QDir(dir.path()).mkdir(u".ssh"_s));
    writeBytes(service.configURL(), "old\n");
    service.writeConfig(u"new\n"_s);
    QCOMPARE(seenAtWrite, (QStringList { u"1"_s, u"old\n"_s }));
}

void TestSSHFileService::symbolicLinkStaysAndItsTargetIsReplaced()
{
    QTemporaryDir dir;
    const QString target = dir.filePath(u"dotfiles/ssh/config"_s);
    QVERIFY(QDir(dir.path()).mkpath(u"dotfiles/ssh"_s));
    QVERIFY(QDir(dir.path()).mkdir(u".ssh"_s));
    writeBytes(target, "Host old\n");
    const SSHFileService service = serviceIn(dir.path());
    QVERIFY(QFile::link(target, service.configURL()));

    const std::optional<QString> backup = service.writeConfig(u"Host new\n"_s);

    QVERIFY(QFileInfo(service.configURL()).isSymLink());
    QCOMPARE(QFileInfo(service.configURL()).symLinkTarget(), target);
    QCOMPARE(readBytes(target), QByteArray("Host new\n"));
    QVERIFY(backup.has_value());
    QCOMPARE(QFileInfo(*backup).absolutePath(), dir.path() + u"/.ssh"_s);
    QVERIFY(QFileInfo(*backup).fileName().startsWith(u"config.backup-"_s));
    QVERIFY(!QFileInfo(*backup).isSymLink());
    QCOMPARE(readBytes(*backup), QByteArray("Host old\n"));
    QCOMPARE(QDir(dir.filePath(u"dotfiles/ssh"_s)).entryList(QDir::Files | QDir::Hidden), QStringList { u"config"_s });
}

void TestSSHFileService::danglingSymbolicLinkGetsItsTargetWritten()
{
    QTemporaryDir dir;
    const QString target = dir.filePath(u"dotfiles-config"_s);
    QVERIFY(QDir(dir.path()).mkdir(u".ssh"_s));
    const SSHFileService service = serviceIn(dir.path());
    QVERIFY(QFile::link(target, service.configURL()));
    QVERIFY(!service.writeConfig(u"Host a\n"_s).has_value());
    QVERIFY(QFileInfo(service.configURL()).isSymLink());
    QCOMPARE(readBytes(target), QByteArray("Host a\n"));
}

void TestSSHFileService::permissionBitsAreKept()
{
    QTemporaryDir dir;
    const SSHFileService service = serviceIn(dir.path());
    service.writeConfig(u"Host a\n"_s);
    const QByteArray path = QFile::encodeName(service.configURL());
    QCOMPARE(::chmod(path.constData(), 0600), 0);
    service.writeConfig(u"Host b\n"_s);
    struct stat status
    {
    };
    QCOMPARE(::stat(path.constData(), &status), 0);
    QCOMPARE(status.st_mode & 07777u, 0600u);
}

void TestSSHFileService::verificationMismatchKeepsTheNewFileAndTheBackup()
{
    QTemporaryDir dir;
    const SSHFileService service
        = serviceIn(dir.path(), landingWriter([](const QByteArray& bytes) { return bytes + "Host intruder\n"; }));
    QVERIFY(QDir(dir.path()).mkdir(u".ssh"_s));
    writeBytes(service.configURL(), "Host old\n");
    try {
        service.writeConfig(u"Host new\n"_s);
        QFAIL("the mismatch went unnoticed");
    } catch (const SSHFileServiceError& error) {
        QCOMPARE(error.kind(), SSHFileServiceError::Kind::writeVerificationFailed);
        QCOMPARE(error.path(), service.configURL());
        QCOMPARE(
            error.description(), u"Verificatie van opgeslagen bestand mislukt op "_s + service.configURL() + u"."_s);
    }
    QCOMPARE(readBytes(service.configURL()), QByteArray("Host new\nHost intruder\n"));
    const QStringList backups = backupsIn(dir.path() + u"/.ssh"_s, u"config"_s);
    QCOMPARE(backups.size(), 1);
    QCOMPARE(readBytes(dir.path() + u"/.ssh/"_s + backups.constFirst()), QByteArray("Host old\n"));
}

void TestSSHFileService::canonicallyEquivalentReadBackIsNoMismatch()
{
    // A file system that stores decomposed accents (as some do for names, and sync tools for content)
    // still holds the same text.
    QTemporaryDir dir;
    const SSHFileService service = serviceIn(dir.path(), landingWriter([](const QByteArray& bytes) {
        return QString::fromUtf8(bytes).normalized(QString::NormalizationForm_D).toUtf8();
    }));
    service.writeConfig(u"# café\n"_s);
    QCOMPARE(readBytes(service.configURL()), QByteArray("# cafe\xcc\x81\n"));
}

void TestSSHFileService::invalidUtf8OnReadBackNamesThePath()
{
    QTemporaryDir dir;
    const SSHFileService service
        = serviceIn(dir.path(), landingWriter([](const QByteArray& bytes) { return bytes + "\xff"; }));
    try {
        service.writeKnownHosts(u"host ssh-ed25519 AAAA\n"_s);
        QFAIL("invalid bytes were read back without error");
    } catch (const PlatformError& error) {
        QCOMPARE(error.description(),
            u"Lezen mislukt op "_s + service.knownHostsURL() + u": het bestand bevat geen geldige UTF-8"_s);
    }
}

void TestSSHFileService::failingWriteLeavesTheOldFileByteIdentical_data()
{
    QTest::addColumn<bool>("halfWritten");
    QTest::newRow("writer fails before writing") << false;
    QTest::newRow("writer fails half-way through") << true;
}

void TestSSHFileService::failingWriteLeavesTheOldFileByteIdentical()
{
    QFETCH(bool, halfWritten);
    QTemporaryDir dir;
    const SSHFileService service
        = serviceIn(dir.path(), FileManager([halfWritten](const QString& path, const QByteArray& bytes) {
              if (halfWritten) {
                  QSaveFile file(path);
                  if (file.open(QIODevice::WriteOnly))
                      file.write(bytes.left(bytes.size() / 2));
              }
              throw PlatformError(u"Schrijven mislukt op "_s + path + u": No space left on device"_s);
          }));
    const QByteArray old("Host old\n  User me\n");
    QVERIFY(QDir(dir.path()).mkdir(u".ssh"_s));
    writeBytes(service.configURL(), old);
    try {
        service.writeConfig(u"Host new\n  User someone-else\n"_s);
        QFAIL("the failing write went unnoticed");
    } catch (const PlatformError& error) {
        QCOMPARE(
            error.description(), u"Schrijven mislukt op "_s + service.configURL() + u": No space left on device"_s);
    }
    QCOMPARE(readBytes(service.configURL()), old);
    const QStringList files = QDir(dir.path() + u"/.ssh"_s).entryList(QDir::Files | QDir::Hidden);
    QCOMPARE(files.size(), 2); // the file and its backup, no temporary left behind
}

void TestSSHFileService::directoryThatCannotBeMadeNamesItsPath()
{
    QTemporaryDir dir;
    writeBytes(dir.filePath(u"home"_s), "a file where the home directory should be");
    const SSHFileService service = serviceIn(dir.filePath(u"home"_s));
    try {
        service.writeConfig(u"Host a\n"_s);
        QFAIL("the directory failure went unnoticed");
    } catch (const PlatformError& error) {
        QVERIFY2(error.description().startsWith(u"Map aanmaken mislukt op "_s + dir.filePath(u"home/.ssh"_s) + u": "_s),
            qPrintable(error.description()));
    }
}

void TestSSHFileService::directoryAtTheLocationChangesNothing()
{
    QTemporaryDir dir;
    const SSHFileService service = serviceIn(dir.path());
    QVERIFY(QDir(dir.path()).mkpath(u".ssh/config"_s));
    QVERIFY_THROWS_EXCEPTION(PlatformError, service.writeConfig(u"Host a\n"_s));
    QVERIFY(QFileInfo(service.configURL()).isDir());
    QCOMPARE(backupsIn(dir.path() + u"/.ssh"_s, u"config"_s), QStringList());
}

void TestSSHFileService::readingAMissingFileGivesEmptyText()
{
    QFETCH(QString, which);
    QTemporaryDir dir;
    const SSHFileService service = serviceIn(dir.path());
    QCOMPARE(which == u"config"_s ? service.readConfig() : service.readKnownHosts(), QString());
    QVERIFY(!QFileInfo::exists(dir.path() + u"/.ssh"_s));
}

void TestSSHFileService::readingKeepsEveryCharacter()
{
    QTemporaryDir dir;
    const SSHFileService service = serviceIn(dir.path());
    QVERIFY(QDir(dir.path()).mkdir(u".ssh"_s));
    const QByteArray bytes("\xef\xbb\xbfHost a\r\n\tPort 22\n\n# \xe2\x82\xac");
    writeBytes(service.configURL(), bytes);
    QCOMPARE(service.readConfig().toUtf8(), bytes);
}

void TestSSHFileService::readingInvalidUtf8NamesThePath()
{
    QFETCH(QString, which);
    QTemporaryDir dir;
    const SSHFileService service = serviceIn(dir.path());
    QVERIFY(QDir(dir.path()).mkdir(u".ssh"_s));
    writeBytes(locationOf(service, which), "Host caf\xe9\n");
    try {
        which == u"config"_s ? service.readConfig() : service.readKnownHosts();
        QFAIL("invalid bytes were read without error");
    } catch (const PlatformError& error) {
        QCOMPARE(error.description(),
            u"Lezen mislukt op "_s + locationOf(service, which) + u": het bestand bevat geen geldige UTF-8"_s);
    }
}

QTEST_GUILESS_MAIN(TestSSHFileService)
#include "test_ssh_file_service.moc"
