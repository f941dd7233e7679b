#pragma once

#include <QByteArray>

/// How many pages a PDF document has; 0 if it is none.
int countPdfPages(const QByteArray &document);

/// The document with each page of the other one drawn over its own, of the same size. Empty if
/// either is no PDF document.
QByteArray layOver(const QByteArray &document, const QByteArray &heads);
