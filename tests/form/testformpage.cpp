#include "testing/form.h"

#include <QLineEdit>
#include <QPrinter>

#include <memory>

/// What the page itself does for whoever fills it in.
class TestFormPage : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void fieldsOfTheBinding_data();
    void fieldsOfTheBinding();
    void everyFieldHasALabelAndAnId();
    void typingIsToldAtOnce();
    void whatWasToldIsNotToldAgain();
    void pasteAndCutAreTold();
    void focusReturnsToTheField();
    void browserKeysDoNothing();
    void tabOrderFollowsTheForm();
    void radioByKeyAndMouse();
    void optionByKey();
    void continueOpensTheNextStep();
    void progressOpensUpToAStep();
    void progressMarksFilledSteps();
    void programOpensAStep();
    void rowsStandInOrder();
    void rowSaysWhenThereAreNone();
    void textAreaGrowsWithItsText();
    void bytesSurvive();
    void removingThePictureIsTold();
    void paperShowsWholeTexts();

private:
    void focus(const QString &id);
    void click(const QString &selector);
    QString focused() const;

    std::unique_ptr<Form> form;
};

void TestFormPage::initTestCase()
{
    copyFormCollection();
}

void TestFormPage::init()
{
    form = std::make_unique<Form>();
    QVERIFY(form->waitUntilLoaded());
    form->view.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&form->view));
    form->web->setFocus();
}

void TestFormPage::focus(const QString &id)
{
    form->find("#" + id).evaluateJavaScript("this.focus()");
}

void TestFormPage::click(const QString &selector)
{
    QWebElement element = form->find(selector);
    QVERIFY2(!element.isNull(), qPrintable(selector));
    QWebFrame *frame = form->web->page()->mainFrame();
    element.evaluateJavaScript("window.scrollTo(0, this.getBoundingClientRect().top"
                               " + window.pageYOffset - 300)");
    const QPoint place = element.geometry().center() - frame->scrollPosition();
    QTest::mouseClick(form->web, Qt::LeftButton, Qt::NoModifier, place);
}

QString TestFormPage::focused() const
{
    return form->run("document.activeElement.id").toString();
}

void TestFormPage::fieldsOfTheBinding_data()
{
    QTest::addColumn<QString>("id");

    for (const char *id :
         {"incidentTitle", "incidentDate", "fileNumber", "mrph", "incidentType", "examinerName",
          "titleImageFile", "lastStepShown", "loss", "lossOfControl", "causalFactor_guid_1",
          "causalFactor_text_1", "causalFactor_description_1", "causalFactor_worthFixing-Yes_1",
          "causalFactor_worthFixing-No_1", "causalFactor_correctiveAction_1",
          "causalFactor_responsible_1", "causalFactor_dueDate_1"})
        QTest::newRow(id) << id;
}

void TestFormPage::fieldsOfTheBinding()
{
    QFETCH(QString, id);

    form->view.addCausalFactor(QString(), 1, QString());
    QVERIFY(form->view.getAllFieldValues().contains(id));
}

void TestFormPage::everyFieldHasALabelAndAnId()
{
    form->view.addCausalFactor(QString(), 1, QString());
    form->view.addCausalFactor(QString(), 12, QString());
    QSet<QString> seen;
    for (const QWebElement &field : form->view.getAllFields(true)) {
        const QString id = field.attribute("id");
        QVERIFY2(!id.isEmpty() && !seen.contains(id), qPrintable(id));
        seen.insert(id);
        if (field.attribute("type") == "hidden")
            continue;
        const QString labels =
            "var label = document.querySelector('label[for=\"' + this.id + '\"]')"
            " || this.parentNode; label.tagName + label.textContent.trim()";
        const QString label = QWebElement(field).evaluateJavaScript(labels).toString();
        QVERIFY2(label.startsWith("LABEL") && label.size() > 5, qPrintable(id));
    }
    for (const QWebElement &element :
         form->web->page()->mainFrame()->findAllElements("[aria-describedby], [aria-labelledby]")) {
        const QString target =
            element.attribute("aria-describedby", element.attribute("aria-labelledby"));
        QVERIFY2(!form->find("#" + target).isNull(), qPrintable(target));
    }
}

void TestFormPage::typingIsToldAtOnce()
{
    QSignalSpy changed(&form->view, &FormView::formChanged);
    QSignalSpy valueChanged(&form->view, &FormView::formValueChanged);
    focus("incidentTitle");
    QTest::keyClicks(form->web, "Fi");
    QCOMPARE(changed.count(), 2);
    QCOMPARE(valueChanged.count(), 2);
    QCOMPARE(valueChanged.last(), QList<QVariant>({"incidentTitle", "Fi"}));

    form->view.addCausalFactor(QString(), 2, QString());
    form->run("showStepsUpTo(5)");
    focus("causalFactor_text_2");
    QTest::keyClicks(form->web, "a");
    QTest::keyClick(form->web, Qt::Key_Return);
    QCOMPARE(valueChanged.last(), QList<QVariant>({"causalFactor_text_2", "a\n"}));
}

void TestFormPage::whatWasToldIsNotToldAgain()
{
    focus("incidentTitle");
    QTest::keyClicks(form->web, "Fire");
    QSignalSpy changed(&form->view, &FormView::formChanged);
    focus("incidentDate");
    QCOMPARE(changed.count(), 0);

    // A change that came without typing is told when the field is left.
    form->run("var e = document.createEvent('Event'); e.initEvent('change', true, true);"
              "document.getElementById('incidentDate').dispatchEvent(e)");
    QCOMPARE(changed.count(), 1);
}

void TestFormPage::pasteAndCutAreTold()
{
    QSignalSpy valueChanged(&form->view, &FormView::formValueChanged);
    focus("incidentTitle");
    QTest::keyClicks(form->web, "Fire");
    form->web->page()->triggerAction(QWebPage::SelectAll);
    form->web->page()->triggerAction(QWebPage::Cut);
    QCOMPARE(valueChanged.last(), QList<QVariant>({"incidentTitle", ""}));
    form->web->page()->triggerAction(QWebPage::Paste);
    QCOMPARE(valueChanged.last(), QList<QVariant>({"incidentTitle", "Fire"}));
    form->web->page()->triggerAction(QWebPage::Undo);
    QCOMPARE(valueChanged.last(), QList<QVariant>({"incidentTitle", ""}));
}

void TestFormPage::focusReturnsToTheField()
{
    QLineEdit other;
    focus("incidentDate");
    QTest::keyClicks(form->web, "7 May");
    QFocusEvent out(QEvent::FocusOut), in(QEvent::FocusIn);
    QApplication::sendEvent(form->web, &out);
    QVERIFY(focused() != "incidentDate");
    QApplication::sendEvent(form->web, &in);
    QTRY_COMPARE(focused(), QString("incidentDate"));
    QTest::keyClicks(form->web, "!");
    QCOMPARE(form->view.getFieldValue("incidentDate"), QString("7 May!"));
}

void TestFormPage::browserKeysDoNothing()
{
    form->view.onFormDataLoaded({{"loss", formValue("as loaded")}});
    form->view.setFieldValue("loss", "as edited");
    QSignalSpy loaded(form->web, &QWebView::loadFinished);
    form->run("document.activeElement.blur()");
    for (int key : {Qt::Key_Refresh, Qt::Key_Reload, Qt::Key_Back, Qt::Key_Forward, Qt::Key_Stop,
                    Qt::Key_Backspace, Qt::Key_F5, Qt::Key_HomePage})
        QApplication::postEvent(form->web, new QKeyEvent(QEvent::KeyPress, key, Qt::NoModifier));
    QCoreApplication::processEvents();
    form->web->reload();
    form->web->back();
    QTest::qWait(200);
    QCOMPARE(loaded.count(), 0);
    QCOMPARE(form->view.getFieldValue("loss"), QString("as edited"));
}

void TestFormPage::tabOrderFollowsTheForm()
{
    focus("incidentTitle");
    QStringList order;
    for (int i = 0; i < 10; ++i) {
        QTest::keyClick(form->web, Qt::Key_Tab);
        order << focused();
    }
    const QStringList expected = {
        "incidentDate", "incidentTime", "fileNumber",     "incidentLocation", "incidentType",
        "mrph",         "examinerName", "titleImageFile", "titleImageButton", "titleImageRemove"};
    QCOMPARE(order, expected);
    QTest::keyClick(form->web, Qt::Key_Backtab);
    QCOMPARE(focused(), QString("titleImageButton"));
}

void TestFormPage::radioByKeyAndMouse()
{
    form->view.addCausalFactor(QString(), 4, "opens the step");
    QSignalSpy valueChanged(&form->view, &FormView::formValueChanged);
    click("#causalFactor_worthFixing-No_4");
    QCOMPARE(valueChanged.count(), 1);
    QCOMPARE(valueChanged.last(), QList<QVariant>({"causalFactor_worthFixing-No_4", "true"}));
    focus("causalFactor_worthFixing-Yes_4");
    QTest::keyClick(form->web, Qt::Key_Space);
    QCOMPARE(valueChanged.last(), QList<QVariant>({"causalFactor_worthFixing-Yes_4", "true"}));
    QCOMPARE(form->view.getFieldValue("causalFactor_worthFixing-No_4"), QString("false"));
}

void TestFormPage::optionByKey()
{
    form->run("showStepsUpTo(7)");
    QSignalSpy valueChanged(&form->view, &FormView::formValueChanged);
    focus("reportStatus");
    QTest::keyClick(form->web, Qt::Key_Down);
    QTRY_COMPARE(valueChanged.count(), 1);
    QCOMPARE(valueChanged.last(), QList<QVariant>({"reportStatus", "For review"}));
}

void TestFormPage::continueOpensTheNextStep()
{
    QSignalSpy valueChanged(&form->view, &FormView::formValueChanged);
    click("#step1 .next button");
    QCOMPARE(form->run("sections().filter(isShown).length").toInt(), 2);
    QCOMPARE(valueChanged.count(), 1);
    QCOMPARE(valueChanged.last(), QList<QVariant>({"lastStepShown", "2"}));
    QCOMPARE(focused(), QString("organisation"));
    QCOMPARE(form->find("#step1 .next").styleProperty("display", QWebElement::ComputedStyle),
             QString("none"));
    QCOMPARE(form->find("#step2 .next").styleProperty("display", QWebElement::ComputedStyle),
             QString("block"));
}

void TestFormPage::progressOpensUpToAStep()
{
    click("#progress li:nth-child(5) button");
    QCOMPARE(form->run("sections().filter(isShown).length").toInt(), 5);
    QCOMPARE(form->view.getFieldValue("lastStepShown"), QString("5"));
    QCOMPARE(form->find("#position").toPlainText(), QString("Step 5 of 7: Causal factors"));

    // Going back closes nothing.
    QSignalSpy changed(&form->view, &FormView::formChanged);
    click("#progress li:nth-child(2) button");
    QCOMPARE(form->run("sections().filter(isShown).length").toInt(), 5);
    QCOMPARE(form->find("#position").toPlainText(), QString("Step 2 of 7: People"));
    QCOMPARE(changed.count(), 0);
}

void TestFormPage::progressMarksFilledSteps()
{
    const auto isDone = [this](int step) {
        return form->find(QString("#progress li:nth-child(%1)").arg(step)).hasClass("done");
    };
    form->view.setFieldValue("loss", "a ship");
    QTRY_VERIFY(!isDone(4));
    form->view.setFieldValue("lossOfControl", "the rudder breaks");
    QTRY_VERIFY(isDone(4));

    QVERIFY(!isDone(5));
    form->view.addCausalFactor(QString(), 1, "no spare rudder");
    form->view.setFieldValue("causalFactor_worthFixing-Yes_1", "true");
    form->view.setFieldValue("causalFactor_text_1", "no spare rudder aboard");
    QTRY_VERIFY(isDone(5));
    form->view.addCausalFactor(QString(), 2, "no tug");
    QTRY_VERIFY(!isDone(5));
}

void TestFormPage::programOpensAStep()
{
    form->view.setFieldValue("loss", "a ship");
    QTRY_VERIFY(form->find("#progress li:nth-child(4)").hasClass("open"));
    QVERIFY(!form->find("#progress li:nth-child(3)").hasClass("open"));
    QCOMPARE(form->view.getFieldValue("lastStepShown"), QString("1"));
    click("#step1 .next button");
    QCOMPARE(form->view.getFieldValue("lastStepShown"), QString("2"));
}

void TestFormPage::rowsStandInOrder()
{
    for (int number : {5, 99, 1, 12, 2})
        form->view.addCausalFactor(QString(), number, QString());
    form->view.removeCausalFactor(12);
    QCOMPARE(form->run("Array.from(document.querySelectorAll('.factor h3'))"
                       ".map(e => e.textContent.trim()).join()")
                 .toString(),
             QString("1 Causal factor 1,2 Causal factor 2,5 Causal factor 5,99 Causal factor 99"));
}

void TestFormPage::rowSaysWhenThereAreNone()
{
    const auto isSaid = [this] {
        return form->find("#noCausalFactors").styleProperty("display", QWebElement::InlineStyle) !=
               "none";
    };
    QVERIFY(isSaid());
    form->view.addCausalFactor(QString(), 1, "text");
    QTRY_VERIFY(!isSaid());
    form->view.removeCausalFactor(1);
    QTRY_VERIFY(isSaid());
}

void TestFormPage::textAreaGrowsWithItsText()
{
    form->run("showStepsUpTo(7)");
    const auto getHeight = [this] {
        return form->run("document.getElementById('loss').offsetHeight").toInt();
    };
    const int before = getHeight();
    form->view.setFieldValue("loss", QString("line\n").repeated(20));
    const int after = getHeight();
    QVERIFY(after > before + 200);
    // Nothing of the text hides below the edge.
    QCOMPARE(form->run("var e = document.getElementById('loss'); e.scrollHeight > e.clientHeight")
                 .toBool(),
             false);
    form->view.resize(420, 700);
    form->view.setFieldValue("loss", QString("many words on one line ").repeated(60));
    QCOMPARE(form->run("var e = document.getElementById('loss'); e.scrollHeight > e.clientHeight")
                 .toBool(),
             false);
    focus("loss");
    form->web->page()->triggerAction(QWebPage::SelectAll);
    QTest::keyClick(form->web, Qt::Key_Delete);
    QCOMPARE(getHeight(), before);
}

void TestFormPage::bytesSurvive()
{
    const QString text = QString::fromUtf8("\n\"quotes\" 'single' \\back\\ <tag> &amp; \t tab\n\n"
                                           "\u7d50\u679c \u05e9\u05dc\u05d5\u05dd "
                                           "\U0001F525 e\u0301 \u00a0 \u200b end \n");
    FormValues values;
    for (const QWebElement &field : form->view.getAllFields(false)) {
        const bool area = field.tagName() == "TEXTAREA";
        if (area || field.attribute("type") == "text")
            values.insert(field.attribute("id"),
                          formValue(area ? text : QString(text).remove('\n')));
    }
    values.insert("evidence", formValue(text.repeated(1500)));
    QVERIFY(values.value("evidence").value.toUtf8().size() > 100000);
    form->view.onFormDataLoaded(values);

    FormValues saved = form->view.getAllFieldValues();
    for (auto field = values.cbegin(); field != values.cend(); ++field)
        QVERIFY2(saved.value(field.key()).value == field->value, qPrintable(field.key()));
    // What typing tells is as whole as what a save reads.
    QSignalSpy valueChanged(&form->view, &FormView::formValueChanged);
    focus("evidence");
    QTest::keyClick(form->web, Qt::Key_End, Qt::ControlModifier);
    QTest::keyClicks(form->web, "x");
    QVERIFY(valueChanged.last().at(1).toString() == values.value("evidence").value + "x");
}

void TestFormPage::removingThePictureIsTold()
{
    QSignalSpy valueChanged(&form->view, &FormView::formValueChanged);
    click("#titleImageRemove");
    QCOMPARE(valueChanged.count(), 0);
    form->view.setFieldValue("titleImageFile", "/pictures/a.png");
    click("#titleImageRemove");
    QCOMPARE(valueChanged.count(), 1);
    QCOMPARE(valueChanged.last(), QList<QVariant>({"titleImageFile", ""}));
}

void TestFormPage::paperShowsWholeTexts()
{
    form->run("showStepsUpTo(7); matchMedia('print').addListener(m => {"
              "if (!m.matches) return;"
              "window.twin = getComputedStyle(document.getElementById('loss').twin).display;"
              "window.area = getComputedStyle(document.getElementById('loss')).display;"
              "window.bar = getComputedStyle(document.querySelector('.bar-buttons')).display; })");
    form->view.setFieldValue("loss", "a ship\nand its cargo");
    QCOMPARE(form->run("document.getElementById('loss').twin.textContent").toString().trimmed(),
             QString::fromUtf8("a ship\nand its cargo\u200b"));
    QTemporaryDir folder;
    QPrinter printer;
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(folder.filePath("form.pdf"));
    form->web->page()->mainFrame()->print(&printer);
    QCOMPARE(form->run("[window.twin, window.area, window.bar].join()").toString(),
             QString("block,none,none"));
}

EXAMINER_TEST_MAIN(TestFormPage)

#include "testformpage.moc"
