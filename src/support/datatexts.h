#pragma once

#include <QHash>
#include <QString>

/// A text that a data file shows. The build collects them all; the last one is null.
struct DataText {
    const char *context; // "FormPage", "Header" or "Report"
    const char *text;    // English, without blanks around it
};
extern const DataText AllDataTexts[];

/// The texts of a context in the user's language, by the English ones. Empty without a translation.
QHash<QString, QString> getDataTexts(const QString &context);
