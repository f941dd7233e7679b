#pragma once

#include <QByteArray>

/// How many pages a PDF document has; 0 if it is none.
int countPdfPages(const QByteArray &document);

/// The document under the title of the other one, whose pages, of the same size, are drawn over its
/// own. Empty if either is no PDF document.
QByteArray layOver(const QByteArray &document, const QByteArray &heads);
