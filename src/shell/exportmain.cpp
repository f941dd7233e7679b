#include "output/projectexporter.h"
#include "output/sheetprinter.h"
#include "project/databasefile.h"
#include "shell/application.h"
#include "support/filereplacement.h"
#include "support/privatehome.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace
{

/// The program's texts are translated together.
struct Console {
    Q_DECLARE_TR_FUNCTIONS(Console)
};

constexpr int Failure = 1;
constexpr int WrongUse = 2;
constexpr int SignalStatus = 128; // and the number of the signal that ended the process

struct Request {
    QString project;
    QString target;
    int factor = ProjectExporter::NoFactor;
};

QString getFormat(const Request &request)
{
    return QFileInfo(request.target).suffix().toLower();
}

void complain(const QString &text)
{
    std::fprintf(stderr, "examiner-export: %s\n", qUtf8Printable(text));
}

sigset_t getEndingSignals()
{
    sigset_t ending;
    sigemptyset(&ending);
    for (int signal : {SIGTERM, SIGINT, SIGHUP})
        sigaddset(&ending, signal);
    return ending;
}

/// In the child: one of the signals, which are blocked, ends it.
void endOn(const sigset_t &ending)
{
    std::thread([ending] {
        int signal = 0;
        sigwait(&ending, &signal);
        abandonReplacement();
        std::_Exit(SignalStatus + signal);
    }).detach();
}

/// Passes the signals on to the child. Returns its exit status.
int waitFor(pid_t child, const sigset_t &ending)
{
    sigset_t awaited = ending;
    sigaddset(&awaited, SIGCHLD);
    for (;;) {
        int signal = 0, status = 0;
        sigwait(&awaited, &signal);
        if (signal != SIGCHLD)
            kill(child, signal);
        else if (waitpid(child, &status, WNOHANG) == child)
            return WIFEXITED(status) ? WEXITSTATUS(status) : SignalStatus + WTERMSIG(status);
    }
}

bool isSameFile(const QString &path, const QString &other)
{
    struct stat one = {}, two = {};
    return stat(QFile::encodeName(path).constData(), &one) == 0 &&
           stat(QFile::encodeName(other).constData(), &two) == 0 && one.st_dev == two.st_dev &&
           one.st_ino == two.st_ino;
}

/// An empty text if the request can be met.
QString read(const QCommandLineParser &parser, Request &request)
{
    const QStringList names = parser.positionalArguments();
    if (names.size() != 2)
        return Console::tr("Name a project and a file to write. See --help.");
    request.project = names.at(0);
    request.target = names.at(1);
    if (parser.isSet("sheet")) {
        bool isNumber = false;
        request.factor = parser.value("sheet").toInt(&isNumber);
        if (!isNumber || request.factor < 0)
            return Console::tr("--sheet takes the number of a causal factor.");
    }
    const QString format = getFormat(request);
    if (!QStringList({"pdf", "png", "doc"}).contains(format))
        return Console::tr("The file to write must end in .pdf, .png or .doc.");
    for (const char *option : {"sheet", "decorated"}) {
        if (format == "doc" && parser.isSet(option))
            return Console::tr("--%1 goes with .pdf and .png: a report holds no sheets.")
                .arg(option);
    }
    return QString();
}

/// An empty text after success.
QString run(const Request &request, const QDir &home)
{
    if (!QFileInfo(request.project).isFile())
        return Console::tr("There is no project %1.").arg(request.project);
    if (isSameFile(request.project, request.target))
        return Console::tr("%1 is the project itself.").arg(request.target);
    const QString copy = home.filePath(QFileInfo(request.project).fileName());
    QFile project(request.project);
    if (!project.open(QIODevice::ReadOnly))
        return Console::tr("The project %1 can't be read: %2.")
            .arg(request.project, project.errorString());
    if (!copyDatabase(request.project, copy))
        return Console::tr("The project %1 can't be copied to %2.")
            .arg(request.project, home.path());
    QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner);
    // Never deleted: taking a large chart apart would cost a tenth of the time.
    ProjectExporter &exporter = *new ProjectExporter;
    if (!exporter.open(copy))
        return Console::tr("%1 is no valid project: %2").arg(request.project, exporter.getError());
    if (request.factor != ProjectExporter::NoFactor && !exporter.hasFactor(request.factor))
        return Console::tr("No causal factor has the number %1.").arg(request.factor);
    const QString format = getFormat(request);
    const bool written = format == "pdf"   ? exporter.writePDF(request.target, request.factor)
                         : format == "png" ? exporter.writePNG(request.target, request.factor)
                                           : exporter.writeReport(request.target);
    return written ? QString() : exporter.getError();
}

int execute(const QCoreApplication &application, const QDir &home)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        Console::tr("Writes a project of TRAC/Ex Examiner to a PDF document (all "
                    "sheets), a PNG picture (the main chart) or a Word report."));
    parser.addOption({"sheet", Console::tr("Write the sheet of causal factor <number> alone."),
                      Console::tr("number")});
    parser.addOption(
        {"decorated", Console::tr("Show header, page labels and legend, as if that were chosen in "
                                  "Page Setup.")});
    parser.addPositionalArgument("PROJECT.epf", Console::tr("The project. It stays as it is."));
    parser.addPositionalArgument("OUTPUT",
                                 Console::tr("The file to write, ending in .pdf, .png or .doc."));
    parser.addOption({{"h", "help"}, Console::tr("Show this help.")});
    parser.addOption({{"v", "version"}, Console::tr("Show the version.")});
    if (!parser.parse(application.arguments())) {
        complain(parser.errorText());
        return WrongUse;
    }
    if (parser.isSet("help")) {
        std::fputs(qUtf8Printable(parser.helpText()), stdout);
        return 0;
    }
    if (parser.isSet("version")) {
        std::printf("examiner-export %s\n", qUtf8Printable(application.applicationVersion()));
        return 0;
    }
    Request request;
    const QString misuse = read(parser, request);
    if (!misuse.isEmpty()) {
        complain(misuse);
        return WrongUse;
    }
    if (parser.isSet("decorated"))
        SheetPrinter::setDecorated(true);
    const QString problem = run(request, home);
    if (!problem.isEmpty()) {
        complain(problem);
        return Failure;
    }
    return 0;
}

void ignoreMessage(QtMsgType, const QMessageLogContext &, const QString &) {}

int work(int argc, char **argv, const sigset_t &ending, const char *homePath)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("TMPDIR", homePath); // a signal leaves what temporary folders hold to the parent
    qInstallMessageHandler(ignoreMessage);
    Application application(argc, argv);
    endOn(ending);
    const QDir home(QFile::decodeName(homePath));
    int status = Failure;
    if (moveIntoPrivateHome(home))
        status = execute(application, home);
    else
        complain(Console::tr("Nothing can be written to %1.").arg(home.path()));
    std::fflush(nullptr);
    std::_Exit(status);
}

} // namespace

/// The work is done by a child, so that it can be stopped anywhere, and that its private home is
/// removed when nothing comes into it any more.
int main(int argc, char **argv)
{
    std::error_code ignored;
    std::string home = std::filesystem::temp_directory_path(ignored) / "examiner-export-XXXXXX";
    if (ignored || !mkdtemp(&home[0])) {
        const QCoreApplication application(argc, argv);
        Application::loadTranslations();
        complain(Console::tr("Nothing can be written to the folder for temporary files."));
        return Failure;
    }
    const sigset_t ending = getEndingSignals();
    sigset_t blocked = ending;
    sigaddset(&blocked, SIGCHLD);
    pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
    const pid_t child = fork();
    if (child == 0)
        return work(argc, argv, ending, home.c_str());
    const int status = child < 0 ? Failure : waitFor(child, ending);
    std::filesystem::remove_all(home, ignored);
    return status;
}
