#pragma once

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

/// A home of its own for one test program: neither the data folder nor the
/// settings of whoever runs the tests is touched.
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
        if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
    }

private:
    QTemporaryDir home;
};

/// The application identity and attributes that the program's main sets too.
inline void prepareTestApplication()
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QCoreApplication::setAttribute(Qt::AA_Use96Dpi);
    QCoreApplication::setOrganizationName("Tarn Ledger Consulting");
    QCoreApplication::setOrganizationDomain("none");
    QCoreApplication::setApplicationName("Examiner");
    QCoreApplication::setApplicationVersion("2.01");
}

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
        prepareTestApplication();                                                                  \
        QApplication application(argc, argv);                                                      \
        makeDataFolder();                                                                          \
        TestClass test;                                                                            \
        return QTest::qExec(&test, argc, argv);                                                    \
    }
