#include "UndoHistory.h"

#include <algorithm>

void UndoHistory::push(Step step)
{
    if (m_savedPosition > m_position)
        m_savedPosition = -1;
    for (qsizetype i = m_position; i < m_steps.size(); ++i)
        m_cost -= m_steps.at(i).cost;
    m_steps.resize(m_position);

    // Typing joins the step before it, unless the file was saved in between: the saved state must
    // stay reachable.
    if (!step.mergeKey.isEmpty() && !m_steps.isEmpty() && m_steps.last().mergeKey == step.mergeKey
        && m_savedPosition != m_position) {
        Step& last = m_steps.last();
        last.redo = std::move(step.redo);
        const qsizetype merged = std::max(last.cost, step.cost);
        m_cost += merged - last.cost;
        last.cost = merged;
        return;
    }
    m_cost += step.cost;
    m_steps.append(std::move(step));
    m_position = m_steps.size();
    dropOldest();
}

void UndoHistory::dropOldest()
{
    qsizetype dropped = 0;
    while (
        m_steps.size() - dropped > minimumSteps && (m_cost > memoryBudget || m_steps.size() - dropped > maximumSteps)) {
        m_cost -= m_steps.at(dropped).cost;
        ++dropped;
    }
    if (dropped == 0)
        return;
    m_steps.remove(0, dropped);
    m_position -= dropped;
    m_savedPosition = m_savedPosition >= dropped ? m_savedPosition - dropped : -1;
}

const UndoHistory::Step* UndoHistory::nextUndo() const
{
    return canUndo() ? &m_steps.at(m_position - 1) : nullptr;
}

const UndoHistory::Step* UndoHistory::nextRedo() const
{
    return canRedo() ? &m_steps.at(m_position) : nullptr;
}

void UndoHistory::undo()
{
    if (!canUndo())
        return;
    --m_position;
    m_steps.at(m_position).undo();
}

void UndoHistory::redo()
{
    if (!canRedo())
        return;
    ++m_position;
    m_steps.at(m_position - 1).redo();
}

void UndoHistory::markSaved()
{
    m_savedPosition = m_position;
}
