#pragma once

#include "form/formview.h"
#include "testing/testmain.h"

#include <QSignalSpy>
#include <QUndoGroup>
#include <QWebElement>
#include <QWebFrame>
#include <QWebView>

/// Puts files of the build into the data folder, with their times kept.
inline void copySupportFiles(const QStringList &names)
{
    for (const QString &name : names) {
        const QString source = QCoreApplication::applicationDirPath() + name;
        const QString destination = makeDataFolder() + name;
        QFile::remove(destination);
        QVERIFY2(QFile::copy(source, destination), qPrintable(source));
        QFile file(destination);
        QVERIFY(file.open(QIODevice::ReadWrite));
        file.setFileTime(QFileInfo(source).lastModified(), QFileDevice::FileModificationTime);
    }
}

inline void copyFormCollection()
{
    copySupportFiles({"/formdata.qch", "/formdata.qhc"});
}

/// The real form on its real page.
struct Form {
    Form() : view(&group), web(view.findChild<QWebView *>())
    {
        view.resize(1000, 800);
        view.show();
    }

    bool waitUntilLoaded() const { return QSignalSpy(web, &QWebView::loadFinished).wait(); }

    QVariant run(const QString &script) const
    {
        return web->page()->mainFrame()->evaluateJavaScript(script);
    }

    QWebElement find(const QString &selector) const
    {
        return web->page()->mainFrame()->findFirstElement(selector);
    }

    QUndoGroup group;
    FormView view;
    QWebView *web;
};

inline FormValue formValue(const QString &text, const QImage &image = QImage())
{
    FormValue field;
    field.value = text;
    field.image = image;
    return field;
}
