#include "sheet/headeritem.h"
#include "testing/form.h"
#include "testing/sheet.h"

#include <QWebPage>

class TestSheetAndForm : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void lossTakesTheFormsText();
    void emptyFieldLeavesTheText();
    void headerRepeatsTheForm();
    void typedFieldReachesTheNote();
    void numberMovesInTheForm();
    void numbersSwapInTheForm();

private:
    std::unique_ptr<Form> form;
    std::unique_ptr<Sheet> sheet;
};

static const QSize Page(1606, 1030);

void TestSheetAndForm::initTestCase()
{
    copyFormCollection();
}

void TestSheetAndForm::init()
{
    QSettings().clear();
    sheet.reset();
    form = std::make_unique<Form>();
    QVERIFY(form->waitUntilLoaded());
    sheet = std::make_unique<Sheet>(Page, nullptr, &form->view);
}

void TestSheetAndForm::lossTakesTheFormsText()
{
    form->view.setFieldValue("loss", "Two days of production");
    Sticky *note = sheet->addNote(QRectF(20, 200, 120, 80), "Event", "Fire");
    note->setSelected(true);
    QVERIFY(sheet->scene.setSelectedNotesRole("Loss"));

    QCOMPARE(note->getText(), QString("Two days of production"));
    QCOMPARE(sheet->getSteps(), 2);
    QCOMPARE(sheet->scene.getUndoStack()->undoText(), QString("change text"));
    sheet->scene.getUndoStack()->undo();
    QCOMPARE(note->getText(), QString("Fire"));
    QCOMPARE(form->view.getFieldValue("loss"), QString("Fire"));
}

void TestSheetAndForm::emptyFieldLeavesTheText()
{
    Sticky *note = sheet->addNote(QRectF(20, 200, 120, 80), "Event", "Fire");
    note->setSelected(true);
    QVERIFY(sheet->scene.setSelectedNotesRole("Loss_Of_Control"));

    QCOMPARE(note->getText(), QString("Fire"));
    QCOMPARE(sheet->getSteps(), 1);
}

void TestSheetAndForm::headerRepeatsTheForm()
{
    HeaderItem *header = nullptr;
    for (QGraphicsItem *item : sheet->scene.items()) {
        if (auto *found = qobject_cast<HeaderItem *>(item->toGraphicsObject()))
            header = found;
    }
    QVERIFY(header);
    const auto getTitle = [header] {
        const QWebElement title = header->page()->mainFrame()->findFirstElement("#incidentTitle");
        return title.toPlainText();
    };

    emit form->view.formValueLoaded("incidentTitle", "Bridge <3>");
    QCOMPARE(getTitle(), QString("Bridge <3>"));
    emit form->view.formValueChanged("incidentTitle", "");
    QCOMPARE(getTitle(), QString());
    QSignalSpy asked(&sheet->scene, &ProjectScene::headerEditRequested);
    emit header->editRequested();
    QCOMPARE(asked.count(), 1);
}

void TestSheetAndForm::typedFieldReachesTheNote()
{
    Sticky *note = sheet->addNote(QRectF(20, 200, 120, 80));
    note->setSelected(true);
    sheet->scene.setSelectedNotesRole("Loss");
    emit form->view.formValueChanged("loss", "A lost day");

    QCOMPARE(note->getText(), QString("A lost day"));
}

void TestSheetAndForm::numberMovesInTheForm()
{
    Sticky *note = sheet->addFactor(1);
    form->view.addCausalFactor(note->getGUID(), 1, "Valve stuck");
    DialogAnswer number(numberChoice(4));
    sheet->scene.onRequestCausalFactorNumberChange(note);

    QCOMPARE(form->view.getFieldValue("causalFactor_text_4"), QString("Valve stuck"));
    QVERIFY(note->getSiblings().contains("causalFactor_text_4"));
}

void TestSheetAndForm::numbersSwapInTheForm()
{
    Sticky *first = sheet->addFactor(1);
    Sticky *second = sheet->addFactor(2);
    form->view.addCausalFactor(first->getGUID(), 1, "Valve stuck");
    form->view.addCausalFactor(second->getGUID(), 2, "No check list");
    DialogAnswer number(numberChoice(2));
    BoxAnswer box(QMessageBox::Ok);
    sheet->scene.onRequestCausalFactorNumberChange(first);

    QCOMPARE(form->view.getFieldValue("causalFactor_text_1"), QString("No check list"));
    QCOMPARE(form->view.getFieldValue("causalFactor_text_2"), QString("Valve stuck"));
    QCOMPARE(first->getCausalFactorNumber(), 2);
    QCOMPARE(second->getCausalFactorNumber(), 1);
}

EXAMINER_TEST_MAIN(TestSheetAndForm)
#include "testsheetandform.moc"
