#include "chart/circlednumberitem.h"
#include "chart/notepicture.h"
#include "chart/notetext.h"
#include "testing/sheet.h"

#include <QClipboard>
#include <QGraphicsSceneContextMenuEvent>
#include <QMimeData>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

class TestNote : public QObject
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
    void cleanup() { sheet.reset(); }

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

    void marks()
    {
        note->setBorderLineWidth(6);
        QCOMPARE(colorAt(scene, QPointF(97, 97)), QColor(Qt::black)); // a whole corner
        note->setHighlightedEdge(Sticky::AutoSide);
        QCOMPARE(getMarks(), QString("left top right bottom "));
        sheet->program.tool = ConnectorTool;
        sheet->move(QPointF(140, 105), Qt::NoButton);
        QCOMPARE(getMarks(), QString("top "));
        sheet->move(QPointF(300, 300), Qt::NoButton);
        QCOMPARE(getMarks(), QString());
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
        }
    }

    void textReachesSiblingsOnce()
    {
        FakeSheet second(&sheet->program, "{a}");
        Sticky *twin = second.addNote(noteInfo("{b}", QRectF(0, 0, 80, 60), "text"));
        tie(note, twin);
        twin->addSibling("aField");
        note->setText("new");
        note->setText("new");
        const QList<QPair<QString, QString>> once = {{"aField", "new"}};
        QCOMPARE(second.formFields, once);
    }

    void siblingsFollow()
    {
        Sticky *twin = add("{b}");
        tie(note, twin);
        const auto likeTwin = [twin](Sticky *other) {
            CanvasItemInfo info = other->getCanvasItemInfo();
            info.guid = twin->getGUID();
            info.siblings = twin->getSiblings();
            return describe(info);
        };
        note->setText("new");
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
        FakeSheet plain(&sheet->program);
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
        sheet->doubleClick(QPointF(176, 103)); // on its circle
        QTRY_VERIFY(answer.wasAsked());
        QCOMPARE(note->getCausalFactorNumber(), 9);
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
        QCOMPARE(note->pos(), QPointF(120, 100));

        sheet->press(QPointF(199, 159));
        moved.clear();
        sheet->move(QPointF(235, 175));
        QCOMPARE(note->getGeometry(), QRectF(120, 100, 115, 75));
        QVERIFY(!moved.isEmpty());
        sheet->release(QPointF(235, 175));
        QCOMPARE(note->getGeometry(), QRectF(120, 100, 120, 80));
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

    static void tie(Sticky *a, Sticky *b)
    {
        a->addSibling(b);
        b->addSibling(a);
    }

    /// Their points look into the note.
    QString getMarks() const
    {
        const QPair<const char *, QPointF> points[] = {{"left ", {110, 130}},
                                                       {"top ", {140, 110}},
                                                       {"right ", {170, 130}},
                                                       {"bottom ", {140, 150}}};
        QString marks;
        for (const auto &[side, tip] : points)
            marks += colorAt(scene, tip) == QColor(Qt::red) ? side : "";
        return marks;
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

EXAMINER_TEST_MAIN(TestNote)
#include "testnote.moc"
