#include "testing/form.h"

#include <QNetworkReply>
#include <QTcpServer>
#include <QTcpSocket>

#include <memory>

/// What a file brings may not run in the page, leave it, or read through it.
class TestFormSafety : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void hostileIds();
    void hostileRowIds();
    void hostileOptions();
    void hostileTexts();
    void hostileSteps();
    void hostileGuids();
    void hostileCallsOfTheBridge();
    void bridgeShowsItsSlotsOnly();
    void pageStaysWhereItIs();
    void nothingIsFetched();
    void filesAreNotRead();
    void rowsAreBounded();
    void pictureOfDeathIsRefused();

private:
    void verifyNothingRan();

    std::unique_ptr<Form> form;
};

namespace
{

/// Texts that set window.ran when they get out of the literal, selector, attribute or element
/// that they are put into.
QStringList getHostileTexts()
{
    const QString code = "window.ran=1";
    const QStringList endings = {
        "'",
        "\"",
        "`",
        "\\'",
        "\\\"",
        "')",
        "\")",
        "'}",
        "\"}",
        "')}",
        "\");",
        "');",
        "\n",
        "\r",
        QString(QChar(0x2028)),
        QString(QChar(0x2029)),
        "]",
        "\"]",
        "</script>",
        "-->",
        "*/",
        "${",
    };
    QStringList texts;
    for (const QString &ending : endings) {
        texts << ending + ";" + code + ";//";
        texts << "1" + ending + ";" + code + ";" + ending;
        texts << "causalFactor" + ending + "," + code + ",";
    }
    for (const char *quote : {"'", "\""})
        texts << QString("%1+(%2)+%1").arg(quote, code) << QString("x%1)%2;if(%1").arg(quote, code);
    texts << code << "(" + code + ")"
          << "a,b"
          << "*"
          << "loss,#evidence"
          << "loss)"
          << ":root"
          << "[id]"
          << "loss:not(x)"
          << "loss>*"
          << "<img src=x onerror=" + code + ">"
          << "<script>" + code + "</script>"
          << "\"><svg onload=" + code + ">"
          << "javascript:" + code << "%1"
          << "%2%1"
          << "__proto__"
          << "constructor"
          << "NUM" << QString(QChar(0)) + "';" + code + ";'" << QString(5000, '\'') + code
          << "../../loss";
    return texts;
}

} // namespace

void TestFormSafety::initTestCase()
{
    copyFormCollection();
    QVERIFY(getHostileTexts().size() >= 50);
}

void TestFormSafety::init()
{
    form = std::make_unique<Form>();
    QVERIFY(form->waitUntilLoaded());
}

void TestFormSafety::verifyNothingRan()
{
    QCOMPARE(form->run("String(window.ran)").toString(), QString("undefined"));
    // Nor may what ran later, from a timer or an event.
    QCoreApplication::processEvents();
    QCOMPARE(form->run("String(window.ran)").toString(), QString("undefined"));
}

void TestFormSafety::hostileIds()
{
    const FormValues before = form->view.getAllFieldValues();
    for (const QString &id : getHostileTexts()) {
        QVERIFY2(!form->view.setFieldValue(id, "written"), qPrintable(id));
        QVERIFY2(form->view.getFieldValue(id).isEmpty(), qPrintable(id));
        form->view.onFieldChanged(id);
        form->view.onFormDataLoaded({{id, formValue("written")}});
    }
    verifyNothingRan();
    const FormValues after = form->view.getAllFieldValues();
    QCOMPARE(after.size(), before.size());
    for (const FormValue &field : after)
        QVERIFY(field.value != "written");
}

void TestFormSafety::hostileRowIds()
{
    FormValues values;
    for (const QString &text : getHostileTexts()) {
        values.insert("causalFactor_text_" + text, formValue("x"));
        values.insert("causalFactor_" + text + "_1", formValue("x"));
        values.insert(text + "_text_1", formValue("x"));
    }
    for (const char *id : {"causalFactor_text_01", "causalFactor_text_1e2", "causalFactor_text_-1",
                           "causalFactor_text_0x3", "causalFactor__1", "_text_1", "__"})
        values.insert(id, formValue("x"));
    form->view.onFormDataLoaded(values);
    verifyNothingRan();
    QCOMPARE(form->run("document.querySelectorAll('.factor').length").toInt(), 1);
    QVERIFY(!form->find("#causalFactor_text_1").isNull());
}

void TestFormSafety::hostileOptions()
{
    form->view.setFieldValue("reportStatus", "For review");
    for (const QString &text : getHostileTexts()) {
        QVERIFY(form->view.setFieldValue("reportStatus", text));
        const QString status = form->view.getFieldValue("reportStatus");
        QVERIFY2(status == "Draft" || status == "For review", qPrintable(text));
    }
    verifyNothingRan();

    // A quote leaves the selection where it was.
    form->view.setFieldValue("reportStatus", "Final");
    form->view.setFieldValue("reportStatus", "it's");
    QCOMPARE(form->view.getFieldValue("reportStatus"), QString("Final"));
}

void TestFormSafety::hostileTexts()
{
    form->view.addCausalFactor("{16d902c1-a84f-452b-9c0a-85606e7c061c}", 1, "text");
    for (const QString &text : getHostileTexts()) {
        for (const char *id : {"loss", "causalFactor_text_1", "causalFactor_guid_1"})
            QVERIFY(form->view.setFieldValue(id, text));
        form->view.setFieldValue("causalFactor_worthFixing-Yes_1", text);
        QString expected = text;
        QCOMPARE(form->view.getFieldValue("causalFactor_text_1"), expected.replace('\r', '\n'));
    }
    verifyNothingRan();
    QVERIFY(form->find("svg").isNull());
}

void TestFormSafety::hostileSteps()
{
    for (const QString &text : getHostileTexts())
        form->view.onFormDataLoaded({{"lastStepShown", formValue(text)}});
    verifyNothingRan();
    QCOMPARE(form->run("sections().filter(isShown).length").toInt(), 1);
}

void TestFormSafety::hostileGuids()
{
    int number = 0;
    for (const QString &guid : getHostileTexts()) {
        ++number;
        form->view.addCausalFactor(guid, number, "text");
        QCOMPARE(form->run("document.querySelectorAll('.factor').length").toInt(), number);
        QCOMPARE(form->view.getFieldValue(QString("causalFactor_text_%1").arg(number)),
                 QString("text"));
    }
    verifyNothingRan();
    // The row still says whose it is.
    form->view.addCausalFactor("it's \"me\"", 200, "text");
    QCOMPARE(form->view.getFieldValue("causalFactor_guid_200"), QString("it's \"me\""));
}

void TestFormSafety::hostileCallsOfTheBridge()
{
    const QStringList slots_ = {"onFieldChanged", "removeCausalFactor", "addOnChangeHandlers"};
    for (const QString &text : getHostileTexts()) {
        form->view.setSharedString(text);
        for (const QString &slot : slots_)
            form->run("try { window.formView." + slot +
                      "(window.formView.sharedString) } "
                      "catch (error) {}");
    }
    for (const char *argument : {"null", "undefined", "{}", "[]", "NaN", "1e300", "-1", "window",
                                 "function(){}", "'x'.repeat(1e6)"}) {
        for (const QString &slot : slots_)
            form->run(
                QString("try { window.formView.%1(%2) } catch (error) {}").arg(slot, argument));
    }
    verifyNothingRan();
    QCOMPARE(form->run("sections().length").toInt(), 7);
}

void TestFormSafety::bridgeShowsItsSlotsOnly()
{
    const QStringList hidden = {
        "close",         "hide",
        "show",          "update",
        "setStyleSheet", "windowTitle",
        "parent",        "children",
        "clearForm",     "getAllFieldValues",
        "setFieldValue", "onFormDataLoaded",
        "onPageLoaded",  "exportFormRequested",
        "undoStack",     "helpEngine",
        "webView",
    };
    for (const QString &name : hidden)
        QCOMPARE(form->run("typeof window.formView." + name).toString(), QString("undefined"));
    form->run("window.formView.sharedString = 'from the page'");
    QCOMPARE(form->view.getSharedString(), QString("from the page"));
    // The page cannot take its own bridge away.
    form->run("window.formView.deleteLater()");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(form->run("window.formView.sharedString").toString(), QString("from the page"));
    form->view.clearForm();
    QVERIFY(form->waitUntilLoaded());
    QCOMPARE(form->run("window.formView.sharedString").toString(), QString("from the page"));
}

void TestFormSafety::pageStaysWhereItIs()
{
    const QUrl address = form->web->url();
    QStringList targets = {
        "about:blank",
        "data:text/html,<p>elsewhere",
        "javascript:'<p>elsewhere'",
        "",
        "?",
        "?a=1",
        "form.css",
        "/",
        "..",
        "//elsewhere",
        "qthelp://examiner.form/form/form.js",
        "qthelp://examiner.help/help/index.html",
        "qthelp://",
        "mailto:a@b",
        "tel:1",
        "ftp://h/f",
        "ws://127.0.0.1/",
        "blob:null/1",
        "view-source:about:blank",
        "qrc:/images/why.png",
    };
    for (const char *scheme : {"http", "https", "file", "ftp", "custom"}) {
        for (const char *rest : {"://localhost/", "://127.0.0.1:1/a?b", ":///etc/passwd"})
            targets << QString(scheme) + rest;
    }
    const QString quoted = "'%1'";
    const QStringList ways = {
        "location.href=%1",
        "location.replace(%1)",
        "location.assign(%1)",
        "window.open(%1)",
        "(function(a){a.href=%1;document.body.appendChild(a);a.click();})"
        "(document.createElement('a'))",
        "(function(f){f.action=%1;f.method='post';document.body.appendChild(f);f.submit();})"
        "(document.createElement('form'))",
    };
    form->view.setFieldValue("loss", "a ship");
    for (const QString &target : qAsConst(targets)) {
        // A page may load itself again, which empties it like clearForm.
        if (target.isEmpty())
            continue;
        const QString text = QString(target).replace('\'', "\\'");
        for (const QString &way : ways)
            form->run(way.arg(quoted.arg(text)));
    }
    QTest::qWait(100);
    QCOMPARE(form->web->url().adjusted(QUrl::RemoveFragment), address);
    QCOMPARE(form->view.getFieldValue("loss"), QString("a ship"));
}

void TestFormSafety::nothingIsFetched()
{
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    QSignalSpy connected(&server, &QTcpServer::newConnection);
    const QString address = QString("http://127.0.0.1:%1/").arg(server.serverPort());

    const QStringList elements = {"img",   "script", "iframe",           "embed", "audio",
                                  "video", "source", "input type=image", "frame"};
    for (const QString &element : elements)
        form->run(QString("document.body.insertAdjacentHTML('beforeend', '<%1 src=\"%2%1\">')")
                      .arg(element, address));
    form->run(QString("var l = document.createElement('link'); l.rel = 'stylesheet'; l.href = '%1';"
                      "document.head.appendChild(l);"
                      "document.body.style.backgroundImage = 'url(%1)';"
                      "var s = document.createElement('script'); s.src = '%1';"
                      "document.body.appendChild(s);"
                      "new Image().src = '%1';")
                  .arg(address));
    form->run(QString("try { var x = new XMLHttpRequest(); x.open('POST', '%1'); x.send('loss'); }"
                      "catch (error) {}")
                  .arg(address));
    form->run(QString("try { new WebSocket('%1'.replace('http', 'ws')); } catch (error) {}")
                  .arg(address));
    form->run(QString("try { new EventSource('%1'); } catch (error) {}").arg(address));
    QTest::qWait(300);
    QCOMPARE(connected.count(), 0);
}

void TestFormSafety::filesAreNotRead()
{
    QTemporaryDir folder;
    QImage image(7, 7, QImage::Format_RGB32);
    image.fill(Qt::red);
    QVERIFY(image.save(folder.filePath("secret.png")));
    QFile file(folder.filePath("secret.txt"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("secret");
    file.close();

    const QString address = QUrl::fromLocalFile(file.fileName()).toString();
    form->run(QString("window.text = '';"
                      "try { var x = new XMLHttpRequest(); x.open('GET', '%1', false); x.send();"
                      "window.text = x.responseText; } catch (error) {}")
                  .arg(address));
    QCOMPARE(form->run("window.text").toString(), QString());

    const QString picture = QUrl::fromLocalFile(folder.filePath("secret.png")).toString();
    form->run(QString("window.i = new Image(); window.i.src = '%1';").arg(picture));
    form->run(QString("document.body.insertAdjacentHTML('beforeend', '<iframe src=\"%1\">')")
                  .arg(address));
    QTest::qWait(100);
    QCOMPARE(form->run("window.i.naturalWidth").toInt(), 0);
    QVERIFY(!form->run("window.frames[0].document.body.textContent").toString().contains("secret"));
}

void TestFormSafety::rowsAreBounded()
{
    FormValues values;
    for (const char *number : {"1", "999", "1000", "12345", "2147483647", "99999999999999999999"})
        values.insert(QString("causalFactor_text_") + number, formValue("text"));
    form->view.onFormDataLoaded(values);
    QCOMPARE(form->run("Array.from(document.querySelectorAll('.factor')).map(e => e.id).join()")
                 .toString(),
             QString("causalFactor-1,causalFactor-999"));
    form->view.addCausalFactor(QString(), 2000000000, "text");
    form->view.addCausalFactor(QString(), -5, "text");
    form->view.removeCausalFactor(-2147483647);
    QCOMPARE(form->run("document.querySelectorAll('.factor').length").toInt(), 2);
}

void TestFormSafety::pictureOfDeathIsRefused()
{
    // A header that says 50,000 by 50,000 pixels, and a folder and a device for a picture.
    QTemporaryDir folder;
    QFile file(folder.filePath("huge.bmp"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    const QByteArray header = QByteArray::fromHex(
        "424d360000000000000036000000280000005"
        "0c3000050c30000010018000000000000000000130b0000130b00000000000000000000");
    file.write(header);
    file.close();
    for (const QString &path : {file.fileName(), folder.path(), QString("/dev/zero")}) {
        form->view.onFormDataLoaded({{"titleImageFile", formValue(path)}});
        QVERIFY(form->view.getAllFieldValues().value("titleImageFile").image.isNull());
    }
}

EXAMINER_TEST_MAIN(TestFormSafety)

#include "testformsafety.moc"
