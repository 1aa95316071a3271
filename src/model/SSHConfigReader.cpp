#include "SSHConfigReader.h"

#include "SSHConfigSyntax.h"

using namespace Qt::StringLiterals;
using namespace SSHConfigSyntax;

namespace
{
const QString enabledErrorPrefix = u"Ongeldige host-regel: "_s;
const QString disabledErrorPrefix = u"Ongeldige disabled host-regel: "_s;
// Bounds the lookup table of one parse; beyond it texts are simply copied.
constexpr qsizetype maxSharedTexts = 1 << 14;
} // namespace

SSHConfigReader::SSHConfigReader() = default;

void SSHConfigReader::readLine(QStringView rawLine, qsizetype number)
{
    const QStringView trimmed = trimBlanks(rawLine);
    if (startHostIfHostLine(trimmed))
        return;
    if (m_host)
        readHostLine(rawLine, trimmed, number);
    else
        readGlobalLine(rawLine, trimmed);
}

SSHConfigParseResult SSHConfigReader::finish()
{
    closeHost();
    for (const QString& label : std::as_const(m_pendingGroups))
        m_result.document.globalItems.append(SSHGlobalItem::comment(u"# Group: "_s + label));
    m_pendingGroups.clear();
    // Growth slack of the two long lists would otherwise stay with the document for its lifetime.
    m_result.document.hosts.squeeze();
    m_result.document.globalItems.squeeze();
    return std::move(m_result);
}

bool SSHConfigReader::startHostIfHostLine(QStringView trimmed)
{
    if (isHostLine(trimmed)) {
        startHost(trimmed, true);
        return true;
    }
    if (!trimmed.startsWith(u'#'))
        return false;
    const QStringView uncommented = trimBlanks(stripCommentMarker(trimmed));
    if (!isHostLine(uncommented))
        return false;
    startHost(uncommented, false);
    return true;
}

void SSHConfigReader::startHost(QStringView hostLine, bool isEnabled)
{
    closeHost();
    m_host.emplace(parseHostPatterns(hostLine), groupsForNewHost(), isEnabled);
    m_pendingGroups.clear();
}

void SSHConfigReader::closeHost()
{
    if (!m_host)
        return;
    m_host->items
        = QList<SSHHostItem>(std::make_move_iterator(m_items.begin()), std::make_move_iterator(m_items.end()));
    m_items.clear();
    m_result.document.hosts.append(std::move(*m_host));
    m_host.reset();
}

QStringList SSHConfigReader::groupsForNewHost()
{
    QStringList groups;
    if (m_sectionGroup)
        appendUniqueGroup(*m_sectionGroup, groups);
    appendUniqueGroups(m_pendingGroups, groups);
    if (groups == m_lastGroups)
        return m_lastGroups;
    m_lastGroups = groups;
    return groups;
}

void SSHConfigReader::readGlobalLine(QStringView raw, QStringView trimmed)
{
    QList<SSHGlobalItem>& items = m_result.document.globalItems;
    if (trimmed.isEmpty()) {
        items.append(SSHGlobalItem::blank());
        return;
    }
    if (!trimmed.startsWith(u'#')) {
        items.append(SSHGlobalItem::directive(raw.toString()));
        return;
    }
    const QStringList labels = parseGroupComment(trimmed);
    if (!labels.isEmpty()) {
        appendUniqueGroups(labels, m_pendingGroups);
        return;
    }
    if (raw.startsWith(u'#')) {
        if (std::optional<QString> section = parseSectionHeader(trimmed)) {
            m_sectionGroup = std::move(section);
            return;
        }
    }
    items.append(SSHGlobalItem::comment(trimmed.toString()));
}

void SSHConfigReader::readHostLine(QStringView raw, QStringView trimmed, qsizetype number)
{
    if (trimmed.isEmpty()) {
        m_items.append(SSHHostItem::blank());
        return;
    }
    if (raw.startsWith(u'#') && readColumnZeroConvention(trimmed))
        return;
    if (m_host->isEnabled)
        readEnabledHostLine(raw, trimmed, number);
    else
        readDisabledHostLine(raw, trimmed, number);
}

bool SSHConfigReader::readColumnZeroConvention(QStringView trimmed)
{
    if (std::optional<QString> section = parseSectionHeader(trimmed)) {
        m_sectionGroup = std::move(section);
        return true;
    }
    const QStringList labels = parseGroupComment(trimmed);
    if (labels.isEmpty())
        return false;
    appendUniqueGroups(labels, m_pendingGroups);
    return true;
}

void SSHConfigReader::readEnabledHostLine(QStringView raw, QStringView trimmed, qsizetype number)
{
    if (trimmed.startsWith(u'#'))
        m_items.append(SSHHostItem::comment(trimmed.toString()));
    else if (!appendOption(raw))
        reportInvalid(enabledErrorPrefix, trimmed, number);
}

void SSHConfigReader::readDisabledHostLine(QStringView raw, QStringView trimmed, qsizetype number)
{
    const QStringView uncommented = stripCommentMarker(raw);
    const QStringView uncommentedTrimmed = trimBlanks(uncommented);
    if (uncommentedTrimmed.isEmpty())
        m_items.append(SSHHostItem::blank());
    else if (uncommentedTrimmed.startsWith(u'#'))
        m_items.append(SSHHostItem::comment(uncommentedTrimmed.toString()));
    else if (!appendOption(uncommented))
        reportInvalid(disabledErrorPrefix, trimmed, number);
}

bool SSHConfigReader::appendOption(QStringView raw)
{
    const std::optional<OptionParts> parts = parseOption(raw);
    if (!parts)
        return false;
    m_items.append(SSHHostItem::option(SSHOption(sharedText(parts->key), sharedText(parts->value))));
    return true;
}

void SSHConfigReader::reportInvalid(const QString& prefix, QStringView trimmed, qsizetype number)
{
    m_result.errors.append(SSHParseError(number, prefix + trimmed));
    m_items.append(SSHHostItem::comment(u"# "_s + trimmed));
}

QString SSHConfigReader::sharedText(QStringView text)
{
    if (text.isEmpty())
        return QString();
    const auto found = m_sharedTexts.constFind(text);
    if (found != m_sharedTexts.cend())
        return found.value();
    QString copy = text.toString();
    if (m_sharedTexts.size() < maxSharedTexts)
        m_sharedTexts.insert(QStringView(copy), copy);
    return copy;
}
