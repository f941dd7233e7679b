#include "output/projectexporter.h"
#include "shell/application.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>

namespace
{

constexpr int Failure = 1;
constexpr int WrongUse = 2;

struct Request {
    QString project;
    QString target;
    int factor = ProjectExporter::NoFactor;
};

void complain(const QString &text)
{
    std::fprintf(stderr, "examiner-export: %s\n", qUtf8Printable(text));
}

/// Settings and data folder of this process alone: a copy of the user's settings, so that paper
/// and margins are those of the program.
void moveIntoPrivateHome(const QTemporaryDir &home)
{
    const QString settings = QSettings().fileName();
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, home.path());
    const QString copy = QSettings().fileName();
    QDir().mkpath(QFileInfo(copy).absolutePath());
    QFile::copy(settings, copy);
    qputenv("XDG_DATA_HOME", QFile::encodeName(home.filePath("data")));
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
    if (!QStringList({"pdf", "png", "doc"}).contains(QFileInfo(request.target).suffix().toLower()))
        return "The file to write must end in .pdf, .png or .doc.";
    return QString();
}

/// An empty text after success.
QString run(const Request &request, const QTemporaryDir &home)
{
    if (!QFileInfo(request.project).isFile())
        return "There is no project " + request.project + ".";
    const QString copy = home.filePath(QFileInfo(request.project).fileName());
    if (!QFile::copy(request.project, copy))
        return "The project " + request.project + " can't be read.";
    QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner);
    // Never deleted: taking a large chart apart would cost a tenth of the time.
    ProjectExporter &exporter = *new ProjectExporter;
    if (!exporter.open(copy))
        return request.project + " is no valid project: " + exporter.getError();
    if (request.factor != ProjectExporter::NoFactor && !exporter.hasFactor(request.factor))
        return "No causal factor has the number " + QString::number(request.factor) + ".";
    const QString format = QFileInfo(request.target).suffix().toLower();
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
    if (!parser.parse(application.arguments())) {
        complain(parser.errorText());
        return WrongUse;
    }
    if (parser.isSet("help")) {
        std::fputs(qUtf8Printable(parser.helpText()), stdout);
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
    Application application(argc, argv);
    QTemporaryDir home;
    moveIntoPrivateHome(home);
    const int status = execute(application, home);
    home.remove();
    std::fflush(nullptr);
    std::_Exit(status);
}
