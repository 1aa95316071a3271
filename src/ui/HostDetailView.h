#pragma once

#include "SSHHost.h"

#include <QList>
#include <QWidget>

#include <functional>
#include <optional>

class ExtraOptionsList;
class QCheckBox;
class QLineEdit;
class QPushButton;
class SSHConfigViewModel;

/// The form of the Structured Editor tab: edits the view model's selected host block.
///
/// Follows the selection and every change of the selected host, wherever it comes from (another
/// window included). Each user edit is written back at once through host()/updateHost() and reported
/// as an unsaved change; the only state kept here is the text of the option entry row. Without a
/// selected host the form is empty and disabled. A field the user is typing in keeps its text and
/// caret as long as what it says equals the host; it is normalised when editing ends.
class HostDetailView : public QWidget
{
    Q_OBJECT

public:
    explicit HostDetailView(SSHConfigViewModel& viewModel, QWidget* parent = nullptr);
    ~HostDetailView() override;

private:
    // A text field showing one value of the host: how the host gives its text, and whether a text
    // typed by the user already means what the host holds.
    struct FieldBinding
    {
        QLineEdit* field;
        std::function<QString(const SSHHost&)> shownText;
        std::function<bool(const QString&, const SSHHost&)> sameMeaning;
    };

    QWidget* makeHostGroup();
    QLineEdit* makePatternsField(QWidget* parent);
    QLineEdit* makeGroupsField(QWidget* parent);
    QWidget* makeCommonOptionsGroup();
    QWidget* makeCommonOptionRow(const QString& key, const QString& placeholder);
    QWidget* makeExtraOptionsGroup();
    QWidget* makeEntryRow();
    void connectViewModel();

    std::optional<SSHHost> currentHost() const;
    void editHost(const std::function<bool(SSHHost&)>& change);
    void refreshFromHost();
    void bindField(QLineEdit* field, std::function<QString(const SSHHost&)> shownText,
        std::function<bool(const QString&, const SSHHost&)> sameMeaning);
    void finishEditing(const FieldBinding& binding);
    void updateAddButton();
    void addOrUpdateOption();

    SSHConfigViewModel& m_viewModel;
    QWidget* m_form = nullptr;
    QLineEdit* m_patternsField = nullptr;
    QLineEdit* m_groupsField = nullptr;
    QCheckBox* m_enabledToggle = nullptr;
    QList<FieldBinding> m_bindings;
    ExtraOptionsList* m_extraOptions = nullptr;
    QLineEdit* m_newOptionKeyField = nullptr;
    QLineEdit* m_newOptionValueField = nullptr;
    QPushButton* m_addUpdateButton = nullptr;
};
