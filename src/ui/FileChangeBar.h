#pragma once

#include "SSHConfigViewModel.h"

#include <QFrame>

class QLabel;
class QPushButton;

/// The bar above the editors that says another program changed one of the two files, in the manner of
/// KDE's message widget: a tinted strip with the sentence and its actions, never a dialog.
///
/// A conflict offers "Herladen" and "Mijn versie bewaren"; a merge of appended lines only informs
/// and can be closed. Hidden while the view model has nothing to say about the file.
/// Child object names: "fileChangeText", "reloadChangedFileButton", "keepMyVersionButton",
/// "closeFileChangeButton".
class FileChangeBar : public QFrame
{
    Q_OBJECT

public:
    FileChangeBar(SSHConfigViewModel& viewModel, SSHConfigViewModel::SSHFile file, QWidget* parent = nullptr);

private:
    void showNotice();
    const SSHConfigViewModel::FileChangeNotice& notice() const;
    QPushButton* addAction(const QString& text, const QString& objectName, void (FileChangeBar::*act)());
    void reload();
    void keepMine();
    void close();

    SSHConfigViewModel& m_viewModel;
    SSHConfigViewModel::SSHFile m_file;
    QLabel* m_text;
    QPushButton* m_reload = nullptr;
    QPushButton* m_keepMine = nullptr;
    QPushButton* m_close = nullptr;
};
