#include "chart/circlednumberitem.h"
#include "chart/notepicture.h"
#include "chart/notetext.h"
#include "testing/fakes.h"
#include "testing/records.h"
#include "testing/rows.h"
#include "testing/testmain.h"

#include <QClipboard>
#include <QGraphicsSceneHoverEvent>
#include <QMimeData>
#include <QSignalSpy>
#include <QTextCursor>
#include <QTextDocument>

class TestNote : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        host = std::make_unique<FakeHost>();
        sheet = std::make_unique<FakeSheet>(host.get());
        QEvent activation(QEvent::WindowActivate);
        QApplication::sendEvent(sheet.get(), &activation);
        note = add("{a}", "text");
        text = childOf<NoteText>(note);
    }
    void cleanup() { sheet.reset(); }

    void recordComesBack()
    {
        CanvasItemInfo info = noteInfo("{b}", QRectF(40, 60, 120, 80), "a pump", "Causal_Factor");
        info.customFont = true;
        info.font = QFont("Arial", 14, QFont::Bold);
        info.textColor = Qt::blue;
        info.backgroundColor = Qt::green;
        info.textAlignment = Qt::AlignLeft | Qt::AlignTop;
        info.borderLineWidth = 4;
        info.causalFactorNumber = 7;
        info.siblings = QStringList{"{c}", "causalFactor_text_7"};
        info.notRelevant = true;
        info.endPoint = QPointF(160, 140);
        info.parent = "{owner}";
        sheet->owner = "{owner}";
        QCOMPARE(describe(sheet->addNote(info)->getCanvasItemInfo()), describe(info));
        info.image = QPixmap(8, 4);
        info.type = ImageTool;
        QCOMPARE(describe(sheet->addNote(info)->getCanvasItemInfo()), describe(info));
        QCOMPARE(add("{d}")->getText(), QString()); // shows its placeholder
    }

    void textPlaces()
    {
        const struct {
            const char *name, *role;
            int height, left, top; // -1: centred
        } rows[] = {
            {"rectangle", "Event", 60, 7, 7},
            {"oval", "Condition", 60, 12, 10},
            {"marker", "Event", 20, 7, -1},
        };
        for (const auto &row : rows) {
            const Row in(row.name);
            CanvasItemInfo info = noteInfo("{b}", QRectF(0, 0, 80, row.height), "pump", row.role);
            info.textAlignment = Qt::AlignLeft | Qt::AlignTop;
            info.borderLineWidth = 10;
            const auto *place = childOf<NoteText>(sheet->addNote(info));
            QTRY_COMPARE(place->textWidth(), 80.0 - 2 * row.left);
            const qreal centred = (row.height - place->boundingRect().height()) * 0.5;
            QCOMPARE(place->pos(), QPointF(row.left, row.top < 0 ? centred : row.top));
        }
    }

    void picturesFillTheSpaceAboveTheText()
    {
        CanvasItemInfo info = noteInfo("{image}", QRectF(0, 0, 204, 200), "the pump");
        info.image = QPixmap(800, 400);
        Sticky *imageNote = sheet->addNote(info);
        imageNote->relayout();
        const auto *picture = childOf<NotePicture>(imageNote);
        QCOMPARE(picture->pixmap().size(), QSize(200, 100));
        QCOMPARE(picture->pos(), QPointF(2, 2));
        imageNote->setSize(QSizeF(100, 20)); // no space is left
        QVERIFY(picture->pixmap().isNull());
        imageNote->setSize(QSizeF(10004, 10000)); // the view enlarges
        QCOMPARE(picture->pixmap().size(), QSize(800, 400));
        QCOMPARE(picture->getSize(), QSizeF(10000, 5000));
    }

    void looks()
    {
        note->setBorderLineWidth(6);
        QCOMPARE(colorAt(sheet.get(), QPointF(97, 97)),
                 QColor(Qt::black)); // a whole corner
        note->setHighlightedEdge(Sticky::AutoSide);
        // The marks' points look into the note.
        for (const QPointF &tip : {QPointF(110, 130), {140, 110}, {170, 130}, {140, 150}})
            QCOMPARE(colorAt(sheet.get(), tip), QColor(Qt::red));
    }

    void edges()
    {
        const struct {
            const char *name;
            QSizeF size;
            QPointF point;
            Sticky::Side edge, autoSide;
        } rows[] = {
            {"edge of the middle", {80, 60}, {10, 10}, Sticky::AutoSide, Sticky::LeftSide},
            {"top left corner", {80, 60}, {5, 5}, Sticky::LeftSide, Sticky::LeftSide},
            {"top", {80, 60}, {40, 5}, Sticky::TopSide, Sticky::TopSide},
            {"bottom", {80, 60}, {40, 55}, Sticky::BottomSide, Sticky::BottomSide},
            {"all equally close", {60, 60}, {30, 30}, Sticky::AutoSide, Sticky::BottomSide},
            {"left and right", {40, 400}, {20, 200}, Sticky::AutoSide, Sticky::RightSide},
        };
        for (const auto &row : rows) {
            const Row in(row.name);
            note->setSize(row.size);
            QCOMPARE(note->getClosestEdge(row.point), row.edge);
            QCOMPARE(note->getConnectionPoint(Sticky::AutoSide, row.point),
                     note->getEdgeMidPoint(row.autoSide));
        }
    }

    void textReachesSiblingsOnce()
    {
        FakeSheet second(host.get(), "{a}");
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
        const struct {
            const char *text, *role, *newText;
            int height;
            bool circled;
            QStringList siblings;
        } rows[] = {
            {"x", "Condition", "x", 60, false, {"{b}"}},
            {"", "Loss", "", 80, false, {"{b}", "loss"}},
            {"x", "Loss_Of_Control", "x", 60, false, {"{b}", "lossOfControl"}},
            {"x", "Transfer", "x", 80, false, {"{b}"}},
            {"x", "Causal_Factor", "x", 60, true, {"{b}"}},
        };
        for (const auto &row : rows) {
            const Row in(row.role);
            Sticky *changed = add("{c}", row.text);
            changed->addSibling("{b}");
            changed->setRoleType(row.role);
            QCOMPARE(changed->getRect().size(), QSizeF(80, row.height));
            QCOMPARE(changed->getText(), QString(row.newText));
            QCOMPARE(changed->getSiblings(), row.siblings);
            QCOMPARE(childOf<CircledNumberItem>(changed)->isVisible(), row.circled);
            changed->setText(QString());
            changed->setRoleType("Transfer");
            QVERIFY(!sheet->formFields.contains({"loss", "A"}));
            QCOMPARE(changed->getSiblings(), QStringList("{b}"));
        }
    }

    void causalFactors()
    {
        QSignalSpy asked(note, &Sticky::requestCausalFactorNumberChange);
        sheet->firstUnusedNumber = 4;
        QSignalSpy added(note, &Sticky::causalFactorAdded);
        QSignalSpy removed(note, &Sticky::causalFactorRemoved);
        note->notifySceneRemoval();
        note->notifySceneAddition();
        note->setRoleType("Causal_Factor");
        QCOMPARE(note->getCausalFactorNumber(), 4);
        doubleClick(sheet.get(), QPointF(176, 103)); // on the circle
        sheet->owner = "{owner}";
        doubleClick(sheet.get(), QPointF(176, 103));
        QVERIFY(asked.size() == 1 && !note->isEditing());
        for (const QString id : {"causalFactor_text_4", "causalFactor_text_2", "{b}"})
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
        QSignalSpy finished(note, &BoxItem::moveFinished);
        QSignalSpy moved(note, &BoxItem::moved);
        press(sheet.get(), QPointF(140, 150));
        moveTo(sheet.get(), QPointF(150, 150));
        moveTo(sheet.get(), QPointF(155, 159));
        QCOMPARE(started.size(), 1);
        QCOMPARE(moved.size(), 2);
        release(sheet.get(), QPointF(155, 159));
        QCOMPARE(note->pos(), QPointF(120, 100));
        QCOMPARE(finished.last().at(1).toRectF(), QRectF(100, 100, 80, 60));

        press(sheet.get(), QPointF(199, 159));
        moved.clear();
        moveTo(sheet.get(), QPointF(235, 175));
        QCOMPARE(note->getGeometry(), QRectF(120, 100, 115, 75));
        QVERIFY(!moved.isEmpty());
        QCOMPARE(sheet->highlighted, QList<Sticky *>({note}));
        release(sheet.get(), QPointF(235, 175));
        QCOMPARE(note->getGeometry(), QRectF(120, 100, 120, 80));
        drag(sheet.get(), QPointF(150, 170), QPointF(190, 170)); // the handle is let go
        QCOMPARE(note->getGeometry(), QRectF(160, 100, 120, 80));
    }

    void doubleClickEdits()
    {
        note->addSibling("field");
        QSignalSpy touched(note, &Sticky::textTouched);
        QSignalSpy edited(note, &Sticky::textEdited);
        doubleClick(sheet.get(), QPointF(140, 150));
        QVERIFY(note->isEditing() && text->hasFocus());
        QCOMPARE(text->textCursor().position(), 4);
        QCOMPARE(touched.size(), 0);
        type(Qt::Key_S, "s");
        type(Qt::Key_S, "s");
        QCOMPARE(touched.size(), 1);
        QVERIFY(sheet->formFields.isEmpty());

        doubleClick(sheet.get(), QPointF(102, 102)); // beside the text
        QCOMPARE(text->textCursor().position(), 0);
        drag(sheet.get(), QPointF(120, 150), QPointF(170, 150));
        QCOMPARE(note->pos(), QPointF(100, 100));
        note->setSelected(true);
        drag(sheet.get(), QPointF(179, 159), QPointF(220, 200)); // its handles work meanwhile
        QCOMPARE(note->getGeometry(), QRectF(100, 100, 120, 100));
        QVERIFY(text->hasFocus());

        note->finishEditing();
        QVERIFY(!note->isEditing() && !text->hasFocus());
        QCOMPARE(edited.size(), 1);
        QCOMPARE(edited.first().at(1).toString(), QString("text"));
        QCOMPARE(edited.first().at(2).toString(), QString("textss"));
        const QList<QPair<QString, QString>> fields = {{"field", "textss"}};
        QCOMPARE(sheet->formFields, fields);
    }

    void textUnderEditStaysInPlace()
    {
        doubleClick(sheet.get(), QPointF(140, 150));
        const auto centre = [this] { return text->y() + text->boundingRect().height() * 0.5; };
        type(Qt::Key_Return, "\r");
        QTRY_COMPARE(centre(), 30.0);
        text->textCursor().insertText("as\nfrom\na menu");
        QVERIFY(centre() != 30.0);
        QTRY_COMPARE(centre(), 30.0);
    }

    void pastedTextIsPlain()
    {
        doubleClick(sheet.get(), QPointF(140, 150));
        auto *mime = new QMimeData;
        mime->setText("bold");
        mime->setHtml("<b>bold</b><table><tr><td>cell</td></tr></table>");
        QGuiApplication::clipboard()->setMimeData(mime);
        QKeyEvent paste(QEvent::KeyPress, Qt::Key_V, Qt::ControlModifier);
        QApplication::sendEvent(sheet.get(), &paste);
        QCOMPARE(text->toPlainText(), QString("textbold"));
        QVERIFY(!text->toHtml().contains("font-weight:600"));
    }

    void hoverWithALineTool()
    {
        host->tool = ConnectorTool;
        QGraphicsSceneHoverEvent move(QEvent::GraphicsSceneHoverMove);
        move.setPos(QPointF(40, 5));
        sheet->sendEvent(note, &move);
        QCOMPARE(colorAt(sheet.get(), QPointF(140, 110)), QColor(Qt::red));
        QCOMPARE(sheet->lineDrags.size(), 1);
        QGraphicsSceneHoverEvent leave(QEvent::GraphicsSceneHoverLeave);
        sheet->sendEvent(note, &leave);
        QVERIFY(colorAt(sheet.get(), QPointF(140, 110)) != QColor(Qt::red));
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
        return sheet->addNote(noteInfo(guid, QRectF(100, 100, 80, 60), words));
    }

    static void tie(Sticky *a, Sticky *b)
    {
        a->addSibling(b);
        b->addSibling(a);
    }

    void type(int key, const QString &words)
    {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, words);
        QApplication::sendEvent(sheet.get(), &event);
    }

    std::unique_ptr<FakeHost> host;
    std::unique_ptr<FakeSheet> sheet;
    Sticky *note = nullptr;
    NoteText *text = nullptr;
};

EXAMINER_TEST_MAIN(TestNote)
#include "testnote.moc"
