// At the smallest window size, in each widget style and with the larger font a GTK desktop gives,
// every text and control of the main window is shown whole, whatever the tab and the selection.

#include "CutWidgets.h"
#include "EmptyStateView.h"
#include "MainWindow.h"
#include "SSHConfigViewModel.h"
#include "WindowFixture.h"

#include <QApplication>
#include <QPushButton>
#include <QScrollArea>
#include <QStyle>
#include <QStyleFactory>
#include <QtTest>

#include <memory>

using namespace Qt::StringLiterals;

using EditorTab = SSHConfigViewModel::EditorTab;

namespace
{
const QSize smallestWindow(1080, 700);

// An entry with every fact the detail pane can show: a marker, hashed, commented out, a comment.
const QString knownHosts
    = u"web-1.example.com ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIOMqqnkVzrm0SdG6UOoqKLsabgH5C9okWi0dh2l9GKJl\n"
      u"# @cert-authority |1|F1E1KeoE/eEWhi10WpGv4OdiO6Y=|3988QV0VE8wmZL7suNrYQLITLCg= "
      u"ecdsa-sha2-nistp256 AAAAE2VjZHNhLXNoYTItbmlzdHAyNTYAAAAIbmlzdHAyNTY= signing CA of the build farm\n"_s;

// Lets the window lay itself out after a change; no time passes in it.
void settle()
{
    for (int i = 0; i < 3; ++i)
        QCoreApplication::processEvents();
}
} // namespace

class TestWindowFit : public QObject
{
    Q_OBJECT

private:
    QString m_style;
    QFont m_font;

    std::unique_ptr<MainWindow> shownWindow(SSHConfigViewModel& viewModel)
    {
        auto window = std::make_unique<MainWindow>(viewModel, std::nullopt);
        window->resize(smallestWindow);
        window->show();
        if (!QTest::qWaitForWindowExposed(window.get()))
            qWarning("the main window was not exposed");
        settle();
        return window;
    }

    bool useStyle(const QString& style, qreal fontScale)
    {
        if (!QStyleFactory::keys().contains(style, Qt::CaseInsensitive))
            return false;
        QApplication::setStyle(style);
        QFont font = m_font;
        font.setPointSizeF(m_font.pointSizeF() * fontScale);
        QApplication::setFont(font);
        return true;
    }

private Q_SLOTS:
    void initTestCase()
    {
        m_style = QApplication::style()->name();
        m_font = QApplication::font();
    }

    void cleanup()
    {
        QApplication::setStyle(m_style);
        QApplication::setFont(m_font);
    }

    void everythingIsWhole_data()
    {
        QTest::addColumn<QString>("style");
        QTest::addColumn<qreal>("fontScale");
        QTest::addColumn<QString>("config");
        QTest::addColumn<int>("tab");
        QTest::addColumn<bool>("selectsEntry");
        const QString config = WindowFixture::sampleConfig();
        for (const QString& style : { u"Fusion"_s, u"Windows"_s }) {
            for (const qreal scale : { 1.0, 1.25 }) {
                const QByteArray font = scale > 1.0 ? "large font" : "default font";
                const auto row = [&](const char* what) -> QTestData& {
                    return QTest::addRow("%s, %s, %s", qPrintable(style), font.constData(), what);
                };
                const int structured = static_cast<int>(EditorTab::structured);
                const int raw = static_cast<int>(EditorTab::raw);
                const int known = static_cast<int>(EditorTab::knownHosts);
                row("no host") << style << scale << QString() << structured << false;
                row("host editor") << style << scale << config << structured << false;
                row("raw editor") << style << scale << config << raw << false;
                row("no entry") << style << scale << config << known << false;
                row("entry actions") << style << scale << config << known << true;
            }
        }
    }

    void everythingIsWhole()
    {
        QFETCH(QString, style);
        QFETCH(qreal, fontScale);
        QFETCH(QString, config);
        QFETCH(int, tab);
        QFETCH(bool, selectsEntry);
        if (!useStyle(style, fontScale))
            QSKIP("this Qt has no such style");

        WindowFixture fixture;
        SSHConfigViewModel& viewModel = fixture.make(config, knownHosts);
        viewModel.setActiveEditorTab(static_cast<EditorTab>(tab));
        if (selectsEntry)
            viewModel.setSelectedKnownHostEntryID(viewModel.filteredKnownHostEntries().at(1).id());
        else
            viewModel.setSelectedKnownHostEntryID(std::nullopt);
        const std::unique_ptr<MainWindow> window = shownWindow(viewModel);
        QCOMPARE(window->size(), smallestWindow);
        QCOMPARE(cutWidgetsOf(*window), QStringList());
    }

    // What a scroll area hides below its visible part is reached by scrolling down, so it does not count
    // as cut off, however tall the fonts make the content; what runs past its side does.
    void belowTheScrolledPartIsNotCut()
    {
        QWidget window;
        window.resize(300, 200);
        auto* area = new QScrollArea(&window);
        area->setGeometry(0, 0, 300, 200);
        area->setWidgetResizable(true);
        auto* content = new QWidget;
        content->setMinimumHeight(600);
        auto* below = new QPushButton(u"Below"_s, content);
        below->adjustSize();
        area->setWidget(content);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        settle();

        below->move(10, 550);
        QCOMPARE(cutWidgetsOf(window), QStringList());
        below->move(area->viewport()->width() - 10, 550);
        QCOMPARE(cutWidgetsOf(window).size(), 1);
    }

    // The comparison after a pasted ssh warning and the entry's config host links, with the host editor's
    // known_hosts link on the other tab.
    void knownHostToolsAreWhole_data()
    {
        QTest::addColumn<QString>("style");
        QTest::addColumn<qreal>("fontScale");
        for (const QString& style : { u"Fusion"_s, u"Windows"_s }) {
            for (const qreal scale : { 1.0, 1.25 })
                QTest::addRow("%s, %s", qPrintable(style), scale > 1.0 ? "large font" : "default font")
                    << style << scale;
        }
    }

    void knownHostToolsAreWhole()
    {
        QFETCH(QString, style);
        QFETCH(qreal, fontScale);
        if (!useStyle(style, fontScale))
            QSKIP("this Qt has no such style");

        WindowFixture fixture;
        SSHConfigViewModel& viewModel
            = fixture.make(u"Host web-1 web-1-long-alias.example.com\n    HostName web-1.example.com\n"_s, knownHosts);
        const std::unique_ptr<MainWindow> window = shownWindow(viewModel);
        QCOMPARE(cutWidgetsOf(*window), QStringList());
        viewModel.applyHostKeyWarning(
            u"The fingerprint for the ED25519 key sent by the remote host is\n"
            u"SHA256:Ffa9vkTzzn/PvF0x9RCHnbFyEXnGnqtYaN4DSYbY6hY.\nOffending ED25519 key in "_s
            + fixture.knownHostsPath()
            + u":1\nHost key for web-1.example.com has changed and you have requested strict checking.\n"_s);
        settle();
        QVERIFY(viewModel.hostKeyChange() && viewModel.hostKeyChange()->entryID);
        QCOMPARE(viewModel.selectedKnownHostConfigHosts().size(), 1);
        QCOMPARE(cutWidgetsOf(*window), QStringList());
    }

    // The sidebar and the tabs trade width as the tab changes: the known_hosts tab takes what it needs
    // from the sidebar, and the host sidebar gets it back.
    void switchingTabsKeepsEverythingWhole()
    {
        WindowFixture fixture;
        SSHConfigViewModel& viewModel = fixture.make(WindowFixture::sampleConfig(), knownHosts);
        const std::unique_ptr<MainWindow> window = shownWindow(viewModel);
        for (const EditorTab tab : { EditorTab::knownHosts, EditorTab::structured, EditorTab::knownHosts }) {
            viewModel.setActiveEditorTab(tab);
            settle();
            QCOMPARE(cutWidgetsOf(*window), QStringList());
        }
    }
};

QTEST_MAIN(TestWindowFit)
#include "test_window_fit.moc"
