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
    void install(const QString& identifier, const QString& location, std::optional<ApplicationInformation> information)
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

    std::optional<ApplicationInformation> applicationInformation(const QString& location) const override
    {
        if (!m_information.contains(location))
            return std::nullopt;
        return m_information.value(location);
    }

    const QStringList& asked() const { return m_asked; }

private:
    QHash<QString, QString> m_locations;
    QHash<QString, ApplicationInformation> m_information;
    mutable QStringList m_asked;
};

ApplicationInformation named(const QString& displayName, const QString& name)
{
    return ApplicationInformation { displayName, name, QString() };
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
    void everyCandidateInTableOrderWithItsFallbackName()
    {
        auto locator = std::make_shared<FakeLocator>();
        const QStringList installed { u"com.googlecode.iterm2nightly"_s, u"com.googlecode.iterm2"_s,
            u"dev.warp.Warp-Preview"_s, u"dev.warp.Warp"_s, u"dev.warp.Warp-Stable"_s, u"com.apple.Terminal"_s };
        // A location without a usable file name and no bundle information leaves only the fallback name.
        for (const QString& identifier : installed)
            locator->install(identifier, u"/Applications/.app"_s, std::nullopt);
        QCOMPARE(TerminalAppDiscoveryService(locator).discoverTerminalApps(),
            (QList<TerminalApp> { TerminalApp(u"com.apple.Terminal"_s, u"Terminal"_s, LaunchMode::appleTerminal),
                TerminalApp(u"dev.warp.Warp-Stable"_s, u"Warp"_s, LaunchMode::warp, u"warp"_s),
                TerminalApp(u"dev.warp.Warp"_s, u"Warp"_s, LaunchMode::warp, u"warp"_s),
                TerminalApp(u"dev.warp.Warp-Preview"_s, u"Warp Preview"_s, LaunchMode::warp, u"warppreview"_s),
                TerminalApp(u"com.googlecode.iterm2"_s, u"iTerm2"_s, LaunchMode::iTerm2),
                TerminalApp(u"com.googlecode.iterm2nightly"_s, u"iTerm2 Nightly"_s, LaunchMode::iTerm2) }));
    }

    void resultFollowsTableOrder_data()
    {
        QTest::addColumn<QStringList>("installed");
        QTest::addColumn<QStringList>("expected");

        QTest::newRow("iTerm2 and Terminal, whatever their names") << QStringList { u"com.googlecode.iterm2"_s,
            u"com.apple.Terminal"_s } << QStringList { u"com.apple.Terminal"_s, u"com.googlecode.iterm2"_s };
        QTest::newRow("nightly before preview is still after it")
            << QStringList { u"com.googlecode.iterm2nightly"_s, u"dev.warp.Warp-Preview"_s }
            << QStringList { u"dev.warp.Warp-Preview"_s, u"com.googlecode.iterm2nightly"_s };
        QTest::newRow("unknown apps are never asked about") << QStringList { u"org.example.Other"_s } << QStringList();
    }

    void resultFollowsTableOrder()
    {
        QFETCH(QStringList, installed);
        QFETCH(QStringList, expected);
        auto locator = std::make_shared<FakeLocator>();
        // Names that sort against table order, so only the order field can explain the result.
        for (qsizetype index = 0; index < installed.size(); ++index) {
            locator->install(installed[index], u"/Applications/"_s + installed[index] + u".app"_s,
                named(u"A"_s + QString::number(index), QString()));
        }
        QCOMPARE(identifiersOf(TerminalAppDiscoveryService(locator).discoverTerminalApps()), expected);
    }

    void everyCandidateAskedOnceInTableOrder()
    {
        auto locator = std::make_shared<FakeLocator>();
        TerminalAppDiscoveryService(locator).discoverTerminalApps();
        QStringList tableIds;
        for (const auto& candidate : TerminalAppDiscoveryService::candidates())
            tableIds << candidate.bundleIdentifier;
        QCOMPARE(locator->asked(), tableIds);
    }

    void displayName_data()
    {
        QTest::addColumn<QString>("location");
        QTest::addColumn<std::optional<ApplicationInformation>>("information");
        QTest::addColumn<QString>("expected");

        const QString iterm = u"/Applications/iTerm.app"_s;
        QTest::newRow("display name wins") << iterm << std::optional(named(u"iTerm2"_s, u"iTerm"_s)) << u"iTerm2"_s;
        QTest::newRow("empty display name falls to bundle name")
            << u"/Applications/Warp.app"_s << std::optional(named(u""_s, u"Warp"_s)) << u"Warp"_s;
        QTest::newRow("no display name falls to bundle name")
            << iterm << std::optional(named(QString(), u"iTerm"_s)) << u"iTerm"_s;
        QTest::newRow("no names fall to file name")
            << u"/Applications/My.Term.app"_s << std::optional(ApplicationInformation()) << u"My.Term"_s;
        QTest::newRow("empty names fall to file name") << iterm << std::optional(named(u""_s, u""_s)) << u"iTerm"_s;
        QTest::newRow("unreadable bundle gives file name")
            << iterm << std::optional<ApplicationInformation>() << u"iTerm"_s;
        QTest::newRow("trailing slash") << u"/Applications/iTerm.app/"_s << std::optional<ApplicationInformation>()
                                        << u"iTerm"_s;
        QTest::newRow("desktop entry file") << u"/usr/share/applications/dev.warp.Warp.desktop"_s
                                            << std::optional<ApplicationInformation>() << u"dev.warp.Warp"_s;
        QTest::newRow("nothing left uses the fallback name")
            << u"/Applications/.app"_s << std::optional<ApplicationInformation>() << u"iTerm2"_s;
    }

    void displayName()
    {
        QFETCH(QString, location);
        QFETCH(std::optional<ApplicationInformation>, information);
        QFETCH(QString, expected);
        auto locator = std::make_shared<FakeLocator>();
        locator->install(u"com.googlecode.iterm2"_s, location, information);

        const QList<TerminalApp> apps = TerminalAppDiscoveryService(locator).discoverTerminalApps();
        QCOMPARE(apps.size(), 1);
        QCOMPARE(apps[0].displayName(), expected);
    }
};

QTEST_GUILESS_MAIN(TestTerminalDiscovery)
#include "test_terminal_discovery.moc"
