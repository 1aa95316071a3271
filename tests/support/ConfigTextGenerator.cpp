#include "ConfigTextGenerator.h"

#include "GroupList.h"
#include "SSHConfigSyntax.h"

using namespace Qt::StringLiterals;

namespace
{
const QStringList keys
    = { u"HostName"_s, u"User"_s, u"Port"_s, u"IdentityFile"_s, u"ProxyJump"_s, u"ForwardAgent"_s, u"LocalForward"_s,
          u"ServerAliveInterval"_s, u"Match"_s, u"Include"_s, u"hostname"_s, u"X11Forwarding"_s, u"SetEnv"_s };
const QStringList words = { u"web"_s, u"db-1"_s, u"*.lan"_s, u"!bastion"_s, u"10.0.0.5"_s, u"caf\u00e9"_s,
    u"cafe\u0301"_s, u"root"_s, u"~/.ssh/id_ed25519"_s, u"\"~/my keys/id\""_s, u"yes"_s, u"22"_s, u"a=b"_s, u"#x"_s,
    u"w?b"_s, u"\u00fcber"_s, u"\U0001F511"_s };
const QStringList patternWords = { u"web"_s, u"db-1"_s, u"*.lan"_s, u"!bastion"_s, u"10.0.0.5"_s, u"caf\u00e9"_s,
    u"cafe\u0301"_s, u"w?b"_s, u"\u00fcber"_s, u"\U0001F511"_s, u"#x"_s };
const QStringList blanks = { u" "_s, u"  "_s, u"\t"_s, u"\u00a0"_s, u"\u3000"_s, u" \t "_s };
} // namespace

ConfigTextGenerator::ConfigTextGenerator(quint64 seed)
    : m_state(seed)
{ }

quint64 ConfigTextGenerator::nextRandom()
{
    // splitmix64: tiny, fully specified, the same on every platform and library.
    quint64 z = (m_state += 0x9E3779B97F4A7C15ULL);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return z ^ (z >> 31);
}

int ConfigTextGenerator::below(int bound)
{
    return static_cast<int>(nextRandom() % static_cast<quint64>(bound));
}

QString ConfigTextGenerator::randomWord()
{
    return pick(words);
}

QString ConfigTextGenerator::randomKey()
{
    return pick(keys);
}

QString ConfigTextGenerator::randomValue()
{
    QString value = randomWord();
    for (int extra = below(3); extra > 0; --extra)
        value += pick(blanks) + randomWord();
    return value;
}

QString ConfigTextGenerator::randomComment()
{
    return pick({ u"# note"_s, u"#note"_s, u"# PRODUCTION"_s, u"# WEB  SERVERS"_s, u"# 42"_s, u"# ---"_s,
        u"# Group: werk, klanten"_s, u"#group:a,,b"_s, u"# Group:"_s, u"# Groups: a"_s, u"#"_s, u"# Host keys follow"_s,
        u"# HOST DB"_s, u"# # retired"_s, u"# Web servers"_s, u"# Group: Web, WEB, web"_s, u"# caf\u00e9"_s });
}

QString ConfigTextGenerator::randomLineBreak()
{
    const int kind = below(20);
    if (kind < 14)
        return u"\n"_s;
    if (kind < 17)
        return u"\r\n"_s;
    return pick({ u"\r"_s, u"\u2028"_s, u"\u0085"_s, u"\f"_s, u"\v"_s, u"\u2029"_s });
}

QString ConfigTextGenerator::randomLine()
{
    const QString indent = chance(50) ? QString() : pick(blanks);
    switch (below(10)) {
    case 0:
        return indent + pick({ u"Host "_s, u"HOST "_s, u"host "_s, u"Host\t"_s, u"Hostname "_s }) + randomValue();
    case 1:
        return indent + pick({ u"# Host "_s, u"#Host "_s, u"#  host "_s }) + randomValue();
    case 2:
        return indent + randomComment();
    case 3:
        return chance(50) ? QString() : indent;
    case 4:
        return indent + pick({ u"#   "_s, u"# "_s, u"#"_s }) + randomKey() + pick(blanks) + randomValue();
    case 5:
        return indent + randomKey() + pick({ u"="_s, u" = "_s, u"\t"_s }) + randomValue();
    case 6:
        return indent + pick({ u"bad-key x"_s, u"1Port 22"_s, u"Port=22"_s, u"#   bad-key x"_s });
    default:
        return indent + randomKey() + pick(blanks) + randomValue() + (chance(20) ? u" # main"_s : QString());
    }
}

QString ConfigTextGenerator::nextText()
{
    QString text;
    const int lineCount = below(40);
    for (int i = 0; i < lineCount; ++i)
        text += randomLine() + randomLineBreak();
    if (chance(50))
        text += randomLine();
    return text;
}

QStringList ConfigTextGenerator::randomGroups()
{
    QStringList groups;
    for (int count = below(4); count > 0; --count)
        appendUniqueGroup(pick({ u"werk"_s, u"Klanten"_s, u"PRODUCTION"_s, u"web servers"_s, u"caf\u00e9"_s }), groups);
    return groups;
}

SSHHostItem ConfigTextGenerator::randomLossFreeItem(bool isEnabled)
{
    const int kind = below(10);
    if (kind == 0)
        return SSHHostItem::blank();
    if (kind < 3)
        return SSHHostItem::comment(pick({ u"# note"_s, u"# PRODUCTION"_s, u"# Group: x"_s, u"#x"_s, u"# # y"_s }));
    // Every key here has a lower-case letter, so no disabled option reads back as a section header,
    // and none is Host, which would read back as a host line.
    Q_UNUSED(isEnabled);
    return SSHHostItem::option(SSHOption(randomKey(), chance(15) ? QString() : randomValue()));
}

SSHHost ConfigTextGenerator::randomLossFreeHost()
{
    QStringList patterns;
    for (int count = 1 + below(3); count > 0; --count)
        patterns.append(pick(patternWords));
    SSHHost host(patterns, randomGroups(), chance(75));
    for (int count = below(8); count > 0; --count)
        host.items.append(randomLossFreeItem(host.isEnabled));
    return host;
}

SSHConfigDocument ConfigTextGenerator::nextLossFreeDocument()
{
    SSHConfigDocument document;
    for (int count = below(4); count > 0; --count) {
        const int kind = below(3);
        if (kind == 0)
            document.globalItems.append(SSHGlobalItem::blank());
        else if (kind == 1)
            document.globalItems.append(SSHGlobalItem::comment(pick({ u"# note"_s, u"# Web servers"_s })));
        else
            document.globalItems.append(
                SSHGlobalItem::directive(pick({ u"Include ~/.ssh/conf.d/*"_s, u"  Match host x"_s, u"Port=22 "_s })));
    }
    for (int count = below(6); count > 0; --count)
        document.hosts.append(randomLossFreeHost());
    // The writer puts an empty line before every block that does not follow one; reading it back
    // would add that line as an item, so this document carries it already.
    if (!document.hosts.isEmpty() && !document.globalItems.isEmpty() && !document.globalItems.last().isBlank())
        document.globalItems.append(SSHGlobalItem::blank());
    for (qsizetype i = 0; i + 1 < document.hosts.size(); ++i) {
        if (document.hosts[i].items.isEmpty() || !document.hosts[i].items.last().isBlank())
            document.hosts[i].items.append(SSHHostItem::blank());
    }
    if (document.globalItems.isEmpty() && document.hosts.isEmpty())
        document.globalItems.append(SSHGlobalItem::directive(u"Include extra"_s));
    return document;
}
