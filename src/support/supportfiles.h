#pragma once

#include <QString>

/// Makes the destination a copy of the source, with its time, unless both agree in size and
/// time. Reports nothing: who reads the file meets its absence.
void copyIfNeeded(QString source, QString destination);

/// Makes a folder with those above it and bars all others from it; false when that fails.
bool makePrivateFolder(const QString &path);

/// Makes the user's data folder, for the user alone, and brings the support files there from beside
/// the executable. False when nothing can be written there.
bool copySupportFiles();
