#include "project/projectfile.h"
#include "sheet/headeritem.h"
#include "sheet/sheetbook.h"
#include "testing/form.h"
#include "testing/sheet.h"

class TestSheetAndForm : public QObject
{
    Q_OBJECT

    std::unique_ptr<Form> form;
    std::unique_ptr<Sheet> sheet;

    void setLossField(const char *text)
    {
        form->run(QString("byId('loss').value = '%1'").arg(text));
    }

private slots:

    void init()
    {
        QSettings().clear();
        sheet.reset();
        form = std::make_unique<Form>();
        QVERIFY(form->waitUntilLoaded());
        sheet = std::make_unique<Sheet>(QSize(1606, 1030), nullptr, &form->view);
    }

    void lossAndItsField()
    {
        const std::tuple<const char *, const char *, QString, QString> rows[] = {
            {"the form's text wins", "Two days", "Fire", "Two days"},
            {"an empty field takes the note's", "", "Fire", "Fire"},
        };
        for (const auto &[name, field, text, both] : rows) {
            const Row in(name);
            setLossField(field);
            Sticky *note = sheet->addNote(QRectF(20, 200, 120, 80), "Event", text);
            note->setSelected(true);
            QVERIFY(sheet->scene.setSelectedNotesRole("Loss"));
            for (bool undone : {false, true, false}) {
                sheet->getStack()->setIndex(undone ? 0 : 1);
                QCOMPARE(note->getText(), undone ? text : both);
                QCOMPARE(form->view.getFieldValue("loss"), both);
            }
            emit form->view.formValueChanged("loss", "Typed");
            QCOMPARE(note->getText(), QString("Typed"));

            // What a redo ties again is of one mind too.
            sheet->getStack()->setIndex(0);
            note->setText("Flood");
            setLossField("");
            sheet->getStack()->redo();
            QCOMPARE(form->view.getFieldValue("loss"), QString("Flood"));

            // And what a deletion has kept apart.
            note->setSelected(true);
            sheet->scene.deleteSelectedItems();
            setLossField("Flood and fire");
            sheet->getStack()->undo();
            QCOMPARE(note->getText(), QString("Flood and fire"));

            // A copy has words of its own.
            Sticky *copy = sheet->addNote(QRectF(20, 400, 120, 80), "Loss", "Smoke");
            copy->setSelected(true);
            QVERIFY(sheet->scene.setSelectedNotesRole("Event"));
            sheet->getStack()->undo();
            QCOMPARE(copy->getText() + copy->getSiblings().join(QString()), QString("Smoke"));
            sheet->scene.clear();
        }
    }

    void headerShowsPlainText()
    {
        const QString text = QString("<i>5 < 6</i> & so on ").repeated(20).trimmed();
        QSignalSpy asked(&sheet->scene, &ProjectScene::headerEditRequested);
        for (QGraphicsItem *item : sheet->scene.items()) {
            if (auto *header = qobject_cast<HeaderItem *>(item->toGraphicsObject())) {
                emit form->view.formValueChanged("1'\"]<>", text);
                const QSizeF empty = header->size();
                QCOMPARE(empty, QSizeF(440, 73));
                for (const char *id : {"incidentTitle", "incidentDate", "fileNumber", "mrph",
                                       "incidentType", "examinerName"}) {
                    const qreal height = header->size().height();
                    emit form->view.formValueChanged(id, text);
                    QCOMPARE(header->getHeaderValue(id), text);
                    QVERIFY(header->size().height() >= height);
                }
                QVERIFY(header->size().height() > empty.height());
                emit header->editRequested();
            }
        }
        QCOMPARE(asked.count(), 1);
    }

    void numbersInTheForm()
    {
        Sticky *first = sheet->addFactor(1);
        Sticky *second = sheet->addFactor(2);
        form->view.addCausalFactor(first->getGUID(), 1, "Valve stuck");
        form->view.addCausalFactor(second->getGUID(), 2, "No check list");
        for (int number : {2, 4}) { // taken and free
            DialogAnswer choice(numberChoice(number));
            BoxAnswer box(QMessageBox::Ok);
            sheet->scene.onRequestCausalFactorNumberChange(first);
            QCOMPARE(form->view.getCausalFactorRow(number).mid(0, 2),
                     (QStringList{first->getGUID(), "Valve stuck"}));
            QCOMPARE(form->view.getCausalFactorRow(1).value(1), QString("No check list"));
        }
        emit form->view.formValueChanged("causalFactor_text_1", "A lost list");
        QCOMPARE(second->getText() + first->getText(), QString("A lost list"));
    }

    void undoneFactorsComeBackWhole()
    {
        FakeHost program;
        QUndoGroup group;
        ProjectFile file(&program);
        SheetBook book(&program, &group, &file, &form->view);
        QSettings().setValue("font", "Arial,14,-1,5,50,0,0,0,0,0"); // as a file brings it
        ProjectScene *main = book.getMainSheet();
        program.sheets.append(main);
        connect(&book, &SheetBook::sheetCame,
                [&program](ProjectScene *sheet) { program.sheets.append(sheet); });
        connect(&book, &SheetBook::sheetGoes,
                [&program](ProjectScene *sheet) { program.sheets.removeOne(sheet); });
        const auto describeAll = [&] {
            QString text = form->view.getCausalFactorRow(1).join('|');
            for (const ProjectScene *sheet : book.getAllSheets())
                text += '\n' + describe(*sheet);
            return text;
        };
        const QDir kept(makeDataFolder() + "/kept");
        for (bool pasted : {true, false}) {
            const Row in(pasted ? "pasted" : "by its role");
            CanvasItemInfo info;
            for (const char *role : {"Loss", "Loss_Of_Control"}) {
                info = noteInfo(role, QRectF(500, 400, 120, 120), role, role);
                main->loadCanvasItem(info);
            }
            info = noteInfo("factor", QRectF(200, 400, 120, 80), "Valve stuck",
                            pasted ? "Causal_Factor" : "Event");
            info.causalFactorNumber = 1;
            auto *note = qobject_cast<Sticky *>(main->createCanvasItem(info));
            note->setSelected(!pasted);
            QVERIFY(pasted || main->setSelectedNotesRole("Causal_Factor"));
            QTRY_VERIFY(book.getSheetOf(1));
            book.getSheetOf(1)->createItemAt(QPointF(400, 500), EventTool);
            form->view.setFieldValue("causalFactor_description_1", "Worn seat");
            const QString before = describeAll();
            const int snapshots = kept.entryList(QDir::Files).size();
            file.setDirty(false);

            main->getUndoStack()->undo();
            QCOMPARE(book.getProjectItems().size(), pasted ? 2 : 3);
            QTRY_VERIFY(file.isDirty());
            QCOMPARE(kept.entryList(QDir::Files).size(), snapshots + 1);
            QCOMPARE(form->view.getCausalFactorRow(1).join(QString()), QString());
            main->getUndoStack()->redo();
            QTRY_COMPARE(describeAll(), before);

            // A new number is no step, so the old one may be taken when the factor returns.
            main->getUndoStack()->undo();
            QCoreApplication::processEvents();
            info.guid = "other";
            info.role = Role("Causal_Factor");
            main->loadCanvasItem(info);
            // What a sheet shares goes on while it is away.
            note->setText("Valve shut");
            qobject_cast<Sticky *>(main->getItemWithGUID("Loss"))->setText("Flood");
            book.setPageSize(QSize(700, 500));
            main->getUndoStack()->redo();
            QTRY_VERIFY(book.getSheetOf(2));
            QCOMPARE(form->view.getCausalFactorRow(2).mid(1, 2).join(": "),
                     QString("Valve shut: Worn seat"));
            const ProjectScene *back = book.getSheetOf(2);
            QCOMPARE(back->getPageSize(), QSize(700, 500));
            QCOMPARE(back->getAllCausalFactors().first()->getText(), QString("Valve shut"));
            QCOMPARE(back->getLossAndLoCNotes().first->getText(), QString("Flood"));

            // A row belongs to the factor alone, not to its twin.
            note->setSelected(true);
            BoxAnswer deletion(QMessageBox::Ok);
            const int former = kept.entryList(QDir::Files).size();
            main->deleteSelectedItems();
            QCoreApplication::processEvents();
            main->getUndoStack()->undo();
            QTRY_VERIFY(book.getSheetOf(note));
            QCOMPARE(kept.entryList(QDir::Files).size(), former + 1);
            back = book.getSheetOf(note);
            QCOMPARE(back->getAllCausalFactors().first()->getSiblings(),
                     QStringList(note->getGUID()));

            // A field belongs to the role, not to the twin of a note that has left it.
            auto *loss = qobject_cast<Sticky *>(main->getItemWithGUID("Loss"));
            Sticky *twin = back->getLossAndLoCNotes().first;
            loss->setRoleType("Loss");
            twin->setText("Leak");
            loss->setRoleType("Event");
            twin->setText("Not a loss");
            QCOMPARE(form->view.getFieldValue("loss"), QString("Leak"));
            loss->setRoleType("Loss");
            QVERIFY(twin->getSiblings().contains("loss"));
            book.clear();
        }
    }
};

EXAMINER_TEST_MAIN(TestSheetAndForm)
#include "testsheetandform.moc"
