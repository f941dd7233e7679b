#include "output/filereplacement.h"
#include "output/projectexporter.h"
#include "project/databasefile.h"
#include "shell/application.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <sys/stat.h>
#include <thread>

namespace
{

constexpr int Failure = 1;
constexpr int WrongUse = 2;
constexpr int SignalStatus = 128; // and the number of the signal that ended the process
constexpr int MostAttempts = 20;

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

/// False if there is a file that can't be copied.
bool copyIfThere(const QString &source, const QString &target)
{
    QDir().mkpath(QFileInfo(target).absolutePath());
    return !QFile::exists(source) || QFile::copy(source, target);
}

QString getLogoPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + "/companylogo.png";
}

/// Settings and data folder of this process alone, with the user's settings and logo, so that
/// paper, margins and report are those of the program. False if there is no room for them.
bool moveIntoPrivateHome(const QTemporaryDir &home)
{
    const QString settings = QSettings().fileName();
    const QString logo = getLogoPath();
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, home.path());
    qputenv("XDG_DATA_HOME", QFile::encodeName(home.filePath("data")));
    return home.isValid() && copyIfThere(settings, QSettings().fileName()) &&
           copyIfThere(logo, getLogoPath());
}

/// Blocks the signals that end a process, for all threads to come.
sigset_t blockEndingSignals()
{
    sigset_t ending;
    sigemptyset(&ending);
    for (int signal : {SIGTERM, SIGINT, SIGHUP})
        sigaddset(&ending, signal);
    pthread_sigmask(SIG_BLOCK, &ending, nullptr);
    return ending;
}

/// One of the blocked signals ends the process after what it leaves on the disk is removed.
void cleanUpOn(const sigset_t &ending, const QString &home)
{
    std::thread([ending, home] {
        int signal = 0;
        sigwait(&ending, &signal);
        abandonReplacement();
        // The work goes on meanwhile, and may put something into a folder that is being emptied.
        for (int i = 0; i < MostAttempts && !QDir(home).removeRecursively(); ++i)
            QThread::msleep(10);
        std::_Exit(SignalStatus + signal);
    }).detach();
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
        return "Name a project and a file to write. See --help.";
    request.project = names.at(0);
    request.target = names.at(1);
    if (parser.isSet("sheet")) {
        bool isNumber = false;
        request.factor = parser.value("sheet").toInt(&isNumber);
        if (!isNumber || request.factor < 0)
            return "--sheet takes the number of a causal factor.";
    }
    const QString format = getFormat(request);
    if (!QStringList({"pdf", "png", "doc"}).contains(format))
        return "The file to write must end in .pdf, .png or .doc.";
    if (format == "doc" && parser.isSet("sheet"))
        return "--sheet goes with .pdf and .png: a report holds no sheets.";
    return QString();
}

/// An empty text after success.
QString run(const Request &request, const QTemporaryDir &home)
{
    if (!QFileInfo(request.project).isFile())
        return "There is no project " + request.project + ".";
    if (isSameFile(request.project, request.target))
        return request.target + " is the project itself.";
    const QString copy = home.filePath(QFileInfo(request.project).fileName());
    QFile project(request.project);
    if (!project.open(QIODevice::ReadOnly))
        return "The project " + request.project + " can't be read: " + project.errorString() + ".";
    if (!copyDatabase(request.project, copy))
        return "The project " + request.project + " can't be copied to " + home.path() + ".";
    QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner);
    // Never deleted: taking a large chart apart would cost a tenth of the time.
    ProjectExporter &exporter = *new ProjectExporter;
    if (!exporter.open(copy))
        return request.project + " is no valid project: " + exporter.getError();
    if (request.factor != ProjectExporter::NoFactor && !exporter.hasFactor(request.factor))
        return "No causal factor has the number " + QString::number(request.factor) + ".";
    const QString format = getFormat(request);
    const bool written = format == "pdf"   ? exporter.writePDF(request.target, request.factor)
                         : format == "png" ? exporter.writePNG(request.target, request.factor)
                                           : exporter.writeReport(request.target);
    return written ? QString() : exporter.getError();
}

int execute(const QCoreApplication &application, const QTemporaryDir &home)
{
    QCommandLineParser parser;
    parser.setApplicationDescription("Writes a project of TRAC/Ex Examiner to a PDF document (all "
                                     "sheets), a PNG picture (the main chart) or a Word report.");
    parser.addOption({"sheet", "Write the sheet of causal factor <number> alone.", "number"});
    parser.addPositionalArgument("PROJECT.epf", "The project. It stays as it is.");
    parser.addPositionalArgument("OUTPUT", "The file to write, ending in .pdf, .png or .doc.");
    parser.addOption({{"h", "help"}, "Show this help."});
    parser.addOption({{"v", "version"}, "Show the version."});
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
    const QString problem = run(request, home);
    if (!problem.isEmpty()) {
        complain(problem);
        return Failure;
    }
    return 0;
}

void ignoreMessage(QtMsgType, const QMessageLogContext &, const QString &) {}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(ignoreMessage);
    std::signal(SIGXFSZ, SIG_IGN); // writing beyond a limit then fails as on a full disk
    const sigset_t ending = blockEndingSignals();
    Application application(argc, argv);
    QTemporaryDir home;
    cleanUpOn(ending, home.path());
    int status = Failure;
    if (moveIntoPrivateHome(home))
        status = execute(application, home);
    else
        complain("The folder for temporary files, " + QDir::tempPath() + ", takes no more.");
    home.remove();
    std::fflush(nullptr);
    std::_Exit(status);
}
