#include "FileManager.h"
#include "ServiceError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
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

unsigned modeOf(const QString& path)
{
    struct stat status
    {
    };
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777u : 0u;
}

// Runs operation and returns the description of the PlatformError it throws, or "<no error>".
template<typename Operation> QString platformErrorOf(Operation operation)
{
    try {
        operation();
    } catch (const PlatformError& error) {
        return error.description();
    }
    return u"<no error>"_s;
}
} // namespace

class TestFileManager : public QObject
{
    Q_OBJECT

private slots:
    // Strict decoding
    void decodeAcceptsValidUtf8_data();
    void decodeAcceptsValidUtf8();
    void decodeRejectsInvalidUtf8_data();
    void decodeRejectsInvalidUtf8();
    void readUtf8TextNamesThePathOfInvalidBytes();
    void readingAMissingFileNamesThePath();

    // Directories and copies
    void createDirectoryMakesIntermediateDirectories();
    void createDirectoryUnderARegularFileFailsWithThePath();
    void copyRefusesAnExistingDestinationAndKeepsIt();
    void copyOfASymbolicLinkIsARegularFileWithTheTargetsBytes();
    void fileExistsFollowsSymbolicLinks();

    // The default atomic writer
    void saveFileKeepsPermissionBits_data();
    void saveFileKeepsPermissionBits();
    void saveFileWritesThroughASymbolicLink();
    void saveFileOntoADirectoryFailsWithThePath();
    void saveFileAbandonedHalfWayLeavesTheOldFile();
    void writeAtomicallyUsesTheInjectedWriter();
};

void TestFileManager::decodeAcceptsValidUtf8_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("expected");
    QTest::newRow("empty") << QByteArray() << QString();
    QTest::newRow("ascii with CR LF") << QByteArray("Host a\r\n") << u"Host a\r\n"_s;
    QTest::newRow("two-byte letters") << QByteArray("caf\xc3\xa9") << u"café"_s;
    QTest::newRow("four-byte emoji") << QByteArray("\xf0\x9f\x94\x91") << u"🔑"_s;
    QTest::newRow("byte-order mark kept as a character") << QByteArray("\xef\xbb\xbfHost") << u"\uFEFFHost"_s;
    QTest::newRow("NUL byte") << QByteArray("a\0b", 3) << QString(u"a\0b"_s);
}

void TestFileManager::decodeAcceptsValidUtf8()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, expected);
    const std::optional<QString> text = FileManager::decodeUtf8Strictly(bytes);
    QVERIFY(text.has_value());
    QCOMPARE(*text, expected);
}

void TestFileManager::decodeRejectsInvalidUtf8_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("latin-1 byte") << QByteArray("caf\xe9 ok");
    QTest::newRow("lone continuation byte") << QByteArray("a\x80 b");
    QTest::newRow("sequence cut off at the end") << QByteArray("Host caf\xc3");
    QTest::newRow("four-byte sequence cut off at the end") << QByteArray("x\xf0\x9f\x94");
    QTest::newRow("overlong slash") << QByteArray("\xc0\xaf");
    QTest::newRow("encoded surrogate") << QByteArray("\xed\xa0\x80");
    QTest::newRow("beyond U+10FFFF") << QByteArray("\xf4\x90\x80\x80");
    QTest::newRow("0xFF byte") << QByteArray("\xff");
}

void TestFileManager::decodeRejectsInvalidUtf8()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(!FileManager::decodeUtf8Strictly(bytes).has_value());
}

void TestFileManager::readUtf8TextNamesThePathOfInvalidBytes()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(u"config"_s);
    writeBytes(path, QByteArray("Host caf\xe9\n"));
    QCOMPARE(platformErrorOf([&] { FileManager().readUtf8Text(path); }),
        u"Lezen mislukt op "_s + path + u": het bestand bevat geen geldige UTF-8"_s);
    QCOMPARE(readBytes(path), QByteArray("Host caf\xe9\n"));
}

void TestFileManager::readingAMissingFileNamesThePath()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(u"absent"_s);
    QVERIFY(platformErrorOf([&] { FileManager().contents(path); }).startsWith(u"Lezen mislukt op "_s + path + u": "_s));
}

void TestFileManager::createDirectoryMakesIntermediateDirectories()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(u"a/b/.ssh"_s);
    FileManager().createDirectory(path);
    QVERIFY(QFileInfo(path).isDir());
}

void TestFileManager::createDirectoryUnderARegularFileFailsWithThePath()
{
    QTemporaryDir dir;
    writeBytes(dir.filePath(u"plain"_s), "x");
    const QString path = dir.filePath(u"plain/.ssh"_s);
    const QString error = platformErrorOf([&] { FileManager().createDirectory(path); });
    QVERIFY2(error.startsWith(u"Map aanmaken mislukt op "_s + path + u": "_s), qPrintable(error));
    QCOMPARE(readBytes(dir.filePath(u"plain"_s)), QByteArray("x"));
}

void TestFileManager::copyRefusesAnExistingDestinationAndKeepsIt()
{
    QTemporaryDir dir;
    const QString source = dir.filePath(u"config"_s);
    const QString destination = dir.filePath(u"config.backup"_s);
    writeBytes(source, "new");
    writeBytes(destination, "earlier backup");
    const QString error = platformErrorOf([&] { FileManager().copyItem(source, destination); });
    QVERIFY2(error.startsWith(u"Backup maken mislukt op "_s + destination + u": "_s), qPrintable(error));
    QCOMPARE(readBytes(destination), QByteArray("earlier backup"));
    QCOMPARE(readBytes(source), QByteArray("new"));
}

void TestFileManager::copyOfASymbolicLinkIsARegularFileWithTheTargetsBytes()
{
    QTemporaryDir dir;
    const QString target = dir.filePath(u"target"_s);
    const QString link = dir.filePath(u"link"_s);
    writeBytes(target, "old bytes\n");
    QVERIFY(QFile::link(target, link));
    FileManager().copyItem(link, dir.filePath(u"copy"_s));
    const QFileInfo copy(dir.filePath(u"copy"_s));
    QVERIFY(!copy.isSymLink());
    QVERIFY(copy.isFile());
    QCOMPARE(readBytes(copy.filePath()), QByteArray("old bytes\n"));
    QVERIFY(QFileInfo(link).isSymLink());
}

void TestFileManager::fileExistsFollowsSymbolicLinks()
{
    QTemporaryDir dir;
    QVERIFY(QFile::link(dir.filePath(u"nowhere"_s), dir.filePath(u"dangling"_s)));
    QVERIFY(!FileManager().fileExists(dir.filePath(u"dangling"_s)));
    QVERIFY(FileManager().fileExists(dir.path()));
    writeBytes(dir.filePath(u"nowhere"_s), "");
    QVERIFY(FileManager().fileExists(dir.filePath(u"dangling"_s)));
}

void TestFileManager::saveFileKeepsPermissionBits_data()
{
    QTest::addColumn<unsigned>("mode");
    QTest::newRow("private 0600") << 0600u;
    QTest::newRow("readable 0644") << 0644u;
    QTest::newRow("group-writable 0660") << 0660u;
}

void TestFileManager::saveFileKeepsPermissionBits()
{
    QFETCH(unsigned, mode);
    QTemporaryDir dir;
    const QString path = dir.filePath(u"config"_s);
    writeBytes(path, "old");
    QCOMPARE(::chmod(QFile::encodeName(path).constData(), mode), 0);
    FileManager::writeWithSaveFile(path, "new");
    QCOMPARE(readBytes(path), QByteArray("new"));
    QCOMPARE(modeOf(path), mode);
}

void TestFileManager::saveFileWritesThroughASymbolicLink()
{
    QTemporaryDir dir;
    const QString target = dir.filePath(u"target"_s);
    const QString link = dir.filePath(u"link"_s);
    writeBytes(target, "old");
    QVERIFY(QFile::link(target, link));
    FileManager::writeWithSaveFile(link, "new");
    QVERIFY(QFileInfo(link).isSymLink());
    QCOMPARE(QFileInfo(link).symLinkTarget(), target);
    QCOMPARE(readBytes(target), QByteArray("new"));
}

void TestFileManager::saveFileOntoADirectoryFailsWithThePath()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(u"config"_s);
    QVERIFY(QDir(dir.path()).mkdir(u"config"_s));
    const QString error = platformErrorOf([&] { FileManager::writeWithSaveFile(path, "new"); });
    QVERIFY2(error.startsWith(u"Schrijven mislukt op "_s + path + u": "_s), qPrintable(error));
    QVERIFY(QFileInfo(path).isDir());
}

void TestFileManager::saveFileAbandonedHalfWayLeavesTheOldFile()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(u"config"_s);
    writeBytes(path, "old content\n");
    {
        // What the writer does when an error cuts it off after some bytes: the save file is dropped uncommitted.
        QSaveFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write("half of the new"), 15);
    }
    QCOMPARE(readBytes(path), QByteArray("old content\n"));
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList { u"config"_s });
}

void TestFileManager::writeAtomicallyUsesTheInjectedWriter()
{
    QStringList calls;
    const FileManager manager(
        [&calls](const QString& path, const QByteArray& bytes) { calls << path + u"="_s + QString::fromUtf8(bytes); });
    manager.writeAtomically(u"/nowhere/config"_s, "Host a\n");
    QCOMPARE(calls, QStringList { u"/nowhere/config=Host a\n"_s });
}

QTEST_GUILESS_MAIN(TestFileManager)
#include "test_file_manager.moc"
