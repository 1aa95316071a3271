#include "SchemeHandlerLookup.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
void writeFile(const QString& path, const QByteArray& content)
{
    QDir().mkpath(path.section(u'/', 0, -2));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}
} // namespace

class TestSchemeHandlerLookup : public QObject
{
    Q_OBJECT

private slots:
    void hasHandler_data();
    void hasHandler();
};

void TestSchemeHandlerLookup::hasHandler_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("scheme");
    QTest::addColumn<bool>("expected");

    const QByteArray entry = "[Desktop Entry]\nName=Warp\nExec=warp %u\nMimeType=text/plain;x-scheme-handler/warp;\n";
    QTest::newRow("nothing registered") << QString() << QByteArray() << u"warp"_s << false;
    QTest::newRow("user default") << u"config/mimeapps.list"_s
                                  << QByteArray("[Default Applications]\nx-scheme-handler/warp=dev.warp.Warp.desktop\n")
                                  << u"warp"_s << true;
    QTest::newRow("scheme ignores case") << u"config/mimeapps.list"_s
                                         << QByteArray("[Default Applications]\nx-scheme-handler/warp=w.desktop\n")
                                         << u"WARP"_s << true;
    QTest::newRow("added association in system config")
        << u"xdg/mimeapps.list"_s << QByteArray("[Added Associations]\nx-scheme-handler/warp=w.desktop;\n") << u"warp"_s
        << true;
    QTest::newRow("removed association says nothing")
        << u"config/mimeapps.list"_s << QByteArray("[Removed Associations]\nx-scheme-handler/warp=w.desktop;\n")
        << u"warp"_s << false;
    QTest::newRow("empty default") << u"config/mimeapps.list"_s
                                   << QByteArray("[Default Applications]\nx-scheme-handler/warp=;\n") << u"warp"_s
                                   << false;
    QTest::newRow("other scheme only") << u"config/mimeapps.list"_s
                                       << QByteArray("[Default Applications]\nx-scheme-handler/warppreview=p.desktop\n")
                                       << u"warp"_s << false;
    QTest::newRow("list in applications directory")
        << u"apps/mimeapps.list"_s << QByteArray("[Default Applications]\nx-scheme-handler/warp=w.desktop\n")
        << u"warp"_s << true;
    QTest::newRow("mime cache") << u"apps/mimeinfo.cache"_s
                                << QByteArray("[MIME Cache]\nx-scheme-handler/warp=dev.warp.Warp.desktop;\n")
                                << u"warp"_s << true;
    QTest::newRow("entry declares it") << u"apps/dev.warp.Warp.desktop"_s << entry << u"warp"_s << true;
    QTest::newRow("entry declares another") << u"apps/dev.warp.Warp.desktop"_s << entry << u"warppreview"_s << false;
    QTest::newRow("empty scheme") << u"apps/dev.warp.Warp.desktop"_s << entry << QString() << false;
}

void TestSchemeHandlerLookup::hasHandler()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, content);
    QFETCH(QString, scheme);
    QFETCH(bool, expected);
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    if (!file.isEmpty())
        writeFile(dir.filePath(file), content);

    const SchemeHandlerLookup lookup(
        { dir.filePath(u"config"_s), dir.filePath(u"xdg"_s) }, { dir.filePath(u"apps"_s) });
    QCOMPARE(lookup.hasHandler(scheme), expected);
}

QTEST_GUILESS_MAIN(TestSchemeHandlerLookup)
#include "test_scheme_handler_lookup.moc"
