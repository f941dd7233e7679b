#include "form/formprinter.h"
#include "form/pagefields.h"
#include "shell/application.h"
#include "testing/dialogs.h"
#include "testing/files.h"
#include "testing/form.h"
#include "testing/rows.h"

#include <QPrintPreviewWidget>
#include <QTcpServer>
#include <QTextBrowser>
#include <QUdpSocket>

#include <csignal>
#include <memory>
#include <stdexcept>

/// Values on their way into the form's page and back, what the page does for whoever fills it in,
/// and what a file brings: that may not run in the page, leave it, or read through it.
class TestForm : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QSettings().clear();
        form = std::make_unique<Form>();
        QVERIFY(form->waitUntilLoaded());
        form->view.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&form->view));
        form->web->setFocus();
    }

    void setAndGet()
    {
        const QString radio = "causalFactor_worthFixing-Yes_1";
        const QString awkward = QString::fromUtf8("\"Don't\" \\ <b>&amp;</b> %1 結果 🔥 שלום");
        const std::tuple<const char *, QString, QString, QString> rows[] = {
            {"text", "incidentTitle", awkward, awkward},
            {"text area", "loss", "\n a\n\nb \n" + awkward, "\n a\n\nb \n" + awkward},
            {"empty text", "loss", "", "before"},
            {"hidden", "lastStepShown", "3", "3"},
            {"radio, capitals", radio, "TRUE", "true"},
            {"radio, no such word", radio, "yes", "false"},
            {"option", "reportStatus", "For review", "For review"},
            {"no such option", "reportStatus", "Lost", "Draft"},
            {"quote in an option", "reportStatus", "it's", "Final"},
        };
        QSignalSpy changed(&form->view, &FormView::formChanged);
        form->view.addCausalFactor(Guid, 1, "note");
        for (const auto &[name, id, value, expected] : rows) {
            const Row in(name);
            form->view.setFieldValue("loss", "before");
            form->view.setFieldValue("reportStatus", "Final");
            QVERIFY(form->view.setFieldValue(id, value));
            QCOMPARE(form->view.getFieldValue(id), expected);
            QCOMPARE(form->view.getAllFieldValues().value(id).value, expected);
        }
        QVERIFY(!form->view.setFieldValue("noSuchField", "x"));
        QVERIFY(form->view.setFieldValue("step1", "x")); // there, but no field
        QCOMPARE(changed.count(), 0);
    }

    void loadOpensRowsAndSections()
    {
        const std::pair<const char *, int> rows[] = {{"1", 1}, {"0", 1}, {"4;5", 1}, {"-4", 1},
                                                     {"٣", 1}, {"3", 3}, {"999", 7}};
        for (const auto &[step, shown] : rows) {
            const Row in(step);
            form->view.onFormDataLoaded({{"lastStepShown", formValue(step)}});
            QCOMPARE(form->run("sections().filter(isShown).length").toInt(), shown);
            QCOMPARE(form->view.getFieldValue("lastStepShown"), QString(step));
        }
        form->run("byId('loss').disabled = true");
        QSignalSpy loaded(&form->view, &FormView::formValueLoaded);
        form->view.onFormDataLoaded({{"causalFactor_text_10", formValue("ten")},
                                     {"causalFactor_dueDate_0", formValue("zero")},
                                     {"loss", formValue("a ship")},
                                     {"fileNumber", formValue("")},
                                     {"elsewhere", formValue("told nevertheless")}});
        QCOMPARE(loaded.count(), 4);
        QCOMPARE(form->getRows(), QString("causalFactor-0,causalFactor-10"));
        QVERIFY(form->is("byId('step5').style.display === 'block' && !byId('loss').disabled"));
        QCOMPARE(form->view.getFieldValue("causalFactor_text_10"), QString("ten"));
    }

    /// What a file brought is what a save takes until the page's fields stand in for it.
    void valuesWaitForThePage()
    {
        Form early;
        early.view.clearForm(); // as the window does when it is made to open a project
        early.view.onFormDataLoaded({{"loss", formValue("a ship")}, {"else", formValue("kept")}});
        QCOMPARE(early.view.collectForSave().value("else").value, QString("kept"));
        early.view.addCausalFactor(Guid, 1, "gone");
        early.view.addCausalFactor(OtherGuid, 2, "moved");
        early.view.removeCausalFactor(1);
        early.view.changeCausalFactorNumber(OtherGuid, 2, 6, QString());
        QVERIFY(early.waitUntilLoaded());
        QTRY_VERIFY(early.is("byId('loss').value === 'a ship'"));
        QCOMPARE(early.view.getCausalFactorRow(6).mid(0, 2), QStringList({OtherGuid, "moved"}));
        QCOMPARE(early.getRows(), QString("causalFactor-6"));
        early.view.clearForm();
        QVERIFY(early.view.getAllFieldValues().isEmpty());
        QVERIFY(early.waitUntilLoaded());
        QCOMPARE(early.view.getFieldValue("loss") + early.getRows(), QString());

        // As when a reload is cut short by a second one.
        form->view.onFormDataLoaded({{"organisation", formValue("Harbour")}});
        form->run("document.body.innerHTML = ''");
        emit form->web->loadFinished(true);
        QCOMPARE(form->view.getAllFieldValues().value("organisation").value, QString("Harbour"));
        QCOMPARE(form->view.getFieldValue("organisation"), QString("Harbour"));
    }

    void titleImageSurvives()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath("it's.png"), other = folder.filePath("other.png");
        const auto getCollected = [this] {
            return form->view.collectForSave().value("titleImageFile").image.size();
        };
        const QImage image(":/images/why.png");
        form->view.onFormDataLoaded({{"titleImageFile", formValue(path, image)}});
        QTRY_VERIFY(form->is("byId('titleImagePreview').naturalWidth > 0"));
        // Another path has no picture until its file was seen once.
        for (const bool same : {true, false, true}) {
            form->view.setFieldValue("titleImageFile", same ? path : other);
            QCOMPARE(getCollected(), same ? image.size() : QSize(0, 0));
        }
        QVERIFY(image.scaled(60, 40).save(other));
        DialogAnswer answer(fileChoice(other));
        form->view.onChooseImageClicked();
        QCOMPARE(QSettings().value("lastImagePath").toString(), folder.path());
        QVERIFY(QFile::remove(other));
        QCOMPARE(getCollected(), QSize(60, 40));
        QVERIFY(image.scaled(90, 60).save(other));
        QCOMPARE(getCollected(), QSize(90, 60));
        QVERIFY(QFile::remove(other));
        QCOMPARE(getCollected(), QSize(90, 60));
        form->view.clearForm();
        QVERIFY(form->waitUntilLoaded());
        form->view.setFieldValue("titleImageFile", other);
        QCOMPARE(getCollected(), QSize(0, 0));
    }

    void rowsComeGoAndMove()
    {
        const QStringList a = {Guid, "It's\n\"a\"", "a", "true", "false", "c", "r", "May"};
        const QStringList b = {OtherGuid, "b", "b", "false", "true", "b", "b", "b"};
        form->view.restoreCausalFactor(Guid, 3, a);
        form->view.restoreCausalFactor(OtherGuid, 1, b);
        QCOMPARE(form->getRows(), QString("causalFactor-1,causalFactor-3"));
        QTRY_VERIFY(form->is("byId('noCausalFactors').style.display === 'none'"));
        QCOMPARE(form->view.changeCausalFactorNumber(Guid, 3, 5, QString()),
                 QString("causalFactor_text_5"));
        QCOMPARE(form->view.getCausalFactorRow(5), a);
        QCOMPARE(form->view.getCausalFactorRow(1), b);
        form->view.changeCausalFactorNumber(Guid, 5, 1, OtherGuid);
        QCOMPARE(form->view.getCausalFactorRow(1), a);
        QCOMPARE(form->view.getCausalFactorRow(5), b);
        form->view.removeCausalFactor(1);
        form->view.removeCausalFactor(7);
        QCOMPARE(form->view.getCausalFactorRow(5), b);
        QCOMPARE(form->getRows(), QString("causalFactor-5"));
    }

    /// They would end the process inside the script engine.
    void exceptionsLeaveNoSlotOfTheBridge()
    {
        QSignalSpy failed(static_cast<Application *>(qApp), &Application::handlerFailed);
        const auto fail = [] { throw std::runtime_error("Couldn't save"); };
        connect(&form->view, &FormView::formChanged, this, fail);
        connect(&form->view, &FormView::exportFormRequested, this, fail);
        QVERIFY(form->is("window.formView.onFieldChanged('loss');"
                         "byId('exportFormButton').click(); true"));
        QTRY_COMPARE(failed.count(), 2);
        QCOMPARE(failed.first().first().toString(), QString("Couldn't save"));
    }

    /// Notes write back what they hear, and a save may come before the field is left.
    void typingIsToldOnceAndAtOnce()
    {
        QSignalSpy changed(&form->view, &FormView::formChanged);
        QStringList told;
        connect(&form->view, &FormView::formValueChanged, this,
                [&](const QString &id, const QString &value) {
                    told << value;
                    form->view.setFieldValue(id, value);
                });
        form->view.addCausalFactor(QString(), 2, "opens the step");
        for (const char *id : {"loss", "incidentTitle", "causalFactor_description_2"}) {
            form->run("showStepsUpTo(7)");
            form->focus(id);
            told.clear();
            form->type("Fi");
            QCOMPARE(told, QStringList({"F", "Fi"}));
            for (const Qt::Key key : {Qt::Key_A, Qt::Key_X, Qt::Key_Z})
                form->press(key, Qt::ControlModifier);
            QCOMPARE(told.mid(2), QStringList({"", "Fi"}));
            changed.clear();
            form->focus("examinerName");
            QCOMPARE(changed.count(), 0);
        }
        // What the program changed meanwhile and the user brings back is news again.
        form->focus("loss");
        form->view.setFieldValue("loss", "x");
        form->press(Qt::Key_End, Qt::ControlModifier);
        form->type("!");
        QCOMPARE(told.last(), QString("x!"));
        form->view.setFieldValue("titleImageFile", "/pictures/a.png");
        form->run("removeTitleImage()");
        QCOMPARE(told.last(), QString());
        form->run("removeTitleImage()"); // now it puts it back
        QCOMPARE(told.last(), QString("/pictures/a.png"));
        QCOMPARE(changed.count(), 3);
    }

    /// Typed with no pause before it is read, on either side of a write, or by a page that died.
    void nothingTypedIsLost()
    {
        form->run("showStepsUpTo(7)");
        form->focus("evidence");
        QString both;
        for (int i = 0; i < 20; ++i) {
            form->type("word");
            QCOMPARE(form->view.getFieldValue("evidence"), both += "word");
        }
        QTest::keyClicks(form->keys(), "before");
        form->view.setFieldValue("evidence", "written");
        form->press(Qt::Key_End, Qt::ControlModifier);
        form->type("after");
        both = form->view.getFieldValue("evidence");
        QVERIFY(both.startsWith("written") && both.endsWith("after"));
        QCOMPARE(form->run("byId('evidence').value").toString(), both);
#if QT_VERSION_MAJOR >= 6
        for (int death = 1; death <= 3; ++death) {
            const auto *dead = form->web->page();
            kill(pid_t(dead->renderProcessPid()), SIGKILL);
            QTRY_VERIFY(form->web->page() != dead || !form->web->isVisible());
            QCOMPARE(form->view.getFieldValue("evidence"), both);
            QTRY_VERIFY(death == 3 || form->is("byId('evidence').value === '" + both + "'"));
        }
        QVERIFY(form->view.findChild<QTextBrowser *>()->toPlainText().contains(both));
#endif
    }

    void focusReturnsAndBrowserKeysDoNothing()
    {
        form->focus("incidentDate");
        form->type("7 May");
        QFocusEvent out(QEvent::FocusOut), in(QEvent::FocusIn);
        QApplication::sendEvent(form->keys(), &out);
        QVERIFY(form->focused() != "incidentDate");
        QApplication::sendEvent(form->keys(), &in);
        QTRY_COMPARE(form->focused(), QString("incidentDate"));

        QSignalSpy loading(form->web, &WebView::loadStarted);
        form->run("document.activeElement.blur()");
        for (int key : {Qt::Key_Refresh, Qt::Key_Reload, Qt::Key_Back, Qt::Key_Forward,
                        Qt::Key_Stop, Qt::Key_Backspace, Qt::Key_F5, Qt::Key_HomePage}) {
            QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
            QApplication::sendEvent(form->keys(), &press);
        }
        form->web->reload();
        form->web->back();
        QCOMPARE(loading.count(), 0);
        QCOMPARE(form->view.getFieldValue("incidentDate"), QString("7 May"));
    }

    void stepsOpenAndAreMarked()
    {
        QSignalSpy valueChanged(&form->view, &FormView::formValueChanged);
        form->run("document.querySelector('#step1 .next button').click()");
        QCOMPARE(form->run("sections().filter(isShown).length").toInt(), 2);
        QCOMPARE(form->focused(), QString("organisation"));
        form->run("document.querySelector('#progress li:nth-child(5) button').click()");
        form->run("document.querySelector('#progress li:nth-child(2) button').click()");
        QCOMPARE(form->run("sections().filter(isShown).length").toInt(), 5);
        QCOMPARE(valueChanged.count(), 2);
        QCOMPARE(valueChanged.last(), QList<QVariant>({"lastStepShown", "5"}));

        const auto isDone = [this] {
            return form->is("!!document.querySelector('#progress li:nth-child(4).done')");
        };
        form->view.setFieldValue("loss", "a ship");
        form->run("openSteps(5); sections()[1].style.display = 'none'; refreshNow()");
        QCOMPARE(form->run("all('.stub').filter(isShown).length").toInt(), 1);
        QVERIFY(!isDone());
        form->view.setFieldValue("lossOfControl", "the rudder breaks");
        QTRY_VERIFY(isDone());
    }

    void textsAreWholeOnScreenAndPaper()
    {
        form->run("showStepsUpTo(7); matchMedia('print').addListener(m => {"
                  "if (m.matches) window.onPaper = [byId('loss'), byId('loss').twin,"
                  "document.querySelector('.bar-buttons')].map(e => "
                  "getComputedStyle(e).display).join(); })");
        form->view.setFieldValue("loss", QString("line\n").repeated(20));
        // Wrapping a word without an end would take minutes.
        form->view.setFieldValue("evidence", QString(100000, 'x'));
        QVERIFY(form->is("var a = byId('loss'), e = byId('evidence');"
                         "a.scrollHeight <= a.clientHeight && e.offsetHeight > 0 &&"
                         "getComputedStyle(e).wordWrap === 'normal' &&"
                         "!/x{2000}/.test(e.twin.textContent)"));
        form->view.setFieldValue("evidence", "short");
        QTemporaryDir folder;
        FormPrinter printer;
        printer.setHead("Fire", 2);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(folder.filePath("form.pdf"));
        form->run("window.scrollTo(0, 900)");
        form->print(&printer);
        form->print(&printer); // once to count, once on paper
        QCOMPARE(form->run("window.onPaper").toString(), QString("none,block,none"));
        QVERIFY(printer.getPageCount() > 1);
        FormPrinter stopped;
        QPrintPreviewWidget preview(&stopped);
        connect(&preview, &QPrintPreviewWidget::paintRequested, this, [&] {
            stopped.setHead("Fire", 2);
            stopped.setGoOn([](int, int) { return false; });
            QVERIFY(!stopped.askOn());
            form->print(&stopped);
        });
        preview.updatePreview();
        preview.updatePreview(); // frees the pages of the one before
        QCOMPARE(preview.pageCount(), 1);
        QTRY_COMPARE(form->run("window.pageYOffset").toInt(), 900);
        form->run("showStepsUpTo(3)"); // as when a project is opened
        QCOMPARE(form->run("window.pageYOffset").toInt(), 0);

        // The focus stays below the bar.
        form->run("showStepsUpTo(7)");
        form->focus("peopleInvolved");
        form->run("window.scrollBy(0, byId('department').getBoundingClientRect().top - 5)");
        form->press(Qt::Key_Backtab, Qt::ShiftModifier);
        QCOMPARE(form->focused(), QString("department"));
        QTRY_VERIFY(form->is("byId('department').getBoundingClientRect().top"
                             " >= byId('bar').offsetHeight"));

        // What was found only calls for a look when the user has asked for it.
        for (bool lead : {false, true}) {
            form->run("window.scrollTo(0, 2000)");
            form->view.markFields({"incidentTitle"}, "incidentTitle", lead);
            QVERIFY(form->is("!!document.querySelector('#incidentTitle.found-now')"));
            QCOMPARE(form->run("window.pageYOffset > 1000").toBool(), !lead);
        }
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
            form->run("['onFieldChanged', 'removeCausalFactor'].forEach(slot => {"
                      "try { formView[slot](formView.sharedString); } catch (error) {} })");
            QVERIFY2(form->is("window.ran === undefined"), name);
        }
        form->view.addCausalFactor("it's \"me\"", 200, "text");
        QCOMPARE(form->view.getFieldValue("causalFactor_guid_200"), QString("it's \"me\""));
        QCoreApplication::processEvents(); // what would run from a timer
        QVERIFY(form->is("window.ran === undefined") &&
                form->is("!document.querySelector('svg, img[src=x]')"));
        QCOMPARE(form->web->url().toString(), address);
    }

    void bridgeShowsItsSlotsOnly()
    {
        QVERIFY(form->is("'close parent setStyleSheet clearForm setFieldValue onFormDataLoaded "
                         "onPageLoaded undoStack helpEngine'.split(' ')"
                         ".every(name => window.formView[name] === undefined)"));
        form->run("[null, {}, NaN, 1e300, -1, window, 'x'.repeat(1e6)].forEach(value => {"
                  "window.formView.onFieldChanged(value);"
                  "window.formView.removeCausalFactor(value); })");
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
        QUdpSocket calls;
        QVERIFY(calls.bind(QHostAddress::LocalHost, server.serverPort()));
        QTemporaryDir folder;
        QVERIFY(QFile::copy(":/images/why.png", folder.filePath("secret.png")));
        const QUrl address = form->web->url();
        const QStringList targets =
            QStringList{QString("http://127.0.0.1:%1/").arg(server.serverPort()),
                        QUrl::fromLocalFile(folder.filePath("secret.png")).toString()} +
            QString("data:text/html,<p>elsewhere ?a=1 form.css //elsewhere "
                    "qthelp://examiner.help/help/index.html qrc:/images/why.png custom:x "
                    "javascript:'<p>elsewhere' about:blank")
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
             () => ['img', 'script', 'iframe', 'embed', 'video'].forEach(tag => make(tag, { src: target })),
             () => make('link', { rel: 'stylesheet', href: target }),
             () => make('link', { rel: 'preconnect', href: target }),
             () => new SharedWorker(`data:,new WebSocket("${target.replace('http', 'ws')}")`),
             () => { const host = target.slice(7, -1);
                     const frame = document.body.appendChild(document.createElement('iframe'));
                     const call = window.call = new frame.contentWindow.RTCPeerConnection(
                         { iceServers: [{ urls: 'stun:' + host }, { urls: 'turn:' + host +
                           '?transport=tcp', username: 'u', credential: 'c' }] });
                     call.createDataChannel('x');
                     call.createOffer().then(offer => call.setLocalDescription(offer)); },
             () => { const x = new XMLHttpRequest(); x.open('GET', target, false); x.send();
                     window.stolen = x.responseText; }
            ].forEach(way => { try { way(); } catch (error) {} }); })");
        form->view.setFieldValue("loss", "a ship");
        for (const QString &target : targets) {
            form->view.setSharedString(target);
            form->run("tryAllWays(window.formView.sharedString)");
            if (target.startsWith("file") || target.startsWith("http")) {
                QCoreApplication::processEvents();
                QVERIFY(form->is("!window.stolen && window.picture.naturalWidth === 0"));
            }
        }
        QVERIFY(!server.waitForNewConnection(500) && !calls.hasPendingDatagrams());
        QTRY_COMPARE(form->web->url().adjusted(QUrl::RemoveFragment), address);
        QTRY_VERIFY(form->is("byId('loss').value === 'a ship'"));
    }

    void numbersAndPicturesAreBounded()
    {
        FormValues values;
        for (const char *number : {"1", "999", "1000", "2147483647", "99999999999999999999", "01"})
            values.insert(QString("causalFactor_text_") + number, formValue("text"));
        form->view.onFormDataLoaded(values);
        for (int number : {2000000000, -5})
            form->view.addCausalFactor(QString(), number, "text");
        form->view.removeCausalFactor(-2147483647);
        QCOMPARE(form->getRows(), QString("causalFactor-1,causalFactor-999"));

        // A header that says 50,000 by 50,000 pixels.
        QTemporaryDir folder;
        const QString huge = folder.filePath("huge.bmp");
        writeBytes(huge, QByteArray::fromHex("424d3600000000000000360000002800000050c3000050c300000"
                                             "10018000000000000000000130b0000130b0000") +
                             QByteArray(8, 0));
        form->view.onFormDataLoaded({{"titleImageFile", formValue(huge)}});
        QVERIFY(form->view.getAllFieldValues().value("titleImageFile").image.isNull());
    }

    /// A report without an engine holds the fields that the page has before anybody writes.
    void pageTellsItsFieldsWithoutAnEngine()
    {
        const auto fields = readPageFields();
        const FormValues shown = form->view.getAllFieldValues();
        QCOMPARE(fields.size(), shown.size());
        for (auto field = shown.begin(); field != shown.end(); ++field)
            QVERIFY(fields.contains(field.key()) && fields[field.key()].value == field->value);
        QCOMPARE(fields.value("incidentDate").label, QString("Date of the incident"));
        QCOMPARE(fields.value("reportStatus").options.size(), 3);
        const auto other = readPageFields(
            "<!--<input type=text id=no>--><INPUT ID='r' checked name=g type='radio'><template>"
            "<input type=text id=no></template><select id=\"s\"><option>A<option selected>B &amp; "
            "C</select><textarea id=t title='a>b'>\nx\n</textarea><input type=submit id=no>");
        QStringList told;
        for (const char *id : {"r", "s", "t"})
            told << other.value(id).group + other.value(id).value;
        QCOMPARE(told, QStringList({"gtrue", "B & C", "x\n"}));
        QCOMPARE(other.size(), 3);
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
            QString("%1|a,b|*|loss,#evidence|:root|loss>*|%2|__proto__|NUM|../../loss|"
                    "javascript:%1|<img src=x onerror=%1>|<script>%1</script>|"
                    "\"><svg onload=%1>|%3%1|'+(%1)+'|\"+(%1)+\"|x')%1;if('|x\")%1;if(\"")
                .arg(code, "%2%1", QString(5000, '\''))
                .split('|');
        for (const QString &ending : endings) {
            for (const char *shape : {"%1;%2;//", "1%1;%2;%1", "causalFactor%1,%2,"})
                texts << QString(shape).arg(ending, code);
        }
        return texts;
    }

    const QString Guid = "{16d902c1-a84f-452b-9c0a-85606e7c061c}";
    const QString OtherGuid = "{b2dd2fb1-e844-422d-af16-ff4a7df8a3ea}";

    std::unique_ptr<Form> form;
};

EXAMINER_TEST_MAIN(TestForm)

#include "testform.moc"
