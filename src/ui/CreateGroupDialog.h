#pragma once

#include <QDialog>

class QLineEdit;
class QPushButton;
class SSHConfigViewModel;

/// The "Nieuwe groep" sheet: a group name field with "Cancel" and "Add Group" (the default button, so
/// Return triggers it). "Add Group" hands the name as typed to createGroupForSelectedHost(); on success
/// the sheet closes and forgets the name, on refusal it stays open with the text as typed while the
/// view model's status sentence says why. Cancel, Escape and closing the window dismiss it.
///
/// Window-modal over its parent window (a sheet on macOS). Child object names: "newGroupNameField",
/// "cancelButton", "addGroupButton".
class CreateGroupDialog : public QDialog
{
    Q_OBJECT

public:
    explicit CreateGroupDialog(SSHConfigViewModel& viewModel, QWidget* parent = nullptr);

    /// The text of the name field.
    QString newGroupName() const;

    /// Empties the name field and shows the sheet over the parent window.
    void present();

private:
    void addGroup();

    SSHConfigViewModel& m_viewModel;
    QLineEdit* m_name;
    QPushButton* m_cancel;
    QPushButton* m_add;
};
