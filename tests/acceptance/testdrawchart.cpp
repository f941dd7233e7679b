#include "acceptance/xuser.h"
#include "editing/line.h"
#include "shell/graphwidget.h"
#include "shell/mainwindow.h"
#include "shell/supportfiles.h"
#include "shell/toolbutton.h"
#include "shell/zoomwidget.h"
#include "testmain.h"

#include <QComboBox>
#include <QMenu>
#include <QScrollBar>
#include <QTabBar>
#include <QUndoStack>

namespace
{

/// One item as far as a user can see it.
struct Seen {
    int type;
    QString role, text;
    QRectF place;
    int arrowStyle, lineStyle;
    QStringList ends;

    bool operator==(const Seen &other) const
    {
        return type == other.type && role == other.role && text == other.text &&
               place == other.place && arrowStyle == other.arrowStyle &&
               lineStyle == other.lineStyle && ends == other.ends;
    }
};

QString describeEnd(ConnectionInfo end)
{
    return end.item ? end.item->getText() + "/" + QString::number(end.side) : "free";
}

} // namespace

/// Somebody new to the program draws a lane of events with mouse and keyboard.
class TestDrawChart : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void notesAreDraggedFromThePalette();
    void textsAreTyped();
    void notesAreResizedAndMoved();
    void rolesAreChosen();
    void linesAreDrawn();
    void aBarrierIsPlaced();
    void everyStepIsUndoneAndRedone();
    void theFileHoldsTheSame();
    void theViewFollowsTheHand();

private:
    ToolButton *buttonOf(const QString &text) const;
    QPoint at(const QPointF &scenePos) const;
    Sticky *noteAt(const QPointF &scenePos) const { return scene->getNoteAt(scenePos); }
    void drop(const QString &tool, const QPointF &topLeft);
    void typeInto(const QPointF &centre, const QString &text);
    void chooseRole(const QPointF &centre, const QString &role);
    void drawLine(const QString &tool, const QPointF &from, const QPointF &to);
    QHash<QString, Seen> look() const;

    MainWindow *window = nullptr;
    ProjectScene *scene = nullptr;
    GraphWidget *view = nullptr;
    QHash<QString, Seen> drawn;
    int steps = 0;
};

void TestDrawChart::initTestCase()
{
    copySupportFiles();
    window = new MainWindow(nullptr);
    window->newProject();
    QVERIFY(QTest::qWaitForWindowActive(window));
    QTest::qWait(500); // the window manager maximizes
    scene = window->getMainScene();
    auto *tabs = window->findChild<QTabWidget *>();
    QTabBar *bar = tabs->tabBar();
    XUser::click(bar->mapToGlobal(bar->tabRect(1).center()));
    QTRY_COMPARE(tabs->currentIndex(), 1);
    view = qobject_cast<GraphWidget *>(tabs->currentWidget());
    QVERIFY(view);
    XUser::takeShot("draw-1-empty");
}

void TestDrawChart::cleanupTestCase()
{
    delete window;
}

ToolButton *TestDrawChart::buttonOf(const QString &text) const
{
    for (ToolButton *button : window->findChildren<ToolButton *>()) {
        if (button->defaultAction()->text() == text)
            return button;
    }
    return nullptr;
}

QPoint TestDrawChart::at(const QPointF &scenePos) const
{
    return view->viewport()->mapToGlobal(view->mapFromScene(scenePos));
}

void TestDrawChart::drop(const QString &tool, const QPointF &topLeft)
{
    ToolButton *button = buttonOf(tool);
    QVERIFY2(button, qPrintable(tool));
    const QSizeF size = ProjectScene::getStandardItemSize(button->defaultAction()->data().toInt());
    const int before = scene->getProjectItems().size();
    XUser::drag(XUser::centreOf(button),
                at(topLeft + QPointF(size.width() / 2, size.height() / 2)));
    QTRY_COMPARE(scene->getProjectItems().size(), before + 1);
    QTRY_COMPARE(window->selectedTool(), int(SelectTool));
}

void TestDrawChart::typeInto(const QPointF &centre, const QString &text)
{
    XUser::doubleClick(at(centre));
    QTRY_VERIFY(noteAt(centre)->isEditing());
    XUser::press("ctrl+a");
    XUser::type(text);
    XUser::press("Escape");
    QTRY_VERIFY(!noteAt(centre)->isEditing());
    QCOMPARE(noteAt(centre)->getText(), text);
}

void TestDrawChart::chooseRole(const QPointF &centre, const QString &role)
{
    XUser::click(at(centre));
    QTRY_VERIFY(noteAt(centre)->isSelected());
    auto *combo = window->findChild<QComboBox *>();
    QTRY_VERIFY(combo->isEnabled());
    combo->setFocus();
    const int target = combo->findText(role);
    QVERIFY(target >= 0);
    XUser::click(XUser::centreOf(combo));
    QTRY_VERIFY(QApplication::activePopupWidget());
    XUser::press("Home");
    for (int i = 0; i < target; ++i)
        XUser::press("Down");
    XUser::press("Return");
    QTRY_COMPARE(noteAt(centre)->getRoleType(), combo->itemData(target).toString());
}

void TestDrawChart::drawLine(const QString &tool, const QPointF &from, const QPointF &to)
{
    XUser::click(XUser::centreOf(buttonOf(tool)));
    QTRY_VERIFY(window->isLineToolSelected());
    const int before = scene->getProjectItems().size();
    XUser::drag(at(from), at(to));
    QTRY_COMPARE(scene->getProjectItems().size(), before + 1);
    XUser::press("Escape");
    QTRY_COMPARE(window->selectedTool(), int(SelectTool));
}

QHash<QString, Seen> TestDrawChart::look() const
{
    QHash<QString, Seen> seen;
    for (ProjectItem *item : scene->getProjectItems()) {
        const CanvasItemInfo info = item->getCanvasItemInfo();
        Seen entry = {
            info.type,       info.role.getTypeName(), info.text, QRectF(info.startPoint, info.size),
            info.arrowStyle, info.lineStyle,          {}};
        if (auto *line = qobject_cast<Line *>(item))
            entry.ends = QStringList{describeEnd(line->getStartConnection()),
                                     describeEnd(line->getEndConnection())};
        seen.insert(info.guid, entry);
    }
    return seen;
}

void TestDrawChart::notesAreDraggedFromThePalette()
{
    drop("Event", {100, 400});
    drop("Event", {340, 400});
    drop("Event", {580, 400});
    drop("Event", {820, 400});
    drop("Condition", {580, 220});
    drop("Sequence Marker", {100, 360});
    QCOMPARE(scene->getAllNotes().size(), 6);
    for (const QPointF &p : {QPointF(100, 400), QPointF(340, 400), QPointF(580, 400),
                             QPointF(820, 400), QPointF(580, 220), QPointF(100, 360)})
        QCOMPARE(noteAt(p + QPointF(10, 10))->pos(), p);
    XUser::takeShot("draw-2-notes");
}

void TestDrawChart::textsAreTyped()
{
    typeInto({160, 440}, "State asks for money");
    typeInto({400, 440}, "Open girders planned");
    typeInto({640, 440}, "Cheaper plan adopted");
    typeInto({880, 440}, "The deck is hung");
    typeInto({640, 260}, "Wind taken as steady");
    typeInto({160, 370}, "1937 and 1938");
    XUser::takeShot("draw-3-texts");
}

void TestDrawChart::notesAreResizedAndMoved()
{
    for (const QPointF &topLeft : {QPointF(100, 400), QPointF(340, 400), QPointF(580, 400)}) {
        Sticky *note = noteAt(topLeft + QPointF(60, 40));
        XUser::click(at(topLeft + QPointF(60, 40)));
        QTRY_VERIFY(note->isSelected());
        XUser::drag(at(topLeft + QPointF(121, 40)), at(topLeft + QPointF(158, 40)));
        QTRY_COMPARE(note->getRect().size(), QSizeF(160, 80));
    }
    Sticky *last = noteAt({880, 440});
    XUser::drag(at({880, 440}), at({915, 478}));
    QTRY_COMPARE(last->pos(), QPointF(860, 440));
    XUser::press("Up");
    XUser::press("Up");
    QTRY_COMPARE(last->pos(), QPointF(860, 400));
}

void TestDrawChart::rolesAreChosen()
{
    chooseRole({180, 440}, "Starting Event");
    chooseRole({880, 420}, "Loss Of Control");
    drop("Event", {1060, 400});
    typeInto({1120, 440}, "The span falls");
    chooseRole({1120, 440}, "Loss");
    QCOMPARE(noteAt({1120, 440})->getRect().size(), QSizeF(120, 120));
    chooseRole({660, 440}, "Causal Factor");
    auto *tabs = window->findChild<QTabWidget *>();
    QTRY_COMPARE(tabs->count(), 3);
    QCOMPARE(tabs->tabText(2), QString("Causal Factor 1"));
    XUser::takeShot("draw-4-roles");
}

void TestDrawChart::linesAreDrawn()
{
    drawLine("Connector", {258, 440}, {342, 440});
    drawLine("Connector", {498, 440}, {582, 440});
    drawLine("Connector", {738, 440}, {862, 440});
    drawLine("Connector", {660, 298}, {660, 402});
    drawLine("Arrow", {978, 440}, {1062, 460});
    drawLine("Connector", {160, 378}, {160, 402});
    for (ProjectItem *item : scene->getProjectItems()) {
        if (auto *line = qobject_cast<Line *>(item)) {
            QVERIFY(line->getStartConnection().item);
            QVERIFY(line->getEndConnection().item);
        }
    }
    XUser::takeShot("draw-5-lines");
}

void TestDrawChart::aBarrierIsPlaced()
{
    drop("Failed Barrier", {800, 400});
    XUser::click(at({1300, 700}));
    QTRY_VERIFY(scene->selectedItems().isEmpty());
    XUser::takeShot("draw-6-barrier");
}

void TestDrawChart::everyStepIsUndoneAndRedone()
{
    drawn = look();
    steps = scene->getUndoStack()->count();
    for (int i = 0; i < steps; ++i)
        XUser::press("ctrl+z");
    QTRY_COMPARE(scene->getUndoStack()->index(), 0);
    QCOMPARE(scene->getProjectItems().size(), 0);
    auto *tabs = window->findChild<QTabWidget *>();
    QTRY_COMPARE(tabs->count(), 2);
    QVERIFY(!window->isWindowModified());
    XUser::takeShot("draw-7-undone");

    for (int i = 0; i < steps; ++i)
        XUser::press("ctrl+shift+z");
    QTRY_COMPARE(scene->getUndoStack()->index(), steps);
    QTRY_COMPARE(tabs->count(), 3);
    const QHash<QString, Seen> again = look();
    QCOMPARE(again.size(), drawn.size());
    for (auto it = drawn.cbegin(); it != drawn.cend(); ++it)
        QVERIFY2(again.value(it.key()) == it.value(), qPrintable(it.value().text));
    XUser::takeShot("draw-8-redone");
}

void TestDrawChart::theFileHoldsTheSame()
{
    QTemporaryDir folder;
    const QString path = folder.filePath("lane.epf");
    XUser::answerNextDialog(path);
    XUser::press("ctrl+s");
    QTRY_VERIFY(!window->isWindowModified());
    QVERIFY(QFile::exists(path));

    window->openProject(path, false);
    const QHash<QString, Seen> read = look();
    QCOMPARE(read.size(), drawn.size());
    for (auto it = drawn.cbegin(); it != drawn.cend(); ++it)
        QVERIFY2(read.value(it.key()) == it.value(), qPrintable(it.value().text));
}

void TestDrawChart::theViewFollowsTheHand()
{
    auto *zoom = window->findChild<ZoomWidget *>();
    const QPointF pointer(660, 440);
    zoom->setZoom(150); // larger than the window, so that it can be kept in place
    view->centerOn(700, 480);
    const QPoint place = at(pointer);
    XUser::turnWheel(place, 3, "ctrl");
    QTRY_COMPARE(zoom->getZoom(), 180);
    QVERIFY((at(pointer) - place).manhattanLength() < 6);
    XUser::takeShot("draw-9-zoomed");

    const int before = view->verticalScrollBar()->value();
    XUser::turnWheel(at({660, 440}), -2);
    QTRY_VERIFY(view->verticalScrollBar()->value() > before);

    XUser::click(XUser::centreOf(buttonOf("Hand")));
    QTRY_COMPARE(window->selectedTool(), int(HandTool));
    const QPoint middle = XUser::centreOf(view->viewport());
    const QPointF grabbed = view->mapToScene(view->viewport()->mapFromGlobal(middle));
    XUser::drag(middle, middle - QPoint(120, 60));
    const QPointF moved =
        view->mapToScene(view->viewport()->mapFromGlobal(middle - QPoint(120, 60)));
    QVERIFY((moved - grabbed).manhattanLength() < 6);
    XUser::press("Escape");

    // A rubber band from empty ground takes what it covers.
    zoom->setZoom(50);
    XUser::drag(at({40, 180}), at({1240, 560}));
    QTRY_COMPARE(scene->getSelectedNotes().size(), 7);
    XUser::takeShot("draw-10-selected");

    // A drag held at the edge scrolls on.
    zoom->setZoom(100);
    view->horizontalScrollBar()->setValue(0);
    zoom->setZoom(200);
    view->centerOn(300, 300);
    const int left = view->horizontalScrollBar()->value();
    const QPoint start = XUser::centreOf(view->viewport());
    const QPoint edge(view->viewport()->mapToGlobal(QPoint(view->viewport()->width() - 4, 0)).x(),
                      start.y() + 40);
    XUser::drag(start, edge);
    QVERIFY(view->horizontalScrollBar()->value() > left);
}

EXAMINER_TEST_MAIN(TestDrawChart)

#include "testdrawchart.moc"
