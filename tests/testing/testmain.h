#pragma once

#include "shell/application.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

/// A home of its own for one test program, made before the application: neither the data folder nor
/// the settings of whoever runs the tests is touched.
class TestHome
{
public:
    TestHome()
    {
        qputenv("HOME", QFile::encodeName(home.path()));
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.filePath("config")));
        qputenv("XDG_DATA_HOME", QFile::encodeName(home.filePath("data")));
        qputenv("XDG_CACHE_HOME", QFile::encodeName(home.filePath("cache")));
        qputenv("QT_FONT_DPI", "96");
        qputenv("LANG", "C.UTF-8");
        qputenv("LC_ALL", "C.UTF-8");
        qunsetenv("LANGUAGE");
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
    }

private:
    QTemporaryDir home;
};

/// The folder that the program keeps its data in, made if it is missing.
inline QString makeDataFolder()
{
    const QString path = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    QDir().mkpath(path + "/templates");
    return path;
}

#define EXAMINER_TEST_MAIN(TestClass)                                                              \
    int main(int argc, char **argv)                                                                \
    {                                                                                              \
        TestHome home;                                                                             \
        Application application(argc, argv);                                                       \
        makeDataFolder();                                                                          \
        TestClass test;                                                                            \
        return QTest::qExec(&test, argc, argv);                                                    \
    }
