#include "chart/circlednumberitem.h"
#include "chart/crosslines.h"
#include "chart/notetext.h"
#include "chart/workingdropshadow.h"
#include "support/fonts.h"
#include "testing/fakes.h"
#include "testing/testmain.h"

#include <QGraphicsPixmapItem>
#include <QSettings>
#include <QSignalSpy>
#include <QTextDocument>

template<typename T> T *childOf(const QGraphicsItem *item)
{
    for (QGraphicsItem *child : item->childItems()) {
        if (auto *found = dynamic_cast<T *>(child))
            return found;
    }
    return nullptr;
}

class TestSticky : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void recordComesBackAsItWent();
    void placeholder();
    void fonts();
    void pictureMakesAnImageNote();
    void pictureFillsTheSpaceAboveTheText();
    void smallPictureIsEnlarged();
    void textPlace_data();
    void textPlace();
    void bounds();
    void stacking();
    void notRelevant();
    void shadow();
    void letters();

    void fills_data();
    void fills();
    void selectedNotesAreRed();
    void highlightedEdge();

    void closestEdge_data();
    void closestEdge();
    void autoSide_data();
    void autoSide();
    void connectionPoints();

    void textReachesSiblingsOnce();
    void siblingsFollow();
    void localValuesStayLocal();
    void formFieldsFollowTheText();
    void siblingList();
    void rolesChange_data();
    void rolesChange();
    void causalFactors();
    void linksOfRoles();
    void deletion();

private:
    Sticky *addNote(const QString &guid = "{a}", const QString &text = QString(),
                    const QString &role = "Event")
    {
        return sheet->addNote(noteInfo(guid, QRectF(100, 100, 80, 60), text, role));
    }

    std::unique_ptr<FakeHost> host;
    std::unique_ptr<FakeSheet> sheet;
};

void TestSticky::init()
{
    QSettings().clear();
    host = std::make_unique<FakeHost>();
    sheet = std::make_unique<FakeSheet>(host.get());
}

void TestSticky::cleanup()
{
    sheet.reset();
}

void TestSticky::recordComesBackAsItWent()
{
    CanvasItemInfo info =
        noteInfo("{a}", QRectF(40, 60, 120, 80), "a pump failed", "Causal_Factor");
    info.type = 1;
    info.customFont = true;
    info.font = QFont("Arial", 14, QFont::Bold);
    info.textColor = Qt::blue;
    info.backgroundColor = Qt::green;
    info.textAlignment = Qt::AlignLeft | Qt::AlignTop;
    info.borderLineWidth = 4;
    info.causalFactorNumber = 7;
    info.siblings = QStringList{"{b}", "causalFactor_text_7"};
    info.notRelevant = true;
    sheet->owner = "{owner}";

    const CanvasItemInfo out = sheet->addNote(info)->getCanvasItemInfo();
    QCOMPARE(out.type, 3);
    QCOMPARE(out.guid, info.guid);
    QCOMPARE(out.startPoint, QPointF(40, 60));
    QCOMPARE(out.size, QSizeF(120, 80));
    QCOMPARE(out.endPoint, QPointF(160, 140));
    QCOMPARE(out.text, info.text);
    QCOMPARE(out.role.getTypeName(), QString("Causal_Factor"));
    QVERIFY(out.customFont);
    QCOMPARE(out.font, info.font);
    QCOMPARE(out.textColor, info.textColor);
    QCOMPARE(out.backgroundColor, info.backgroundColor);
    QCOMPARE(out.textAlignment, info.textAlignment);
    QCOMPARE(out.borderLineWidth, 4);
    QCOMPARE(out.causalFactorNumber, 7);
    QCOMPARE(out.siblings, info.siblings);
    QCOMPARE(out.parent, QString("{owner}"));
    QVERIFY(out.notRelevant);
}

void TestSticky::placeholder()
{
    Sticky *note = addNote();
    QCOMPARE(childOf<NoteText>(note)->toPlainText(), QString("Double click to edit text"));
    QCOMPARE(note->getText(), QString());
    QCOMPARE(note->getCanvasItemInfo().text, QString());
    note->setText("Double click to edit text.");
    QCOMPARE(note->getText(), QString("Double click to edit text."));
    note->setText(QString());
    QCOMPARE(childOf<NoteText>(note)->toPlainText(), QString());
}

void TestSticky::fonts()
{
    const QFont standard("Arial", 12, QFont::Bold);
    QSettings().setValue("font", encodeFont(standard));
    Sticky *note = addNote();
    QCOMPARE(note->getFont(), standard);

    const QFont own("Arial", 20);
    QVERIFY(note->setProperty(Sticky::PROPERTY_CUSTOM_FONT, own));
    QCOMPARE(note->getFont(), own);
    QVERIFY(note->getRecord().customFont);
    note->setDefaultFont(standard);
    QVERIFY(!note->getRecord().customFont);
    QCOMPARE(note->getPropertyLabel(Sticky::PROPERTY_CUSTOM_FONT), QString("change font"));
    QCOMPARE(note->getPropertyLabel(ProjectItem::PROPERTY_LINE_WIDTH),
             QString("change line thickness"));

    QSettings().remove("font");
    QCOMPARE(addNote("{b}")->getFont(), QFont("Arial", 8, QFont::Normal));
}

void TestSticky::pictureMakesAnImageNote()
{
    QVERIFY(!childOf<QGraphicsPixmapItem>(addNote("{plain}")));

    CanvasItemInfo info = noteInfo("{image}", QRectF(0, 0, 200, 200), "the pump");
    info.image = QPixmap(800, 400);
    info.image.fill(Qt::red);
    Sticky *note = sheet->addNote(info);
    QCOMPARE(note->getCanvasItemInfo().type, 4);
    QCOMPARE(note->getCanvasItemInfo().image.size(), QSize(800, 400));
    QCOMPARE(childOf<QGraphicsPixmapItem>(note)->toolTip(),
             QString("Double click to show large image"));
}

void TestSticky::pictureFillsTheSpaceAboveTheText()
{
    CanvasItemInfo info = noteInfo("{image}", QRectF(0, 0, 204, 200), "the pump");
    info.image = QPixmap(800, 400);
    Sticky *note = sheet->addNote(info);
    note->relayout();
    const auto *picture = childOf<QGraphicsPixmapItem>(note);
    const auto *text = childOf<NoteText>(note);
    QCOMPARE(picture->pixmap().size(), QSize(200, 100));
    QCOMPARE(picture->pos(), QPointF(2, 2));
    QCOMPARE(text->y() + text->boundingRect().height(), 198.0);

    note->setSize(QSizeF(404, 80));
    const int height = picture->pixmap().height();
    QCOMPARE(height, int(text->y() - 5));
    QCOMPARE(picture->x(), 2 + (400 - picture->pixmap().width()) * 0.5);

    note->setSize(QSizeF(100, 20)); // no space is left
    QVERIFY(picture->pixmap().isNull());
}

void TestSticky::smallPictureIsEnlarged()
{
    CanvasItemInfo info = noteInfo("{image}", QRectF(0, 0, 100000, 100000), "x");
    info.image = QPixmap(20, 10);
    const auto *picture = childOf<QGraphicsPixmapItem>(sheet->addNote(info));
    QCOMPARE(picture->pixmap().size(), QSize(20, 10));
    QCOMPARE(picture->mapRectToParent(picture->boundingRect()), QRectF(2, 2, 99996, 49998));
}

void TestSticky::textPlace_data()
{
    QTest::addColumn<QString>("role");
    QTest::addColumn<int>("vertical");
    QTest::addColumn<int>("height");
    QTest::addColumn<int>("border");
    QTest::addColumn<int>("left");
    QTest::addColumn<int>("top"); // -1: centred

    QTest::newRow("centred") << "Event" << int(Qt::AlignVCenter) << 60 << 0 << 2 << -1;
    QTest::newRow("at the top") << "Event" << int(Qt::AlignTop) << 60 << 0 << 2 << 2;
    QTest::newRow("thick border") << "Event" << int(Qt::AlignTop) << 60 << 10 << 7 << 7;
    QTest::newRow("oval") << "Condition" << int(Qt::AlignTop) << 60 << 0 << 7 << 5;
    QTest::newRow("marker") << "Event" << int(Qt::AlignTop) << 20 << 0 << 2 << -1;
    QTest::newRow("just above a marker") << "Event" << int(Qt::AlignTop) << 21 << 0 << 2 << 2;
}

void TestSticky::textPlace()
{
    QFETCH(QString, role);
    QFETCH(int, vertical);
    QFETCH(int, height);
    QFETCH(int, border);
    QFETCH(int, left);
    QFETCH(int, top);

    CanvasItemInfo info = noteInfo("{a}", QRectF(0, 0, 80, height), "pump", role);
    info.textAlignment = Qt::AlignLeft | Qt::Alignment(vertical);
    info.borderLineWidth = border;
    Sticky *note = sheet->addNote(info);
    note->relayout();
    const auto *text = childOf<NoteText>(note);
    QCOMPARE(text->textWidth(), 80.0 - 2 * left);
    const qreal centred = (height - text->boundingRect().height()) * 0.5;
    QCOMPARE(text->pos(), QPointF(left, top < 0 ? centred : top));
}

void TestSticky::bounds()
{
    Sticky *note = addNote();
    QCOMPARE(note->boundingRect(), QRectF(0, 0, 80, 60));
    note->setBorderLineWidth(5);
    QCOMPARE(note->boundingRect(), QRectF(-2.5, -2.5, 85, 65));

    QSignalSpy moved(note, &BoxItem::moved);
    note->setSize(QSizeF(100, 40));
    note->setPos(20, 20);
    QCOMPARE(note->getGeometry(), QRectF(20, 20, 100, 40));
    QCOMPARE(moved.size(), 2);
    QCOMPARE(childOf<CircledNumberItem>(note)->pos(), QPointF(86.68, -6.66));
}

void TestSticky::stacking()
{
    Sticky *note = addNote();
    QSignalSpy selection(note, &ProjectItem::selectionChanged);
    QCOMPARE(note->zValue(), 2.0);
    note->setSelected(true);
    QCOMPARE(note->zValue(), 6.0);
    note->setSelected(false);
    QCOMPARE(note->zValue(), 2.0);
    QCOMPARE(selection.size(), 2);
}

void TestSticky::notRelevant()
{
    Sticky *note = addNote();
    QVERIFY(!childOf<QGraphicsLineItem>(note));
    QVERIFY(note->setProperty(Sticky::PROPERTY_NOT_RELEVANT, true));
    auto *line = childOf<QGraphicsLineItem>(note);
    QVERIFY(line && line->isVisible());
    QCOMPARE(line->line(), QLineF(5, -5, 75, 65));
    note->setSize(QSizeF(100, 100));
    QCOMPARE(line->line(), QLineF(5, -5, 95, 105));
    note->setNotRelevant(false);
    QVERIFY(!line->isVisible());
}

void TestSticky::shadow()
{
    Sticky *note = addNote();
    QVERIFY(!note->graphicsEffect() || !note->graphicsEffect()->isEnabled());
    sheet->zoom = 50;
    note->setShadow(true);
    auto *effect = qobject_cast<WorkingDropShadow *>(note->graphicsEffect());
    QVERIFY(effect && effect->isEnabled());
    QCOMPARE(effect->offset(), QPointF(3, 3));
    sheet->zoom = 0; // no view
    note->setShadow(true);
    QCOMPARE(effect->offset(), QPointF(3, 3));
    note->setShadow(false);
    QVERIFY(!effect->isEnabled());
}

void TestSticky::letters()
{
    CircledNumberItem circle(nullptr);
    circle.setNumber(12);
    QCOMPARE(circle.getString(), QString("12"));
    circle.setNumberingMode(CircledNumberItem::Letters);
    circle.setNumber(1);
    QCOMPARE(circle.getString(), QString("A"));
    circle.setNumber(0);
    QCOMPARE(circle.getString(), QString("@"));
    circle.setNumberingMode(CircledNumberItem::NoNumber);
    QCOMPARE(circle.getString(), QString());
}

void TestSticky::fills_data()
{
    QTest::addColumn<QString>("role");
    QTest::addColumn<QColor>("custom");
    QTest::addColumn<QColor>("middle");
    QTest::addColumn<QColor>("corner"); // a bit inside the box

    const QColor yellow(255, 255, 224);
    QTest::newRow("rectangle") << "Event" << QColor() << yellow << yellow;
    QTest::newRow("own colour") << "Event" << QColor(Qt::cyan) << QColor(Qt::cyan)
                                << QColor(Qt::cyan);
    QTest::newRow("oval") << "Sequence_Marker" << QColor() << QColor("#F6C47A")
                          << QColor(Qt::white);
    QTest::newRow("plate") << "Transfer" << QColor(Qt::cyan) << QColor(Qt::cyan)
                           << QColor(Qt::white);
    QTest::newRow("ellipse") << "Loss" << QColor(Qt::cyan) << QColor(Qt::cyan) << QColor(Qt::white);
}

void TestSticky::fills()
{
    QFETCH(QString, role);
    QFETCH(QColor, custom);
    QFETCH(QColor, middle);
    QFETCH(QColor, corner);

    CanvasItemInfo info = noteInfo("{a}", QRectF(100, 100, 80, 60), "x", role);
    info.backgroundColor = custom;
    info.textAlignment = Qt::AlignLeft | Qt::AlignTop;
    sheet->addNote(info);
    QCOMPARE(colorAt(sheet.get(), QPointF(140, 135)), middle);
    QCOMPARE(colorAt(sheet.get(), QPointF(103, 157)), corner);
}

void TestSticky::selectedNotesAreRed()
{
    CanvasItemInfo info = noteInfo("{a}", QRectF(100, 100, 80, 60), "x");
    info.borderLineWidth = 6;
    Sticky *note = sheet->addNote(info);
    QCOMPARE(colorAt(sheet.get(), QPointF(130, 101)), QColor(Qt::black));
    note->setSelected(true);
    QCOMPARE(colorAt(sheet.get(), QPointF(130, 101)), QColor(Qt::red));
    QCOMPARE(colorAt(sheet.get(), QPointF(130, 106)), QColor(255, 255, 224));
}

void TestSticky::highlightedEdge()
{
    Sticky *note = addNote();
    note->setHighlightedEdge(Sticky::AutoSide);
    // The outline of each mark, where its point looks into the note.
    const QList<QPointF> tips = {{110, 130}, {140, 110}, {170, 130}, {140, 150}};
    for (const QPointF &tip : tips)
        QCOMPARE(colorAt(sheet.get(), tip), QColor(Qt::red));
    note->setHighlightedEdge(Sticky::TopSide);
    QVERIFY(colorAt(sheet.get(), tips.at(0)) != QColor(Qt::red));
    QCOMPARE(colorAt(sheet.get(), tips.at(1)), QColor(Qt::red));
}

void TestSticky::closestEdge_data()
{
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<int>("height");
    QTest::addColumn<int>("edge");

    QTest::newRow("middle") << QPointF(40, 30) << 60 << int(Sticky::AutoSide);
    QTest::newRow("edge of the middle") << QPointF(10, 10) << 60 << int(Sticky::AutoSide);
    QTest::newRow("top left corner") << QPointF(5, 5) << 60 << int(Sticky::LeftSide);
    QTest::newRow("bottom right corner") << QPointF(75, 55) << 60 << int(Sticky::RightSide);
    QTest::newRow("top") << QPointF(40, 5) << 60 << int(Sticky::TopSide);
    QTest::newRow("bottom") << QPointF(40, 55) << 60 << int(Sticky::BottomSide);
    QTest::newRow("outside") << QPointF(-50, 30) << 60 << int(Sticky::LeftSide);
    QTest::newRow("flat note") << QPointF(40, 10) << 20 << int(Sticky::NoSide);
    QTest::newRow("flat note, lower half") << QPointF(40, 11) << 20 << int(Sticky::BottomSide);
}

void TestSticky::closestEdge()
{
    QFETCH(QPointF, point);
    QFETCH(int, height);
    QFETCH(int, edge);

    Sticky *note = sheet->addNote(noteInfo("{a}", QRectF(0, 0, 80, height)));
    QCOMPARE(int(note->getClosestEdge(point)), edge);
    QCOMPARE(int(note->updateLineConnection(point)), edge);
}

void TestSticky::autoSide_data()
{
    QTest::addColumn<QSizeF>("size");
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<int>("side");

    const QSizeF square(60, 60);
    QTest::newRow("all equal") << square << QPointF(30, 30) << int(Sticky::BottomSide);
    QTest::newRow("top and right") << square << QPointF(90, -30) << int(Sticky::TopSide);
    QTest::newRow("left and top") << square << QPointF(-30, -30) << int(Sticky::TopSide);
    QTest::newRow("left and right")
        << QSizeF(40, 400) << QPointF(20, 200) << int(Sticky::RightSide);
    QTest::newRow("left and bottom") << square << QPointF(-30, 90) << int(Sticky::BottomSide);
    QTest::newRow("far left") << square << QPointF(-300, 35) << int(Sticky::LeftSide);
    QTest::newRow("far above") << square << QPointF(35, -300) << int(Sticky::TopSide);
}

void TestSticky::autoSide()
{
    QFETCH(QSizeF, size);
    QFETCH(QPointF, point);
    QFETCH(int, side);

    Sticky *note = sheet->addNote(noteInfo("{a}", QRectF(QPointF(), size)));
    QCOMPARE(int(note->resolveAutoSide(point)), side);
    QCOMPARE(note->getConnectionPoint(Sticky::AutoSide, point),
             note->getEdgeMidPoint(Sticky::Side(side)));
}

void TestSticky::connectionPoints()
{
    Sticky *note = addNote();
    QCOMPARE(note->getEdgeMidPoint(Sticky::LeftSide), QPointF(0, 30));
    QCOMPARE(note->getEdgeMidPoint(Sticky::TopSide), QPointF(40, 0));
    QCOMPARE(note->getEdgeMidPoint(Sticky::RightSide), QPointF(80, 30));
    QCOMPARE(note->getEdgeMidPoint(Sticky::BottomSide), QPointF(40, 60));
    QCOMPARE(note->getEdgeMidPoint(Sticky::NoSide), QPointF());
    QCOMPARE(note->getConnectionPoint(Sticky::LeftSide, QPointF(500, 0)), QPointF(0, 30));
}

void TestSticky::textReachesSiblingsOnce()
{
    FakeSheet second(host.get(), "{a}");
    Sticky *note = addNote("{a}", "old");
    Sticky *twin = second.addNote(noteInfo("{b}", QRectF(0, 0, 80, 60), "old"));
    note->addSibling(twin);
    twin->addSibling(note);
    twin->addSibling("aField");

    note->setText("new");
    QCOMPARE(twin->getText(), QString("new"));
    QCOMPARE(second.formFields.size(), 1);
    note->setText("new");
    QCOMPARE(second.formFields.size(), 1);
    twin->setText("newest");
    QCOMPARE(note->getText(), QString("newest"));
}

void TestSticky::siblingsFollow()
{
    Sticky *note = addNote("{a}");
    Sticky *twin = addNote("{b}");
    note->addSibling(twin);
    twin->addSibling(note);

    note->setTextColor(Qt::red);
    note->setCustomBackgroundColor(Qt::blue);
    note->setTextAlignment(Qt::AlignLeft | Qt::AlignTop);
    note->setCustomFont(QFont("Arial", 20));
    note->setCausalFactorNumber(9);
    const CanvasItemInfo info = twin->getCanvasItemInfo();
    QCOMPARE(info.textColor, QColor(Qt::red));
    QCOMPARE(childOf<NoteText>(twin)->defaultTextColor(), QColor(Qt::red));
    QCOMPARE(info.backgroundColor, QColor(Qt::blue));
    QCOMPARE(info.textAlignment, Qt::AlignLeft | Qt::AlignTop);
    QCOMPARE(info.font, QFont("Arial", 20));
    QVERIFY(info.customFont);
    QCOMPARE(info.causalFactorNumber, 9);

    twin->setDefaultFont(QFont("Arial", 10));
    QCOMPARE(note->getFont(), QFont("Arial", 10));
    QVERIFY(!note->getRecord().customFont);
    twin->setTextColor(QColor());
    QCOMPARE(childOf<NoteText>(note)->defaultTextColor(), QColor(Qt::black));
}

void TestSticky::localValuesStayLocal()
{
    Sticky *note = addNote("{a}");
    Sticky *twin = addNote("{b}");
    note->addSibling(twin);
    note->setPos(0, 0);
    note->setSize(QSizeF(200, 200));
    note->setRoleType("Condition");
    note->setNotRelevant(true);
    note->setBorderLineWidth(8);
    const CanvasItemInfo info = twin->getCanvasItemInfo();
    QCOMPARE(info.startPoint, QPointF(100, 100));
    QCOMPARE(info.size, QSizeF(80, 60));
    QCOMPARE(info.role.getTypeName(), QString("Event"));
    QVERIFY(!info.notRelevant);
    QCOMPARE(info.borderLineWidth, 0);
}

void TestSticky::formFieldsFollowTheText()
{
    Sticky *note = addNote("{a}", "text");
    note->addSibling("loss");
    note->addSibling("{gone}");
    note->setText("other");
    const QList<QPair<QString, QString>> expected = {{"loss", "other"}, {"{gone}", "other"}};
    QCOMPARE(sheet->formFields, expected);
}

void TestSticky::siblingList()
{
    Sticky *note = addNote("{a}");
    Sticky *twin = addNote("{b}");
    note->addSibling(twin);
    note->addSibling(twin);
    note->addSibling(static_cast<Sticky *>(nullptr));
    note->addSibling("loss");
    note->addSibling("loss");
    QCOMPARE(note->getSiblings(), QStringList({"{b}", "loss"}));
    note->removeSibling("unknown");
    QCOMPARE(note->getSiblings(), QStringList({"{b}", "loss"}));
    delete twin;
    QCOMPARE(note->getSiblings(), QStringList("loss"));
    note->removeSibling("loss");
    QVERIFY(note->getSiblings().isEmpty());
}

void TestSticky::rolesChange_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("role");
    QTest::addColumn<QSizeF>("size");
    QTest::addColumn<QString>("newText");
    QTest::addColumn<bool>("circled");

    const QSizeF same(80, 60);
    const QSizeF square(80, 80);
    QTest::newRow("condition") << "x"
                               << "Condition" << same << "x" << false;
    QTest::newRow("loss is square") << ""
                                    << "Loss" << square << "" << false;
    QTest::newRow("empty transfer") << ""
                                    << "Transfer" << square << "A" << false;
    QTest::newRow("transfer with text") << "x"
                                        << "Transfer" << square << "x" << false;
    QTest::newRow("causal factor") << "x"
                                   << "Causal_Factor" << same << "x" << true;
}

void TestSticky::rolesChange()
{
    QFETCH(QString, text);
    QFETCH(QString, role);
    QFETCH(QSizeF, size);
    QFETCH(QString, newText);
    QFETCH(bool, circled);

    Sticky *note = addNote("{a}", text);
    note->setTextAlignment(Qt::AlignLeft | Qt::AlignTop);
    note->setRoleType(role);
    QCOMPARE(note->getRoleType(), role);
    QCOMPARE(note->getRect().size(), size);
    QCOMPARE(note->getText(), newText);
    QCOMPARE(childOf<CircledNumberItem>(note)->isVisible(), circled);
    const bool centred = note->getRecord().textAlignment == (Qt::AlignHCenter | Qt::AlignVCenter);
    QCOMPARE(centred, role == "Transfer");
}

void TestSticky::causalFactors()
{
    sheet->firstUnusedNumber = 4;
    Sticky *note = addNote("{a}");
    QSignalSpy added(note, &Sticky::causalFactorAdded);
    QSignalSpy removed(note, &Sticky::causalFactorRemoved);

    note->setRoleType("Causal_Factor");
    QCOMPARE(note->getCausalFactorNumber(), 4);
    QCOMPARE(added.size(), 1);
    note->addSibling("causalFactor_text_4");
    note->addSibling("causalFactor_text_2");
    note->addSibling("{b}");

    note->setRoleType("Causal_Factor");
    QCOMPARE(added.size(), 1);
    QCOMPARE(removed.size(), 0);
    note->addSibling("causalFactor_text_4");
    note->setRoleType("Event");
    QCOMPARE(removed.size(), 1);
    QCOMPARE(note->getSiblings(), QStringList("{b}"));
    QVERIFY(!childOf<CircledNumberItem>(note)->isVisible());
}

void TestSticky::linksOfRoles()
{
    Sticky *note = addNote("{a}");
    note->addSibling("{b}");
    note->setRoleType("Loss");
    QCOMPARE(note->getSiblings(), QStringList({"{b}", "loss"}));
    note->setRoleType("Loss_Of_Control");
    QCOMPARE(note->getSiblings(), QStringList({"{b}", "lossOfControl"}));
    note->setRoleType("Event");
    QCOMPARE(note->getSiblings(), QStringList("{b}"));
}

void TestSticky::deletion()
{
    Sticky *note = addNote("{a}", "x", "Causal_Factor");
    QSignalSpy deleted(note, &Sticky::deleted);
    QSignalSpy added(note, &Sticky::causalFactorAdded);
    QSignalSpy removed(note, &Sticky::causalFactorRemoved);
    note->notifySceneRemoval();
    QCOMPARE(deleted.size(), 1);
    QCOMPARE(removed.size(), 1);
    note->notifySceneAddition();
    QCOMPARE(added.size(), 1);
    delete note;
    QCOMPARE(deleted.size(), 2);

    Sticky *plain = addNote("{b}");
    QSignalSpy plainRemoved(plain, &Sticky::causalFactorRemoved);
    plain->notifySceneRemoval();
    plain->notifySceneAddition();
    QCOMPARE(plainRemoved.size(), 0);
}

EXAMINER_TEST_MAIN(TestSticky)
#include "teststicky.moc"
