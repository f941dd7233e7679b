#pragma once

#include <QByteArray>
#include <QString>

/// How many pages a PDF document has; 0 if it is none or not whole.
int countPdfPages(const QByteArray &document);
/// The same of a file.
int countPdfPages(const QString &path);
