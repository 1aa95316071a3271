#pragma once

#include <QString>
#include <QStringList>

/// Appends label to groups unless it is empty once trimmed of blanks and line breaks, or groups
/// already holds it ignoring letter case (the form that came first stays). Never fails.
void appendUniqueGroup(const QString& label, QStringList& groups);

/// appendUniqueGroup for each of labels, in order.
void appendUniqueGroups(const QStringList& labels, QStringList& groups);

/// The group filter's value that shows hosts of every group: "All".
QString allGroupsFilter();
