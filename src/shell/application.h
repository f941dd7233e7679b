#pragma once

#include <QApplication>

/// Keeps the program alive when an exception leaves an event handler, and when a file would grow
/// beyond the limit that the system sets.
class Application : public QApplication
{
    Q_OBJECT

public:
    /// Sets the identity of the program, its language, and how it deals with the screen's
    /// resolution.
    Application(int &argc, char **argv);

    /// Lets the program speak the user's language. Once there is an application, of whatever kind.
    static void loadTranslations();

    bool notify(QObject *receiver, QEvent *event) override;

signals:
    /// From the event loop, when the handler's own callers have ended too.
    void handlerFailed(const QString &message);

private:
    static void prepareAttributes();
};
