#include "PreferencesWindow.h"

#include "PreferencesView.h"

#include <QVBoxLayout>

using namespace Qt::StringLiterals;

PreferencesWindow::PreferencesWindow(SSHConfigViewModel& viewModel, QWidget* parent)
    : QDialog(parent)
{
    setObjectName(u"preferencesWindow"_s);
    setWindowTitle(u"Preferences"_s);
    auto* view = new PreferencesView(viewModel, this);
    view->setObjectName(u"preferencesView"_s);
    view->setFixedSize(520, 360);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(view, 0, Qt::AlignCenter);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}
