#include "KnownHostsView.h"

#include "SSHConfigViewModel.h"

KnownHostsView::KnownHostsView(SSHConfigViewModel& viewModel, QWidget* parent)
    : QWidget(parent)
    , m_viewModel(viewModel)
{
    setObjectName(QStringLiteral("knownHostsView"));
}
