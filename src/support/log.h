#pragma once

#include <QLoggingCategory>

// The diagnostics of each room ("examiner.chart", ...). A release keeps them quiet until
// QT_LOGGING_RULES asks for them.
// What an entry tells is worked out only when it is written: nothing may be done in its midst.
Q_DECLARE_LOGGING_CATEGORY(supportLog)
Q_DECLARE_LOGGING_CATEGORY(chartLog)
Q_DECLARE_LOGGING_CATEGORY(projectLog)
Q_DECLARE_LOGGING_CATEGORY(formLog)
Q_DECLARE_LOGGING_CATEGORY(sheetLog)
Q_DECLARE_LOGGING_CATEGORY(outputLog)
Q_DECLARE_LOGGING_CATEGORY(shellLog)
