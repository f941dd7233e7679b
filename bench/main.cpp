#include "benchmark.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <cstdio>

namespace
{

struct Benchmark {
    const char *name;
    void (*run)();
};

constexpr Benchmark benchmarks[] = {
    {"open", benchOpen},     {"save", benchSave}, {"route", benchRoute}, {"drag", benchDrag},
    {"render", benchRender}, {"pdf", benchPdf},   {"paste", benchPaste}, {"find", benchFind},
};

/// Neither the settings nor the data of whoever measures are touched.
void moveInto(const QTemporaryDir &home)
{
    qputenv("HOME", QFile::encodeName(home.path()));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.filePath("config")));
    qputenv("XDG_DATA_HOME", QFile::encodeName(home.filePath("data")));
    qputenv("XDG_CACHE_HOME", QFile::encodeName(home.filePath("cache")));
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_FONT_DPI", "96");
}

bool run(const QString &name)
{
    for (const Benchmark &benchmark : benchmarks) {
        if (name == benchmark.name) {
            benchmark.run();
            return true;
        }
    }
    std::fprintf(stderr, "There is no benchmark \"%s\".\n", qPrintable(name));
    return false;
}

} // namespace

int main(int argc, char **argv)
{
    const QTemporaryDir home;
    moveInto(home);
    QCoreApplication::setAttribute(Qt::AA_Use96Dpi);
    QCoreApplication::setOrganizationName("Tarn Ledger Consulting");
    QCoreApplication::setOrganizationDomain("none");
    QCoreApplication::setApplicationName("Examiner");
    QApplication application(argc, argv);
    QDir().mkpath(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation));

    QStringList names = application.arguments().mid(1);
    if (names.isEmpty()) {
        for (const Benchmark &benchmark : benchmarks)
            names << benchmark.name;
    }
    bool known = true;
    for (const QString &name : names)
        known = run(name) && known;
    return known ? 0 : 1;
}
