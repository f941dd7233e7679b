#include "shell/application.h"

#include "support/qtcompat.h"
#include "support/screenfit.h"
#include "support/version.h"

#include <QDialog>
#include <QLocale>
#include <QTranslator>

#include <csignal>
#include <exception>

Application::Application(int &argc, char **argv) : QApplication((prepareAttributes(), argc), argv)
{
    setOrganizationName("Tarn Ledger Consulting");
    setOrganizationDomain("none");
    setApplicationName("Examiner");
    setApplicationVersion(ProgramVersionText);
    loadTranslations();
    std::signal(SIGXFSZ, SIG_IGN); // writing beyond a limit then fails as on a full disk
}

void Application::prepareAttributes()
{
    QtCompat::enableHighDpiScaling();
    setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    // Page sizes in scene units must not follow the screen.
    setAttribute(Qt::AA_Use96Dpi);
}

/// The first of the user's languages that there is a translation for, or that is English. The
/// toolkit's own texts follow, so that no window speaks two languages.
void Application::loadTranslations()
{
    const auto load = [](const QString &name, const QString &folder) {
        auto *translator = new QTranslator(QCoreApplication::instance());
        return translator->load(name, folder) && installTranslator(translator);
    };
    for (QString language : QLocale::system().uiLanguages()) {
        language.replace('-', '_');
        const bool found = load("examiner_" + language, applicationDirPath() + "/translations");
        if (found)
            load("qt_" + language, QtCompat::getTranslationsFolder());
        if (found || language.startsWith("en"))
            return;
    }
}

bool Application::notify(QObject *receiver, QEvent *event)
{
    QString message;
    // Not each of the toolkit's own dialogs minds how small a screen is.
    if (event->type() == QEvent::Show && !event->spontaneous() && qobject_cast<QDialog *>(receiver))
        fitToScreen(static_cast<QDialog *>(receiver));
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
