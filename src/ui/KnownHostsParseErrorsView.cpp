#include "KnownHostsParseErrorsView.h"

#include "SSHConfigViewModel.h"
#include "TextStyle.h"

#include <QFrame>
#include <QLabel>
#include <QListView>
#include <QStringListModel>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

constexpr int visibleRowsAtMost = 6;

} // namespace

KnownHostsParseErrorsView::KnownHostsParseErrorsView(SSHConfigViewModel& viewModel, QWidget* parent)
    : QWidget(parent)
    , m_viewModel(viewModel)
    , m_lines(new QStringListModel(this))
    , m_list(new QListView(this))
{
    setObjectName(u"knownHostsParseErrors"_s);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(12);
    auto* divider = new QFrame(this);
    divider->setFrameShape(QFrame::HLine);
    divider->setFrameShadow(QFrame::Sunken);
    layout->addWidget(divider);

    auto* stack = new QVBoxLayout;
    stack->setSpacing(6);
    auto* heading = new QLabel(u"Known Hosts parsefouten"_s, this);
    heading->setObjectName(u"knownHostsParseErrorsHeading"_s);
    applyTextStyle(heading, TextStyle::headline);
    stack->addWidget(heading);
    m_list->setObjectName(u"knownHostsParseErrorList"_s);
    m_list->setModel(m_lines);
    m_list->setUniformItemSizes(true);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setSelectionMode(QAbstractItemView::NoSelection);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->setFocusPolicy(Qt::NoFocus);
    m_list->viewport()->setAutoFillBackground(false);
    applyTextStyle(m_list, TextStyle::caption);
    makeWarningText(m_list);
    stack->addWidget(m_list);
    layout->addLayout(stack);

    connect(&viewModel, &SSHConfigViewModel::knownHostsParseErrorsChanged, this, &KnownHostsParseErrorsView::refresh);
    refresh();
}

QStringList KnownHostsParseErrorsView::lines() const
{
    return m_lines->stringList();
}

void KnownHostsParseErrorsView::refresh()
{
    const QList<KnownHostsParseError>& errors = m_viewModel.knownHostsParseErrors();
    QStringList lines;
    lines.reserve(errors.size());
    for (const KnownHostsParseError& error : errors)
        lines.append(u"Regel "_s + QString::number(error.line()) + u": "_s + error.message());
    m_lines->setStringList(lines);
    setVisible(!lines.isEmpty());
    fitHeight();
}

void KnownHostsParseErrorsView::fitHeight()
{
    const int rows = qMin(static_cast<int>(m_lines->rowCount()), visibleRowsAtMost);
    if (rows == 0)
        return;
    const int rowHeight = m_list->sizeHintForRow(0);
    m_list->setFixedHeight(rows * rowHeight + 2 * m_list->frameWidth());
}
