#pragma once

#include <QString>

class QWidget;

/// A path for a dialog to start with: a file in the folder, called by a title.
QString getProposal(const QString &folder, const QString &title, const QString &ending);

/// Asks for the name of a file to write, beginning with the proposal, or in a folder that ends in
/// a slash. What lacks the ending gets it, and where that makes the
/// name of another file the user is asked about that too. Null when cancelled.
QString askSaveName(QWidget *parent, const QString &caption, const QString &proposal,
                    const QString &filter, const QString &ending, Qt::CaseSensitivity sensitivity);

/// The folder kept under the settings key, else the user's documents, else the home: the first
/// that is there. It ends in a slash.
QString getStartFolder(const QString &key);
/// Keeps the folder of a file.
void rememberFolder(const QString &key, const QString &path);
