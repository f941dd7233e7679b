#include "support/log.h"

#ifdef QT_NO_DEBUG
#define EXAMINER_LOG_LEVEL QtInfoMsg
#else
#define EXAMINER_LOG_LEVEL QtDebugMsg
#endif

Q_LOGGING_CATEGORY(supportLog, "examiner.support", EXAMINER_LOG_LEVEL)
Q_LOGGING_CATEGORY(chartLog, "examiner.chart", EXAMINER_LOG_LEVEL)
Q_LOGGING_CATEGORY(projectLog, "examiner.project", EXAMINER_LOG_LEVEL)
Q_LOGGING_CATEGORY(formLog, "examiner.form", EXAMINER_LOG_LEVEL)
Q_LOGGING_CATEGORY(sheetLog, "examiner.sheet", EXAMINER_LOG_LEVEL)
Q_LOGGING_CATEGORY(outputLog, "examiner.output", EXAMINER_LOG_LEVEL)
Q_LOGGING_CATEGORY(shellLog, "examiner.shell", EXAMINER_LOG_LEVEL)
