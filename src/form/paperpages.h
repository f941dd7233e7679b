#pragma once

#include <QByteArray>

/// The document under the title of the other one, whose pages, of the same size, are drawn over its
/// own. Empty if either is no PDF document.
QByteArray layOver(const QByteArray &document, const QByteArray &heads);
