#pragma once

#include <QObject>

class QSocketNotifier;

/// Turns the signals by which the system ends a program (SIGTERM, SIGINT, SIGHUP) into one of its
/// own, which comes from the event loop. There is one such object.
class EndingSignals : public QObject
{
    Q_OBJECT

public:
    explicit EndingSignals(QObject *parent = nullptr);

signals:
    void received();

private:
    QSocketNotifier *notifier = nullptr; // child; null where the system gave no pipe
};
