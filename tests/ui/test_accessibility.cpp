// What assistive technology reads: every control of every window has a name and a description in the
// accessibility tree, and a disabled host differs from an enabled one by more than its dot's colour.

#include "ContentView.h"
#include "CreateGroupDialog.h"
#include "HostListModel.h"
#include "HostRowDelegate.h"
#include "MainWindow.h"
#include "PreferencesWindow.h"
#include "SSHConfigViewModel.h"
#include "WidgetHelpers.h"
#include "WindowFixture.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTabBar>
#include <QtTest>

#include <memory>

using namespace Qt::StringLiterals;

using EditorTab = SSHConfigViewModel::EditorTab;

namespace
{
bool isControl(const QWidget& widget)
{
    // A line edit's clear button is part of the field, which carries the name.
    if (qobject_cast<const QLineEdit*>(widget.parentWidget()))
        return false;
    return qobject_cast<const QAbstractButton*>(&widget) || (widget.focusPolicy() & Qt::TabFocus) != 0;
}

QString nameOf(const QWidget& widget)
{
    return widget.objectName().isEmpty() ? QString::fromLatin1(widget.metaObject()->className()) : widget.objectName();
}

void checkNode(QAccessibleInterface& node, const QString& widgetName, QStringList& found)
{
    if (node.text(QAccessible::Name).trimmed().isEmpty())
        found.append(widgetName + u": no name"_s);
    else if (node.text(QAccessible::Description).trimmed().isEmpty())
        found.append(widgetName + u" \""_s + node.text(QAccessible::Name) + u"\": no description"_s);
}

// Every visible control of window whose accessible name or description is empty.
QStringList unnamedControls(const QWidget& window)
{
    QStringList found;
    QList<QWidget*> widgets = window.findChildren<QWidget*>();
    widgets.prepend(const_cast<QWidget*>(&window));
    for (QWidget* widget : std::as_const(widgets)) {
        if (!widget->isVisible() || !isControl(*widget))
            continue;
        QAccessibleInterface* node = QAccessible::queryAccessibleInterface(widget);
        if (!node) {
            found.append(nameOf(*widget) + u": not in the tree"_s);
            continue;
        }
        // A tab bar reads out its current tab; the tabs themselves carry the descriptions. Its scroll
        // buttons are Qt's own and shown only when the tabs do not fit.
        if (qobject_cast<QTabBar*>(widget)) {
            for (int i = 0; i < node->childCount(); ++i) {
                if (node->child(i)->role() == QAccessible::PageTab)
                    checkNode(*node->child(i), nameOf(*widget), found);
            }
        } else {
            checkNode(*node, nameOf(*widget), found);
        }
    }
    return found;
}
} // namespace

class TestAccessibility : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void mainWindowControlsAreNamed_data()
    {
        QTest::addColumn<int>("tab");
        QTest::addColumn<bool>("selects");
        QTest::newRow("host editor") << int(EditorTab::structured) << true;
        QTest::newRow("no host") << int(EditorTab::structured) << false;
        QTest::newRow("raw editor") << int(EditorTab::raw) << true;
        QTest::newRow("known_hosts entry") << int(EditorTab::knownHosts) << true;
        QTest::newRow("no known_hosts entry") << int(EditorTab::knownHosts) << false;
    }

    void mainWindowControlsAreNamed()
    {
        QFETCH(int, tab);
        QFETCH(bool, selects);
        WindowFixture fixture;
        SSHConfigViewModel& viewModel = fixture.make(WindowFixture::sampleConfig(), WindowFixture::sampleKnownHosts());
        viewModel.setActiveEditorTab(static_cast<EditorTab>(tab));
        if (!selects) {
            viewModel.setSelectedHostID(std::nullopt);
            viewModel.setSelectedKnownHostEntryID(std::nullopt);
        }
        // A host with extra options, so that their rows and the validation list show too.
        viewModel.setRawText(WindowFixture::sampleConfig() + u"Host broken\n  ForwardAgent yes\nnot valid here\n"_s);
        viewModel.parseRawText();
        MainWindow window(viewModel, std::nullopt);
        window.resize(1080, 700);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        const QStringList unnamed = unnamedControls(window);
        QVERIFY2(unnamed.isEmpty(), qPrintable(unnamed.join(u"; "_s)));
    }

    void otherWindowsControlsAreNamed()
    {
        WindowFixture fixture;
        SSHConfigViewModel& viewModel = fixture.make(WindowFixture::sampleConfig());
        PreferencesWindow preferences(viewModel);
        preferences.show();
        QVERIFY(QTest::qWaitForWindowExposed(&preferences));
        QStringList unnamed = unnamedControls(preferences);
        MainWindow window(viewModel, std::nullopt);
        window.show();
        window.contentView().presentCreateGroupSheet();
        auto* sheet = child<CreateGroupDialog>(window, u"createGroupDialog"_s);
        QTRY_VERIFY(sheet->isVisible());
        unnamed += unnamedControls(*sheet);
        // The message bars are hidden until they have something to say; their buttons are named anyway.
        for (const QString& bar : { u"configChangeBar"_s, u"knownHostsChangeBar"_s, u"sshCheckBar"_s }) {
            for (QAbstractButton* button : child<QWidget>(window, bar)->findChildren<QAbstractButton*>()) {
                if (button->accessibleName().isEmpty() || button->accessibleDescription().isEmpty())
                    unnamed.append(bar + u": "_s + nameOf(*button));
            }
        }
        QVERIFY2(unnamed.isEmpty(), qPrintable(unnamed.join(u"; "_s)));
    }

    // Without colour, a disabled host still reads as one: to the eye by a muted title, to a screen
    // reader by its row's text.
    void disabledHostIsMarkedBeyondItsDot()
    {
        WindowFixture fixture;
        SSHConfigViewModel& viewModel = fixture.make(WindowFixture::sampleConfig());
        HostListModel model(viewModel);
        const QModelIndex enabled = model.index(0, 0); // web-1
        const QModelIndex disabled = model.index(3, 0); // old-server
        QVERIFY(!disabled.data(HostListModel::IsEnabledRole).toBool());
        QCOMPARE(disabled.data(Qt::AccessibleTextRole).toString(), u"old-server, uitgeschakeld"_s);
        QCOMPARE(enabled.data(Qt::AccessibleTextRole).toString(), u"web-1"_s);
        QCOMPARE(enabled.data(Qt::AccessibleDescriptionRole).toString(), u"Groepen: werk, productie"_s);

        QStyleOptionViewItem option;
        QVERIFY(HostRowDelegate::titleColour(option, false) != HostRowDelegate::titleColour(option, true));
        option.state |= QStyle::State_Selected;
        QCOMPARE(HostRowDelegate::titleColour(option, false), HostRowDelegate::titleColour(option, true));
    }
};

QTEST_MAIN(TestAccessibility)
#include "test_accessibility.moc"
