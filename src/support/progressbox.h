#pragma once

#include <QProgressDialog>

/// Shows how far a work has come, with Cancel, when it takes more than a second.
class ProgressBox : public QProgressDialog
{
    Q_OBJECT

public:
    ProgressBox(const QString &labelText, QWidget *parent);

    /// Handles waiting events once it shows. A total of 0 is one not known. False after Cancel.
    bool goOn(int done, int total);
};
