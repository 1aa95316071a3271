#include "HostDetailView.h"

#include "SSHConfigViewModel.h"

HostDetailView::HostDetailView(SSHConfigViewModel& viewModel, QWidget* parent)
    : QWidget(parent)
    , m_viewModel(viewModel)
{
    setObjectName(QStringLiteral("hostDetailView"));
}
