#pragma once

#include "SSHConfigParser.h"

#include <QHash>
#include <QStringView>

#include <optional>

/// The state of one parse: a small machine that is before the first host, in an enabled block or in
/// a disabled block, with the pending group labels and the section label beside it. Made fresh for
/// every call of SSHConfigParser::parse; feed every line in order, then take the result.
class SSHConfigReader
{
public:
    SSHConfigReader();

    /// Takes one line as cut (without its line break) with its 1-based number.
    void readLine(QStringView rawLine, qsizetype number);

    /// Closes the last block and files leftover group labels as global comments.
    SSHConfigParseResult finish();

private:
    bool startHostIfHostLine(QStringView trimmed);
    void startHost(QStringView hostLine, bool isEnabled);
    void closeHost();
    QStringList groupsForNewHost();
    void readGlobalLine(QStringView raw, QStringView trimmed);
    void readHostLine(QStringView raw, QStringView trimmed, qsizetype number);
    bool readColumnZeroConvention(QStringView trimmed);
    void readEnabledHostLine(QStringView raw, QStringView trimmed, qsizetype number);
    void readDisabledHostLine(QStringView raw, QStringView trimmed, qsizetype number);
    bool appendOption(QStringView raw);
    void reportInvalid(const QString& prefix, QStringView trimmed, qsizetype number);
    QString sharedText(QStringView text);

    SSHConfigParseResult m_result;
    std::optional<SSHHost> m_host;
    // Items of the open block gather here and are copied into an exactly sized list when the block
    // closes, so a large file holds no growth slack per host.
    QList<SSHHostItem> m_items;
    QStringList m_pendingGroups;
    std::optional<QString> m_sectionGroup;
    // Hosts that share a label set share one list; most files give the same groups to many hosts.
    QStringList m_lastGroups;
    // Keywords and many values ("yes", a user, a key file) repeat from block to block; one shared
    // string per distinct text keeps a large file's memory down. The views point into the values.
    QHash<QStringView, QString> m_sharedTexts;
};
