// The file layer under the SSH file service: strict decoding, copies, directories and the atomic writer.
// Writing through links, half-done writes and read-back errors are proven through the service itself.

#include "FileManager.h"
#include "ServiceError.h"
#include "TestFiles.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QString rejected = u"<rejected>"_s;
} // namespace

class TestFileManager : public QObject
{
    Q_OBJECT

private slots:
    void decodeUtf8Strictly_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("expected");
        QTest::newRow("empty") << QByteArray() << QString();
        QTest::newRow("ascii with CR LF") << QByteArray("Host a\r\n") << u"Host a\r\n"_s;
        QTest::newRow("two-byte letters") << QByteArray("caf\xc3\xa9") << u"café"_s;
        QTest::newRow("four-byte emoji") << QByteArray("\xf0\x9f\x94\x91") << u"🔑"_s;
        QTest::newRow("byte-order mark kept as a character") << QByteArray("\xef\xbb\xbfHost") << u"\uFEFFHost"_s;
        QTest::newRow("NUL byte") << QByteArray("a\0b", 3) << QString(u"a\0b"_s);
        QTest::newRow("latin-1 byte") << QByteArray("caf\xe9 ok") << rejected;
        QTest::newRow("lone continuation byte") << QByteArray("a\x80 b") << rejected;
        QTest::newRow("sequence cut off at the end") << QByteArray("Host caf\xc3") << rejected;
        QTest::newRow("four-byte sequence cut off at the end") << QByteArray("x\xf0\x9f\x94") << rejected;
        QTest::newRow("overlong slash") << QByteArray("\xc0\xaf") << rejected;
        QTest::newRow("encoded surrogate") << QByteArray("\xed\xa0\x80") << rejected;
        QTest::newRow("beyond U+10FFFF") << QByteArray("\xf4\x90\x80\x80") << rejected;
        QTest::newRow("0xFF byte") << QByteArray("\xff") << rejected;
    }

    void decodeUtf8Strictly()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, expected);
        QCOMPARE(FileManager::decodeUtf8Strictly(bytes).value_or(rejected), expected);
    }

    void readingAMissingFileNamesThePath()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(u"absent"_s);
        QVERIFY(errorOf<PlatformError>([&] {
            FileManager().contents(path);
        }).startsWith(u"Lezen mislukt op "_s + path + u": "_s));
    }

    void copyRefusesAnExistingDestinationAndKeepsIt()
    {
        QTemporaryDir dir;
        const QString source = dir.filePath(u"config"_s);
        const QString destination = dir.filePath(u"config.backup"_s);
        QVERIFY(writeBytes(source, "new") && writeBytes(destination, "earlier backup"));
        const QString error = errorOf<PlatformError>([&] { FileManager().copyItem(source, destination); });
        QVERIFY2(error.startsWith(u"Backup maken mislukt op "_s + destination + u": "_s), qPrintable(error));
        QCOMPARE(readBytes(destination), QByteArray("earlier backup"));
        QCOMPARE(readBytes(source), QByteArray("new"));
    }

    void fileExistsFollowsSymbolicLinks()
    {
        QTemporaryDir dir;
        QVERIFY(QFile::link(dir.filePath(u"nowhere"_s), dir.filePath(u"dangling"_s)));
        QVERIFY(!FileManager().fileExists(dir.filePath(u"dangling"_s)));
        QVERIFY(FileManager().fileExists(dir.path()));
        QVERIFY(writeBytes(dir.filePath(u"nowhere"_s), ""));
        QVERIFY(FileManager().fileExists(dir.filePath(u"dangling"_s)));
    }

    void saveFileKeepsPermissionBits_data()
    {
        QTest::addColumn<unsigned>("mode");
        QTest::newRow("private 0600") << 0600u;
        QTest::newRow("readable 0644") << 0644u;
        QTest::newRow("group-writable 0660") << 0660u;
    }

    void saveFileKeepsPermissionBits()
    {
        QFETCH(unsigned, mode);
        QTemporaryDir dir;
        const QString path = dir.filePath(u"config"_s);
        QVERIFY(writeBytes(path, "old"));
        QCOMPARE(::chmod(QFile::encodeName(path).constData(), mode), 0);
        FileManager::writeWithSaveFile(path, "new");
        QCOMPARE(readBytes(path), QByteArray("new"));
        QCOMPARE(modeOf(path), mode);
    }
};

QTEST_GUILESS_MAIN(TestFileManager)
#include "test_file_manager.moc"
