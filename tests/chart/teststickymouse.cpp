#include "chart/circlednumberitem.h"
#include "chart/notetext.h"
#include "testing/dialogs.h"
#include "testing/fakes.h"
#include "testing/testmain.h"

#include <QGraphicsEffect>
#include <QGraphicsPixmapItem>
#include <QGraphicsSceneContextMenuEvent>
#include <QGraphicsSceneHoverEvent>
#include <QSignalSpy>
#include <QTimer>

/// Notes under the mouse and the keyboard.
class TestStickyMouse : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void clickSnapsTheSelection();
    void moveCarriesTheSelection();
    void moveStartsOnce();
    void deletionEndsAMove();
    void resizeByAHandle();
    void resizeFromTheTopLeft();
    void otherButtonsDoNotDrag();
    void doubleClickEdits();
    void textStaysInPlaceUnderEdit();
    void placeholderGoesForGood();
    void ellipsePlacesItsEmptyText();
    void focusKeepsTheMouse();
    void doubleClickOnTheCircle_data();
    void doubleClickOnTheCircle();
    void doubleClickOnThePicture();
    void typingKeepsThePicture();
    void hoverWithALineTool();
    void hoverWithoutALineTool();
    void contextMenu();

private:
    std::unique_ptr<FakeHost> host;
    std::unique_ptr<FakeSheet> sheet;
    Sticky *note = nullptr;
};

void TestStickyMouse::init()
{
    host = std::make_unique<FakeHost>();
    sheet = std::make_unique<FakeSheet>(host.get());
    QEvent activation(QEvent::WindowActivate);
    QApplication::sendEvent(sheet.get(), &activation);
    note = sheet->addNote(noteInfo("{a}", QRectF(100, 100, 80, 60), "text"));
}

void TestStickyMouse::cleanup()
{
    sheet.reset();
}

void TestStickyMouse::clickSnapsTheSelection()
{
    Sticky *other = sheet->addNote(noteInfo("{b}", QRectF(311, 309, 80, 60)));
    other->setSelected(true);
    note->setSelected(true);
    note->setPos(109, 111);
    QSignalSpy finished(note, &BoxItem::moveFinished);
    QSignalSpy started(note, &BoxItem::moveStarted);

    press(sheet.get(), QPointF(140, 150));
    release(sheet.get(), QPointF(140, 150));
    QCOMPARE(note->pos(), QPointF(100, 120));
    QCOMPARE(other->pos(), QPointF(320, 300));
    QCOMPARE(started.size(), 0);
    QCOMPARE(finished.size(), 1);
    QCOMPARE(finished.first().at(1).toRectF(), QRectF(109, 111, 80, 60));
}

void TestStickyMouse::moveCarriesTheSelection()
{
    Sticky *other = sheet->addNote(noteInfo("{b}", QRectF(300, 300, 80, 60)));
    other->setSelected(true);
    note->setSelected(true);
    QSignalSpy moved(note, &BoxItem::moved);
    QSignalSpy otherMoved(other, &BoxItem::moved);

    press(sheet.get(), QPointF(140, 150));
    moveTo(sheet.get(), QPointF(155, 159));
    QCOMPARE(note->pos(), QPointF(115, 109));
    QCOMPARE(other->pos(), QPointF(315, 309));
    QVERIFY(note->graphicsEffect()->isEnabled());
    QVERIFY(other->graphicsEffect()->isEnabled());
    QCOMPARE(moved.size(), 1);
    QCOMPARE(otherMoved.size(), 1);

    release(sheet.get(), QPointF(155, 159));
    QCOMPARE(note->pos(), QPointF(120, 100));
    QCOMPARE(other->pos(), QPointF(320, 300));
    QVERIFY(!other->graphicsEffect()->isEnabled());
}

void TestStickyMouse::moveStartsOnce()
{
    QSignalSpy started(note, &BoxItem::moveStarted);
    for (int round = 1; round <= 2; ++round) {
        press(sheet.get(), QPointF(140, 150));
        moveTo(sheet.get(), QPointF(150, 150));
        moveTo(sheet.get(), QPointF(140, 150));
        QCOMPARE(started.size(), round);
        release(sheet.get(), QPointF(140, 150));
    }
}

void TestStickyMouse::deletionEndsAMove()
{
    QSignalSpy started(note, &BoxItem::moveStarted);
    press(sheet.get(), QPointF(140, 150));
    moveTo(sheet.get(), QPointF(160, 150));
    QVERIFY(note->graphicsEffect()->isEnabled());
    sheet->removeItem(note);
    release(sheet.get(), QPointF(160, 150));
    QVERIFY(!note->graphicsEffect()->isEnabled());

    sheet->addItem(note);
    drag(sheet.get(), QPointF(160, 150), QPointF(180, 150));
    QCOMPARE(started.size(), 2);
}

void TestStickyMouse::resizeByAHandle()
{
    QSignalSpy started(note, &BoxItem::moveStarted);
    QSignalSpy moved(note, &BoxItem::moved);
    QSignalSpy finished(note, &BoxItem::moveFinished);

    press(sheet.get(), QPointF(179, 159));
    QCOMPARE(started.size(), 1);
    moveTo(sheet.get(), QPointF(215, 175));
    QCOMPARE(note->getGeometry(), QRectF(100, 100, 115, 75));
    QVERIFY(!moved.isEmpty());
    QCOMPARE(sheet->highlighted, QList<Sticky *>({note}));
    QVERIFY(!note->graphicsEffect());

    release(sheet.get(), QPointF(215, 175));
    QCOMPARE(note->getGeometry(), QRectF(100, 100, 120, 80));
    QCOMPARE(finished.size(), 1);
    QCOMPARE(finished.first().at(1).toRectF(), QRectF(100, 100, 80, 60));

    drag(sheet.get(), QPointF(150, 150), QPointF(190, 150)); // the handle is let go
    QCOMPARE(note->getGeometry(), QRectF(140, 100, 120, 80));
}

void TestStickyMouse::resizeFromTheTopLeft()
{
    drag(sheet.get(), QPointF(100, 100), QPointF(69, 74));
    QCOMPARE(note->getGeometry(), QRectF(60, 80, 120, 80));
}

void TestStickyMouse::otherButtonsDoNotDrag()
{
    QSignalSpy finished(note, &BoxItem::moveFinished);
    sendMouse(sheet.get(), QEvent::GraphicsSceneMousePress, QPointF(140, 150), Qt::RightButton);
    sendMouse(sheet.get(), QEvent::GraphicsSceneMouseMove, QPointF(240, 150), Qt::RightButton);
    sendMouse(sheet.get(), QEvent::GraphicsSceneMouseRelease, QPointF(240, 150), Qt::RightButton);
    sendMouse(sheet.get(), QEvent::GraphicsSceneMouseDoubleClick, QPointF(140, 150),
              Qt::RightButton);
    QCOMPARE(note->pos(), QPointF(100, 100));
    QCOMPARE(finished.size(), 0);
    QVERIFY(!note->isEditing());
}

void TestStickyMouse::doubleClickEdits()
{
    note->addSibling("field");
    QSignalSpy started(note, &Sticky::editingStarted);
    QSignalSpy edited(note, &Sticky::textEdited);
    doubleClick(sheet.get(), QPointF(140, 150));
    QVERIFY(note->isEditing());
    QCOMPARE(started.size(), 1);
    auto *text = dynamic_cast<NoteText *>(sheet->focusItem());
    QVERIFY(text);
    QCOMPARE(text->textCursor().position(), 4);

    QKeyEvent key(QEvent::KeyPress, Qt::Key_S, Qt::NoModifier, "s");
    QApplication::sendEvent(sheet.get(), &key);
    QCOMPARE(note->getText(), QString("texts"));
    QVERIFY(sheet->formFields.isEmpty());

    note->finishEditing();
    QVERIFY(!note->isEditing());
    QVERIFY(!text->hasFocus());
    QCOMPARE(edited.size(), 1);
    QCOMPARE(edited.first().at(1).toString(), QString("text"));
    QCOMPARE(edited.first().at(2).toString(), QString("texts"));
    const QList<QPair<QString, QString>> fields = {{"field", "texts"}};
    QCOMPARE(sheet->formFields, fields);
}

void TestStickyMouse::textStaysInPlaceUnderEdit()
{
    doubleClick(sheet.get(), QPointF(140, 150));
    auto *text = dynamic_cast<NoteText *>(sheet->focusItem());
    QVERIFY(text);
    const auto centre = [text] { return text->y() + text->boundingRect().height() * 0.5; };
    QKeyEvent key(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r");
    QApplication::sendEvent(sheet.get(), &key);
    QTRY_COMPARE(centre(), 30.0);
    text->textCursor().insertText("as\nfrom\na menu");
    QVERIFY(centre() != 30.0);
    QTRY_COMPARE(centre(), 30.0);
}

void TestStickyMouse::placeholderGoesForGood()
{
    Sticky *empty = sheet->addNote(noteInfo("{b}", QRectF(300, 100, 80, 60)));
    QSignalSpy edited(empty, &Sticky::textEdited);
    doubleClick(sheet.get(), QPointF(340, 130));
    auto *text = dynamic_cast<NoteText *>(sheet->focusItem());
    QVERIFY(text);
    QCOMPARE(text->toPlainText(), QString());
    empty->finishEditing();
    QCOMPARE(text->toPlainText(), QString());
    QCOMPARE(edited.first().at(1).toString(), QString());
    QCOMPARE(edited.first().at(2).toString(), QString());
}

void TestStickyMouse::ellipsePlacesItsEmptyText()
{
    sheet->addNote(noteInfo("{b}", QRectF(300, 100, 80, 80), QString(), "Loss"));
    doubleClick(sheet.get(), QPointF(340, 140));
    const QGraphicsItem *text = sheet->focusItem();
    QVERIFY(text);
    QCOMPARE(text->pos(), QPointF(7.5, 40 - text->boundingRect().height() * 0.5));
}

void TestStickyMouse::focusKeepsTheMouse()
{
    doubleClick(sheet.get(), QPointF(140, 130));
    QSignalSpy finished(note, &BoxItem::moveFinished);
    drag(sheet.get(), QPointF(120, 130), QPointF(170, 130));
    QCOMPARE(note->pos(), QPointF(100, 100));
    QCOMPARE(finished.size(), 0);
    QVERIFY(sheet->focusItem());
}

void TestStickyMouse::doubleClickOnTheCircle_data()
{
    QTest::addColumn<QString>("owner");
    QTest::addColumn<int>("requests");

    QTest::newRow("main sheet asks for a number") << "" << 1;
    QTest::newRow("other sheets do nothing") << "{owner}" << 0;
}

void TestStickyMouse::doubleClickOnTheCircle()
{
    QFETCH(QString, owner);
    QFETCH(int, requests);

    sheet->owner = owner;
    Sticky *factor =
        sheet->addNote(noteInfo("{b}", QRectF(300, 100, 80, 60), "x", "Causal_Factor"));
    QSignalSpy asked(factor, &Sticky::requestCausalFactorNumberChange);
    doubleClick(sheet.get(), QPointF(376, 103));
    QCOMPARE(asked.size(), requests);
    QVERIFY(!factor->isEditing());

    doubleClick(sheet.get(), QPointF(176, 103)); // the circle of an event is hidden
    QVERIFY(note->isEditing());
}

void TestStickyMouse::doubleClickOnThePicture()
{
    CanvasItemInfo info = noteInfo("{b}", QRectF(300, 100, 200, 200), "the pump");
    info.image = QPixmap(100, 100);
    info.image.fill(Qt::red);
    Sticky *imageNote = sheet->addNote(info);
    QString title;
    DialogAnswer answer([&title](QWidget *widget) {
        title = widget->windowTitle();
        return widget->close();
    });
    doubleClick(sheet.get(), QPointF(400, 180));
    QVERIFY(answer.wasAsked());
    QVERIFY(title.startsWith("Image Preview"));
    QVERIFY(!imageNote->isEditing());
    doubleClick(sheet.get(), QPointF(400, 290)); // the text
    QVERIFY(imageNote->isEditing());
}

void TestStickyMouse::typingKeepsThePicture()
{
    CanvasItemInfo info = noteInfo("{b}", QRectF(300, 100, 200, 200), "the pump");
    info.image = QPixmap(100, 400);
    Sticky *imageNote = sheet->addNote(info);
    imageNote->relayout();
    doubleClick(sheet.get(), QPointF(400, 290));
    QGraphicsPixmapItem *picture = nullptr;
    for (QGraphicsItem *child : imageNote->childItems()) {
        if (auto *found = dynamic_cast<QGraphicsPixmapItem *>(child))
            picture = found;
    }
    const qint64 before = picture->pixmap().cacheKey();
    imageNote->setSize(QSizeF(200, 204));
    QCOMPARE(picture->pixmap().cacheKey(), before);
    imageNote->setSize(QSizeF(200, 206));
    QVERIFY(picture->pixmap().cacheKey() != before);
}

void TestStickyMouse::hoverWithALineTool()
{
    host->tool = ConnectorTool;
    QGraphicsSceneHoverEvent move(QEvent::GraphicsSceneHoverMove);
    move.setPos(QPointF(40, 5));
    move.setScenePos(QPointF(140, 105));
    sheet->sendEvent(note, &move);
    QCOMPARE(colorAt(sheet.get(), QPointF(140, 110)), QColor(Qt::red));
    QCOMPARE(sheet->lineDrags, QList<QPointF>({QPointF(140, 105)}));
    QVERIFY(!move.isAccepted());

    QGraphicsSceneHoverEvent leave(QEvent::GraphicsSceneHoverLeave);
    sheet->sendEvent(note, &leave);
    QVERIFY(colorAt(sheet.get(), QPointF(140, 110)) != QColor(Qt::red));
}

void TestStickyMouse::hoverWithoutALineTool()
{
    QGraphicsSceneHoverEvent move(QEvent::GraphicsSceneHoverMove);
    move.setPos(QPointF(40, 5));
    sheet->sendEvent(note, &move);
    QVERIFY(colorAt(sheet.get(), QPointF(140, 110)) != QColor(Qt::red));
    QVERIFY(sheet->lineDrags.isEmpty());
    QVERIFY(!move.isAccepted());
}

void TestStickyMouse::contextMenu()
{
    host->noteMenu.addAction("Role");
    const auto ask = [this] {
        QGraphicsSceneContextMenuEvent event(QEvent::GraphicsSceneContextMenu);
        event.setScenePos(QPointF(140, 150));
        bool shown = false;
        QTimer::singleShot(0, &host->noteMenu, [this, &shown] {
            shown = host->noteMenu.isVisible();
            host->noteMenu.close();
        });
        QApplication::sendEvent(sheet.get(), &event);
        QCoreApplication::processEvents(); // a timer that no menu has used up
        return shown;
    };
    QVERIFY(ask());
    QVERIFY(note->isSelected());

    press(sheet.get(), QPointF(140, 150));
    moveTo(sheet.get(), QPointF(150, 150));
    QVERIFY(!ask());
    release(sheet.get(), QPointF(150, 150));
    const QPointF handle = note->mapToScene(79, 59);
    press(sheet.get(), handle);
    QVERIFY(!ask());
    release(sheet.get(), handle);
    QVERIFY(ask());
}

EXAMINER_TEST_MAIN(TestStickyMouse)
#include "teststickymouse.moc"
