#pragma once

#include <QString>

class QWidget;

/// Asks for the name of a file to write. What lacks the ending gets it, and where that makes the
/// name of another file the user is asked about that too. Null when cancelled.
QString askSaveName(QWidget *parent, const QString &caption, const QString &folder,
                    const QString &filter, const QString &ending, Qt::CaseSensitivity sensitivity);

/// The folder kept under the settings key, else the user's documents.
QString getStartFolder(const QString &key);
/// Keeps the folder of a file.
void rememberFolder(const QString &key, const QString &path);
