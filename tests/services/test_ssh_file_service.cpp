#include "HomeDirectory.h"
#include "SSHFileService.h"
#include "SSHFileServiceError.h"
#include "ServiceError.h"
#include "ServiceInHome.h"
#include "TestFiles.h"

#include <QRegularExpression>
#include <QSaveFile>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>

using namespace Qt::StringLiterals;

namespace
{
// Every backup of fileName in directory, by name.
QStringList backupsIn(const QString& directory, const QString& fileName)
{
    return QDir(directory).entryList({ fileName + u".backup-*"_s }, QDir::Files | QDir::Hidden, QDir::Name);
}

// The writer a misbehaving disk or a racing process amounts to: what lands is not what was asked for.
FileManager landingWriter(const std::function<QByteArray(const QByteArray&)>& alter)
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

// Sets the modification time of path itself, a link or directory included.
bool setModified(const QString& path, const QDateTime& moment)
{
    const qint64 milliseconds = moment.toMSecsSinceEpoch();
    const timespec time { static_cast<time_t>(milliseconds / 1000), static_cast<long>(milliseconds % 1000) * 1000000 };
    const timespec times[] = { time, time };
    return ::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, AT_SYMLINK_NOFOLLOW) == 0;
}

// Sets the process's umask for as long as it lives.
class UmaskScope
{
public:
    explicit UmaskScope(mode_t mask)
        : m_previous(::umask(mask))
    { }
    ~UmaskScope() { ::umask(m_previous); }
    UmaskScope(const UmaskScope&) = delete;
    UmaskScope& operator=(const UmaskScope&) = delete;

private:
    mode_t m_previous;
};

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
    void defaultLocationsLieInTheUsersSshDirectory()
    {
        const SSHFileService service;
        QCOMPARE(service.configURL(), QDir(userHomeDirectory()).filePath(u".ssh/config"_s));
        QCOMPARE(service.knownHostsURL(), QDir(userHomeDirectory()).filePath(u".ssh/known_hosts"_s));
        QVERIFY(QFileInfo(service.configURL()).isAbsolute());
    }

    void backupFileName_data()
    {
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<QDateTime>("moment");
        QTest::addColumn<QString>("uuid");
        QTest::addColumn<QString>("expected");
        QTest::newRow("afternoon, milliseconds padded")
            << u"config"_s << QDateTime(QDate(2024, 1, 31), QTime(14, 25, 1, 7))
            << u"3f2a9c1b-1111-4222-8333-444455556666"_s << u"config.backup-20240131-142501-007-3F2A9C1B"_s;
        QTest::newRow("midnight on new year")
            << u"known_hosts"_s << QDateTime(QDate(2024, 1, 1), QTime(0, 0))
            << u"0b77e4d2-aaaa-4bbb-8ccc-dddddddddddd"_s << u"known_hosts.backup-20240101-000000-000-0B77E4D2"_s;
    }

    void backupFileName()
    {
        QFETCH(QString, fileName);
        QFETCH(QDateTime, moment);
        QFETCH(QString, uuid);
        QFETCH(QString, expected);
        QCOMPARE(SSHFileService::backupFileName(fileName, moment, QUuid::fromString(uuid)), expected);
    }

    void savingWithoutDirectoryCreatesItAndMakesNoBackup_data() { addFileRows(); }
    void savingWithoutDirectoryCreatesItAndMakesNoBackup()
    {
        QFETCH(QString, which);
        QTemporaryDir dir;
        const QString home = dir.filePath(u"nested/home"_s);
        const SSHFileService service = serviceIn(home);
        QVERIFY(!save(service, which, u"Host a\n"_s).has_value());
        QCOMPARE(readBytes(locationOf(service, which)), QByteArray("Host a\n"));
        QCOMPARE(backupsIn(home + u"/.ssh"_s, which), QStringList());
    }

    void savingAnExistingFileLeavesAByteIdenticalBackup_data() { addFileRows(); }
    void savingAnExistingFileLeavesAByteIdenticalBackup()
    {
        QFETCH(QString, which);
        QTemporaryDir dir;
        const SSHFileService service = serviceIn(dir.path());
        const QByteArray old("# old\r\nHost caf\xc3\xa9\n\n  odd  spacing\t\n");
        QVERIFY(writeBytes(locationOf(service, which), old));

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

    void quickSavesEachLeaveTheirOwnBackup()
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

    void savingTheEmptyText_data()
    {
        QTest::addColumn<bool>("fileExists");
        QTest::newRow("no file yet") << false;
        QTest::newRow("replacing a file") << true;
    }

    void savingTheEmptyText()
    {
        QFETCH(bool, fileExists);
        QTemporaryDir dir;
        const SSHFileService service = serviceIn(dir.path());
        if (fileExists)
            service.writeConfig(u"Host a\n"_s);
        QCOMPARE(service.writeConfig(QString()).has_value(), fileExists);
        QCOMPARE(readBytes(service.configURL()), QByteArray());
    }

    void textIsWrittenAndReadAsUtf8WithoutByteOrderMark_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("accents and emoji")
            << u"# café 🔑\nHost ü\n"_s << QByteArray("# caf\xc3\xa9 \xf0\x9f\x94\x91\nHost \xc3\xbc\n");
        QTest::newRow("CR LF kept") << u"Host a\r\n  Port 22\r\n"_s << QByteArray("Host a\r\n  Port 22\r\n");
        QTest::newRow("no final newline") << u"Host a"_s << QByteArray("Host a");
        QTest::newRow("user's own U+FEFF stays") << u"\uFEFFHost a\n"_s << QByteArray("\xef\xbb\xbfHost a\n");
    }

    void textIsWrittenAndReadAsUtf8WithoutByteOrderMark()
    {
        QFETCH(QString, text);
        QFETCH(QByteArray, bytes);
        QTemporaryDir dir;
        const SSHFileService service = serviceIn(dir.path());
        service.writeKnownHosts(text);
        QCOMPARE(readBytes(service.knownHostsURL()), bytes);
        QCOMPARE(service.readKnownHosts(), text);
    }

    void backupExistsBeforeTheWriteStarts()
    {
        QTemporaryDir dir;
        const QString sshDirectory = dir.path() + u"/.ssh"_s;
        QStringList seenAtWrite;
        const SSHFileService service
            = serviceIn(dir.path(), FileManager([&](const QString& path, const QByteArray& bytes) {
                  for (const QString& backup : backupsIn(sshDirectory, u"config"_s))
                      seenAtWrite << QString::fromUtf8(readBytes(sshDirectory + u"/"_s + backup));
                  FileManager::writeWithSaveFile(path, bytes);
              }));
        QVERIFY(writeBytes(service.configURL(), "old\n"));
        service.writeConfig(u"new\n"_s);
        QCOMPARE(seenAtWrite, QStringList { u"old\n"_s });
    }

    void symbolicLinkStaysAndItsTargetIsReplaced()
    {
        QTemporaryDir dir;
        const QString target = dir.filePath(u"dotfiles/ssh/config"_s);
        QVERIFY(writeBytes(target, "Host old\n") && QDir(dir.path()).mkdir(u".ssh"_s));
        const SSHFileService service = serviceIn(dir.path());
        QVERIFY(QFile::link(target, service.configURL()));
        QCOMPARE(::chmod(QFile::encodeName(target).constData(), 0600), 0);

        const std::optional<QString> backup = service.writeConfig(u"Host new\n"_s);

        QCOMPARE(QFileInfo(service.configURL()).symLinkTarget(), target);
        QCOMPARE(readBytes(target), QByteArray("Host new\n"));
        QCOMPARE(modeOf(target), 0600u);
        QVERIFY(backup.has_value());
        QCOMPARE(QFileInfo(*backup).absolutePath(), dir.path() + u"/.ssh"_s);
        QVERIFY(QFileInfo(*backup).fileName().startsWith(u"config.backup-"_s));
        QVERIFY(!QFileInfo(*backup).isSymLink());
        QCOMPARE(readBytes(*backup), QByteArray("Host old\n"));
        QCOMPARE(
            QDir(dir.filePath(u"dotfiles/ssh"_s)).entryList(QDir::Files | QDir::Hidden), QStringList { u"config"_s });
    }

    void danglingSymbolicLinkGetsItsTargetWritten()
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

    void permissionBitsAreKept()
    {
        QTemporaryDir dir;
        const SSHFileService service = serviceIn(dir.path());
        service.writeConfig(u"Host a\n"_s);
        QCOMPARE(::chmod(QFile::encodeName(service.configURL()).constData(), 0600), 0);
        service.writeConfig(u"Host b\n"_s);
        QCOMPARE(modeOf(service.configURL()), 0600u);
    }

    void verificationMismatchKeepsTheNewFileAndTheBackup()
    {
        QTemporaryDir dir;
        const SSHFileService service
            = serviceIn(dir.path(), landingWriter([](const QByteArray& bytes) { return bytes + "Host intruder\n"; }));
        QVERIFY(writeBytes(service.configURL(), "Host old\n"));
        try {
            service.writeConfig(u"Host new\n"_s);
            QFAIL("the mismatch went unnoticed");
        } catch (const SSHFileServiceError& error) {
            QCOMPARE(error.kind(), SSHFileServiceError::Kind::writeVerificationFailed);
            QCOMPARE(error.path(), service.configURL());
            QCOMPARE(error.description(),
                u"Verificatie van opgeslagen bestand mislukt op "_s + service.configURL() + u"."_s);
        }
        QCOMPARE(readBytes(service.configURL()), QByteArray("Host new\nHost intruder\n"));
        const QStringList backups = backupsIn(dir.path() + u"/.ssh"_s, u"config"_s);
        QCOMPARE(backups.size(), 1);
        QCOMPARE(readBytes(dir.path() + u"/.ssh/"_s + backups.constFirst()), QByteArray("Host old\n"));
    }

    void canonicallyEquivalentReadBackIsNoMismatch()
    {
        // Some file systems and sync tools store decomposed accents: still the same text.
        QTemporaryDir dir;
        const SSHFileService service = serviceIn(dir.path(), landingWriter([](const QByteArray& bytes) {
            return QString::fromUtf8(bytes).normalized(QString::NormalizationForm_D).toUtf8();
        }));
        service.writeConfig(u"# café\n"_s);
        QCOMPARE(readBytes(service.configURL()), QByteArray("# cafe\xcc\x81\n"));
    }

    void invalidUtf8OnReadBackNamesThePath()
    {
        QTemporaryDir dir;
        const SSHFileService service
            = serviceIn(dir.path(), landingWriter([](const QByteArray& bytes) { return bytes + "\xff"; }));
        QCOMPARE(errorOf<PlatformError>([&] { service.writeKnownHosts(u"host ssh-ed25519 AAAA\n"_s); }),
            u"Lezen mislukt op "_s + service.knownHostsURL() + u": het bestand bevat geen geldige UTF-8"_s);
    }

    void failingWriteLeavesTheOldFileByteIdentical_data()
    {
        QTest::addColumn<bool>("halfWritten");
        QTest::newRow("writer fails before writing") << false;
        QTest::newRow("writer fails half-way through") << true;
    }

    void failingWriteLeavesTheOldFileByteIdentical()
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
        QVERIFY(writeBytes(service.configURL(), old));
        QCOMPARE(errorOf<PlatformError>([&] { service.writeConfig(u"Host new\n  User someone-else\n"_s); }),
            u"Schrijven mislukt op "_s + service.configURL() + u": No space left on device"_s);
        QCOMPARE(readBytes(service.configURL()), old);
        // The file and its backup, no temporary left behind.
        QCOMPARE(QDir(dir.path() + u"/.ssh"_s).entryList(QDir::Files | QDir::Hidden).size(), 2);
    }

    void blockedLocationsNameTheirPathAndChangeNothing()
    {
        QTemporaryDir dir;
        QVERIFY(writeBytes(dir.filePath(u"home"_s), "a file where the home directory should be"));
        const QString error = errorOf<PlatformError>([&] { serviceIn(dir.filePath(u"home"_s)).writeConfig(u"a"_s); });
        QVERIFY2(error.startsWith(u"Map aanmaken mislukt op "_s + dir.filePath(u"home/.ssh"_s) + u": "_s),
            qPrintable(error));

        const SSHFileService service = serviceIn(dir.path());
        QVERIFY(QDir(dir.path()).mkpath(u".ssh/config"_s));
        QVERIFY_THROWS_EXCEPTION(PlatformError, service.writeConfig(u"Host a\n"_s));
        QVERIFY(QFileInfo(service.configURL()).isDir());
        QCOMPARE(backupsIn(dir.path() + u"/.ssh"_s, u"config"_s), QStringList());
    }

    void savingRemovesOnlyStaleTemporaryFilesOfItsOwn()
    {
        // A save killed between writing its temporary file and the rename leaves "config.XXXXXX" behind.
        QTemporaryDir dir;
        const SSHFileService service = serviceIn(dir.path());
        QVERIFY(writeBytes(service.configURL(), "Host old\n"));
        const QString ssh = dir.path() + u"/.ssh/"_s;
        const QDateTime yesterday = QDateTime::currentDateTime().addDays(-1);
        const QStringList stale { u"config.AbCdEf"_s, u"config.a1B2c3"_s, u"config.000000"_s };
        const QStringList kept { u"config.backup-20240131-142501-007-3F2A9C1B"_s, u"config.AbCdE"_s,
            u"config.AbCdEfG"_s, u"config.Ab-_Ef"_s, u"known_hosts.AbCdEf"_s, u"xconfig.AbCdEf"_s, u"notes"_s };
        for (const QString& name : stale + kept)
            QVERIFY(writeBytes(ssh + name, "left over") && setModified(ssh + name, yesterday));
        QVERIFY(QDir(ssh).mkdir(u"config.DirDir"_s) && setModified(ssh + u"config.DirDir"_s, yesterday));
        QVERIFY(QFile::link(ssh + u"notes"_s, ssh + u"config.LnkLnk"_s)
            && setModified(ssh + u"config.LnkLnk"_s, yesterday));
        // Written after this process started: perhaps another instance's save in progress.
        QVERIFY(writeBytes(ssh + u"config.Young1"_s, "in progress")
            && setModified(ssh + u"config.Young1"_s, QDateTime::currentDateTime()));

        const std::optional<QString> backup = service.writeConfig(u"Host new\n"_s);

        QStringList expected = kept
            + QStringList { u"config"_s, u"config.DirDir"_s, u"config.LnkLnk"_s, u"config.Young1"_s,
                  QFileInfo(backup.value()).fileName() };
        expected.sort();
        QCOMPARE(QDir(ssh).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name),
            expected);
    }

    void modesSurviveAPermissiveUmask_data()
    {
        QTest::addColumn<unsigned>("mode");
        QTest::newRow("private 0600") << 0600u;
        QTest::newRow("group-readable 0640") << 0640u;
        QTest::newRow("readable 0644") << 0644u;
    }

    void modesSurviveAPermissiveUmask()
    {
        // An existing file keeps its mode and its backup is never looser, whatever the umask.
        QFETCH(unsigned, mode);
        const UmaskScope permissive(0);
        QTemporaryDir dir;
        const SSHFileService service = serviceIn(dir.path());
        QVERIFY(writeBytes(service.configURL(), "Host old\n"));
        QCOMPARE(::chmod(QFile::encodeName(service.configURL()).constData(), mode), 0);
        const std::optional<QString> backup = service.writeConfig(u"Host new\n"_s);
        QCOMPARE(modeOf(service.configURL()), mode);
        QVERIFY(backup.has_value());
        QCOMPARE(modeOf(*backup) & ~mode, 0u);
    }

    void newFilesTakeTheirModeFromTheUmask_data()
    {
        QTest::addColumn<unsigned>("mask");
        QTest::newRow("umask 022") << 022u;
        QTest::newRow("umask 077") << 077u;
    }

    void newFilesTakeTheirModeFromTheUmask()
    {
        QFETCH(unsigned, mask);
        const UmaskScope scope(mask);
        QTemporaryDir dir;
        const SSHFileService service = serviceIn(dir.path());
        service.writeConfig(u"Host a\n"_s);
        QCOMPARE(modeOf(dir.path() + u"/.ssh"_s), 0777u & ~mask);
        QCOMPARE(modeOf(service.configURL()), 0666u & ~mask);
    }

    void readingAMissingFileGivesEmptyText_data() { addFileRows(); }
    void readingAMissingFileGivesEmptyText()
    {
        QFETCH(QString, which);
        QTemporaryDir dir;
        const SSHFileService service = serviceIn(dir.path());
        QCOMPARE(which == u"config"_s ? service.readConfig() : service.readKnownHosts(), QString());
        QVERIFY(!QFileInfo::exists(dir.path() + u"/.ssh"_s));
    }

    void readingInvalidUtf8NamesThePath_data() { addFileRows(); }
    void readingInvalidUtf8NamesThePath()
    {
        QFETCH(QString, which);
        QTemporaryDir dir;
        const SSHFileService service = serviceIn(dir.path());
        QVERIFY(writeBytes(locationOf(service, which), "Host caf\xe9\n"));
        QCOMPARE(
            errorOf<PlatformError>([&] { which == u"config"_s ? service.readConfig() : service.readKnownHosts(); }),
            u"Lezen mislukt op "_s + locationOf(service, which) + u": het bestand bevat geen geldige UTF-8"_s);
    }
};

QTEST_GUILESS_MAIN(TestSSHFileService)
#include "test_ssh_file_service.moc"
