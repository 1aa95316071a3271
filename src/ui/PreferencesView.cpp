#include "PreferencesView.h"

#include "SSHConfigViewModel.h"

PreferencesView::PreferencesView(SSHConfigViewModel& viewModel, QWidget* parent)
    : QWidget(parent)
    , m_viewModel(viewModel)
{
    setObjectName(QStringLiteral("preferencesView"));
}
