#include "TerminalAppDiscoveryService.h"

#include <QTest>

using namespace Qt::StringLiterals;

using LaunchMode = TerminalApp::LaunchMode;

namespace
{
/// An application registry in memory that records which identifiers were asked for.
class FakeLocator final : public ApplicationLocating
{
public:
    void install(const QString& identifier, const QString& location, std::optional<QVariantMap> information)
    {
        m_locations.insert(identifier, location);
        if (information)
            m_information.insert(location, *information);
    }

    std::optional<QString> applicationLocation(const QString& bundleIdentifier) const override
    {
        m_asked << bundleIdentifier;
        if (!m_locations.contains(bundleIdentifier))
            return std::nullopt;
        return m_locations.value(bundleIdentifier);
    }

    std::optional<QVariantMap> applicationInformation(const QString& location) const override
    {
        if (!m_information.contains(location))
            return std::nullopt;
        return m_information.value(location);
    }

    const QStringList& asked() const { return m_asked; }

private:
    QHash<QString, QString> m_locations;
    QHash<QString, QVariantMap> m_information;
    mutable QStringList m_asked;
};

QVariantMap named(const QVariant& displayName, const QVariant& name)
{
    QVariantMap information;
    if (displayName.isValid())
        information.insert(u"CFBundleDisplayName"_s, displayName);
    if (name.isValid())
        information.insert(u"CFBundleName"_s, name);
    return information;
}

QStringList identifiersOf(const QList<TerminalApp>& apps)
{
    QStringList identifiers;
    for (const TerminalApp& app : apps)
        identifiers << app.bundleIdentifier();
    return identifiers;
}
} // namespace

class TestTerminalDiscovery : public QObject
{
    Q_OBJECT

private slots:
    void candidateTable();
    void nothingInstalledGivesEmptyList();
    void resultFollowsTableOrder_data();
    void resultFollowsTableOrder();
    void everyCandidateAskedOnceInTableOrder();
    void fieldsComeFromTheCandidate();
    void bothWarpRowsWhenBothResolve();
    void displayName_data();
    void displayName();
};

void TestTerminalDiscovery::candidateTable()
{
    const auto& table = TerminalAppDiscoveryService::candidates();
    QCOMPARE(table.size(), 6);
    const QStringList expectedIds { u"com.apple.Terminal"_s, u"dev.warp.Warp-Stable"_s, u"dev.warp.Warp"_s,
        u"dev.warp.Warp-Preview"_s, u"com.googlecode.iterm2"_s, u"com.googlecode.iterm2nightly"_s };
    const QStringList expectedNames { u"Terminal"_s, u"Warp"_s, u"Warp"_s, u"Warp Preview"_s, u"iTerm2"_s,
        u"iTerm2 Nightly"_s };
    const QList<LaunchMode> expectedModes { LaunchMode::appleTerminal, LaunchMode::warp, LaunchMode::warp,
        LaunchMode::warp, LaunchMode::iTerm2, LaunchMode::iTerm2 };
    const QList<std::optional<QString>> expectedSchemes { std::nullopt, u"warp"_s, u"warp"_s, u"warppreview"_s,
        std::nullopt, std::nullopt };
    for (qsizetype row = 0; row < table.size(); ++row) {
        QCOMPARE(table[row].bundleIdentifier, expectedIds[row]);
        QCOMPARE(table[row].fallbackName, expectedNames[row]);
        QCOMPARE(table[row].launchMode, expectedModes[row]);
        QCOMPARE(table[row].uriScheme, expectedSchemes[row]);
        QCOMPARE(table[row].order, row);
    }
}

void TestTerminalDiscovery::nothingInstalledGivesEmptyList()
{
    const TerminalAppDiscoveryService service(std::make_shared<FakeLocator>());
    QVERIFY(service.discoverTerminalApps().isEmpty());
}

void TestTerminalDiscovery::resultFollowsTableOrder_data()
{
    QTest::addColumn<QStringList>("installed");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("iTerm2 and Terminal, whatever their names") << QStringList { u"com.googlecode.iterm2"_s,
        u"com.apple.Terminal"_s } << QStringList { u"com.apple.Terminal"_s, u"com.googlecode.iterm2"_s };
    QTest::newRow("nightly before preview is still after it") << QStringList { u"com.googlecode.iterm2nightly"_s,
        u"dev.warp.Warp-Preview"_s } << QStringList { u"dev.warp.Warp-Preview"_s, u"com.googlecode.iterm2nightly"_s };
    QTest::newRow("everything") << QStringList { u"com.googlecode.iterm2nightly"_s, u"com.googlecode.iterm2"_s,
        u"dev.warp.Warp-Preview"_s, u"dev.warp.Warp"_s, u"dev.warp.Warp-Stable"_s, u"com.apple.Terminal"_s }
                                << QStringList { u"com.apple.Terminal"_s, u"dev.warp.Warp-Stable"_s, u"dev.warp.Warp"_s,
                                       u"dev.warp.Warp-Preview"_s, u"com.googlecode.iterm2"_s,
                                       u"com.googlecode.iterm2nightly"_s };
    QTest::newRow("unknown apps are never asked about") << QStringList { u"org.example.Other"_s } << QStringList();
}

void TestTerminalDiscovery::resultFollowsTableOrder()
{
    QFETCH(QStringList, installed);
    QFETCH(QStringList, expected);
    auto locator = std::make_shared<FakeLocator>();
    // Names that sort against table order, so only the order field can explain the result.
    for (qsizetype index = 0; index < installed.size(); ++index) {
        locator->install(installed[index], u"/Applications/"_s + installed[index] + u".app"_s,
            named(QString(u"A"_s + QString::number(index)), {}));
    }
    QCOMPARE(identifiersOf(TerminalAppDiscoveryService(locator).discoverTerminalApps()), expected);
}

void TestTerminalDiscovery::everyCandidateAskedOnceInTableOrder()
{
    auto locator = std::make_shared<FakeLocator>();
    TerminalAppDiscoveryService(locator).discoverTerminalApps();
    QStringList tableIds;
    for (const auto& candidate : TerminalAppDiscoveryService::candidates())
        tableIds << candidate.bundleIdentifier;
    QCOMPARE(locator->asked(), tableIds);
}

void TestTerminalDiscovery::fieldsComeFromTheCandidate()
{
    auto locator = std::make_shared<FakeLocator>();
    locator->install(u"dev.warp.Warp-Preview"_s, u"/Applications/WarpPreview.app"_s, named({}, u"Warp β"_s));
    locator->install(u"com.apple.Terminal"_s, u"/System/Applications/Utilities/Terminal.app"_s, std::nullopt);

    const QList<TerminalApp> apps = TerminalAppDiscoveryService(locator).discoverTerminalApps();
    QCOMPARE(apps.size(), 2);
    QCOMPARE(apps[0], TerminalApp(u"com.apple.Terminal"_s, u"Terminal"_s, LaunchMode::appleTerminal));
    QCOMPARE(apps[1], TerminalApp(u"dev.warp.Warp-Preview"_s, u"Warp β"_s, LaunchMode::warp, u"warppreview"_s));
}

void TestTerminalDiscovery::bothWarpRowsWhenBothResolve()
{
    auto locator = std::make_shared<FakeLocator>();
    locator->install(u"dev.warp.Warp-Stable"_s, u"/Applications/Warp.app"_s, named({}, u"Warp"_s));
    locator->install(u"dev.warp.Warp"_s, u"/Applications/Warp.app"_s, named({}, u"Warp"_s));

    const QList<TerminalApp> apps = TerminalAppDiscoveryService(locator).discoverTerminalApps();
    QCOMPARE(identifiersOf(apps), (QStringList { u"dev.warp.Warp-Stable"_s, u"dev.warp.Warp"_s }));
    QCOMPARE(apps[0].displayName(), u"Warp"_s);
    QCOMPARE(apps[1].displayName(), u"Warp"_s);
}

void TestTerminalDiscovery::displayName_data()
{
    QTest::addColumn<QString>("location");
    QTest::addColumn<std::optional<QVariantMap>>("information");
    QTest::addColumn<QString>("expected");

    const QString iterm = u"/Applications/iTerm.app"_s;
    QTest::newRow("display name wins") << iterm << std::optional(named(u"iTerm2"_s, u"iTerm"_s)) << u"iTerm2"_s;
    QTest::newRow("empty display name falls to bundle name")
        << u"/Applications/Warp.app"_s << std::optional(named(u""_s, u"Warp"_s)) << u"Warp"_s;
    QTest::newRow("non-string display name falls to bundle name")
        << iterm << std::optional(named(42, u"iTerm"_s)) << u"iTerm"_s;
    QTest::newRow("non-string names fall to file name")
        << u"/Applications/My.Term.app"_s << std::optional(named(QStringList { u"x"_s }, true)) << u"My.Term"_s;
    QTest::newRow("empty names fall to file name") << iterm << std::optional(named(u""_s, u""_s)) << u"iTerm"_s;
    QTest::newRow("unreadable bundle gives file name") << iterm << std::optional<QVariantMap>() << u"iTerm"_s;
    QTest::newRow("trailing slash") << u"/Applications/iTerm.app/"_s << std::optional<QVariantMap>() << u"iTerm"_s;
    QTest::newRow("desktop entry file") << u"/usr/share/applications/dev.warp.Warp.desktop"_s
                                        << std::optional<QVariantMap>() << u"dev.warp.Warp"_s;
    QTest::newRow("nothing left uses the fallback name")
        << u"/Applications/.app"_s << std::optional<QVariantMap>() << u"iTerm2"_s;
}

void TestTerminalDiscovery::displayName()
{
    QFETCH(QString, location);
    QFETCH(std::optional<QVariantMap>, information);
    QFETCH(QString, expected);
    auto locator = std::make_shared<FakeLocator>();
    locator->install(u"com.googlecode.iterm2"_s, location, information);

    const QList<TerminalApp> apps = TerminalAppDiscoveryService(locator).discoverTerminalApps();
    QCOMPARE(apps.size(), 1);
    QCOMPARE(apps[0].displayName(), expected);
}

QTEST_GUILESS_MAIN(TestTerminalDiscovery)
#include "test_terminal_discovery.moc"
