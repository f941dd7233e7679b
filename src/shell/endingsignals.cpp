#include "shell/endingsignals.h"

#include <QSocketNotifier>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#endif

#ifdef Q_OS_UNIX

namespace
{

int pipeEnds[2]; // for reading and for writing; open to the end of the process

/// All that a signal's handler may do is to write into the pipe.
void onSignal(int)
{
    const int error = errno;
    [[maybe_unused]] const ssize_t written = write(pipeEnds[1], "", 1);
    errno = error;
}

} // namespace

EndingSignals::EndingSignals(QObject *parent) : QObject(parent)
{
    if (pipe(pipeEnds) != 0)
        return; // the signals then end the program as they always do
    for (int end : pipeEnds)
        fcntl(end, F_SETFD, FD_CLOEXEC);
    notifier = new QSocketNotifier(pipeEnds[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        char byte = 0;
        if (read(pipeEnds[0], &byte, 1) == 1)
            emit received();
    });
    for (int signal : {SIGTERM, SIGINT, SIGHUP}) {
        struct sigaction action = {};
        sigaction(signal, nullptr, &action);
        if (action.sa_handler == SIG_IGN)
            continue; // as nohup wants it
        action.sa_handler = onSignal;
        action.sa_flags = SA_RESTART;
        sigaction(signal, &action, nullptr);
    }
}

#else

EndingSignals::EndingSignals(QObject *parent) : QObject(parent) {}

#endif
