#pragma once

#include "form/formview.h"
#include "support/supportfiles.h"
#include "testing/testmain.h"

#include <QSignalSpy>
#include <QUndoGroup>
#include <QWebElement>
#include <QWebFrame>
#include <QWebView>

/// The real form on its real page.
struct Form {
    Form()
    {
        view.resize(1000, 800);
        view.show();
    }

    bool waitUntilLoaded() const { return QSignalSpy(web, &QWebView::loadFinished).wait(); }

    QVariant run(const QString &script) const
    {
        return web->page()->mainFrame()->evaluateJavaScript(script);
    }

    bool is(const QString &condition) const { return run(condition).toBool(); }

    /// The ids of the causal factors' rows from above.
    QString getRows() const
    {
        return run("Array.from(document.querySelectorAll('.factor')).map(e => e.id).join()")
            .toString();
    }

    QWebElement find(const QString &selector) const
    {
        return web->page()->mainFrame()->findFirstElement(selector);
    }

    bool filesCopied = (copySupportFiles(), true);
    QUndoGroup group;
    FormView view{&group};
    QWebView *web = view.findChild<QWebView *>();
};

inline FormValue formValue(const QString &text, const QImage &image = QImage())
{
    FormValue field;
    field.value = text;
    field.image = image;
    return field;
}
