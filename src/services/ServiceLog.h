#pragma once

#include <QLoggingCategory>

/// Failures that change nothing the user sees but explain a bug report: a terminal left out of the
/// list, a desktop file that could not be read, a path the file watcher could not watch. Off by
/// default; QT_LOGGING_RULES="tarnwick.services.debug=true" shows them.
Q_DECLARE_LOGGING_CATEGORY(serviceLog)
