#include "shell/application.h"

#include "support/qtcompat.h"
#include "support/version.h"

#include <csignal>
#include <exception>

Application::Application(int &argc, char **argv) : QApplication((prepareAttributes(), argc), argv)
{
    setOrganizationName("Tarn Ledger Consulting");
    setOrganizationDomain("none");
    setApplicationName("Examiner");
    setApplicationVersion(ProgramVersionText);
    std::signal(SIGXFSZ, SIG_IGN); // writing beyond a limit then fails as on a full disk
}

void Application::prepareAttributes()
{
    QtCompat::enableHighDpiScaling();
    setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    // Page sizes in scene units must not follow the screen.
    setAttribute(Qt::AA_Use96Dpi);
}

bool Application::notify(QObject *receiver, QEvent *event)
{
    QString message;
    try {
        return QApplication::notify(receiver, event);
    } catch (const QString &text) {
        message = text;
    } catch (const std::exception &error) {
        message = QString::fromLocal8Bit(error.what());
    }
    QMetaObject::invokeMethod(
        this, [this, message] { emit handlerFailed(message); }, Qt::QueuedConnection);
    return false;
}
