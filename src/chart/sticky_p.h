#pragma once

#include <QString>

/// What a note without text shows.
const QString InitialText = QStringLiteral("Double click to edit text");
