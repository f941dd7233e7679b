#include "form/formprinter.h"
#include "testing/form.h"

#include <memory>

/// What the page itself does for whoever fills it in.
class TestFormPage : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        form = std::make_unique<Form>();
        QVERIFY(form->waitUntilLoaded());
        form->view.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&form->view));
        form->web->setFocus();
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
            focus(id);
            told.clear();
            QTest::keyClicks(form->web, "Fi");
            QCOMPARE(told, QStringList({"F", "Fi"}));
            form->web->page()->triggerAction(QWebPage::SelectAll);
            form->web->page()->triggerAction(QWebPage::Cut);
            form->web->page()->triggerAction(QWebPage::Undo);
            QCOMPARE(told.mid(2), QStringList({"", "Fi"}));
            changed.clear();
            focus("examinerName");
            QCOMPARE(changed.count(), 0);
        }
        // What the program changed meanwhile and the user brings back is news again.
        focus("loss");
        form->view.setFieldValue("loss", "x");
        QTest::keyClick(form->web, Qt::Key_End, Qt::ControlModifier);
        QTest::keyClicks(form->web, "!");
        QCOMPARE(told.last(), QString("x!"));
        form->view.setFieldValue("titleImageFile", "/pictures/a.png");
        form->run("removeTitleImage(); removeTitleImage()");
        QCOMPARE(told.last(), QString());
        QCOMPARE(changed.count(), 2);
    }

    void focusReturnsAndBrowserKeysDoNothing()
    {
        focus("incidentDate");
        QTest::keyClicks(form->web, "7 May");
        QFocusEvent out(QEvent::FocusOut), in(QEvent::FocusIn);
        QApplication::sendEvent(form->web, &out);
        QVERIFY(focused() != "incidentDate");
        QApplication::sendEvent(form->web, &in);
        QTRY_COMPARE(focused(), QString("incidentDate"));

        QSignalSpy loading(form->web, &QWebView::loadStarted);
        form->run("document.activeElement.blur()");
        for (int key : {Qt::Key_Refresh, Qt::Key_Reload, Qt::Key_Back, Qt::Key_Forward,
                        Qt::Key_Stop, Qt::Key_Backspace, Qt::Key_F5, Qt::Key_HomePage})
            QApplication::postEvent(form->web,
                                    new QKeyEvent(QEvent::KeyPress, key, Qt::NoModifier));
        form->web->reload();
        form->web->back();
        QCoreApplication::processEvents();
        QCOMPARE(loading.count(), 0);
        QCOMPARE(form->view.getFieldValue("incidentDate"), QString("7 May"));
    }

    void rowsStandInOrder()
    {
        const auto saysThereAreNone = [this] {
            return form->find("#noCausalFactors")
                       .styleProperty("display", QWebElement::InlineStyle) != "none";
        };
        QVERIFY(saysThereAreNone());
        for (int number : {5, 99, 1, 12, 2})
            form->view.addCausalFactor(QString(), number, QString());
        form->view.removeCausalFactor(12);
        QCOMPARE(form->run("Array.from(document.querySelectorAll('.factor')).map(e => e.id).join()")
                     .toString(),
                 QString("causalFactor-1,causalFactor-2,causalFactor-5,causalFactor-99"));
        QTRY_VERIFY(!saysThereAreNone());
    }

    void stepsOpenAndAreMarked()
    {
        QSignalSpy valueChanged(&form->view, &FormView::formValueChanged);
        form->run("document.querySelector('#step1 .next button').click()");
        QCOMPARE(form->run("sections().filter(isShown).length").toInt(), 2);
        QCOMPARE(focused(), QString("organisation"));
        form->run("document.querySelector('#progress li:nth-child(5) button').click()");
        form->run("document.querySelector('#progress li:nth-child(2) button').click()");
        QCOMPARE(form->run("sections().filter(isShown).length").toInt(), 5);
        QCOMPARE(valueChanged.count(), 2);
        QCOMPARE(valueChanged.last(), QList<QVariant>({"lastStepShown", "5"}));

        const auto isDone = [this] {
            return form->find("#progress li:nth-child(4)").hasClass("done");
        };
        form->view.setFieldValue("loss", "a ship");
        QTRY_VERIFY(!isDone());
        form->run("openSteps(5); sections()[1].style.display = 'none'; refreshNow()");
        QCOMPARE(form->run("all('.stub').filter(isShown).length").toInt(), 1);
        form->view.setFieldValue("lossOfControl", "the rudder breaks");
        QTRY_VERIFY(isDone());
    }

    void textsAreWholeOnScreenAndPaper()
    {
        form->run(
            "showStepsUpTo(7); matchMedia('print').addListener(m => {"
            "if (!m.matches) return;"
            "var style = e => getComputedStyle(e).display, loss = document.getElementById('loss');"
            "window.onPaper = [style(loss), style(loss.twin), loss.twin.textContent.length,"
            "style(document.querySelector('.bar-buttons'))].join(); })");
        form->view.setFieldValue("loss", QString("line\n").repeated(20));
        QVERIFY(
            !form->run("var e = document.getElementById('loss'); e.scrollHeight > e.clientHeight")
                 .toBool());
        // Wrapping a word without an end would take minutes.
        form->view.setFieldValue("evidence", QString(100000, 'x'));
        QVERIFY(form->run("var e = document.getElementById('evidence'); e.offsetHeight > 0 &&"
                          "getComputedStyle(e).wordWrap === 'normal' && !/x{2000}/.test("
                          "e.twin.textContent)")
                    .toBool());
        form->view.setFieldValue("evidence", "short");
        QTemporaryDir folder;
        FormPrinter printer;
        printer.setHead("Fire", 2);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(folder.filePath("form.pdf"));
        form->run("window.scrollTo(0, 900)");
        form->web->page()->mainFrame()->print(&printer);
        form->web->page()->mainFrame()->print(&printer); // once to count, once on paper
        QCOMPARE(form->run("window.onPaper").toString(), QString("none,block,101,none"));
        QVERIFY(printer.getPageCount() > 1);
        QTRY_COMPARE(form->run("window.pageYOffset").toInt(), 900);
        form->run("showStepsUpTo(3)"); // as when a project is opened
        QCOMPARE(form->run("window.pageYOffset").toInt(), 0);
    }

    void focusStaysBelowTheBar()
    {
        form->run("showStepsUpTo(7)");
        focus("peopleInvolved");
        form->run("window.scrollBy(0, byId('department').getBoundingClientRect().top - 5)");
        QTest::keyClick(form->web, Qt::Key_Backtab, Qt::ShiftModifier);
        QCOMPARE(focused(), QString("department"));
        QTRY_VERIFY(form->run("byId('department').getBoundingClientRect().top"
                              " >= byId('bar').offsetHeight")
                        .toBool());
    }

private:
    void focus(const QString &id) { form->find("#" + id).evaluateJavaScript("this.focus()"); }
    QString focused() const { return form->run("document.activeElement.id").toString(); }

    std::unique_ptr<Form> form;
};

EXAMINER_TEST_MAIN(TestFormPage)

#include "testformpage.moc"
