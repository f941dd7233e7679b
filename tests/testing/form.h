#pragma once

#include "form/formview.h"
#include "support/supportfiles.h"
#include "testing/testmain.h"

#include <QSignalSpy>
#include <QUndoGroup>

#include <memory>
#include <optional>
#if QT_VERSION_MAJOR < 6
#include <QWebFrame>
#include <QWebView>
using WebView = QWebView;
#else
#include <QWebEngineView>
using WebView = QWebEngineView;
#endif

/// The value of a script in the form's page.
inline QVariant runInPage(WebView *web, const QString &script)
{
#if QT_VERSION_MAJOR < 6
    return web->page()->mainFrame()->evaluateJavaScript(script);
#else
    // Shared with an answer that comes too late.
    auto answer = std::make_shared<std::optional<QVariant>>();
    web->page()->runJavaScript(script, [answer](const QVariant &value) { *answer = value; });
    const bool come = QTest::qWaitFor([&] { return answer->has_value(); });
    return come ? **answer : QVariant();
#endif
}

/// The real form on its real page. What is done in the page has been told when a call returns.
struct Form {
    Form()
    {
        view.resize(1000, 800);
        view.show();
    }

    bool waitUntilLoaded()
    {
        const bool loaded = QTest::qWaitFor([this] { return view.isReady(); }, 30000);
        web = view.findChild<WebView *>();
        return loaded;
    }

    QVariant run(const QString &script)
    {
        const QVariant value = runInPage(web, script);
        view.settle();
        return value;
    }

    bool is(const QString &condition) { return run(condition).toBool(); }

    /// The ids of the causal factors' rows from above.
    QString getRows()
    {
        return run("Array.from(document.querySelectorAll('.factor')).map(e => e.id).join()")
            .toString();
    }

    void focus(const QString &id) { run("byId('" + id + "').focus()"); }
    QString focused() { return run("document.activeElement.id").toString(); }

    /// Past the settling: as a hand types.
    QWidget *keys() const { return web->focusProxy() ? web->focusProxy() : web; }
    void type(const QString &text)
    {
        QTest::keyClicks(keys(), text);
        view.settle();
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(keys(), key, modifiers);
        view.settle();
    }

    void print(QPrinter *printer) const
    {
#if QT_VERSION_MAJOR < 6
        web->page()->mainFrame()->print(printer);
#else
        QSignalSpy printed(web, &QWebEngineView::printFinished);
        web->print(printer);
        QVERIFY(printed.wait(60000));
#endif
    }

    bool filesCopied = (copySupportFiles(), true);
    QUndoGroup group;
    FormView view{&group};
    WebView *web = nullptr; // of a loaded page
};

inline FormValue formValue(const QString &text, const QImage &image = QImage())
{
    FormValue field;
    field.value = text;
    field.image = image;
    return field;
}
