#include "project/projectfile.h"
#include "sheet/footeritem.h"
#include "sheet/headeritem.h"
#include "sheet/infoitem.h"
#include "testing/files.h"
#include "testing/sheet.h"

#include <QContextMenuEvent>
#include <QDropEvent>
#include <QMimeData>

/// What is made on a sheet, what its rules refuse, and the pages that it takes.
class TestSheet : public QObject
{
    Q_OBJECT

    std::unique_ptr<Sheet> sheet;
    ProjectScene *scene = nullptr;
    const QSize Page = QSize(400, 300);

    void makeSheet(QSize page)
    {
        sheet = std::make_unique<Sheet>(page);
        scene = &sheet->scene;
        for (QMenu *menu :
             {&sheet->program.sceneMenu, &sheet->program.noteMenu, &sheet->program.lineMenu})
            menu->addAction("Paste");
        QVERIFY(sheet->show());
    }

    static QByteArray encodeTool(int tool)
    {
        QByteArray data;
        QDataStream(&data, QIODevice::WriteOnly) << tool;
        return data;
    }

    bool isLandingPlaceShown() const
    {
        return scene->items(Qt::AscendingOrder).first()->isVisible();
    }

    /// Right clicks there and leaves the menu.
    bool askForMenu(const QPointF &p)
    {
        sheet->click(p, Qt::RightButton);
        const QPoint point = sheet->view.mapFromScene(p);
        DialogAnswer answer(cancellation());
        QContextMenuEvent event(QContextMenuEvent::Mouse, point, sheet->view.mapToGlobal(point));
        QApplication::sendEvent(sheet->view.viewport(), &event);
        return answer.wasAsked();
    }

    QList<QGraphicsItem *> getItems(int type) const
    {
        QList<QGraphicsItem *> found;
        for (QGraphicsItem *item : scene->items(Qt::AscendingOrder)) {
            if (item->type() == type)
                found.append(item);
        }
        return found;
    }

    QString getPages() const
    {
        return QString("%1x%2")
            .arg(scene->getNumHorizontalPages())
            .arg(scene->getNumVerticalPages());
    }

private slots:
    void init()
    {
        QSettings().clear();
        makeSheet(QSize(1606, 1030));
    }

    void drops()
    {
        const std::tuple<QByteArray, QPointF, QString, const char *> rows[] = {
            {encodeTool(EventTool), {310, 290}, "3 Event", "at 260,260 "}, // half a step up
            {encodeTool(ConditionTool), {-300, -50}, "3 Condition", "at 0,0 to 120,80 "},
            {encodeTool(SequenceMarkerTool), {500, 500}, "3 S", "size 120,20 \"Date/Time\""},
            {encodeTool(ConnectorTool), {500, 500}, "8 ", "size 60,20 "},
            {encodeTool(ArrowTool), {500, 500}, "16 ", "arrow 1"},
            {encodeTool(StraightLineTool), {500, 500}, "16 ", "arrow 0"},
            {encodeTool(BarrierWorkedTool), {500, 500}, "1024 ", "size 17,82 "},
            {encodeTool(EventTool).left(3), {310, 290}, "", ""},
            {encodeTool(4711), {310, 290}, "", ""},
        };
        for (const auto &[bytes, pointer, kind, look] : rows) {
            QMimeData data;
            data.setData(ToolMimeType, bytes);
            const QPoint pos = sheet->view.mapFromScene(pointer);
            QDragEnterEvent enter(pos, Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(sheet->view.viewport(), &enter);
            QCOMPARE(isLandingPlaceShown(), bytes.size() == 4);
            QDropEvent drop(pos, Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(sheet->view.viewport(), &drop);
            QVERIFY(!isLandingPlaceShown());
            const QString made = describe(*scene);
            QVERIFY2(kind.isEmpty() ? made.isEmpty() : made.startsWith(kind) && made.contains(look),
                     qPrintable(kind + " is " + made));
            sheet->getStack()->undo();
            QCOMPARE(describe(*scene), QString());
        }
        // A click places an item, too, unless it meets one.
        sheet->program.tool = ConditionTool;
        sheet->move(QPointF(303, 296), Qt::NoButton);
        QVERIFY(isLandingPlaceShown());
        for (const QPointF &p : {QPointF(303, 296), QPointF(300, 300)})
            sheet->click(p);
        sheet->click(QPointF(300, 500), Qt::RightButton);
        QCOMPARE(scene->getAllNotes().size(), 1);
        QVERIFY(!isLandingPlaceShown());
    }

    void linesAreDrawn()
    {
        sheet->add(noteInfo("a", QRectF(100, 200, 120, 80)));
        sheet->add(noteInfo("b", QRectF(400, 200, 120, 80)));
        const QString before = describe(*scene);
        sheet->program.tool = ConnectorTool;
        const std::tuple<const char *, QPointF, QPointF, QString> rows[] = {
            {"too short", {103, 407}, {110, 414}, ""},
            {"just long enough", {103, 407}, {113, 407}, "free to free"},
            {"from note to note", {218, 240}, {402, 240}, "a side 3 to b side 1"},
            {"back at its note", {102, 240}, {215, 240}, ""},
        };
        for (const auto &[name, from, to, ends] : rows) {
            const Row in(name);
            sheet->drag(from, to);
            QString found;
            for (Line *line : scene->getSelectedLines())
                found = describe(line).section(" from ", 1);
            QCOMPARE(found, ends);
            sheet->getStack()->undo();
            QCOMPARE(describe(*scene), before);
        }
        for (bool deleted : {true, false}) { // or the tool changes under way
            sheet->press(QPointF(100, 400));
            const QPointer<Line> line = scene->getSelectedLines().first();
            sheet->release(QPointF(100, 400), Qt::RightButton); // the left one holds it still
            if (deleted)
                scene->deleteSelectedItems();
            sheet->move(QPointF(203, 403));
            sheet->program.tool = deleted ? ConnectorTool : SelectTool;
            sheet->release(QPointF(203, 403));
            QCOMPARE(sheet->getStack()->undoText(),
                     QString(deleted ? "delete 1 item" : "add an item"));
            QVERIFY(line); // its step still knows it
        }
    }

    void images()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("picture.png");
        const std::tuple<const char *, QSize, QString, QSize> rows[] = {
            {"a picture", {1000, 1000}, "", {1000, 1000}},
            {"reduced", {1001, 1000}, "Reduce size (1024x768)", {768, 768}},
            {"kept", {1001, 1000}, "Keep size (1001x1000)", {1001, 1000}},
            {"none", {0, 0}, "", {0, 0}},
        };
        for (const auto &[name, full, button, size] : rows) {
            const Row in(name);
            if (!QImage(full, QImage::Format_Mono).save(path))
                writeBytes(path, "no picture");
            DialogAnswer choice(fileChoice(path));
            BoxAnswer box(QMessageBox::NoButton, button);
            scene->createItemAt(QPointF(300, 300), ImageTool);
            QCOMPARE(box.wasAsked(), !button.isEmpty());
            const CanvasItemInfo info = scene->getAllNotes().value(0)->getRecord();
            QCOMPARE(info.image.size(), size);
            QCOMPARE(info.size, QSizeF(160, 140));
            sheet->getStack()->undo();
        }
        QCOMPARE(QSettings().value("lastImagePath").toString(), folder.path());
        DialogAnswer cancel(fileChoice(QString()));
        scene->createItemAt(QPointF(300, 300), ImageTool);
        QVERIFY(cancel.wasAsked() && scene->getAllNotes().isEmpty());
    }

    void refusals()
    {
        const QStringList both = {"Loss", "Loss_Of_Control"};
        const std::tuple<QStringList, int, const char *, QString> rows[] = {
            {{"Loss"}, 1, "Causal_Factor", "identified both a Loss and a"},
            {{"Loss_Of_Control"}, 1, "Causal_Factor", "identified both"},
            {both, 3, "Causal_Factor", ""},
            {{"Loss_Of_Control"}, 1, "Loss", ""},
            {{}, 2, "Loss", "one Loss or Loss of Control per"},
            {{}, 2, "Loss_Of_Control", "one Loss or Loss of Control per"},
            {both, 1, "Loss", "one Loss per"},
            {both, 1, "Loss_Of_Control", "one Loss of Control per"},
        };
        for (const auto &[present, selected, role, refusal] : rows) {
            const Row in(role);
            for (const QString &type : present)
                sheet->addNote(QRectF(20, 400, 120, 120), type);
            for (int i = 0; i < selected; ++i)
                sheet->addNote(QRectF(150 * i, 20, 120, 80))->setSelected(true);
            BoxAnswer box(QMessageBox::Ok);
            QCOMPARE(scene->setSelectedNotesRole(role), refusal.isEmpty());
            QVERIFY2(box.text.contains(refusal), qPrintable(box.text));
            for (int again = 0; again < 2; ++again) { // what is no change is no step
                QCOMPARE(sheet->getSteps(), refusal.isEmpty() ? 1 : 0);
                if (refusal.isEmpty())
                    scene->setSelectedNotesRole(role);
            }
            scene->clear();
        }
    }

    void aTwinKeepsItsFactorsNumber()
    {
        sheet->addFactor(1);
        Sticky *owner = sheet->addFactor(2);
        ProjectScene other(&sheet->program, &sheet->group, nullptr, nullptr, Page, owner);
        sheet->program.sheets.append(&other);
        CanvasItemInfo info = owner->getCanvasItemInfo();
        info.guid = "twin";
        info.siblings = QStringList(owner->getGUID());
        auto *twin = qobject_cast<Sticky *>(other.loadCanvasItem(info));
        twin->setSelected(true);
        BoxAnswer box(QMessageBox::Ok);
        QVERIFY(other.setSelectedNotesRole("Event"));
        other.getUndoStack()->undo();
        QCOMPARE(twin->getCanvasItemInfo().causalFactorNumber, 2);
        QCOMPARE(owner->getCausalFactorNumber(), 2);

        owner->addSibling(twin);
        twin->addSibling("causalFactor_text_2"); // as files hold it
        DialogAnswer number(numberChoice(1));
        BoxAnswer swap(QMessageBox::Ok);
        scene->onRequestCausalFactorNumberChange(owner);
        QCOMPARE(twin->getSiblings(), QStringList(owner->getGUID()));

        BoxAnswer question(QMessageBox::Ok);
        other.deleteSelectedItems();
        QVERIFY(!question.wasAsked());
        QVERIFY(other.getRoleRefusal("Causal_Factor", {}).endsWith("on a secondary sheet."));
    }

    void sheetsGoOnlyWhenAsked()
    {
        for (int row = 0; row < 4; ++row) {
            const bool deletes = row & 1, done = row & 2;
            sheet->addFactor(1);
            sheet->addNote(QRectF(20, 200, 120, 80), "Condition");
            scene->selectAll();
            const QString before = describe(*scene);
            QSignalSpy removed(scene, &ProjectScene::causalFactorRemoved);
            BoxAnswer box(done ? QMessageBox::Ok : QMessageBox::Cancel);
            deletes ? scene->deleteSelectedItems() : void(scene->setSelectedNotesRole("Event"));
            QCoreApplication::processEvents();
            QCOMPARE(box.defaultButton, QString("Cancel"));
            QCOMPARE(sheet->getSteps(), int(done));
            QCOMPARE(removed.count(), int(done));
            QCOMPARE(describe(*scene) == before, !done);
            scene->clear();
        }
    }

    void numbers()
    {
        const std::tuple<const char *, int, QMessageBox::StandardButton, int, int, QString, int>
            rows[] = {
                {"a free one", 7, QMessageBox::NoButton, 7, 2, "1+7", 1},
                {"beyond the last", 100, QMessageBox::NoButton, 99, 2, "1+99", 1},
                {"its own", 1, QMessageBox::NoButton, 1, 2, "1", 0},
                {"swapped", 2, QMessageBox::Ok, 2, 1, "2", 2},
                {"not swapped", 2, QMessageBox::Cancel, 1, 2, "1", 0},
            };
        for (const auto &[name, wanted, button, number, other, fields, news] : rows) {
            const Row in(name);
            Sticky *note = sheet->addFactor(1);
            Sticky *second = sheet->addFactor(2);
            DialogAnswer dialog(numberChoice(wanted));
            BoxAnswer box(button);
            scene->onRequestCausalFactorNumberChange(note);
            QCOMPARE(box.wasAsked(), button != QMessageBox::NoButton);
            QCOMPARE(note->getCausalFactorNumber(), number);
            QCOMPARE(second->getCausalFactorNumber(), other);
            QCOMPARE(note->getSiblings().join('+').remove("causalFactor_text_"), fields);
            QCOMPARE(second->getSiblings().join('+'), QString("causalFactor_text_%1").arg(other));
            QCOMPARE(sheet->program.changedFactors.size(), news);
            QCOMPARE(sheet->getStack()->isClean(), news == 0); // whatever is undone
            sheet->program.changedFactors.clear();
            scene->clear();
        }
        for (int number : {4, 2, 1})
            sheet->addFactor(number);
        QCOMPARE(scene->getFirstUnusedCFNumber(), 3);
    }

    void arrowKeys()
    {
        const std::tuple<int, QPointF, QPointF, QPointF> rows[] = {
            {Qt::Key_Left, {7, 100}, {0, 100}, {280, 300}}, // up to the edge
            {Qt::Key_Right, {100, 100}, {120, 100}, {320, 300}},
            {Qt::Key_Up, {100, 0}, {100, 0}, {300, 280}},
            {Qt::Key_Down, {100, 100}, {100, 120}, {300, 320}},
        };
        for (const auto &[key, from, to, moved] : rows) {
            ProjectItem *note = sheet->addNote(QRectF(from, QSizeF(120, 80)));
            ProjectItem *barrier = sheet->addBarrier(QPointF(300, 300));
            QVERIFY(!sheet->pressKey(key));
            scene->selectAll();
            const QString before = describe(*scene);
            QVERIFY(sheet->pressKey(key) && !sheet->pressKey(Qt::Key_X));
            QCOMPARE(note->pos(), to);
            QCOMPARE(barrier->pos(), moved);
            sheet->getStack()->undo();
            QCOMPARE(describe(*scene), before);
            scene->clear();
        }
        scene->deleteSelectedItems(); // of which there are none
        sheet->addNote(QRectF(0, 0, 120, 80))->setSelected(true);
        QVERIFY(sheet->pressKey(Qt::Key_Left));
        QCOMPARE(sheet->getSteps(), 0);
    }

    void textIsEdited()
    {
        Sticky *note = sheet->addNote(QRectF(100, 200, 120, 80), "Event", "Pump ");
        Sticky *other = sheet->addNote(QRectF(300, 200, 120, 80));
        QSignalSpy editing(scene, &ProjectScene::textEditingChanged);
        QKeyEvent undo(QEvent::ShortcutOverride, Qt::Key_Z, Qt::ControlModifier);
        QKeyEvent save(QEvent::ShortcutOverride, Qt::Key_S, Qt::ControlModifier);
        QVERIFY(!scene->handleEditingCommand(&undo));
        sheet->doubleClick(QPointF(140, 240));
        QVERIFY(scene->handleEditingCommand(&undo) && !scene->handleEditingCommand(&save));
        QTest::keyClicks(sheet->view.viewport(), "ran dry");
        QVERIFY(!sheet->getStack()->isClean());
        sheet->pressKey(Qt::Key_Left);
        emit other->editingStarted(other); // one edits at a time
        QCOMPARE(sheet->getStack()->undoText(), QString("change text"));
        sheet->click(QPointF(500, 500));
        QCOMPARE(editing, QList<QVariantList>({{true}, {true}, {false}}));
        QCOMPARE(note->getText(), QString("Pump ran dry"));
        QCOMPARE(note->pos(), QPointF(100, 200));
        sheet->press(QPointF(340, 240));
        QVERIFY(scene->disturbsDrag(&undo) && !scene->disturbsDrag(&save));
        sheet->release(QPointF(340, 240));
        QVERIFY(!scene->disturbsDrag(&undo));
    }

    /// In one step.
    void lowerHandleMakesRoomForText()
    {
        const QRectF before(100, 100, 120, 80);
        Sticky *note = sheet->addNote(before, "Event", QString("many words ").repeated(30));
        note->setSelected(true);
        QTRY_VERIFY(note->isTextCut());
        sheet->doubleClick(QPointF(160, 181));
        QTRY_COMPARE(sheet->getSteps(), 1);
        QVERIFY(!note->isTextCut());
        QCOMPARE(note->pos(), before.topLeft());
        sheet->getStack()->undo();
        QCOMPARE(note->getGeometry(), before);
    }

    void selectionIsReportedTogether()
    {
        QSignalSpy changed(scene, &ProjectScene::selectionChanged);
        for (int i = 0; i < 100; ++i)
            sheet->addNote(QRectF(20 * i, 200, 120, 80));
        scene->selectAll();
        QTRY_COMPARE(changed.last().first().value<QList<QGraphicsItem *>>().size(), 100);
        QVERIFY(changed.count() <= 12); // not one for each
    }

    void menusWorkOnTheSelection()
    {
        Sticky *note = sheet->addNote(QRectF(100, 200, 120, 80));
        Line *line = sheet->addLine(QPointF(100, 400), QPointF(200, 400));
        note->setSelected(true);
        QVERIFY(askForMenu(QPointF(150, 400)));
        QVERIFY(line->isSelected() && !note->isSelected());
        note->setSelected(true);
        QVERIFY(askForMenu(QPointF(140, 240)));
        QVERIFY(line->isSelected() && note->isSelected());
        sheet->program.tool = EventTool; // whose landing place is no item
        sheet->move(QPointF(500, 400), Qt::NoButton);
        QVERIFY(askForMenu(QPointF(500, 400)));
        QCOMPARE(scene->getLastContextMenuPos(), QPointF(500, 400));
    }

    // Pages.

    void pagesFollowTheItems()
    {
        const std::pair<QRectF, QString> rows[] = {
            {{280, 220, 120, 80}, "1x1"}, // up to the page's edges
            {{281, 221, 120, 80}, "2x2"},
            {{4000, 3100, 80, 80}, "11x11"},
            {{-500, -500, 80, 80}, "1x1"},
        };
        makeSheet(Page);
        for (const auto &[note, pages] : rows) {
            sheet->addNote(note);
            QCOMPARE(getPages(), pages);
            scene->clear();
            QCOMPARE(scene->sceneRect(), QRectF(0, 0, 420, 320));
        }
        sheet->addLine(QPointF(100, 100), QPointF(500, 100));
        sheet->addBarrier(QPointF(100, 300));
        auto *info = new InfoItem; // no reason for a page
        info->setPos(2000, 2000);
        scene->addItem(info);
        scene->checkCanvasSize();
        QCOMPARE(scene->sceneRect(), QRectF(0, 0, 820, 620));
        scene->setPageSize(QSize(200, 100));
        QCOMPARE(getPages(), QString("3x4"));
        QVERIFY(scene->pageContainsItems(QRectF(0, 300, 200, 100)));
        QVERIFY(!scene->pageContainsItems(QRectF(0, 200, 200, 100)));
        // Truncated, and not clamped.
        QCOMPARE(scene->getPageBoundsAtPoint(QPointF(-199, 999)), QRectF(0, 900, 200, 100));
    }

    void growsAndShrinksUnderADrag()
    {
        makeSheet(Page);
        sheet->addNote(QRectF(20, 320, 120, 80)); // rests on the second row of pages
        Sticky *note = sheet->addNote(QRectF(20, 20, 120, 80));
        sheet->addLine(QPointF(300, 60), QPointF(140, 60))
            ->setEndConnection({note, Sticky::RightSide});
        sheet->press(QPointF(60, 40));
        sheet->move(QPointF(360, 40)); // with the end of the line beyond the page
        QTRY_COMPARE(getPages(), QString("2x2"));
        sheet->move(QPointF(60, 640));
        QTRY_COMPARE(getPages(), QString("1x3"));
        sheet->move(QPointF(60, 340));
        sheet->release(QPointF(60, 340));
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();    // a step's check comes a turn after the step
        QCOMPARE(getPages(), QString("1x3")); // the end of a move makes no check
        sheet->getStack()->undo();
        QTRY_COMPARE(getPages(), QString("1x2"));
    }

    void pagesFollowEachStep()
    {
        makeSheet(Page);
        scene->createItemAt(QPointF(500, 100), EventTool);
        sheet->getStack()->undo();
        QTRY_COMPARE(getPages(), QString("1x1"));
        sheet->getStack()->redo();
        QTRY_COMPARE(getPages(), QString("2x1"));
        sheet->addNote(QRectF(280, 220, 120, 80))->setSelected(true);
        sheet->pressKey(Qt::Key_Down);
        QCOMPARE(getPages(), QString("2x2"));
        scene->removeItem(sheet->addNote(QRectF(900, 20, 120, 80)));
        sheet->addNote(QRectF(20, 20, 120, 80));
        QCOMPARE(getPages(), QString("2x2"));
    }

    void dressOfASheet()
    {
        makeSheet(QSize(390, 290));
        auto *box = new InfoItem;
        scene->setInfoBox(box);
        QGraphicsItem *header = getItems(HeaderItem::Type).value(0);
        sheet->addNote(QRectF(420, 320, 120, 80));
        QList<FooterItem *> footers = scene->getFooters();
        QCOMPARE(footers.size(), 4);
        QVERIFY(footers.first()->getText().contains("Loss Of Control, "));
        QCOMPARE(footers.last()->getText(), QString(" - B2"));
        for (int step : {0, 1, 2}) {
            const bool dressed = step == 2, decorated = step > 0;
            if (dressed)
                scene->setRenderBackground(true, true, true);
            else
                scene->dressForPaper(decorated);
            QVERIFY(box->isVisible() == dressed && header->isVisible() == decorated &&
                    footers.first()->isVisible() == decorated);
            QCOMPARE(colorAt(scene, QPointF(360, 560)) == QColor(192, 192, 192), dressed);
            QCOMPARE(colorAt(scene, QPointF(390, 560)) == QColor(Qt::black), dressed);
        }

        // Printing must not bring back what the settings hide.
        for (const char *key : {"showHeader", "showLegend", "showPageNumbers"})
            QSettings().setValue(key, false);
        scene->updatePageNumberItems();
        scene->setRenderBackground(true, true, true);
        QVERIFY(!header->isVisible());
        scene->dressForPaper(true);
        QVERIFY(!header->isVisible());
        footers = scene->getFooters();
        QVERIFY(footers.size() == 4 && footers.first()->getText().isEmpty());
    }

    /// Selected notes show above others, and a note that comes back lies on top.
    void stackingIsThatOfTheComing()
    {
        const auto read = [this] {
            QStringList texts;
            for (ProjectItem *item : sheet->scene.sortBottomFirst(sheet->scene.getProjectItems()))
                texts += item->getRecord().text;
            return texts.join(' ');
        };
        for (const char *text : {"1", "2", "3"})
            sheet->addNote(QRectF(0, 0, 120, 80), "Event", text)->setSelected(text == QString("2"));
        QCOMPARE(read(), QString("1 2 3"));
        sheet->scene.deleteSelectedItems();
        sheet->scene.getUndoStack()->undo();
        QCOMPARE(read(), QString("1 3 2"));
    }

    void lookUpByGuid()
    {
        ProjectItem *first = sheet->add(noteInfo("twin", QRectF(20, 20, 120, 80)));
        scene->removeItem(sheet->add(noteInfo("twin", QRectF(200, 20, 120, 80))));
        QCOMPARE(scene->getItemWithGUID("twin"), first);
    }

    void clearMakesNew()
    {
        const QPointer<Sticky> note = sheet->addNote(QRectF(20, 220, 120, 80));
        const QPointer<Sticky> deleted = sheet->addNote(QRectF(5000, 20, 120, 80));
        deleted->setSelected(true);
        scene->deleteSelectedItems();
        scene->setPrintEnabled(false);
        QSignalSpy editing(scene, &ProjectScene::textEditingChanged);
        QSignalSpy added(scene, &ProjectScene::causalFactorAdded);
        sheet->doubleClick(QPointF(60, 260));
        emit note->moveStarted(); // news that wait in the queue
        emit note->causalFactorAdded(note);
        emit note->moveFinished(note, QRectF());
        scene->clear();
        QCOMPARE(editing, QList<QVariantList>({{true}, {false}}));
        QCoreApplication::processEvents();
        QCOMPARE(added.count(), 0);
        QVERIFY(!note && !deleted && scene->isPrintEnabled());

        sheet->program.tool = ConnectorTool;
        sheet->press(QPointF(100, 300));
        sheet->move(QPointF(200, 400));
        scene->clear();
        sheet->release(QPointF(250, 400));
        QCOMPARE(sheet->getSteps(), 0);
        QCOMPARE(getPages(), QString("1x1"));
        QCOMPARE(getItems(HeaderItem::Type).size(), 1);
    }

    void changesReachTheProject()
    {
        FakeHost program;
        auto group = std::make_unique<QUndoGroup>();
        ProjectFile file(&program);
        ProjectScene main(&program, group.get(), &file, nullptr, Page);
        auto other = std::make_unique<ProjectScene>(&program, group.get(), &file, nullptr, Page);
        other->createItemAt(QPointF(100, 100), EventTool);
        QVERIFY(file.isDirty());
        other.reset(); // its steps go, but what was done stays done
        QVERIFY(file.isDirty());
        QCOMPARE(group->stacks().size(), 1);

        const QString corner = main.getFooters().first()->getText();
        QVERIFY(corner.endsWith(", " + file.getOpenProjectName() + " - A1"));
        group.reset(); // a sheet may outlive it
    }
};

EXAMINER_TEST_MAIN(TestSheet)
#include "testsheet.moc"
