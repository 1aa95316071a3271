#include "RawEditorView.h"

#include "SSHConfigViewModel.h"

RawEditorView::RawEditorView(SSHConfigViewModel& viewModel, QWidget* parent)
    : QWidget(parent)
    , m_viewModel(viewModel)
{
    setObjectName(QStringLiteral("rawEditorView"));
}
