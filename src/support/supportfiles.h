#pragma once

#include <QString>

/// Makes the destination a copy of the source, with its time, unless both agree in size and
/// time. Reports nothing: who reads the file meets its absence.
void copyIfNeeded(QString source, QString destination);

/// Makes the user's data folder and brings the support files there from beside the executable.
void copySupportFiles();
