#pragma once

#include <QList>
#include <QString>

#include <functional>

/// The undo history of one document: a list of steps and the position between done and undone ones,
/// like QUndoStack, but without Qt Gui, so the view model can keep it and be tested without a window.
///
/// A step carries its own way back and forth. Pushing a step drops the undone steps after the current
/// position; a step whose merge key equals the last step's (typing in one field) joins it, keeping the
/// last step's way back. The history remembers where the document matched its file, so the view
/// model can tell after an undo whether there is anything left to save.
class UndoHistory
{
public:
    struct Step
    {
        /// What the step does, as a menu names it: "Host verwijderen".
        QString name;
        /// What it did, as a status sentence names it: "Host verwijderd".
        QString pastTense;
        /// Non-empty for steps that join an equal-keyed step just before them.
        QString mergeKey;
        std::function<void()> undo;
        std::function<void()> redo;
        /// An estimate of the memory the step keeps alive, in bytes.
        qsizetype cost = 0;
    };

    /// Never fewer steps are kept than this, whatever they cost.
    static constexpr qsizetype minimumSteps = 100;
    /// Steps beyond the minimum are dropped, oldest first, while the history's cost exceeds this.
    static constexpr qsizetype memoryBudget = qsizetype(128) << 20;
    static constexpr qsizetype maximumSteps = 1000;

    /// Adds a step that has just been done.
    void push(Step step);
    bool canUndo() const { return m_position > 0; }
    bool canRedo() const { return m_position < m_steps.size(); }
    /// The step undo() would take back, or nothing.
    const Step* nextUndo() const;
    /// The step redo() would do again, or nothing.
    const Step* nextRedo() const;
    /// Takes back the last done step; does nothing when there is none.
    void undo();
    /// Does the last undone step again; does nothing when there is none.
    void redo();

    /// The document now matches its file (just loaded or saved).
    void markSaved();
    /// Whether the document is where it was when last marked saved.
    bool atSavedState() const { return m_savedPosition == m_position; }

    qsizetype size() const { return m_steps.size(); }
    /// The summed cost of every kept step.
    qsizetype cost() const { return m_cost; }

private:
    void dropOldest();

    QList<Step> m_steps;
    qsizetype m_position = 0;
    // -1 when the saved state was dropped or undone away and can no longer be reached.
    qsizetype m_savedPosition = 0;
    qsizetype m_cost = 0;
};
