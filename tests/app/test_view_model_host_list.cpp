// The host list: search and group filter, the group list, reordering and the selected position; and
// host editing: add, delete, update and group creation.

#include "ViewModelFixture.h"

using namespace Qt::StringLiterals;

namespace
{

const QString listConfig = u"Host prod-db\n"
                           "# Group: Production\n"
                           "Host web\n"
                           "    HostName www.example.com\n"
                           "    # prod comment only\n"
                           "Host util\n"
                           "    HostName prod-db01\n"
                           "Host admin-box\n"
                           "    User admin\n"
                           "# Group: all\n"
                           "Host lower\n"_s;

} // namespace

class TestViewModelHostList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void filteredHosts_data()
    {
        QTest::addColumn<QString>("search");
        QTest::addColumn<QString>("group");
        QTest::addColumn<QStringList>("expected");
        QTest::addColumn<bool>("canReorder");
        const QStringList all { u"prod-db"_s, u"web"_s, u"util"_s, u"admin-box"_s, u"lower"_s };
        QTest::newRow("no filter") << QString() << u"All"_s << all << true;
        QTest::newRow("blanks only") << u"   "_s << u"All"_s << all << true;
        QTest::newRow("pattern, group and option value")
            << u"prod"_s << u"All"_s << QStringList { u"prod-db"_s, u"web"_s, u"util"_s } << false;
        QTest::newRow("key blank value") << u"user admin"_s << u"All"_s << QStringList { u"admin-box"_s } << false;
        QTest::newRow("upper-case query, padded")
            << u"  WWW.EXAMPLE "_s << u"All"_s << QStringList { u"web"_s } << false;
        QTest::newRow("comment text not searched") << u"comment only"_s << u"All"_s << QStringList {} << false;
        QTest::newRow("group filter ignores case") << QString() << u"production"_s << QStringList { u"web"_s } << false;
        QTest::newRow("lower-case all is a real group") << QString() << u"all"_s << QStringList { u"lower"_s } << false;
        QTest::newRow("group and search") << u"util"_s << u"Production"_s << QStringList {} << false;
    }

    void filteredHosts()
    {
        QFETCH(QString, search);
        QFETCH(QString, group);
        QFETCH(QStringList, expected);
        QFETCH(bool, canReorder);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(listConfig);
        vm.setSearchText(search);
        vm.setSelectedGroup(group);
        QCOMPARE(firstPatterns(vm.filteredHosts()), expected);
        QCOMPARE(vm.canReorderHosts(), canReorder);
    }

    void availableGroups_data()
    {
        QTest::addColumn<QString>("config");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("first spelling, trimmed")
            << u"# Group: Prod\nHost a\n# Group: prod \nHost b\n"_s << QStringList { u"Prod"_s };
        QTest::newRow("locale order ignoring case") << u"# Group: gamma, Beta\nHost a\n# Group: alpha\nHost b\n"_s
                                                    << QStringList { u"alpha"_s, u"Beta"_s, u"gamma"_s };
        QTest::newRow("group comment without hosts")
            << u"#   GROUP:  Staging  \n# Groups: x\n"_s << QStringList { u"Staging"_s };
        QTest::newRow("trailing group label after the last host")
            << u"Host a\n# Group: Later\n"_s << QStringList { u"Later"_s };
        QTest::newRow("none") << u"Host a\n"_s << QStringList {};
    }

    void availableGroups()
    {
        QFETCH(QString, config);
        QFETCH(QStringList, expected);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(config);
        QCOMPARE(vm.availableGroups(), expected);
    }

    void groupDeclarationName_data()
    {
        QTest::addColumn<QString>("comment");
        QTest::addColumn<QString>("name");
        QTest::newRow("plain") << u"# Group: web"_s << u"web"_s;
        QTest::newRow("upper case, blanks") << u"  #   GROUP:  Staging  "_s << u"Staging"_s;
        QTest::newRow("no blank after hash") << u"#group:x"_s << u"x"_s;
        QTest::newRow("commas kept") << u"# Group: a, b"_s << u"a, b"_s;
        QTest::newRow("plural is not a group") << u"# Groups: x"_s << QString();
        QTest::newRow("empty name") << u"# Group:   "_s << QString();
        QTest::newRow("not a comment") << u"Group: x"_s << QString();
    }

    void groupDeclarationName()
    {
        QFETCH(QString, comment);
        QFETCH(QString, name);
        const std::optional<QString> found = SSHConfigViewModel::groupDeclarationName(comment);
        QCOMPARE(found.value_or(QString()), name);
        QCOMPARE(found.has_value(), !name.isEmpty());
    }

    void moveHosts_data()
    {
        QTest::addColumn<QList<qsizetype>>("from");
        QTest::addColumn<qsizetype>("to");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("first to end") << QList<qsizetype> { 0 } << qsizetype(5)
                                      << QStringList { u"b"_s, u"c"_s, u"d"_s, u"e"_s, u"a"_s };
        QTest::newRow("last to front") << QList<qsizetype> { 4 } << qsizetype(0)
                                       << QStringList { u"e"_s, u"a"_s, u"b"_s, u"c"_s, u"d"_s };
        QTest::newRow("two apart, down") << QList<qsizetype> { 0, 2 } << qsizetype(4)
                                         << QStringList { u"b"_s, u"d"_s, u"a"_s, u"c"_s, u"e"_s };
        QTest::newRow("two apart, up") << QList<qsizetype> { 3, 1 } << qsizetype(0)
                                       << QStringList { u"b"_s, u"d"_s, u"a"_s, u"c"_s, u"e"_s };
        QTest::newRow("onto itself") << QList<qsizetype> { 2 } << qsizetype(2)
                                     << QStringList { u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s };
        QTest::newRow("out of range ignored")
            << QList<qsizetype> { 9, 1 } << qsizetype(99) << QStringList { u"a"_s, u"c"_s, u"d"_s, u"e"_s, u"b"_s };
    }

    void moveHosts()
    {
        QFETCH(QList<qsizetype>, from);
        QFETCH(qsizetype, to);
        QFETCH(QStringList, expected);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(u"Host a\nHost b\nHost c\nHost d\nHost e\n"_s);
        const QString status = vm.statusMessage();
        vm.moveHosts(from, to);
        QCOMPARE(firstPatterns(vm.document().hosts), expected);
        QVERIFY(vm.rawEditorDirty());
        QCOMPARE(vm.rawText(), vm.parser().serialize(vm.document()));
        QCOMPARE(vm.statusMessage(), status);
    }

    void moveRefusedWhileFiltered_data()
    {
        QTest::addColumn<QString>("search");
        QTest::addColumn<QString>("group");
        QTest::newRow("search active") << u"a"_s << u"All"_s;
        QTest::newRow("group filter active") << QString() << u"all"_s;
    }

    void moveRefusedWhileFiltered()
    {
        QFETCH(QString, search);
        QFETCH(QString, group);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(u"Host a\nHost b\n"_s);
        vm.setSearchText(search);
        vm.setSelectedGroup(group);
        vm.moveHosts({ 0 }, 2);
        QCOMPARE(vm.statusMessage(), u"Reorder kan alleen zonder actieve filters."_s);
        QCOMPARE(firstPatterns(vm.document().hosts), (QStringList { u"a"_s, u"b"_s }));
        QVERIFY(!vm.rawEditorDirty());
    }

    void selectedHostIndex()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(u"Host a\nHost b\n"_s);
        vm.setSelectedHostID(vm.document().hosts.at(1).id());
        QCOMPARE(vm.selectedHostIndex(), std::optional<qsizetype>(1));
        vm.setSelectedHostID(createRandomUuid());
        QVERIFY(!vm.selectedHostIndex());
        vm.setSelectedHostID(std::nullopt);
        QVERIFY(!vm.selectedHostIndex());
        // A selection that the filter hides stays selected.
        vm.setSelectedHostID(vm.document().hosts.at(1).id());
        vm.setSearchText(u"zzz"_s);
        QCOMPARE(vm.selectedHostIndex(), std::optional<qsizetype>(1));
    }

    void addHost_data()
    {
        QTest::addColumn<QString>("group");
        QTest::addColumn<QStringList>("groups");
        QTest::newRow("no group filter") << u"All"_s << QStringList {};
        QTest::newRow("group filter") << u"Production"_s << QStringList { u"Production"_s };
    }

    void addHost()
    {
        QFETCH(QString, group);
        QFETCH(QStringList, groups);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(u"Host a\n"_s);
        vm.setSelectedGroup(group);
        vm.addHost();
        const SSHHost added = vm.document().hosts.last();
        QCOMPARE(vm.selectedHostID(), std::optional<QUuid>(added.id()));
        QCOMPARE(added.patterns, QStringList { u"new-host"_s });
        QCOMPARE(added.groups, groups);
        QVERIFY(added.isEnabled);
        QCOMPARE(added.items.size(), 2);
        QCOMPARE(added.items.at(0).asOption()->key, u"HostName"_s);
        QVERIFY(added.items.at(0).asOption()->value.endsWith(u".example.com"_s));
        QCOMPARE(added.items.at(1).asOption()->key, u"User"_s);
        QCOMPARE(added.items.at(1).asOption()->value, u"user"_s);
        QVERIFY(vm.rawEditorDirty());
        QVERIFY(firstPatterns(vm.filteredHosts()).contains(u"new-host"_s));
    }

    void deleteSelectedHost_data()
    {
        QTest::addColumn<QString>("config");
        QTest::addColumn<int>("selected");
        QTest::addColumn<QString>("nowSelected");
        QTest::newRow("middle of three") << u"Host a\nHost b\nHost c\n"_s << 1 << u"c"_s;
        QTest::newRow("last of three") << u"Host a\nHost b\nHost c\n"_s << 2 << u"b"_s;
        QTest::newRow("only host") << u"Host a\n"_s << 0 << QString();
    }

    void deleteSelectedHost()
    {
        QFETCH(QString, config);
        QFETCH(int, selected);
        QFETCH(QString, nowSelected);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(config);
        vm.setSelectedHostID(vm.document().hosts.at(selected).id());
        vm.deleteSelectedHost();
        QCOMPARE(selectedHostName(vm), nowSelected);
        QCOMPARE(vm.selectedHostID().has_value(), !nowSelected.isEmpty());
        QVERIFY(vm.rawEditorDirty());
    }

    void deleteWithoutSelectionIsSilent()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(u"Host a\n"_s);
        vm.setSelectedHostID(std::nullopt);
        const QString status = vm.statusMessage();
        vm.deleteSelectedHost();
        QCOMPARE(vm.document().hosts.size(), 1);
        QCOMPARE(vm.statusMessage(), status);
        QVERIFY(!vm.rawEditorDirty());
    }

    void updateHost()
    {
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(u"Host a\nHost b\n"_s);
        SSHHost edited = vm.host(1);
        edited.isEnabled = false;
        edited.patterns = { u"b2"_s };
        vm.updateHost(edited, 1);
        QCOMPARE(vm.host(1), edited);
        QVERIFY(vm.rawEditorDirty());
        QCOMPARE(vm.rawText(), u"Host a\nHost b\n"_s);
    }

    void createGroup_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("withSelection");
        QTest::addColumn<bool>("result");
        QTest::addColumn<QString>("status");
        QTest::addColumn<QString>("group");
        QTest::addColumn<QStringList>("selectedGroups");
        QTest::newRow("blank name") << u"   "_s << true << false << u"Geef een geldige groepsnaam op."_s << u"All"_s
                                    << QStringList { u"Web"_s };
        QTest::newRow("existing, other case")
            << u" web "_s << true << true << u"Groep bestaat al: Web"_s << u"Web"_s << QStringList { u"Web"_s };
        QTest::newRow("existing without selection")
            << u"WEB"_s << false << true << u"Groep bestaat al: Web"_s << u"Web"_s << QStringList {};
        QTest::newRow("new without selection")
            << u"Staging"_s << false << false << u"Selecteer eerst een host om een nieuwe groep aan te koppelen."_s
            << u"All"_s << QStringList {};
        QTest::newRow("new with selection")
            << u" Staging "_s << true << true << u"Groep aangemaakt en gekoppeld: Staging"_s << u"Staging"_s
            << QStringList { u"Web"_s, u"Staging"_s };
        QTest::newRow("All is new unless carried")
            << u"All"_s << true << true << u"Groep aangemaakt en gekoppeld: All"_s << u"All"_s
            << QStringList { u"Web"_s, u"All"_s };
    }

    void createGroup()
    {
        QFETCH(QString, name);
        QFETCH(bool, withSelection);
        QFETCH(bool, result);
        QFETCH(QString, status);
        QFETCH(QString, group);
        QFETCH(QStringList, selectedGroups);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = fixture.make(u"# Group: Web\nHost a\n"_s);
        if (!withSelection)
            vm.setSelectedHostID(std::nullopt);
        QCOMPARE(vm.createGroupForSelectedHost(name), result);
        QCOMPARE(vm.statusMessage(), status);
        QCOMPARE(vm.selectedGroup(), group);
        if (withSelection)
            QCOMPARE(vm.host(0).groups, selectedGroups);
        QCOMPARE(vm.rawEditorDirty(), status.startsWith(u"Groep aangemaakt"_s));
    }
};

QTEST_GUILESS_MAIN(TestViewModelHostList)
#include "test_view_model_host_list.moc"
