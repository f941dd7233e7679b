#pragma once

#include <QElapsedTimer>
#include <QProgressDialog>

class QProgressBar;

/// Shows how far opening or saving has come. It can't be dismissed.
class SaveProgressDialog : public QProgressDialog
{
    Q_OBJECT

public:
    SaveProgressDialog(const QString &labelText, int maximum, QWidget *parent);

    /// Handles waiting events when the last time is long enough ago.
    void keepAlive();

public slots:
    void incrementProgress();
    void reject() override;

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    QProgressBar *bar; // owned by the dialog
    int done = 0;
    QElapsedTimer sinceEvents;
};
