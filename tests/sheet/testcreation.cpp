#include "testing/sheet.h"

#include <QGraphicsSceneDragDropEvent>
#include <QMimeData>

class TestCreation : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void toolsMakeItems_data();
    void toolsMakeItems();
    void metaToolsMakeNothing_data();
    void metaToolsMakeNothing();
    void itemsCentreOnThePointer_data();
    void itemsCentreOnThePointer();
    void unknownTypeMakesNothing();
    void loadedItemsLeaveNoStep();
    void guidIsGivenOnce();
    void causalFactorIsReportedOnce();

    void clickWithATool();
    void clickOnANoteMakesNoOther();
    void clickBesideClearsTheSelection();
    void landingPlaceFollowsThePointer();
    void handToolRests();

    void dragFromThePalette();
    void foreignDragIsIgnored();
    void brokenDrop_data();
    void brokenDrop();

    void lineIsDrawn();
    void lineTooShort();
    void lineBackToItsNote();
    void lineFromNoteToNote();
    void lineDeletedWhileItIsDrawn();
    void lineEndsThoughTheToolChanged();

    void moveIsOneStep();
    void clickIsNoStep();
    void resizeIsAStep();
    void linesFollowAResizeThatSnapsBack();
    void barrierMoves();

    void imageChosen();
    void imageCancelled();
    void largeImage_data();
    void largeImage();
    void unreadableImage_data();
    void unreadableImage();

private:
    QString savePicture(const QString &name, const QSize &size);

    std::unique_ptr<QTemporaryDir> folder;
};

void TestCreation::init()
{
    QSettings().clear();
    folder = std::make_unique<QTemporaryDir>();
}

QString TestCreation::savePicture(const QString &name, const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::darkGreen);
    const QString path = folder->filePath(name);
    return image.save(path) ? path : QString();
}

void TestCreation::toolsMakeItems_data()
{
    QTest::addColumn<int>("tool");
    QTest::addColumn<int>("itemType");
    QTest::addColumn<int>("recordType");
    QTest::addColumn<QString>("role");
    QTest::addColumn<QSizeF>("size");

    const int note = ProjectItem::StickyType;
    const int line = ProjectItem::LineType;
    const int barrier = ProjectItem::SVGPictureType;
    QTest::newRow("event") << 1 << note << 3 << "Event" << QSizeF(120, 80);
    QTest::newRow("condition") << 2 << note << 3 << "Condition" << QSizeF(120, 80);
    QTest::newRow("marker") << 5 << note << 3 << "Sequence_Marker" << QSizeF(120, 20);
    QTest::newRow("connector") << 8 << line << 8 << "Event" << QSizeF(60, 20);
    QTest::newRow("arrow") << 16 << line << 16 << "Event" << QSizeF(60, 20);
    QTest::newRow("straight line") << 256 << line << 16 << "Event" << QSizeF(60, 20);
    QTest::newRow("failed barrier") << 32 << barrier << 32 << "Event" << QSizeF(17, 82);
    QTest::newRow("improved barrier") << 64 << barrier << 64 << "Event" << QSizeF(17, 82);
    QTest::newRow("new barrier") << 128 << barrier << 128 << "Event" << QSizeF(17, 82);
    QTest::newRow("barrier that worked") << 1024 << barrier << 1024 << "Event" << QSizeF(17, 82);
}

void TestCreation::toolsMakeItems()
{
    QFETCH(int, tool);
    QFETCH(int, itemType);
    QFETCH(int, recordType);
    QFETCH(QString, role);
    QFETCH(QSizeF, size);
    Sheet sheet;
    sheet.scene.createItemAt(QPointF(500, 500), tool);

    const QList<ProjectItem *> items = sheet.scene.getProjectItems();
    QCOMPARE(items.size(), 1);
    QCOMPARE(items.first()->type(), itemType);
    const CanvasItemInfo info = items.first()->getCanvasItemInfo();
    QCOMPARE(info.type, recordType);
    QCOMPARE(info.role.getTypeName(), role);
    QCOMPARE(info.size, size);
    QCOMPARE(info.arrowStyle, tool == ArrowTool ? 1 : 0);
    QCOMPARE(info.text, tool == SequenceMarkerTool ? QString("Date/Time") : QString());
    QVERIFY(!QUuid(info.guid).isNull());
    if (tool == SequenceMarkerTool)
        QCOMPARE(info.textAlignment, Qt::Alignment(Qt::AlignHCenter));

    QCOMPARE(sheet.getSteps(), 1);
    sheet.scene.getUndoStack()->undo();
    QVERIFY(sheet.scene.getProjectItems().isEmpty());
    sheet.scene.getUndoStack()->redo();
    QCOMPARE(sheet.scene.getProjectItems(), items);
}

void TestCreation::metaToolsMakeNothing_data()
{
    QTest::addColumn<int>("tool");

    QTest::newRow("select") << 0;
    QTest::newRow("hand") << 512;
    QTest::newRow("none of the palette") << 77;
    QTest::newRow("negative") << -1;
}

void TestCreation::metaToolsMakeNothing()
{
    QFETCH(int, tool);
    Sheet sheet;
    sheet.scene.createItemAt(QPointF(500, 500), tool);

    QVERIFY(sheet.scene.getProjectItems().isEmpty());
    QCOMPARE(sheet.getSteps(), 0);
}

void TestCreation::itemsCentreOnThePointer_data()
{
    QTest::addColumn<QPointF>("pointer");
    QTest::addColumn<QPointF>("position");

    QTest::newRow("on the grid") << QPointF(300, 300) << QPointF(240, 260);
    QTest::newRow("half a step up") << QPointF(310, 290) << QPointF(260, 260);
    QTest::newRow("in the corner") << QPointF(5, 5) << QPointF(0, 0);
    QTest::newRow("outside") << QPointF(-300, -50) << QPointF(0, 0);
}

void TestCreation::itemsCentreOnThePointer()
{
    QFETCH(QPointF, pointer);
    QFETCH(QPointF, position);
    Sheet sheet;
    sheet.scene.createItemAt(pointer, EventTool);

    const CanvasItemInfo info = sheet.scene.getProjectItems().first()->getCanvasItemInfo();
    QCOMPARE(info.startPoint, position);
    QCOMPARE(info.endPoint, position + QPointF(120, 80));
}

void TestCreation::unknownTypeMakesNothing()
{
    Sheet sheet;
    CanvasItemInfo info;
    info.type = 7;
    QCOMPARE(sheet.scene.createCanvasItem(info), nullptr);
    QCOMPARE(sheet.scene.loadCanvasItem(info), nullptr);
    QCOMPARE(sheet.getSteps(), 0);
}

void TestCreation::loadedItemsLeaveNoStep()
{
    Sheet sheet;
    QSignalSpy added(&sheet.scene, &ProjectScene::causalFactorAdded);
    sheet.addFactor(1);
    QCoreApplication::processEvents();

    QCOMPARE(sheet.getSteps(), 0);
    QCOMPARE(added.count(), 0);
    QCOMPARE(sheet.scene.getProjectItems().size(), 1);
}

void TestCreation::guidIsGivenOnce()
{
    Sheet sheet;
    CanvasItemInfo info;
    info.type = NoteItemType;
    info.size = QSizeF(120, 80);
    ProjectItem *item = sheet.scene.createCanvasItem(info);
    QCOMPARE(item->getGUID(), info.guid);

    info.guid = "{of-its-own}";
    QCOMPARE(sheet.scene.createCanvasItem(info)->getGUID(), QString("{of-its-own}"));
}

void TestCreation::causalFactorIsReportedOnce()
{
    Sheet sheet;
    QSignalSpy added(&sheet.scene, &ProjectScene::causalFactorAdded);
    CanvasItemInfo info;
    info.type = NoteItemType;
    info.role = Role("Causal_Factor");
    info.size = QSizeF(120, 80);
    auto *note = qobject_cast<Sticky *>(sheet.scene.createCanvasItem(info, true));

    QCOMPARE(added.count(), 1);
    QCOMPARE(added.first().first().value<Sticky *>(), note);
    QCoreApplication::processEvents();
    QCOMPARE(added.count(), 1);
}

void TestCreation::clickWithATool()
{
    Sheet sheet;
    QVERIFY(sheet.show());
    sheet.program.tool = ConditionTool;
    sheet.click(QPointF(300, 300));

    const QList<Sticky *> notes = sheet.scene.getAllNotes();
    QCOMPARE(notes.size(), 1);
    QCOMPARE(notes.first()->getRoleType(), QString("Condition"));
    QCOMPARE(notes.first()->pos(), QPointF(240, 260));
    sheet.press(QPointF(300, 500), Qt::RightButton);
    sheet.release(QPointF(300, 500), Qt::RightButton);
    QCOMPARE(sheet.getSteps(), 1);
}

void TestCreation::clickOnANoteMakesNoOther()
{
    Sheet sheet;
    QVERIFY(sheet.show());
    Sticky *note = sheet.addNote(QRectF(200, 200, 120, 80));
    sheet.program.tool = EventTool;
    sheet.click(QPointF(240, 240));

    QCOMPARE(sheet.scene.getAllNotes().size(), 1);
    QVERIFY(note->isSelected());
}

void TestCreation::clickBesideClearsTheSelection()
{
    Sheet sheet;
    QVERIFY(sheet.show());
    Sticky *note = sheet.addNote(QRectF(200, 200, 120, 80));
    note->setSelected(true);
    QSignalSpy changed(&sheet.scene, &ProjectScene::selectionChanged);
    sheet.click(QPointF(500, 500));

    QVERIFY(!note->isSelected());
    QVERIFY(!changed.isEmpty());
    QVERIFY(changed.last().first().value<QList<QGraphicsItem *>>().isEmpty());
    QCOMPARE(sheet.getSteps(), 0);
}

static QGraphicsRectItem *getLandingPlace(const ProjectScene &scene)
{
    for (QGraphicsItem *item : scene.items()) {
        if (auto *rect = qgraphicsitem_cast<QGraphicsRectItem *>(item))
            return rect;
    }
    return nullptr;
}

void TestCreation::landingPlaceFollowsThePointer()
{
    Sheet sheet;
    QVERIFY(sheet.show());
    QGraphicsRectItem *place = getLandingPlace(sheet.scene);
    QVERIFY(!place->isVisible());
    sheet.move(QPointF(300, 300), Qt::NoButton);
    QVERIFY(!place->isVisible());

    sheet.program.tool = ImageTool;
    sheet.move(QPointF(303, 296), Qt::NoButton);
    QVERIFY(place->isVisible());
    QCOMPARE(place->rect(), QRectF(220, 220, 160, 140));
    sheet.scene.hideHighlightItem();
    QVERIFY(!place->isVisible());

    Sticky *note = sheet.addNote(QRectF(203, 208, 124, 91));
    sheet.scene.setHighlightToNote(note);
    QVERIFY(!place->isVisible());
    QCOMPARE(place->rect(), QRectF(QPointF(200, 200), QPointF(320, 300)));
}

void TestCreation::handToolRests()
{
    Sheet sheet;
    QVERIFY(sheet.show());
    Sticky *note = sheet.addNote(QRectF(200, 200, 120, 80));
    sheet.program.tool = HandTool;
    sheet.drag(QPointF(240, 240), QPointF(400, 400));
    sheet.doubleClick(QPointF(240, 240));

    QCOMPARE(note->pos(), QPointF(200, 200));
    QVERIFY(!note->isSelected());
    QVERIFY(!note->isEditing());
    QCOMPARE(sheet.getSteps(), 0);
}

static QByteArray encodeTool(int tool)
{
    QByteArray data;
    QDataStream(&data, QIODevice::WriteOnly) << tool;
    return data;
}

/// Sends one drag event to the view; returns the event as the sheet left it.
template<typename Event>
static bool sendDrag(Sheet &sheet, QEvent::Type type, const QPointF &p, const QMimeData &data)
{
    Event event(sheet.view.mapFromScene(p), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                Qt::NoModifier, type);
    event.ignore();
    QApplication::sendEvent(sheet.view.viewport(), &event);
    return event.isAccepted() && event.dropAction() == Qt::MoveAction;
}

static bool enter(Sheet &sheet, const QPointF &p, const QMimeData &data)
{
    QDragEnterEvent event(sheet.view.mapFromScene(p), Qt::CopyAction | Qt::MoveAction, &data,
                          Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(sheet.view.viewport(), &event);
    return event.isAccepted();
}

void TestCreation::dragFromThePalette()
{
    Sheet sheet;
    QVERIFY(sheet.show());
    QGraphicsRectItem *place = getLandingPlace(sheet.scene);
    QMimeData data;
    data.setData(ToolMimeType, encodeTool(EventTool));

    QVERIFY(enter(sheet, QPointF(300, 300), data));
    QVERIFY(place->isVisible());
    QCOMPARE(place->rect(), QRectF(240, 260, 120, 80));
    QVERIFY(sendDrag<QDragMoveEvent>(sheet, QEvent::DragMove, QPointF(400, 300), data));
    QCOMPARE(place->rect(), QRectF(340, 260, 120, 80));
    QVERIFY(sendDrag<QDropEvent>(sheet, QEvent::Drop, QPointF(400, 300), data));
    QVERIFY(!place->isVisible());
    QCOMPARE(sheet.scene.getAllNotes().first()->getGeometry(), QRectF(340, 260, 120, 80));
    QCOMPARE(sheet.getSteps(), 1);

    QVERIFY(enter(sheet, QPointF(300, 300), data));
    QVERIFY(place->isVisible());
    QDragLeaveEvent leave;
    QApplication::sendEvent(sheet.view.viewport(), &leave);
    QVERIFY(!place->isVisible());
    QCOMPARE(sheet.getSteps(), 1);
}

void TestCreation::foreignDragIsIgnored()
{
    Sheet sheet;
    QVERIFY(sheet.show());
    QMimeData data;
    data.setText("1");
    data.setUrls({QUrl("file:///picture.png")});

    enter(sheet, QPointF(300, 300), data);
    QVERIFY(!getLandingPlace(sheet.scene)->isVisible());
    QVERIFY(!sendDrag<QDragMoveEvent>(sheet, QEvent::DragMove, QPointF(400, 300), data));
    QVERIFY(!sendDrag<QDropEvent>(sheet, QEvent::Drop, QPointF(400, 300), data));
    QVERIFY(sheet.scene.getProjectItems().isEmpty());
}

void TestCreation::brokenDrop_data()
{
    QTest::addColumn<QByteArray>("payload");

    QTest::newRow("empty") << QByteArray();
    QTest::newRow("cut short") << encodeTool(EventTool).left(3);
    QTest::newRow("select tool") << encodeTool(SelectTool);
    QTest::newRow("unknown tool") << encodeTool(12345);
    QTest::newRow("negative") << encodeTool(-1);
}

void TestCreation::brokenDrop()
{
    QFETCH(QByteArray, payload);
    Sheet sheet;
    QVERIFY(sheet.show());
    QMimeData data;
    data.setData(ToolMimeType, payload);
    enter(sheet, QPointF(300, 300), data);
    sendDrag<QDropEvent>(sheet, QEvent::Drop, QPointF(300, 300), data);

    QVERIFY(sheet.scene.getProjectItems().isEmpty());
    QVERIFY(!getLandingPlace(sheet.scene)->isVisible());
    QCOMPARE(sheet.getSteps(), 0);
}

void TestCreation::lineIsDrawn()
{
    Sheet sheet;
    QVERIFY(sheet.show());
    Sticky *note = sheet.addNote(QRectF(500, 300, 120, 80));
    note->setSelected(true);
    sheet.program.tool = ArrowTool;
    sheet.press(QPointF(103, 207));
    QCOMPARE(sheet.scene.getProjectItems().size(), 2);
    QCOMPARE(sheet.getSteps(), 0);
    QCOMPARE(sheet.scene.getSelectedLines().size(), 1);
    QVERIFY(!note->isSelected());

    sheet.move(QPointF(200, 300));
    sheet.release(QPointF(200, 300));
    QCOMPARE(sheet.getSteps(), 1);
    const CanvasItemInfo info = sheet.scene.getSelectedLines().first()->getCanvasItemInfo();
    QCOMPARE(info.startPoint, QPointF(103, 207));
    QCOMPARE(info.endPoint, QPointF(200, 300));
    QCOMPARE(info.arrowStyle, 1);

    // Nothing is under way any more.
    sheet.move(QPointF(400, 400));
    sheet.release(QPointF(400, 400));
    QCOMPARE(sheet.getSteps(), 1);
    sheet.scene.getUndoStack()->undo();
    QCOMPARE(sheet.scene.getProjectItems().size(), 1);
    sheet.scene.getUndoStack()->redo();
    QCOMPARE(sheet.scene.getProjectItems().size(), 2);
}

void TestCreation::lineTooShort()
{
    Sheet sheet;
    QVERIFY(sheet.show());
    sheet.program.tool = ConnectorTool;
    sheet.drag(QPointF(100, 200), QPointF(107, 207));
    QVERIFY(sheet.scene.getProjectItems().isEmpty());
    QCOMPARE(sheet.getSteps(), 0);

    sheet.drag(QPointF(100, 200), QPointF(110, 200));
    QCOMPARE(sheet.scene.getProjectItems().size(), 1);
}

void TestCreation::lineBackToItsNote()
{
    Sheet sheet;
    QVERIFY(sheet.show());
    sheet.addNote(QRectF(200, 200, 120, 80));
    sheet.program.tool = StraightLineTool;
    sheet.press(QPointF(202, 240));
    sheet.move(QPointF(450, 240));
    sheet.move(QPointF(300, 240));
    sheet.release(QPointF(300, 240));

    QCOMPARE(sheet.scene.getProjectItems().size(), 1);
    QCOMPARE(sheet.getSteps(), 0);
}

void TestCreation::lineFromNoteToNote()
{
    Sheet sheet;
    QVERIFY(sheet.show());
    Sticky *from = sheet.addNote(QRectF(100, 200, 120, 80));
    Sticky *to = sheet.addNote(QRectF(400, 200, 120, 80));
    sheet.program.tool = ConnectorTool;
    sheet.drag(QPointF(218, 240), QPointF(402, 240));

    const QList<Line *> lines = sheet.scene.getSelectedLines();
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first()->getStartConnection().item, from);
    QCOMPARE(lines.first()->getStartConnection().side, Sticky::RightSide);
    QCOMPARE(lines.first()->getEndConnection().item, to);
    QCOMPARE(lines.first()->getEndConnection().side, Sticky::LeftSide);
    QCOMPARE(sheet.getSteps(), 1);
    QCOMPARE(from->pos(), QPointF(100, 200));
}

void TestCreation::lineDeletedWhileItIsDrawn()
{
    Sheet sheet;
    QVERIFY(sheet.show());
    sheet.program.tool = ConnectorTool;
    sheet.press(QPointF(100, 200));
    sheet.scene.deleteSelectedItems();
    sheet.move(QPointF(103, 203));
    sheet.release(QPointF(103, 203));

    QVERIFY(sheet.scene.getProjectItems().isEmpty());
    QCOMPARE(sheet.getSteps(), 1);
    sheet.scene.getUndoStack()->undo();
    QCOMPARE(sheet.scene.getProjectItems().size(), 1);
}

void TestCreation::lineEndsThoughTheToolChanged()
{
    Sheet sheet;
    QVERIFY(sheet.show());
    sheet.program.tool = ConnectorTool;
    sheet.press(QPointF(100, 200));
    sheet.move(QPointF(200, 300));
    sheet.program.tool = SelectTool;
    sheet.release(QPointF(200, 300));

    QCOMPARE(sheet.getSteps(), 1);
}

void TestCreation::moveIsOneStep()
{
    Sheet sheet;
    QVERIFY(sheet.show());
    Sticky *first = sheet.addNote(QRectF(100, 200, 120, 80));
    Sticky *second = sheet.addNote(QRectF(300, 200, 120, 80));
    first->setSelected(true);
    second->setSelected(true);
    sheet.drag(QPointF(140, 240), QPointF(187, 333));
    QTRY_COMPARE(sheet.getSteps(), 1);

    QCOMPARE(first->pos(), QPointF(140, 300));
    QCOMPARE(second->pos(), QPointF(340, 300));
    QCOMPARE(sheet.scene.getUndoStack()->undoText(), QString("move 2 items"));
    sheet.scene.getUndoStack()->undo();
    QCOMPARE(first->getGeometry(), QRectF(100, 200, 120, 80));
    QCOMPARE(second->getGeometry(), QRectF(300, 200, 120, 80));
}

void TestCreation::clickIsNoStep()
{
    Sheet sheet;
    QVERIFY(sheet.show());
    Sticky *note = sheet.addNote(QRectF(100, 200, 120, 80));
    sheet.click(QPointF(140, 240));
    QTest::qWait(20);

    QVERIFY(note->isSelected());
    QCOMPARE(sheet.getSteps(), 0);
}

void TestCreation::resizeIsAStep()
{
    Sheet sheet;
    QVERIFY(sheet.show());
    Sticky *note = sheet.addNote(QRectF(100, 200, 120, 80));
    Sticky *other = sheet.addNote(QRectF(400, 200, 120, 80));
    note->setSelected(true);
    other->setSelected(true);
    sheet.drag(QPointF(222, 282), QPointF(263, 318));
    QTRY_COMPARE(sheet.getSteps(), 1);

    QCOMPARE(note->getGeometry(), QRectF(100, 200, 160, 120));
    QCOMPARE(sheet.scene.getUndoStack()->undoText(), QString("resize item"));
    sheet.scene.getUndoStack()->undo();
    QCOMPARE(note->getGeometry(), QRectF(100, 200, 120, 80));
    QCOMPARE(other->getGeometry(), QRectF(400, 200, 120, 80));
}

void TestCreation::linesFollowAResizeThatSnapsBack()
{
    Sheet sheet;
    QVERIFY(sheet.show());
    Sticky *note = sheet.addNote(QRectF(100, 200, 120, 80));
    Line *line = sheet.addLine(QPointF(220, 240), QPointF(400, 240));
    line->connectStartPoint(note, Sticky::RightSide);
    note->setSelected(true);
    sheet.press(QPointF(222, 282));
    sheet.move(QPointF(228, 288));
    QVERIFY(line->getRecord().startPoint != QPointF(220, 240));
    sheet.release(QPointF(228, 288));

    QCOMPARE(note->getGeometry(), QRectF(100, 200, 120, 80));
    QCOMPARE(line->getRecord().startPoint, QPointF(220, 240));
}

void TestCreation::barrierMoves()
{
    Sheet sheet;
    QVERIFY(sheet.show());
    ProjectItem *barrier = sheet.addBarrier(QPointF(100, 200));
    sheet.drag(QPointF(108, 240), QPointF(151, 263));
    QTRY_COMPARE(sheet.getSteps(), 1);

    QCOMPARE(barrier->pos(), QPointF(143, 223));
    sheet.scene.getUndoStack()->undo();
    QCOMPARE(barrier->pos(), QPointF(100, 200));
}

void TestCreation::imageChosen()
{
    Sheet sheet;
    const QString path = savePicture("dent.png", QSize(1000, 1000));
    DialogAnswer answer(fileChoice(path));
    sheet.scene.createItemAt(QPointF(300, 300), ImageTool);

    QVERIFY(answer.wasAsked());
    const CanvasItemInfo info = sheet.scene.getProjectItems().first()->getCanvasItemInfo();
    QCOMPARE(info.type, 4);
    QCOMPARE(info.image.size(), QSize(1000, 1000));
    QCOMPARE(info.startPoint, QPointF(220, 240));
    QCOMPARE(QSettings().value("lastImagePath").toString(), QDir(folder->path()).absolutePath());
    QCOMPARE(sheet.getSteps(), 1);
}

void TestCreation::imageCancelled()
{
    Sheet sheet;
    DialogAnswer answer(fileChoice(QString()));
    sheet.scene.createItemAt(QPointF(300, 300), ImageTool);

    QVERIFY(answer.wasAsked());
    QVERIFY(sheet.scene.getProjectItems().isEmpty());
    QVERIFY(!QSettings().contains("lastImagePath"));
}

void TestCreation::largeImage_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QSize>("size");

    QTest::newRow("reduced") << "Reduce size (1024x768)" << QSize(768, 768);
    QTest::newRow("kept") << "Keep size (1001x1000)" << QSize(1001, 1000);
}

void TestCreation::largeImage()
{
    QFETCH(QString, button);
    QFETCH(QSize, size);
    Sheet sheet;
    DialogAnswer file(fileChoice(savePicture("wall.png", QSize(1001, 1000))));
    BoxAnswer box(button);
    sheet.scene.createItemAt(QPointF(300, 300), ImageTool);

    QVERIFY(file.wasAsked() && box.wasAsked());
    QCOMPARE(box.title, QString("Reduce image size"));
    QCOMPARE(box.icon, QMessageBox::Question);
    QCOMPARE(box.defaultButton, QString("Reduce size (1024x768)"));
    QCOMPARE(box.text, QString("The selected image is very large.\nThis can make the project file "
                               "very large and it is recomended that the image be scaled down "
                               "before adding it to the canvas."));
    QCOMPARE(sheet.scene.getProjectItems().first()->getCanvasItemInfo().image.size(), size);
}

void TestCreation::unreadableImage_data()
{
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("empty") << QByteArray();
    QTest::newRow("a text") << QByteArray("no picture");
    QTest::newRow("cut short") << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0", 18);
    // A bitmap whose header claims 50,000 by 50,000 pixels.
    QByteArray huge("BM", 2);
    huge.append(QByteArray::fromHex("3600000000000000360000002800000050c3000050c300001001800"
                                    "000000000000000000000000000000000000000000000000"));
    QTest::newRow("huge") << huge;
}

void TestCreation::unreadableImage()
{
    QFETCH(QByteArray, bytes);
    const QString path = folder->filePath("picture.png");
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    file.close();
    Sheet sheet;
    DialogAnswer answer(fileChoice(path));
    sheet.scene.createItemAt(QPointF(300, 300), ImageTool);

    // A plain note of the picture's size.
    QVERIFY(answer.wasAsked());
    const CanvasItemInfo info = sheet.scene.getProjectItems().first()->getCanvasItemInfo();
    QCOMPARE(info.type, 3);
    QVERIFY(info.image.isNull());
    QCOMPARE(info.size, QSizeF(160, 140));
}

EXAMINER_TEST_MAIN(TestCreation)
#include "testcreation.moc"
