#include "testing/form.h"

#include <QTcpServer>

#include <memory>

/// What a file brings may not run in the page, leave it, or read through it.
class TestFormSafety : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        form = std::make_unique<Form>();
        QVERIFY(form->waitUntilLoaded());
    }

    void hostileTextsAreTexts()
    {
        const QString address = form->web->url().toString();
        int number = 0;
        for (const QString &text : getHostileTexts()) {
            const QByteArray name = text.left(60).toUtf8();
            // As a field's id and as parts of a row's.
            form->view.onFieldChanged(text);
            QVERIFY2(!form->view.setFieldValue(text, "written"), name);
            form->view.onFormDataLoaded({{text, formValue("x")},
                                         {"causalFactor_text_" + text, formValue("x")},
                                         {"causalFactor_" + text + "_1", formValue("x")},
                                         {text + "_text_1", formValue("x")},
                                         {"lastStepShown", formValue(text)}});
            QCOMPARE(form->run("sections().filter(isShown).length").toInt(), number > 0 ? 2 : 1);
            // As an option, as what a row holds and whose it is.
            const QString row = QString::number(++number);
            form->view.setFieldValue("reportStatus", "For review");
            form->view.setFieldValue("reportStatus", text);
            const QString status = form->view.getFieldValue("reportStatus");
            QVERIFY2(status == "Draft" || status == "For review", name);
            form->view.addCausalFactor(text, number, text);
            QString read = text;
            QCOMPARE(form->view.getFieldValue("causalFactor_text_" + row),
                     read.replace('\r', '\n'));
            form->view.setFieldValue("causalFactor_worthFixing-Yes_" + row, text);
            // From the page itself.
            form->view.setSharedString(text);
            for (const char *slot : {"onFieldChanged", "removeCausalFactor"})
                form->run(QString("try { window.formView.%1(window.formView.sharedString) } "
                                  "catch (error) {}")
                              .arg(slot));
            QVERIFY2(form->run("window.ran === undefined").toBool(), name);
        }
        form->view.addCausalFactor("it's \"me\"", 200, "text");
        QCOMPARE(form->view.getFieldValue("causalFactor_guid_200"), QString("it's \"me\""));
        QCoreApplication::processEvents(); // what would run from a timer
        QVERIFY(form->run("window.ran === undefined").toBool());
        QVERIFY(form->find("svg, img[src=x]").isNull());
        QCOMPARE(form->web->url().toString(), address);
    }

    void bridgeShowsItsSlotsOnly()
    {
        for (const char *name : {"close", "parent", "setStyleSheet", "clearForm", "setFieldValue",
                                 "onFormDataLoaded", "onPageLoaded", "undoStack", "helpEngine"})
            QCOMPARE(form->run(QString("typeof window.formView.") + name).toString(),
                     QString("undefined"));
        for (const char *argument :
             {"null", "{}", "NaN", "1e300", "-1", "window", "'x'.repeat(1e6)"})
            form->run(QString("window.formView.onFieldChanged(%1);"
                              "window.formView.removeCausalFactor(%1)")
                          .arg(argument));
        form->run("window.formView.sharedString = 'from the page'");
        form->run("window.formView.deleteLater()"); // the page cannot take its bridge away
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        form->view.clearForm();
        QVERIFY(form->waitUntilLoaded());
        QCOMPARE(form->run("window.formView.sharedString").toString(), QString("from the page"));
    }

    void pageStaysAndFetchesNothing()
    {
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost));
        QTemporaryDir folder;
        QImage image(7, 7, QImage::Format_RGB32);
        image.fill(Qt::red);
        QVERIFY(image.save(folder.filePath("secret.png")));
        const QUrl address = form->web->url();
        const QStringList targets =
            QStringList{QString("http://127.0.0.1:%1/").arg(server.serverPort()),
                        QUrl::fromLocalFile(folder.filePath("secret.png")).toString()} +
            QString(
                "about:blank data:text/html,<p>elsewhere javascript:'<p>elsewhere' ?a=1 form.css "
                "//elsewhere qthelp://examiner.help/help/index.html qrc:/images/why.png custom:x")
                .split(' ');
        form->run(R"(function tryAllWays(target) {
            const make = (tag, values) =>
                document.body.appendChild(Object.assign(document.createElement(tag), values));
            window.picture = new Image();
            [() => location.href = target, () => location.replace(target), () => window.open(target),
             () => make('a', { href: target }).click(),
             () => make('form', { action: target, method: 'post' }).submit(),
             () => new EventSource(target), () => new WebSocket(target.replace('http', 'ws')),
             () => window.picture.src = target,
             () => document.body.style.backgroundImage = 'url(' + target + ')',
             () => ['img', 'script', 'iframe', 'embed'].forEach(tag => make(tag, { src: target })),
             () => { const x = new XMLHttpRequest(); x.open('GET', target, false); x.send();
                     window.stolen = x.responseText; }
            ].forEach(way => { try { way(); } catch (error) {} }); })");
        form->view.setFieldValue("loss", "a ship");
        form->run(QString("document.body.insertAdjacentHTML('beforeend', '<video src=\"%1\">"
                          "<link rel=\"stylesheet\" href=\"%1\">')")
                      .arg(targets.first()));
        for (const QString &target : targets) {
            form->view.setSharedString(target);
            form->run("tryAllWays(window.formView.sharedString)");
            if (target.startsWith("file") || target.startsWith("http")) {
                QCOMPARE(form->run("window.stolen || ''").toString(), QString());
                QCoreApplication::processEvents();
                QCOMPARE(form->run("window.picture.naturalWidth").toInt(), 0);
            }
        }
        QVERIFY(!server.waitForNewConnection(100));
        QCOMPARE(form->web->url().adjusted(QUrl::RemoveFragment), address);
        QCOMPARE(form->view.getFieldValue("loss"), QString("a ship"));
    }

    void numbersAndPicturesAreBounded()
    {
        FormValues values;
        for (const char *number : {"1", "999", "1000", "2147483647", "99999999999999999999", "01"})
            values.insert(QString("causalFactor_text_") + number, formValue("text"));
        form->view.onFormDataLoaded(values);
        form->view.addCausalFactor(QString(), 2000000000, "text");
        form->view.addCausalFactor(QString(), -5, "text");
        form->view.removeCausalFactor(-2147483647);
        QCOMPARE(form->run("Array.from(document.querySelectorAll('.factor')).map(e => e.id).join()")
                     .toString(),
                 QString("causalFactor-1,causalFactor-999"));

        // A header that says 50,000 by 50,000 pixels, a folder, and a device.
        QTemporaryDir folder;
        QFile file(folder.filePath("huge.bmp"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray::fromHex(
            "424d3600000000000000360000002800000050c3000050c30000010018000000000000000000"
            "130b0000130b00000000000000000000"));
        file.close();
        for (const QString &path : {file.fileName(), folder.path(), QString("/dev/zero")}) {
            form->view.onFormDataLoaded({{"titleImageFile", formValue(path)}});
            QVERIFY(form->view.getAllFieldValues().value("titleImageFile").image.isNull());
        }
    }

private:
    /// Texts that set window.ran when they get out of the literal, selector, attribute or element
    /// that they are put into.
    static QStringList getHostileTexts()
    {
        const QString code = "window.ran=1";
        const QStringList endings =
            QString("' \" ` \\' \\\" ') \") '} \"} ')} \n \r ] \"] </script> --> */ ${")
                .split(' ') +
            QStringList{QChar(0x2028), QChar(0x2029), QString(QChar(0)) + "'"};
        QStringList texts =
            QString(
                "%1|a,b|*|loss,#evidence|:root|loss>*|%2|__proto__|NUM|../../loss|javascript:%1|"
                "<img src=x onerror=%1>|<script>%1</script>|\"><svg onload=%1>|%3%1")
                .arg(code, "%2%1", QString(5000, '\''))
                .split('|');
        for (const QString &ending : endings)
            texts << ending + ";" + code + ";//"
                  << "1" + ending + ";" + code + ";" + ending
                  << "causalFactor" + ending + "," + code + ",";
        for (const char *quote : {"'", "\""})
            texts << QString("%1+(%2)+%1").arg(quote, code)
                  << QString("x%1)%2;if(%1").arg(quote, code);
        return texts;
    }

    std::unique_ptr<Form> form;
};

EXAMINER_TEST_MAIN(TestFormSafety)

#include "testformsafety.moc"
