#include "shell/accessiblesheet.h"
#include "shell/application.h"
#include "shell/introscreen.h"
#include "shell/mainwindow.h"
#include "support/supportfiles.h"

#include <QFile>

namespace
{

/// A path that the command line split at its blanks, put together again.
QString joinArguments(const QStringList &arguments)
{
    QString path;
    for (int i = 1; i < arguments.size(); ++i)
        path += arguments.at(i) + " ";
    return path.trimmed();
}

void connectFailures(Application *application, MainWindow *window)
{
    QObject::connect(application, &Application::handlerFailed, window,
                     &MainWindow::onHandlerFailed);
}

void showIntroScreen(IntroScreen *screen, MainWindow *window)
{
    qApp->installEventFilter(window);
    QObject::connect(screen, &IntroScreen::newProjectClicked, window, &MainWindow::newProject,
                     Qt::QueuedConnection);
    QObject::connect(screen, &IntroScreen::openProjectClicked, window, &MainWindow::openProject,
                     Qt::QueuedConnection);
    QObject::connect(screen, &IntroScreen::quickStartClicked, window, &MainWindow::openQuickStart,
                     Qt::QueuedConnection);
    screen->showMaximized();
}

} // namespace

int main(int argc, char **argv)
{
    Application application(argc, argv);
    installAccessibleSheets();
    const QString path = joinArguments(QCoreApplication::arguments());
    copySupportFiles();
    if (!path.isEmpty() && QFile::exists(path)) {
        MainWindow window(nullptr);
        connectFailures(&application, &window);
        window.openProject(QFile(path).fileName(), true);
        return QApplication::exec();
    }
    auto *screen = new IntroScreen(nullptr); // deletes itself
    MainWindow window(screen);
    connectFailures(&application, &window);
    showIntroScreen(screen, &window);
    return QApplication::exec();
}
