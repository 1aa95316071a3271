#include "KnownHostsTextGenerator.h"

using namespace Qt::StringLiterals;

KnownHostsTextGenerator::KnownHostsTextGenerator(quint32 seed)
    : m_random(seed)
{ }

int KnownHostsTextGenerator::below(int bound)
{
    // Plain modulo rather than std::uniform_int_distribution, whose output differs between libraries.
    return static_cast<int>(m_random() % static_cast<quint32>(bound));
}

QString KnownHostsTextGenerator::pick(const QStringList& choices)
{
    return choices.at(below(static_cast<int>(choices.size())));
}

QString KnownHostsTextGenerator::word()
{
    static const QStringList words { u"server"_s, u"old"_s, u"key"_s, u"werk"_s, u"née"_s, u"x"_s, u"root@laptop"_s,
        u"2024-01-02"_s, u"façade"_s, u"日本"_s, u"#tag"_s, u"a,b"_s };
    return pick(words);
}

QString KnownHostsTextGenerator::host()
{
    static const QStringList hosts { u"github.com"_s, u"10.0.0.1"_s, u"[db.example.org]:2222"_s, u"*.internal"_s,
        u"!bad.host"_s, u"node?"_s, u"|1|F1E1KeoE/eEWhi10WpGv4OdiO6Y=|3988QV0VE8wmZL7suNrYQLITLCg="_s,
        u"|2|abc=|def="_s, u"1|not-hashed"_s, u"user@host"_s, u"fe80::1"_s, u"h\u00e9te"_s };
    return pick(hosts);
}

QString KnownHostsTextGenerator::hostsField(bool irregular)
{
    QStringList hosts { host() };
    while (chance(35))
        hosts.append(host());
    if (!irregular)
        return hosts.join(u',');
    QString field;
    for (const QString& name : std::as_const(hosts))
        field += QString(below(3), u',') + name + QString(below(2), u',');
    return field;
}

QString KnownHostsTextGenerator::keyField()
{
    static const QStringList keys { u"AAAAC3NzaC1lZDI1NTE5AAAAIOMqqnkVzrm0SdG6UOoqKLsabgH5C9okWi0dh2l9GKJl"_s,
        u"AAAAB3NzaC1yc2EAAAADAQABAAABAQC7"_s, u"AAAA"_s, u"x"_s, u"AAAA=="_s };
    return pick(keys);
}

QString KnownHostsTextGenerator::normalEntry()
{
    static const QStringList types { u"ssh-ed25519"_s, u"ssh-rsa"_s, u"ecdsa-sha2-nistp256"_s, u"weird-type"_s };
    static const QStringList markers { u"@cert-authority "_s, u"@revoked "_s };
    QString line = chance(20) ? u"# "_s : QString();
    if (chance(20))
        line += pick(markers);
    line += hostsField(false) + u' ' + pick(types) + u' ' + keyField();
    for (int words = chance(40) ? 1 + below(3) : 0; words > 0; --words)
        line += u' ' + word();
    return line;
}

QString KnownHostsTextGenerator::normalComment()
{
    switch (below(4)) {
    case 0:
        return u"#"_s;
    case 1:
        return u"# "_s + word();
    case 2:
        return u"#"_s + word() + u' ' + word();
    default:
        return u"## "_s + word();
    }
}

QString KnownHostsTextGenerator::invalidLine()
{
    static const QStringList lines { u"garbage"_s, u"two fields"_s, u"@revoked host ssh-ed25519"_s,
        u",,, ssh-rsa AAAA"_s, u"  indented  pair\t"_s, u"@CERT-AUTHORITY , t k"_s, u"\u00a0lonely\u00a0"_s,
        u"|1|abc"_s };
    return pick(lines);
}

QString KnownHostsTextGenerator::normalFormLine()
{
    switch (below(10)) {
    case 0:
        return {};
    case 1:
    case 2:
        return normalComment();
    case 3:
        return invalidLine();
    default:
        return normalEntry();
    }
}

QString KnownHostsTextGenerator::normalFormText(int maxLines)
{
    QStringList lines;
    for (int count = 1 + below(maxLines); count > 0; --count)
        lines.append(normalFormLine());
    return lines.join(u'\n');
}

QString KnownHostsTextGenerator::gap()
{
    static const QStringList gaps { u" "_s, u"  "_s, u"\t"_s, u" \t "_s, u"\u00a0"_s, u"\u2003"_s, u"\u3000"_s };
    return pick(gaps);
}

QString KnownHostsTextGenerator::lineBreak()
{
    static const QStringList breaks { u"\n"_s, u"\n"_s, u"\n"_s, u"\r\n"_s, u"\r"_s, u"\u000b"_s, u"\u000c"_s,
        u"\u0085"_s, u"\u2028"_s, u"\u2029"_s };
    return pick(breaks);
}

QString KnownHostsTextGenerator::irregularEntry()
{
    static const QStringList markers { u"@cert-authority"_s, u"@REVOKED"_s, u"@Cert-Authority"_s, u"@revoked"_s,
        u"@revoke"_s, u"@"_s };
    QStringList fields;
    if (chance(30))
        fields.append(pick(markers));
    fields.append(hostsField(true));
    fields.append(chance(50) ? u"ssh-ed25519"_s : word());
    fields.append(keyField());
    for (int words = below(4); words > 0; --words)
        fields.append(word());
    fields = fields.mid(0, fields.size() - (chance(15) ? 1 + below(2) : 0)); // sometimes too short
    QString line = chance(50) ? gap() : QString();
    for (const QString& field : std::as_const(fields))
        line += field + gap();
    return chance(50) ? line : line.trimmed();
}

QString KnownHostsTextGenerator::irregularComment()
{
    static const QStringList prefixes { u"#"_s, u"# "_s, u"#\t"_s, u"##"_s, u"## "_s, u"  # "_s, u"#  "_s };
    QString line = pick(prefixes);
    if (chance(50))
        return line + irregularEntry();
    for (int words = below(5); words > 0; --words)
        line += word() + gap();
    return line;
}

QString KnownHostsTextGenerator::noise()
{
    QString line;
    for (int length = below(12); length > 0; --length)
        line += QChar(static_cast<char16_t>(chance(80) ? 0x20 + below(0x5f) : 0xa0 + below(0x2f60)));
    return line;
}

QString KnownHostsTextGenerator::irregularLine()
{
    switch (below(12)) {
    case 0:
        return QString();
    case 1:
        return gap();
    case 2:
    case 3:
        return irregularComment();
    case 4:
        return noise();
    case 5:
        return invalidLine();
    default:
        return irregularEntry();
    }
}

QString KnownHostsTextGenerator::irregularText(int maxLines)
{
    QString text;
    for (int count = 1 + below(maxLines); count > 0; --count)
        text += irregularLine() + (count > 1 || chance(50) ? lineBreak() : QString());
    return text;
}
