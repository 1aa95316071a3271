#include "SshConfigCopies.h"

#include "OpenSSHLineWords.h"

#include <QDir>
#include <QFile>

#include <glob.h>

using namespace Qt::StringLiterals;

namespace
{
// ssh's own limit on nested Include lines (READCONF_MAX_DEPTH).
constexpr int maxIncludeDepth = 16;

// Criteria that stand alone; every other criterion takes one argument.
bool takesNoArgument(const QString& criterion)
{
    return criterion == u"all"_s || criterion == u"canonical"_s || criterion == u"final"_s;
}

// What ssh expands an Include argument to: relative paths are taken from ~/.ssh, then ~ and wildcards
// are expanded by glob(3) as ssh does; files are returned in glob's sorted order.
QStringList expandInclude(const QString& argument)
{
    const QString pattern = argument.startsWith(u'/') || argument.startsWith(u'~') ? argument : u"~/.ssh/"_s + argument;
    glob_t found {};
    QStringList paths;
    if (::glob(QFile::encodeName(pattern).constData(), GLOB_TILDE, nullptr, &found) == 0) {
        for (size_t i = 0; i < found.gl_pathc; ++i)
            paths.append(QFile::decodeName(found.gl_pathv[i]));
    }
    ::globfree(&found);
    return paths;
}

// A plain write: the copies live only for one check in a private directory, and the flush to disk
// that a safe save makes would stall the event loop for nothing.
bool writeText(const QString& path, const QString& text, QIODevice::OpenMode mode = QIODevice::WriteOnly)
{
    QFile file(path);
    const QByteArray bytes = text.toUtf8();
    return file.open(mode) && file.write(bytes) == bytes.size() && file.flush();
}
} // namespace

SshConfigCopies::SshConfigCopies(QString directory)
    : m_directory(std::move(directory))
{ }

QString SshConfigCopies::write(const QString& fileName, QStringView text, bool execAnswer)
{
    return writeRewritten(fileName, text, execAnswer, false);
}

QString SshConfigCopies::append(const QString& fileName, QStringView text, bool execAnswer)
{
    return writeRewritten(fileName, text, execAnswer, true);
}

QString SshConfigCopies::writeRewritten(const QString& fileName, QStringView text, bool execAnswer, bool append)
{
    const QString path = QDir(m_directory).filePath(fileName);
    const QIODevice::OpenMode mode = append ? QIODevice::Append : QIODevice::WriteOnly;
    return writeText(path, rewrite(text, execAnswer, 0), mode) ? path : QString();
}

// ssh reads a config line by line, ending lines at LF only; every other character stays in its line.
QString SshConfigCopies::rewrite(QStringView text, bool execAnswer, int depth)
{
    QStringList lines;
    for (const QStringView line : text.split(u'\n'))
        lines.append(rewriteLine(line, execAnswer, depth));
    return lines.join(u'\n');
}

QString SshConfigCopies::rewriteLine(QStringView line, bool execAnswer, int depth)
{
    const QStringList words = OpenSSHLineWords::split(line);
    if (words.isEmpty())
        return line.toString();
    const QString keyword = words.first().toLower();
    if (keyword == u"host"_s) {
        for (qsizetype i = 1; i < words.size(); ++i)
            notePatterns(words.at(i), QChar());
        return line.toString();
    }
    if (keyword == u"match"_s) {
        m_hasMatch = true;
        return rewriteMatch(words, execAnswer);
    }
    if (keyword == u"include"_s)
        return rewriteInclude(words, execAnswer, depth);
    return line.toString();
}

QString SshConfigCopies::rewriteMatch(const QStringList& words, bool execAnswer)
{
    QStringList rewritten { u"Match"_s };
    for (qsizetype i = 1; i < words.size(); ++i) {
        const QString& word = words.at(i);
        const bool negated = word.startsWith(u'!');
        const QString criterion = word.mid(negated ? 1 : 0).toLower();
        if (takesNoArgument(criterion) || i + 1 >= words.size()) {
            rewritten.append(OpenSSHLineWords::quoted(word));
            continue;
        }
        const QString& argument = words.at(++i);
        if (criterion == u"exec"_s) {
            m_hasExec = true;
            rewritten.append(negated == execAnswer ? u"!host"_s : u"host"_s);
            rewritten.append(u"*"_s);
            continue;
        }
        if (criterion == u"host"_s || criterion == u"originalhost"_s)
            notePatterns(argument, u',');
        rewritten.append(OpenSSHLineWords::quoted(word));
        rewritten.append(OpenSSHLineWords::quoted(argument));
    }
    return rewritten.join(u' ');
}

QString SshConfigCopies::rewriteInclude(const QStringList& words, bool execAnswer, int depth)
{
    QStringList copies;
    for (qsizetype i = 1; i < words.size(); ++i) {
        for (const QString& path : expandInclude(words.at(i))) {
            const QString copy = copyOfIncluded(path, execAnswer, depth + 1);
            if (!copy.isEmpty())
                copies.append(OpenSSHLineWords::quoted(copy));
        }
    }
    // ssh skips an Include that matches nothing; a comment keeps the line count for the reader.
    return copies.isEmpty() ? u"# Include without readable files"_s : u"Include "_s + copies.join(u' ');
}

QString SshConfigCopies::copyOfIncluded(const QString& path, bool execAnswer, int depth)
{
    const QString key = (execAnswer ? u"1:"_s : u"0:"_s) + path;
    if (const auto known = m_includedCopies.constFind(key); known != m_includedCopies.cend())
        return *known;
    QFile file(path);
    if (depth > maxIncludeDepth || !file.open(QIODevice::ReadOnly))
        return {};
    // Registered before reading, so a file that includes itself ends at its own copy.
    const QString copy = QDir(m_directory).filePath(u"included-"_s + QString::number(m_includedCopies.size()));
    m_includedCopies.insert(key, copy);
    const QString text = QString::fromUtf8(file.readAll());
    return writeText(copy, rewrite(text, execAnswer, depth)) ? copy : QString();
}

void SshConfigCopies::notePatterns(const QString& patternList, QChar separator)
{
    const QStringList patterns = separator.isNull() ? QStringList { patternList } : patternList.split(separator);
    for (const QString& pattern : patterns) {
        if (!pattern.isEmpty() && !m_seenPatterns.contains(pattern)) {
            m_seenPatterns.insert(pattern);
            m_hostPatterns.append(pattern);
        }
    }
}
