#pragma once

#include "SSHHost.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>

/// How the host editor turns field text into host fields and back. Pure functions on values.
class HostDetailRules
{
public:
    /// The keys with a field of their own, in the order their fields are shown.
    static const QStringList& commonOptionKeys();

    /// The patterns field's text split at any Unicode white space, empty pieces dropped; "*" alone
    /// when nothing is left.
    static QStringList patternsFromText(QStringView text);
    /// Patterns joined with one space.
    static QString patternsText(const QStringList& patterns);

    /// The groups field's text split at every ",", each piece trimmed, empty pieces dropped; order,
    /// duplicates and letter case kept as typed. Empty for an empty text.
    static QStringList groupsFromText(QStringView text);
    /// Groups joined with ", ".
    static QString groupsText(const QStringList& groups);

    /// The value, as stored, of the first option whose key equals key ignoring case; empty when none.
    static QString optionValue(const SSHHost& host, QStringView key);

    /// Sets the first option whose key equals key ignoring case to value trimmed of white space,
    /// in place with the same id and key spelled as given; removes that option when the trimmed
    /// value is empty; appends a new option when there is none. Returns false, leaving host as it
    /// was, only when there is no such option and the trimmed value is empty: then there is nothing
    /// to write back or report.
    static bool setOptionValue(SSHHost& host, const QString& value, const QString& key);

    /// The options, in item order, whose key is none of commonOptionKeys() ignoring case.
    static QList<SSHOption> extraOptions(const SSHHost& host);

private:
    static qsizetype firstOptionIndex(const SSHHost& host, QStringView key);
};
