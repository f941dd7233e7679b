#include "shell/application.h"

#include "support/websettings.h"

#include <QMessageBox>
#include <QSqlDatabase>

namespace
{

constexpr double Version = 2.01;

/// A save that broke off at its commit leaves the file open, with the old state to go back to.
void closeProjectDatabase()
{
    QSqlDatabase::database(QSqlDatabase::defaultConnection, false).close();
}

} // namespace

Application::Application(int &argc, char **argv) : QApplication((prepareAttributes(), argc), argv)
{
    setOrganizationName("Tarn Ledger Consulting");
    setOrganizationDomain("none");
    setApplicationName("Examiner");
    setApplicationVersion(QString::number(Version, 'f', 2));
    applyWebSettings();
}

void Application::prepareAttributes()
{
    setAttribute(Qt::AA_EnableHighDpiScaling);
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
    closeProjectDatabase();
    // Later, when the handlers below this one have ended too.
    QMetaObject::invokeMethod(
        this, [message] { showFailure(message); }, Qt::QueuedConnection);
    return false;
}

void Application::showFailure(const QString &message)
{
    QMessageBox::critical(activeWindow(), "Save failed",
                          "Saving failed.\nThe error message is: " + message, QMessageBox::Ok);
}
