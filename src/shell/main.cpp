#include "shell/accessiblesheet.h"
#include "shell/application.h"
#include "shell/endingsignals.h"
#include "shell/introscreen.h"
#include "shell/mainwindow.h"
#include "support/privatehome.h"
#include "support/supportfiles.h"
#include "support/version.h"

#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QTemporaryDir>

#include <cstdio>

namespace
{

QString getHelpText()
{
    return Application::tr(
        "Usage: examiner [PROJECT.epf]\n"
        "Charts what led to an accident. Without a project the start screen is shown.\n"
        "\n"
        "  --help     Show this help.\n"
        "  --version  Show the version.\n"
        "\n"
        "examiner-export writes a project to a file without a display.");
}

/// Whether the argument asked for nothing but a text, which takes no display. A file of such a
/// name is a project.
bool answerOnConsole(int argc, char **argv)
{
    const QByteArray argument = argc == 2 ? argv[1] : "";
    if ((argument != "--help" && argument != "--version") ||
        QFile::exists(QFile::decodeName(argument)))
        return false;
    const QCoreApplication application(argc, argv);
    Application::loadTranslations();
    if (argument == "--help")
        std::puts(qUtf8Printable(getHelpText()));
    else
        std::printf("examiner %s\n", ProgramVersionText);
    return true;
}

/// A path that the command line split at its blanks, put together again.
QString joinArguments(const QStringList &arguments)
{
    QString path;
    for (int i = 1; i < arguments.size(); ++i)
        path += arguments.at(i) + " ";
    return path.trimmed();
}

/// What befalls the program and not the project.
void connectProgram(Application *application, const EndingSignals &ending, MainWindow *window)
{
    QObject::connect(&ending, &EndingSignals::received, window, &MainWindow::endFromOutside);
    // First of all: the question about unsaved changes may stay without an answer.
    QObject::connect(application, &Application::commitDataRequest, window,
                     &MainWindow::keepUnsavedWork);
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

/// Where the user's data folder can't be written there would be no form, no help and nothing to
/// come back to after a crash: a folder for temporary files has to do. It stays, with what is kept.
void workWithoutHome()
{
    QTemporaryDir folder;
    folder.setAutoRemove(false);
    const bool moved = folder.isValid() && moveIntoPrivateHome(QDir(folder.path()));
    const bool replaced = moved && copySupportFiles();
    QMessageBox::warning(
        nullptr, "TRAC/Ex Examiner",
        replaced ? Application::tr("Nothing can be written to your data folder.\n"
                                   "Settings, auto-saves and kept copies go to %1, which does "
                                   "not last.")
                       .arg(folder.path())
                 : Application::tr("Nothing can be written to your data folder.\n"
                                   "There is no form, no help, no auto-save and no kept copy."),
        QMessageBox::Ok);
}

} // namespace

int main(int argc, char **argv)
{
    if (answerOnConsole(argc, argv))
        return 0;
    Application application(argc, argv);
    installAccessibleSheets();
    const QString path = joinArguments(QCoreApplication::arguments());
    if (!copySupportFiles())
        workWithoutHome();
    const EndingSignals ending;
    if (!path.isEmpty() && QFile::exists(path)) {
        MainWindow window(nullptr);
        connectProgram(&application, ending, &window);
        window.openProject(QFile(path).fileName(), true);
        return QApplication::exec();
    }
    auto *screen = new IntroScreen(nullptr); // deletes itself
    MainWindow window(screen);
    connectProgram(&application, ending, &window);
    showIntroScreen(screen, &window);
    return QApplication::exec();
}
