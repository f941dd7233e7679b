#include "chart/circlednumberitem.h"
#include "chart/notepicture.h"
#include "chart/notetext.h"
#include "chart/svgpicture.h"
#include "testing/sheet.h"

#include <QClipboard>
#include <QGraphicsEffect>
#include <QGraphicsSceneContextMenuEvent>
#include <QMimeData>
#include <QSvgRenderer>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

/// Writes down what reaches the form.
class FormSheet : public ProjectScene
{
public:
    explicit FormSheet(FakeHost *program)
        : ProjectScene(program, nullptr, nullptr, nullptr, QSize(900, 900)), program(program)
    {
        program->sheets.append(this);
    }
    ~FormSheet() override { program->sheets.removeOne(this); }
    Sticky *addNote(CanvasItemInfo info) { return qobject_cast<Sticky *>(loadCanvasItem(info)); }
    void setConnectedFormField(const QString &id, const QString &text) override
    {
        formFields.append({id, text});
    }

    QList<QPair<QString, QString>> formFields;

private:
    FakeHost *program;
};

/// Notes and barriers: dragging, resizing, being drawn sharply; what notes share, their text.
class TestItems : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        sheet = std::make_unique<Sheet>();
        scene = &sheet->scene;
        QEvent activation(QEvent::WindowActivate);
        QApplication::sendEvent(scene, &activation);
        note = add("{a}", "text");
        text = childOf<NoteText>(note);
    }

    void handles()
    {
        // The box stands at (100,100), 80 by 60; the frame of its handles is 3 wider.
        const std::tuple<const char *, QPointF, QPointF, QRectF> rows[] = {
            {"top left", {99, 99}, {90, 105}, {90, 105, 90, 55}},
            {"top", {140, 98}, {90, 105}, {100, 105, 80, 55}},
            {"top right", {182, 98}, {170, 90}, {100, 90, 70, 70}},
            {"right", {182, 130}, {195, 105}, {100, 100, 95, 60}},
            {"bottom right", {181, 161}, {195, 175}, {100, 100, 95, 75}},
            {"bottom", {138, 162}, {195, 175}, {100, 100, 80, 75}},
            {"bottom left", {99, 161}, {110, 175}, {110, 100, 70, 75}},
            {"left", {98, 132}, {110, 175}, {110, 100, 70, 60}},
            {"left edge refuses", {98, 132}, {160, 100}, {100, 100, 80, 60}},
            {"right edge clamps", {182, 130}, {-400, 100}, {100, 100, 20, 60}},
            {"bottom edge clamps", {138, 162}, {100, 103}, {100, 100, 80, 20}},
            {"corner stops at both edges", {99, 161}, {400, 50}, {100, 100, 80, 20}},
            {"corner stops at the sheet's", {99, 99}, {-10, -10}, {0, 0, 180, 160}},
        };
        scene->clear();
        auto *barrier = qobject_cast<BoxItem *>(sheet->addBarrier(QPointF(100, 100)));
        QCOMPARE(barrier->getGeometry(), QRectF(100, 100, 17, 82));
        QVERIFY(barrier->childItems().isEmpty());
        barrier->setSelected(true);
        for (const auto &[name, from, to, expected] : rows) {
            const Row in(name);
            barrier->setPos(100, 100);
            barrier->setSize(QSizeF(80, 60));
            sheet->press(from);
            sheet->move(to);
            sheet->release(to);
            QCOMPARE(barrier->getGeometry(), expected);
        }
    }

    /// Every box has its own way: off the grid, stopped by the edge, snapped back. A line follows.
    void dragsAreUndoneExactly()
    {
        const std::tuple<const char *, QPointF, QPointF, QString, QRectF, QPointF> rows[] = {
            {"stopped by the edge",
             {140, 150},
             {40, 150},
             "move 4 items",
             {0, 100, 80, 60},
             {0, 200}},
            {"back where it was",
             {140, 150},
             {143, 148},
             "move 2 items",
             {100, 100, 80, 60},
             {40, 200}},
            {"click", {140, 150}, {140, 150}, "move 2 items", {100, 100, 80, 60}, {40, 200}},
            {"by the barrier", {43, 230}, {20, 236}, "move 4 items", {80, 100, 80, 60}, {12, 211}},
            {"resize", {182, 162}, {223, 203}, "resize item", {100, 100, 120, 100}, {35, 205}},
            {"resize snaps back", {182, 162}, {188, 168}, "", {100, 100, 80, 60}, {35, 205}},
            {"barrier alone", {43, 230}, {47, 237}, "move 1 item", {100, 100, 80, 60}, {39, 212}},
            {"barrier at the edge",
             {43, 230},
             {-20, -5},
             "move 1 item",
             {100, 100, 80, 60},
             {0, 0}},
        };
        for (const auto &[name, from, to, step, geometry, barrierPlace] : rows) {
            const Row in(name);
            init();
            sheet->addNote(QRectF(311, 309, 80, 60));
            sheet->addNote(QRectF(20, 400, 80, 60));
            ProjectItem *barrier = sheet->addBarrier(QPointF(35, 205));
            if (step != "move 1 item")
                scene->selectAll();
            sheet->addLine(QPointF(180, 130), QPointF(300, 500))
                ->connectStartPoint(note, Sticky::RightSide);
            const QString before = describe(*scene);
            sheet->drag(from, to);
            QCoreApplication::processEvents();
            const QString after = describe(*scene);
            QCOMPARE(sheet->getStack()->undoText(), step);
            QCOMPARE(note->getGeometry(), geometry);
            QCOMPARE(barrier->pos(), barrierPlace);
            sheet->getStack()->undo();
            QCOMPARE(describe(*scene), before);
            sheet->getStack()->redo();
            QCOMPARE(describe(*scene), after);
        }
    }

    /// The sheet finds an item under the bounds that it was filed under, its shadow's included.
    void whatIsGoneIsNotFound()
    {
        const auto find = [this] { return scene->items(QRectF(100, 150, 400, 400)); };
        const int background = find().size();
        for (bool underTheMouse : {false, true}) {
            note = sheet->addNote(QRectF(160, 200, 80, 60));
            QVERIFY(find().contains(note));
            sheet->press(QPointF(200, 250));
            sheet->move(QPointF(220, 270));
            QVERIFY(find().contains(note));
            QVERIFY(note->graphicsEffect()->isEnabled());
            if (!underTheMouse) {
                sheet->release(QPointF(220, 270));
                QVERIFY(find().contains(note));
            }
            scene->removeItem(note);
            QCOMPARE(find().size(), background);
            QVERIFY(!note->graphicsEffect()->isEnabled());
            // A drag that was cut short has moved nothing.
            QCOMPARE(note->pos(), underTheMouse ? QPointF(160, 200) : QPointF(180, 220));
        }
    }

    void drawnSharply()
    {
        QGraphicsScene plain; // no grid
        CanvasItemInfo info;
        plain.addItem(new SVGPicture(":/images/newBarrier.svg", scene, info));
        QImage drawing(34, 164, QImage::Format_ARGB32_Premultiplied);
        drawing.fill(Qt::white);
        QPainter painter(&drawing);
        QSvgRenderer(QString(":/images/newBarrier.svg")).render(&painter, drawing.rect());
        painter.end();
        // What a screen of twice as many dots shows at first must not come into a picture.
        QImage dense(34, 164, QImage::Format_ARGB32_Premultiplied);
        dense.setDevicePixelRatio(2);
        painter.begin(&dense);
        plain.render(&painter, QRectF(0, 0, 17, 82), QRectF(0, 0, 17, 82));
        painter.end();
        QCOMPARE(drawTwice(&plain, QRectF(0, 0, 17, 82)), drawing);

        QImage stripes(196, 100, QImage::Format_ARGB32_Premultiplied);
        for (int i = 0; i < 196 * 100; ++i)
            stripes.setPixelColor(i % 196, i / 196, i % 2 ? Qt::red : Qt::blue);
        info = noteInfo("{image}", QRectF(100, 100, 102, 100), "x");
        info.image = QPixmap::fromImage(stripes);
        auto *picture = new Sticky(scene, info);
        plain.addItem(picture);
        picture->relayout();
        QCOMPARE(drawTwice(&plain, QRectF(102, 102, 98, 50)), stripes);

        note->setBorderLineWidth(6);
        QCOMPARE(colorAt(scene, QPointF(97, 97)), QColor(Qt::black)); // a whole corner
    }

    void picturesFillTheSpaceAboveTheText()
    {
        CanvasItemInfo info = noteInfo("{image}", QRectF(0, 0, 204, 200), "the pump");
        info.image = QPixmap(800, 400);
        ProjectItem *imageNote = sheet->add(info);
        imageNote->relayout();
        const auto *picture = childOf<NotePicture>(imageNote);
        QCOMPARE(picture->pixmap().size(), QSize(200, 100));
        imageNote->setSize(QSizeF(100, 20)); // no space is left
        QVERIFY(picture->pixmap().isNull());
        imageNote->setSize(QSizeF(10004, 10000)); // the view enlarges
        QCOMPARE(picture->pixmap().size(), QSize(800, 400));
        QCOMPARE(picture->getSize(), QSizeF(10000, 5000));
    }

    void edges()
    {
        const std::tuple<const char *, QSizeF, QPointF, Sticky::Side, Sticky::Side> rows[] = {
            {"edge of the middle", {80, 60}, {10, 10}, Sticky::AutoSide, Sticky::LeftSide},
            {"top left corner", {80, 60}, {5, 5}, Sticky::LeftSide, Sticky::LeftSide},
            {"top", {80, 60}, {40, 5}, Sticky::TopSide, Sticky::TopSide},
            {"bottom", {80, 60}, {40, 55}, Sticky::BottomSide, Sticky::BottomSide},
            {"all equally close", {60, 60}, {30, 30}, Sticky::AutoSide, Sticky::BottomSide},
            {"left and right", {40, 400}, {20, 200}, Sticky::AutoSide, Sticky::RightSide},
        };
        for (const auto &[name, size, point, edge, autoSide] : rows) {
            const Row in(name);
            note->setSize(size);
            QCOMPARE(note->getClosestEdge(point), edge);
            QCOMPARE(note->getConnectionPoint(Sticky::AutoSide, point),
                     note->getEdgeMidPoint(autoSide));
            note->setHighlightedEdge(autoSide); // its mark looks into the note
            const QLineF inwards(note->getEdgeMidPoint(autoSide), note->getRect().center());
            const QPointF tip = note->pos() + inwards.pointAt(10 / inwards.length());
            QCOMPARE(colorAt(scene, tip), QColor(Qt::red));
        }
    }

    void siblingsFollow()
    {
        FormSheet second(&sheet->program);
        Sticky *twin = second.addNote(noteInfo("{b}", note->getGeometry(), "text"));
        tie(note, twin);
        twin->addSibling("aField");
        const auto likeTwin = [twin](Sticky *other) {
            CanvasItemInfo info = other->getCanvasItemInfo();
            info.guid = twin->getGUID();
            info.siblings = twin->getSiblings();
            return describe(info);
        };
        for (int again = 0; again < 2; ++again)
            note->setText("new");
        const QList<QPair<QString, QString>> once = {{"aField", "new"}};
        QCOMPARE(second.formFields, once);
        note->setTextColor(Qt::red);
        note->setCustomBackgroundColor(Qt::blue);
        note->setTextAlignment(Qt::AlignLeft | Qt::AlignTop);
        note->setCustomFont(QFont("Arial", 20));
        note->setCausalFactorNumber(9);
        QCOMPARE(describe(twin->getCanvasItemInfo()), likeTwin(note));
        twin->setDefaultFont(QFont("Arial", 10));
        QCOMPARE(describe(twin->getCanvasItemInfo()), likeTwin(note));

        // Off its sheet it is forgotten; on its return it takes what it has missed.
        note->addSibling("loss");
        twin->notifySceneRemoval();
        QCOMPARE(note->getSiblings(), QStringList("loss"));
        note->setText("newest");
        note->setTextColor(Qt::green);
        note->setCustomFont(QFont("Arial", 30));
        twin->notifySceneAddition();
        QCOMPARE(note->getSiblings(), QStringList({"{b}", "loss"}));
        QCOMPARE(describe(twin->getCanvasItemInfo()), likeTwin(note));

        const QString before = describe(twin->getCanvasItemInfo());
        note->setPos(0, 0);
        note->setSize(QSizeF(200, 200));
        note->setRoleType("Condition");
        note->setNotRelevant(true);
        note->setBorderLineWidth(8);
        QCOMPARE(describe(twin->getCanvasItemInfo()), before);
    }

    void roles()
    {
        const std::tuple<const char *, const char *, int, bool, QStringList> rows[] = {
            {"x", "Condition", 60, false, {"{b}"}},
            {"", "Loss", 80, false, {"{b}", "loss"}},
            {"x", "Loss_Of_Control", 60, false, {"{b}", "lossOfControl"}},
            {"x", "Transfer", 80, false, {"{b}"}},
            {"x", "Causal_Factor", 60, true, {"{b}"}},
        };
        FormSheet plain(&sheet->program);
        for (const auto &[words, role, height, circled, siblings] : rows) {
            const Row in(role);
            Sticky *changed = plain.addNote(noteInfo("{c}", QRectF(0, 0, 80, 60), words));
            changed->addSibling("{b}");
            changed->setRoleType(role);
            QCOMPARE(changed->getRect().size(), QSizeF(80, height));
            QCOMPARE(changed->getText(), QString(words));
            QCOMPARE(changed->getSiblings(), siblings);
            QCOMPARE(childOf<CircledNumberItem>(changed)->isVisible(), circled);
            changed->setText(QString());
            changed->setRoleType("Transfer");
            QVERIFY(!plain.formFields.contains({"loss", "A"}));
            QCOMPARE(changed->getSiblings(), QStringList("{b}"));
        }
    }

    void causalFactors()
    {
        for (int number : {1, 2, 3})
            sheet->addFactor(number);
        QSignalSpy added(note, &Sticky::causalFactorAdded);
        QSignalSpy removed(note, &Sticky::causalFactorRemoved);
        note->notifySceneRemoval();
        note->notifySceneAddition();
        note->setRoleType("Causal_Factor");
        QCOMPARE(note->getCausalFactorNumber(), 4);
        DialogAnswer answer(numberChoice(9));
        connect(note, &Sticky::requestCausalFactorNumberChange, note,
                [this] { QVERIFY(!note->scene()->mouseGrabberItem()); }); // keys work again
        sheet->doubleClick(QPointF(176, 103));                            // on its circle
        QTRY_COMPARE(note->getCausalFactorNumber(), 9);
        for (const QString id : {"causalFactor_text_9", "causalFactor_text_2", "{b}"})
            note->addSibling(id);
        note->notifySceneRemoval();
        note->notifySceneAddition();
        QCOMPARE(added.size(), 2);
        note->setRoleType("Event");
        QCOMPARE(removed.size(), 2);
        QCOMPARE(note->getSiblings(), QStringList("{b}"));
    }

    void movesAndResizes()
    {
        QSignalSpy started(note, &BoxItem::moveStarted);
        QSignalSpy moved(note, &BoxItem::moved);
        sheet->press(QPointF(140, 150));
        sheet->move(QPointF(150, 150));
        sheet->move(QPointF(155, 159));
        QCOMPARE(started.size(), 1);
        QCOMPARE(moved.size(), 2);
        sheet->release(QPointF(155, 159));
        sheet->press(QPointF(199, 159));
        sheet->move(QPointF(235, 175));
        QCOMPARE(note->getGeometry(), QRectF(120, 100, 115, 75));
        QCOMPARE(moved.size(), 4);
        sheet->release(QPointF(235, 175));
        sheet->drag(QPointF(150, 170), QPointF(190, 170)); // the handle is let go
        QCOMPARE(note->getGeometry(), QRectF(160, 100, 120, 80));
    }

    void doubleClickEdits()
    {
        Sticky *twin = add("{b}", "text");
        twin->setPos(500, 500);
        tie(note, twin);
        QSignalSpy touched(note, &Sticky::textTouched);
        sheet->doubleClick(QPointF(140, 150));
        QVERIFY(note->isEditing() && text->hasFocus());
        QCOMPARE(text->textCursor().position(), 4);
        QCOMPARE(touched.size(), 0);
        type(Qt::Key_S, "s");
        type(Qt::Key_S, "s");
        QCOMPARE(touched.size(), 1);
        QCOMPARE(twin->getText(), QString("text"));

        sheet->doubleClick(QPointF(102, 102)); // beside the text
        QCOMPARE(text->textCursor().position(), 0);
        sheet->drag(QPointF(120, 150), QPointF(170, 150));
        QCOMPARE(note->pos(), QPointF(100, 100));
        note->setSelected(true);
        sheet->drag(QPointF(179, 159), QPointF(220, 200)); // its handles work meanwhile
        QCOMPARE(note->getGeometry(), QRectF(100, 100, 120, 100));
        QVERIFY(text->hasFocus());

        scene->finishEditing();
        QVERIFY(!note->isEditing() && !text->hasFocus());
        QCOMPARE(twin->getText(), QString("textss"));
        sheet->getStack()->undo();
        QCOMPARE(note->getText(), QString("text"));
    }

    void textUnderEditStaysInPlace()
    {
        sheet->doubleClick(QPointF(140, 150));
        const auto centre = [this] { return text->y() + text->boundingRect().height() * 0.5; };
        type(Qt::Key_Return, "\r");
        QTRY_COMPARE(centre(), 30.0);
        text->textCursor().insertText("as\nfrom\na menu");
        QVERIFY(centre() != 30.0);
        QTRY_COMPARE(centre(), 30.0);
    }

    void pastedTextIsPlain()
    {
        sheet->doubleClick(QPointF(140, 150));
        auto *mime = new QMimeData;
        mime->setText("bold");
        mime->setHtml("<b>bold</b><table><tr><td>cell</td></tr></table>");
        QGuiApplication::clipboard()->setMimeData(mime);
        type(Qt::Key_V, QString(), Qt::ControlModifier);
        QCOMPARE(text->toPlainText(), QString("textbold"));
        QVERIFY(!text->toHtml().contains("font-weight:600"));
    }

    void marksOnlyWhileEdited()
    {
        const auto hasMarks = [this] {
            return !text->document()->firstBlock().layout()->formats().isEmpty();
        };
        text->setPlainText("brigde open");
        sheet->doubleClick(QPointF(140, 150));
        QTRY_VERIFY(hasMarks());
        type(Qt::Key_A, QString(), Qt::ControlModifier);
        QVERIFY(text->textCursor().hasSelection());
        scene->finishEditing();
        QVERIFY(!hasMarks() && !text->textCursor().hasSelection());
        QVERIFY(text->textInteractionFlags() == Qt::NoTextInteraction);
    }

    void menuOfAWord()
    {
        const std::tuple<const char *, const char *, int, const char *> rows[] = {
            {"brigde open", "bridge", Qt::Key_Return, "bridge open"},
            {"brigde open", "bridge", Qt::Key_Escape, "brigde open"},
            {"xqzzvkwxqj open", "No suggestions", Qt::Key_Escape, "xqzzvkwxqj open"},
            {"bridge open", "Select All", Qt::Key_Escape, "bridge open"},
        };
        sheet->doubleClick(QPointF(140, 150));
        for (const auto &[before, entry, key, after] : rows) {
            const Row in(before);
            text->setPlainText(before);
            bool offered = false;
            DialogAnswer answer([&](QWidget *menu) {
                for (QAction *action : menu->actions()) {
                    if (!action->text().remove('&').startsWith(entry))
                        continue;
                    offered = true;
                    if (key == Qt::Key_Return)
                        qobject_cast<QMenu *>(menu)->setActiveAction(action);
                }
                QTest::keyClick(menu, Qt::Key(key));
                return true;
            });
            QGraphicsSceneContextMenuEvent event(QEvent::GraphicsSceneContextMenu);
            event.setPos(QPointF(12, 12));
            scene->sendEvent(text, &event);
            QTRY_VERIFY(answer.wasAsked());
            QVERIFY(offered);
            QCOMPARE(text->toPlainText(), QString(after));
        }
    }

private:
    template<typename T> static T *childOf(const QGraphicsItem *item)
    {
        for (QGraphicsItem *child : item->childItems()) {
            if (auto *found = dynamic_cast<T *>(child))
                return found;
        }
        return nullptr;
    }

    Sticky *add(const QString &guid, const QString &words = QString())
    {
        CanvasItemInfo info = noteInfo(guid, QRectF(100, 100, 80, 60), words);
        return qobject_cast<Sticky *>(sheet->add(info));
    }

    /// At 200 %.
    static QImage drawTwice(QGraphicsScene *drawn, const QRectF &area)
    {
        QImage image((area.size() * 2).toSize(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::white);
        QPainter painter(&image);
        drawn->render(&painter, image.rect(), area);
        return image;
    }

    static void tie(Sticky *a, Sticky *b)
    {
        a->addSibling(b);
        b->addSibling(a);
    }

    void type(int key, const QString &words, Qt::KeyboardModifiers modifiers = {})
    {
        QKeyEvent event(QEvent::KeyPress, key, modifiers, words);
        QApplication::sendEvent(scene, &event);
    }

    std::unique_ptr<Sheet> sheet;
    ProjectScene *scene = nullptr;
    Sticky *note = nullptr;
    NoteText *text = nullptr;
};

EXAMINER_TEST_MAIN(TestItems)
#include "testitems.moc"
