#pragma once

// The known_hosts tab on its own, shown over real files.

#include "KnownHostsView.h"
#include "SSHConfigViewModel.h"
#include "WidgetHelpers.h"
#include "WindowFixture.h"

#include <QAbstractItemView>
#include <QPushButton>
#include <QTest>

#include <memory>
#include <optional>

struct KnownHostsViewFixture
{
    explicit KnownHostsViewFixture(const QString& knownHosts, const QString& config = QString())
        : viewModel(&files.make(config, knownHosts))
        , view(std::make_unique<KnownHostsView>(*viewModel))
    {
        view->resize(1000, 600);
        view->show();
    }

    template<typename T> T* find(const QString& objectName) const { return child<T>(*view, objectName); }

    QAbstractItemView* list() const { return find<QAbstractItemView>(QStringLiteral("knownHostsList")); }
    /// Clicks the list's row as a user would.
    void selectRow(int row) const { clickRow(*list(), row); }
    /// Selects the entry through the view model.
    void select(int entry) const
    {
        viewModel->setSelectedKnownHostEntryID(viewModel->filteredKnownHostEntries().at(entry).id());
    }
    QString selectedFirstHost() const { return selectedEntryHost(*viewModel); }
    void click(const QString& buttonName) const { QTest::mouseClick(find<QPushButton>(buttonName), Qt::LeftButton); }

    WindowFixture files;
    SSHConfigViewModel* viewModel;
    std::unique_ptr<KnownHostsView> view;
};
