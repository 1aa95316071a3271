// Connect: alias and target choice, the built command, every refusal and outcome sentence, and shell
// quoting proven by running the built commands through /bin/sh.

#include "ViewModelFixture.h"

#include "ConnectNameCheck.h"

#include <QProcess>
#include <QProcessEnvironment>

using namespace Qt::StringLiterals;

namespace
{

SSHHost hostWithPatterns(const QStringList& patterns, bool isEnabled = true)
{
    return SSHHost(patterns, {}, isEnabled, {});
}

// Replaces the host at the selection with one carrying patterns, as the host editor would.
void selectHostWithPatterns(SSHConfigViewModel& vm, const QStringList& patterns, bool isEnabled = true)
{
    vm.addHost();
    vm.updateHost(hostWithPatterns(patterns, isEnabled), *vm.selectedHostIndex());
    vm.setSelectedHostID(vm.document().hosts.last().id());
}

// A view model that has connected to its selected host or entry, which carries name: "config" and
// "known_hosts" write it into the file ("known_hosts port" as "[name]:2222"), "editor" stores it through
// the host editor.
SSHConfigViewModel& connectedTo(ViewModelFixture& fixture, const QString& source, const QString& name)
{
    if (source == u"config"_s)
        fixture.writeConfig(u"Host "_s + name + u"\n"_s);
    else if (source == u"known_hosts"_s)
        fixture.writeKnownHosts(name + u" ssh-ed25519 AAAA\n"_s);
    else if (source == u"known_hosts port"_s)
        fixture.writeKnownHosts(u"["_s + name + u"]:2222 ssh-ed25519 AAAA\n"_s);
    SSHConfigViewModel& vm = fixture.make();
    if (source == u"editor"_s)
        selectHostWithPatterns(vm, { name });
    if (source.startsWith(u"known_hosts"_s))
        vm.connectSelectedKnownHostEntry();
    else
        vm.connectSelectedHost();
    return vm;
}

enum class Terminal { appleTerminal, none, clipboard, failing };

void row(const char* tag, const QString& config, const QString& knownHosts, Terminal terminal, const QString& command,
    const QString& status)
{
    QTest::newRow(tag) << config << knownHosts << terminal << command << status;
}

} // namespace

Q_DECLARE_METATYPE(Terminal)

class TestViewModelConnect : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shellQuoted_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("quoted");
        QTest::newRow("safe name") << u"web-01"_s << u"web-01"_s;
        QTest::newRow("every safe character") << u"a.Z_0@h:/x-"_s << u"a.Z_0@h:/x-"_s;
        QTest::newRow("single quote") << u"it's"_s << u"'it'\\''s'"_s;
        QTest::newRow("tilde") << u"web~1"_s << u"'web~1'"_s;
        QTest::newRow("blank") << u"my host"_s << u"'my host'"_s;
        QTest::newRow("empty") << QString() << u"''"_s;
        QTest::newRow("non-ASCII letter") << u"h\u00f6st"_s << u"'h\u00f6st'"_s;
    }

    void shellQuoted()
    {
        QFETCH(QString, text);
        QFETCH(QString, quoted);
        QCOMPARE(SSHConfigViewModel::shellQuoted(text), quoted);
    }

    void connectableAlias_data()
    {
        QTest::addColumn<QStringList>("patterns");
        QTest::addColumn<QString>("alias");
        QTest::newRow("first plain") << QStringList { u"web-01"_s, u"*.lan"_s } << u"web-01"_s;
        QTest::newRow("wildcards first") << QStringList { u"*"_s, u"!bastion"_s, u"db?"_s, u"db"_s } << u"db"_s;
        QTest::newRow("only wildcards") << QStringList { u"*"_s, u"!bastion"_s } << QString();
        QTest::newRow("untrimmed kept") << QStringList { u" web "_s } << u" web "_s;
        QTest::newRow("no patterns") << QStringList {} << QString();
    }

    void connectableAlias()
    {
        QFETCH(QStringList, patterns);
        QFETCH(QString, alias);
        const std::optional<QString> found = SSHConfigViewModel::connectableAlias(hostWithPatterns(patterns));
        QCOMPARE(found.value_or(QString()), alias);
        QCOMPARE(found.has_value(), !alias.isEmpty());
    }

    // Every outcome of both connect operations: the command launched (if any) and the one sentence.
    void connect_data()
    {
        QTest::addColumn<QString>("config");
        QTest::addColumn<QString>("knownHosts"); // when given, the selected entry is connected
        QTest::addColumn<Terminal>("terminal");
        QTest::addColumn<QString>("command"); // empty: nothing launched
        QTest::addColumn<QString>("status");
        const QString started = u"Verbinding gestart in Terminal: "_s;
        const QString noTerminal = u"Geen terminal app beschikbaar. Kies er één in Preferences."_s;
        const QString unusable
            = u"Geen direct bruikbare host in deze known_hosts entry (mogelijk hashed of wildcard)."_s;
        const Terminal ok = Terminal::appleTerminal;
        row("host: plain alias", u"Host web-01 *.lan\n"_s, {}, ok, u"ssh web-01"_s, started + u"web-01"_s);
        row("host: quote in alias", u"Host it's\n"_s, {}, ok, u"ssh 'it'\\''s'"_s, started + u"it's"_s);
        row("host: tilde in alias", u"Host web~1\n"_s, {}, ok, u"ssh 'web~1'"_s, started + u"web~1"_s);
        row("host: only wildcards", u"Host * !bastion\n"_s, {}, ok, {},
            u"Deze host heeft alleen wildcardpatronen. Kies een specifieke host-alias."_s);
        row("host: disabled", u"# Host old\n#     HostName x\n"_s, {}, ok, {},
            u"Host is uitgeschakeld en kan niet direct verbinden."_s);
        row("host: none selected", {}, {}, ok, {}, u"Selecteer eerst een host om te verbinden."_s);
        row("host: no terminal", u"Host web\n"_s, {}, Terminal::none, {}, noTerminal);
        row("host: terminal puts it on the clipboard", u"Host web\n"_s, {}, Terminal::clipboard, u"ssh web"_s,
            u"Console geopend; ssh-commando staat op klembord. Plak met Cmd+V en druk Enter."_s);
        row("host: launch fails", u"Host web\n"_s, {}, Terminal::failing, u"ssh web"_s,
            u"Connect mislukt: Terminalscript mislukt: boom"_s);
        row("entry: bracketed port", {}, u"[gitbox]:2222 ssh-ed25519 AAAA\n"_s, ok, u"ssh -p 2222 gitbox"_s,
            started + u"gitbox:2222"_s);
        row("entry: plain host after wildcard", {}, u"*.corp,web01 ssh-rsa AAAA\n"_s, ok, u"ssh web01"_s,
            started + u"web01"_s);
        row("entry: user at host", {}, u"deploy@build7 ssh-rsa AAAA\n"_s, ok, u"ssh deploy@build7"_s,
            started + u"deploy@build7"_s);
        row("entry: commented out", {}, u"# web ssh-rsa AAAA\n"_s, ok, {},
            u"Deze known_hosts entry is uitgecommentarieerd."_s);
        row("entry: all hashed", {}, u"|1|abc=|def=,|2|x|y ssh-rsa AAAA\n"_s, ok, {}, unusable);
        row("entry: user at bracketed port", {}, u"ops@[db]:2200 ssh-rsa AAAA\n"_s, ok, {}, unusable);
        row("entry: no terminal", {}, u"web ssh-rsa AAAA\n"_s, Terminal::none, {}, noTerminal);
        const QString longest(maximumConnectNameLength, u'a');
        row("host: longest name", u"Host "_s + longest + u"\n"_s, {}, ok, u"ssh "_s + longest, started + longest);
        row("entry: dash inside a bracketed host", {}, u"[web-01]:2222 ssh-rsa AAAA\n"_s, ok, u"ssh -p 2222 web-01"_s,
            started + u"web-01:2222"_s);
        row("entry: dash after user", {}, u"deploy@-x ssh-rsa AAAA\n"_s, ok, u"ssh deploy@-x"_s,
            started + u"deploy@-x"_s);
        // Refusals that come before the name check, whatever the name.
        row("host: disabled, name like an option", u"# Host -oFoo\n#     HostName x\n"_s, {}, ok, {},
            u"Host is uitgeschakeld en kan niet direct verbinden."_s);
        row("entry: commented out, name like an option", {}, u"# -oFoo ssh-rsa AAAA\n"_s, ok, {},
            u"Deze known_hosts entry is uitgecommentarieerd."_s);
        row("entry: user at bracketed port, name like an option", {}, u"ops@[-oFoo]:2200 ssh-rsa AAAA\n"_s, ok, {},
            unusable);
        row("entry: huge port", {}, u"[gitbox]:"_s + QString(5000, u'2') + u" ssh-ed25519 AAAA\n"_s, ok, {},
            u"Dit poortnummer (\""_s + QString(40, u'2')
                + u"…\") is te lang om aan ssh door te geven (5000 tekens, hooguit 1024); niet verbonden."_s);
    }

    void connect()
    {
        QFETCH(QString, config);
        QFETCH(QString, knownHosts);
        QFETCH(Terminal, terminal);
        QFETCH(QString, command);
        QFETCH(QString, status);
        ViewModelFixture fixture;
        if (terminal == Terminal::none)
            fixture.discovery->apps.clear();
        if (terminal == Terminal::clipboard) {
            fixture.discovery->apps = { genericApp() };
            fixture.launcher->putsOnClipboard = true;
        }
        if (terminal == Terminal::failing)
            fixture.launcher->failure = u"Terminalscript mislukt: boom"_s;
        SSHConfigViewModel& vm = fixture.make(config, knownHosts);
        if (knownHosts.isEmpty())
            vm.connectSelectedHost();
        else
            vm.connectSelectedKnownHostEntry();
        QCOMPARE(vm.statusMessage(), status);
        QCOMPARE(fixture.launcher->calls.size(), command.isEmpty() ? 0 : 1);
        if (!command.isEmpty()) {
            QCOMPARE(fixture.launcher->calls.first().command, command);
            QCOMPARE(fixture.launcher->calls.first().app,
                terminal == Terminal::clipboard ? genericApp() : appleTerminalApp());
        }
    }

    // Names that ssh would misread or that break the terminal's command line: refused after the existing
    // refusals, and nothing is launched.
    void hostileNamesAreRefused_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("status");
        const QString dash = u"\") begint met \"-\" en zou door ssh als optie gelezen worden; niet verbonden."_s;
        const QString control = u"Deze hostnaam bevat een stuurteken (U+%1) en kan niet veilig aan ssh worden "
                                u"doorgegeven; niet verbonden."_s;
        const QString huge(200'000, u'a');
        const QString tooLong = u"Deze hostnaam (\""_s + QString(40, u'a')
            + u"…\") is te lang om aan ssh door te geven (200000 tekens, hooguit 1024); niet verbonden."_s;
        QTest::newRow("config: option") << u"config"_s << u"-oProxyCommand=touch${IFS}pwned"_s
                                        << u"Deze hostnaam (\"-oProxyCommand=touch${IFS}pwned"_s + dash;
        QTest::newRow("config: NUL") << u"config"_s << u"web\u0000x"_s << control.arg(u"0000"_s);
        QTest::newRow("config: DEL") << u"config"_s << u"web\u007fx"_s << control.arg(u"007F"_s);
        QTest::newRow("config: 200,000 characters") << u"config"_s << huge << tooLong;
        QTest::newRow("editor: option with a blank")
            << u"editor"_s << u"-oProxyCommand=touch x"_s << u"Deze hostnaam (\"-oProxyCommand=touch x"_s + dash;
        QTest::newRow("editor: NUL") << u"editor"_s << u"web\u0000x"_s << control.arg(u"0000"_s);
        QTest::newRow("editor: tab") << u"editor"_s << u"web\tx"_s << control.arg(u"0009"_s);
        QTest::newRow("editor: line feed") << u"editor"_s << u"web\nrm -rf x"_s << control.arg(u"000A"_s);
        QTest::newRow("editor: DEL") << u"editor"_s << u"web\u007f"_s << control.arg(u"007F"_s);
        QTest::newRow("editor: C1") << u"editor"_s << u"web\u0085"_s << control.arg(u"0085"_s);
        QTest::newRow("editor: 200,000 characters") << u"editor"_s << huge << tooLong;
        QTest::newRow("known_hosts: option")
            << u"known_hosts"_s << u"-oFoo=bar"_s << u"Deze hostnaam (\"-oFoo=bar"_s + dash;
        QTest::newRow("known_hosts: NUL") << u"known_hosts"_s << u"web\u0000x"_s << control.arg(u"0000"_s);
        QTest::newRow("known_hosts: DEL") << u"known_hosts"_s << u"web\u007f"_s << control.arg(u"007F"_s);
        QTest::newRow("known_hosts: 200,000 characters") << u"known_hosts"_s << huge << tooLong;
        QTest::newRow("known_hosts with port: option")
            << u"known_hosts port"_s << u"-oFoo"_s << u"Deze hostnaam (\"-oFoo"_s + dash;
        QTest::newRow("known_hosts with port: NUL") << u"known_hosts port"_s << u"a\u0000b"_s << control.arg(u"0000"_s);
        QTest::newRow("known_hosts with port: 200,000 characters") << u"known_hosts port"_s << huge << tooLong;
    }

    void hostileNamesAreRefused()
    {
        QFETCH(QString, source);
        QFETCH(QString, name);
        QFETCH(QString, status);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = connectedTo(fixture, source, name);
        QCOMPARE(vm.statusMessage(), status);
        QCOMPARE(fixture.launcher->calls.size(), 0);
    }

    void commandsSurviveTheShell_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("arguments");
        const QList<QString> names { u"it's"_s, u"say\"hi\""_s, u"$(touch${IFS}pwned)"_s, u"`touch${IFS}pwned`"_s,
            u"a;touch${IFS}pwned"_s, u"a&&touch${IFS}pwned"_s, u"a|b>c<d"_s };
        for (const QString& name : names) {
            QTest::addRow("config: %s", qPrintable(name)) << u"config"_s << name << QStringList { name };
            QTest::addRow("known_hosts: %s", qPrintable(name)) << u"known_hosts"_s << name << QStringList { name };
            QTest::addRow("known_hosts with port: %s", qPrintable(name))
                << u"known_hosts port"_s << name << QStringList { u"-p"_s, u"2222"_s, name };
        }
        // Names with blanks cannot come from either file, but the host editor can store them.
        QTest::newRow("editor: blanks and quotes")
            << u"editor"_s << u"my 'quoted' \"host\" && rm x"_s << QStringList { u"my 'quoted' \"host\" && rm x"_s };
    }

    void commandsSurviveTheShell()
    {
        QFETCH(QString, source);
        QFETCH(QString, name);
        QFETCH(QStringList, arguments);
        ViewModelFixture fixture;
        SSHConfigViewModel& vm = connectedTo(fixture, source, name);
        QVERIFY2(fixture.launcher->calls.size() == 1, qPrintable(vm.statusMessage()));

        // A stand-in ssh that prints each argument it receives on a line of its own.
        const QString bin = fixture.directory.filePath(u"bin"_s);
        QVERIFY(writeBytes(bin + u"/ssh"_s, "#!/bin/sh\nfor a in \"$@\"; do printf '[%s]\\n' \"$a\"; done\n"));
        QVERIFY(QFile::setPermissions(bin + u"/ssh"_s, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        QProcess shell;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"PATH"_s, bin + u":/usr/bin:/bin"_s);
        shell.setProcessEnvironment(environment);
        shell.setWorkingDirectory(fixture.directory.path());
        shell.start(u"/bin/sh"_s, { u"-c"_s, fixture.launcher->calls.first().command });
        QVERIFY(shell.waitForFinished());
        QCOMPARE(shell.exitCode(), 0);
        QStringList expected;
        for (const QString& argument : arguments)
            expected.append(u'[' + argument + u']');
        QCOMPARE(QString::fromUtf8(shell.readAllStandardOutput()), expected.join(u'\n') + u'\n');
        QCOMPARE(QString::fromUtf8(shell.readAllStandardError()), QString());
        QVERIFY(!QFile::exists(fixture.directory.filePath(u"pwned"_s)));
    }
};

QTEST_GUILESS_MAIN(TestViewModelConnect)
#include "test_view_model_connect.moc"
