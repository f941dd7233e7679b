#include "testing/sheet.h"

#include <QBuffer>
#include <QDropEvent>
#include <QMimeData>

class TestCreation : public QObject
{
    Q_OBJECT

    std::unique_ptr<Sheet> sheet;

    static QByteArray encodeTool(int tool)
    {
        QByteArray data;
        QDataStream(&data, QIODevice::WriteOnly) << tool;
        return data;
    }

    static QByteArray encodePicture(const QSize &size)
    {
        QBuffer bytes;
        QImage(size, QImage::Format_Mono).save(&bytes, "PNG");
        return bytes.data();
    }

    const QGraphicsItem *getLandingPlace() const
    {
        return sheet->scene.items(Qt::AscendingOrder).first();
    }

private slots:
    void init()
    {
        QSettings().clear();
        sheet = std::make_unique<Sheet>();
        QVERIFY(sheet->show());
    }

    void toolsMakeItems()
    {
        const QPair<int, const char *> rows[] = {
            {EventTool, "3 Event 120,80 '' 0"},
            {ConditionTool, "3 Condition 120,80 '' 0"},
            {SequenceMarkerTool, "3 Sequence_Marker 120,20 'Date/Time' 0"},
            {ConnectorTool, "8 Event 60,20 '' 0"},
            {ArrowTool, "16 Event 60,20 '' 1"},
            {StraightLineTool, "16 Event 60,20 '' 0"},
            {BarrierWorkedTool, "1024 Event 17,82 '' 0"},
        };
        for (const auto &[tool, item] : rows) {
            sheet->scene.createItemAt(QPointF(500, 500), tool);
            const CanvasItemInfo info = sheet->scene.getProjectItems().value(0)->getRecord();
            QCOMPARE(QString("%1 %2 %3 '%4' %5")
                         .arg(QString::number(info.type), info.role.getTypeName(),
                              describe(QPointF(info.size.width(), info.size.height())), info.text)
                         .arg(info.arrowStyle),
                     QString(item));
            sheet->getStack()->undo();
            QCOMPARE(describe(sheet->scene), QString());
        }
    }

    void drops()
    {
        const std::tuple<const char *, QByteArray, QPointF, QPointF, int> rows[] = {
            {"half a step up", encodeTool(EventTool), {310, 290}, {260, 260}, 1},
            {"outside", encodeTool(EventTool), {-300, -50}, {0, 0}, 1},
            {"cut short", encodeTool(EventTool).left(3), {310, 290}, {}, 0},
            {"an unknown tool", encodeTool(4711), {310, 290}, {}, 0},
        };
        for (const auto &[name, bytes, pointer, place, made] : rows) {
            const Row in(name);
            QMimeData data;
            data.setData(ToolMimeType, bytes);
            const QPoint pos = sheet->view.mapFromScene(pointer);
            QDragEnterEvent enter(pos, Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(sheet->view.viewport(), &enter);
            QCOMPARE(getLandingPlace()->isVisible(), bytes.size() == 4);
            QDropEvent drop(pos, Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(sheet->view.viewport(), &drop);
            QVERIFY(!getLandingPlace()->isVisible());
            QCOMPARE(sheet->getSteps(), made);
            for (const Sticky *note : sheet->scene.getAllNotes())
                QCOMPARE(note->pos(), place);
            sheet->scene.clear();
        }
    }

    void clickPlacesAnItem()
    {
        sheet->program.tool = ConditionTool;
        sheet->move(QPointF(303, 296), Qt::NoButton);
        QVERIFY(getLandingPlace()->isVisible());
        sheet->click(QPointF(303, 296));
        QVERIFY(!getLandingPlace()->isVisible());
        const Sticky *note = sheet->scene.getAllNotes().value(0);
        QCOMPARE(note->getGeometry(), QRectF(240, 260, 120, 80));
        sheet->click(QPointF(300, 300)); // on the note
        QVERIFY(note->isSelected());
        sheet->click(QPointF(300, 500), Qt::RightButton);
        QCOMPARE(sheet->getSteps(), 1);
    }

    void linesAreDrawn()
    {
        sheet->add(noteInfo("a", QRectF(100, 200, 120, 80)));
        sheet->add(noteInfo("b", QRectF(400, 200, 120, 80)));
        const QString before = describe(sheet->scene);
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
            for (Line *line : sheet->scene.getSelectedLines())
                found = describe(line).section(" from ", 1);
            QCOMPARE(found, ends);
            sheet->getStack()->undo();
            QCOMPARE(describe(sheet->scene), before);
        }
        for (bool deleted : {true, false}) { // or the tool changes under way
            sheet->press(QPointF(100, 400));
            if (deleted)
                sheet->scene.deleteSelectedItems();
            sheet->move(QPointF(203, 403));
            sheet->program.tool = deleted ? ConnectorTool : SelectTool;
            sheet->release(QPointF(203, 403));
            QCOMPARE(sheet->getStack()->undoText(),
                     QString(deleted ? "delete 1 item" : "add an item"));
        }
    }

    void dragsAreSteps()
    {
        const std::tuple<const char *, QPointF, QPointF, QString, QRectF> rows[] = {
            {"a click", {140, 240}, {140, 240}, "", {100, 200, 120, 80}},
            {"a move", {140, 240}, {187, 333}, "move 2 items", {140, 300, 120, 80}},
            {"a resize", {222, 282}, {263, 318}, "resize item", {100, 200, 160, 120}},
            {"a resize that snaps back", {222, 282}, {228, 288}, "", {100, 200, 120, 80}},
            {"a barrier", {708, 240}, {751, 263}, "move 1 item", {100, 200, 120, 80}},
        };
        for (const auto &[name, from, to, step, geometry] : rows) {
            const Row in(name);
            init();
            Sticky *note = sheet->addNote(QRectF(100, 200, 120, 80));
            sheet->addNote(QRectF(400, 200, 120, 80));
            sheet->scene.selectAll();
            sheet->addLine(QPointF(220, 240), QPointF(300, 500))
                ->connectStartPoint(note, Sticky::RightSide);
            sheet->addBarrier(QPointF(700, 200));
            const QString before = describe(sheet->scene);
            sheet->drag(from, to);
            QCoreApplication::processEvents();
            QCOMPARE(sheet->getStack()->undoText(), step);
            QCOMPARE(note->getGeometry(), geometry);
            sheet->getStack()->undo();
            QCOMPARE(describe(sheet->scene), before);
        }
    }

    void images()
    {
        const QTemporaryDir folder;
        // A bitmap whose header claims 50,000 by 50,000 pixels.
        const QByteArray huge =
            "BM" + QByteArray::fromHex("3600000000000000360000002800000050c3000050c3000001001800") +
            QByteArray(24, '\0');
        const std::tuple<const char *, QByteArray, QString, QSize> rows[] = {
            {"a picture", encodePicture(QSize(1000, 1000)), "", {1000, 1000}},
            {"reduced", encodePicture(QSize(1001, 1000)), "Reduce size (1024x768)", {768, 768}},
            {"kept", encodePicture(QSize(1001, 1000)), "Keep size (1001x1000)", {1001, 1000}},
            {"huge", huge, "", {0, 0}},
        };
        QFile file(folder.filePath("picture.png"));
        for (const auto &[name, bytes, button, size] : rows) {
            const Row in(name);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(bytes);
            file.close();
            DialogAnswer choice(fileChoice(file.fileName()));
            BoxAnswer box(button);
            sheet->scene.createItemAt(QPointF(300, 300), ImageTool);
            QCOMPARE(box.wasAsked(), !button.isEmpty());
            const CanvasItemInfo info = sheet->scene.getAllNotes().value(0)->getRecord();
            QCOMPARE(info.image.size(), size);
            QCOMPARE(info.size, QSizeF(160, 140));
            sheet->getStack()->undo();
        }
        QCOMPARE(QSettings().value("lastImagePath").toString(), folder.path());
        DialogAnswer cancel(fileChoice(QString()));
        sheet->scene.createItemAt(QPointF(300, 300), ImageTool);
        QVERIFY(cancel.wasAsked() && sheet->scene.getAllNotes().isEmpty());
    }
};

EXAMINER_TEST_MAIN(TestCreation)
#include "testcreation.moc"
