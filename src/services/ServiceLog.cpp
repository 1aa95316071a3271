#include "ServiceLog.h"

Q_LOGGING_CATEGORY(serviceLog, "tarnwick.services", QtInfoMsg)
