#pragma once

#include <QApplication>

/// Keeps the program alive when an exception leaves an event handler: the user reads its text
/// under "Save failed", and the project stays open with its changes.
class Application : public QApplication
{
    Q_OBJECT

public:
    /// Sets the identity of the program, and how it deals with the screen's resolution.
    Application(int &argc, char **argv);

    bool notify(QObject *receiver, QEvent *event) override;

private:
    static void prepareAttributes();
    static void showFailure(const QString &message);
};
