#include "SSHConfigWriter.h"

#include "HugePageAdvice.h"
#include "SSHConfigSyntax.h"

using namespace Qt::StringLiterals;
using namespace SSHConfigSyntax;

namespace
{
constexpr QStringView disabledPrefix = u"# ";
constexpr QStringView itemIndent = u"  ";
} // namespace

SSHConfigWriter::SSHConfigWriter(qsizetype expectedSize)
{
    m_text.reserve(expectedSize);
    adviseHugePages(m_text.data(), static_cast<std::size_t>(m_text.capacity()) * sizeof(QChar));
}

void SSHConfigWriter::beginLine()
{
    if (m_lineCount++ > 0)
        m_text.append(u'\n');
    m_lastLineEmpty = false;
}

void SSHConfigWriter::writeEmptyLine()
{
    beginLine();
    m_lastLineEmpty = true;
}

void SSHConfigWriter::writeGlobalItem(const SSHGlobalItem& item)
{
    if (const auto* directive = std::get_if<SSHGlobalItem::Directive>(&item.variant())) {
        beginLine();
        m_text.append(directive->text);
        m_lastLineEmpty = directive->text.isEmpty();
    } else if (const auto* comment = std::get_if<SSHGlobalItem::Comment>(&item.variant())) {
        beginLine();
        m_text.append(normalizedComment(comment->text));
    } else {
        writeEmptyLine();
    }
}

void SSHConfigWriter::writeHost(const SSHHost& host)
{
    if (m_lineCount > 0 && !m_lastLineEmpty)
        writeEmptyLine();
    for (const QString& group : host.groups) {
        const QStringView label = trimBlanks(group);
        if (label.isEmpty())
            continue;
        beginLine();
        m_text.append(u"# Group: ");
        m_text.append(label);
    }
    beginLine();
    if (!host.isEnabled)
        m_text.append(disabledPrefix);
    m_text.append(u"Host ");
    m_text.append(host.patterns.join(u' '));
    for (const SSHHostItem& item : host.items)
        writeItem(item, host.isEnabled);
}

void SSHConfigWriter::writeItem(const SSHHostItem& item, bool isEnabled)
{
    if (item.isBlank()) {
        writeEmptyLine();
        return;
    }
    beginLine();
    if (!isEnabled)
        m_text.append(disabledPrefix);
    m_text.append(itemIndent);
    if (const SSHOption* option = item.asOption()) {
        m_text.append(option->key);
        if (!option->value.isEmpty()) {
            m_text.append(u' ');
            m_text.append(option->value);
        }
    } else {
        m_text.append(normalizedComment(item.commentText()));
    }
}
