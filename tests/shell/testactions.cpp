#include "shell/pmiconloader.h"
#include "shell/toolstoolbar.h"
#include "testing/dialogs.h"
#include "testing/window.h"

#include <QColorDialog>
#include <QComboBox>
#include <QMenuBar>
#include <QToolBar>

/// The commands of the window. All tests share one window, emptied before each.
class TestActions : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanupTestCase();
    void actions_data();
    void actions();
    void orderOfCreation();
    void menus_data();
    void menus();
    void contextMenus();
    void toolbars();
    void atStart();
    void selectionEnables_data();
    void selectionEnables();
    void selectionShowsFirstNote();
    void mixedSelectionShowsNoteAndLine();
    void textEditing();
    void escapeReturnsToSelect();
    void handToolDragsEverySheet();
    void refusedRoleStaysInTheCombo();
    void alignment_data();
    void alignment();
    void lineStyles();
    void colours();
    void notRelevant();
    void selectAllAndDelete();
    void toolbarLock();
    void gridIsRemembered();

private:
    QComboBox *combo() const { return tw->window.findChild<QComboBox *>(); }
    QToolBar *toolbar(const char *name) const { return tw->window.findChild<QToolBar *>(name); }

    std::unique_ptr<TestWindow> tw;
};

namespace
{

struct ActionRow {
    const char *text;
    const char *icon;
    QKeySequence shortcut;
    const char *statusTip;
};

const QVector<ActionRow> &actionTable()
{
    static const QVector<ActionRow> table = {
        {"&New Project", "document-new", QKeySequence::New, "Start a new project"},
        {"&Open Project...", "document-open", QKeySequence::Open, "Open an existing project"},
        {"Quick Start &Template", "tools_wizard", {}, "Open quick start template"},
        {"&Save", "document-save", QKeySequence::Save, "Save the current project"},
        {"Save &As...", "document-save-as", {}, "Save the project with a different file name."},
        {"Print Setup", "", {}, "Choose which pages to print"},
        {"&Print", "document-print", QKeySequence::Print, "Print the project"},
        {"Export...", "document-export", {}, "Export to other formats"},
        {"Save page as PNG image...", "image-png", {}, "Export current page as PNG image"},
        {"E&xit", "application-exit", QKeySequence("Ctrl+Q"), "Quit the application"},
        {"Undo", "edit-undo", QKeySequence::Undo, "Undo the last action"},
        {"Redo", "edit-redo", QKeySequence::Redo, "Redo the last undone action"},
        {"Copy", "edit-copy", QKeySequence::Copy, "Copy the current note to the clipboard"},
        {"Paste", "edit-paste", QKeySequence::Paste, "Paste the clipboard contents"},
        {"Select &All", "", QKeySequence::SelectAll, "Select all items in the scene"},
        {"Delete item(s)", "edit-delete", Qt::Key_Backspace, "Delete the currently selected items"},
        {"Item Properties", "", {}, "Edit the properties for the selected items"},
        {"Mark not relevant", "", {}, "Mark this note not relevant to the investigation"},
        {"&Project Settings", "configure", {}, "Set project options"},
        {"Program Settings", "", {}, "Edit program settings"},
        {"Display grid", "", {}, "Show the grid that items snap to"},
        {"Unlock toolbars", "decrypted", {}, "Unlock the toolbars to make them movable"},
        {"Help Contents", "help-contents", QKeySequence::HelpContents,
         "Get help on how to use this application"},
        {"&About", "", {}, "Show information about the application"},
        {"Choose Font", "choose-font", {}, ""},
        {"Item Color", "choose-item-color", {}, ""},
        {"Text Color", "choose-text-color", {}, ""},
        {"Align Left", "format-justify-left", QKeySequence("Ctrl+L"), ""},
        {"Align Center", "format-justify-center", QKeySequence("Ctrl+E"), ""},
        {"Justify", "format-justify-fill", QKeySequence("Ctrl+J"), ""},
        {"Center Vertically", "format-justify-vcenter", {}, ""},
        {"Align Top", "format-justify-top", {}, ""},
        {"No Arrows", "", {}, ""},
        {"Single Arrow", "", {}, ""},
        {"Solid Line", "", {}, ""},
        {"Dashed Line", "", {}, ""},
        {"Export Form", "word-icon", {}, "Export form to a Microsoft Word document"},
        {"Print Form", "", {}, ""},
    };
    return table;
}

/// Rules are "-", submenus their title and entries in brackets.
QString describe(const QList<QAction *> &actions)
{
    QStringList texts;
    for (QAction *action : actions) {
        if (action->isSeparator())
            texts.append("-");
        else if (action->menu())
            texts.append(action->text() + " [" + describe(action->menu()->actions()) + "]");
        else
            texts.append(action->text());
    }
    return texts.join(", ");
}

const char RoleNames[] = "Assumed Condition, Assumed Event, Causal Factor, Condition, Event, Loss, "
                         "Loss Of Control, Sequence Marker, Starting Event, Terminating Event, "
                         "Transfer";

} // namespace

void TestActions::initTestCase()
{
    tw = std::make_unique<TestWindow>();
}

void TestActions::init()
{
    QSettings().clear();
    tw->empty();
}

void TestActions::cleanupTestCase()
{
    tw.reset();
}

void TestActions::actions_data()
{
    QTest::addColumn<int>("row");
    for (int i = 0; i < actionTable().size(); ++i)
        QTest::newRow(actionTable().at(i).text) << i;
}

void TestActions::actions()
{
    QFETCH(int, row);
    const ActionRow &expected = actionTable().at(row);
    const QAction *action = tw->action(expected.text);

    QCOMPARE(action->shortcut(), expected.shortcut);
    QCOMPARE(action->statusTip(), QString(expected.statusTip));
    QCOMPARE(action->icon().isNull(), !*expected.icon);
    if (*expected.icon)
        QCOMPARE(action->icon().pixmap(22).toImage(),
                 PMIconLoader::loadIcon(expected.icon).pixmap(22).toImage());
}

void TestActions::orderOfCreation()
{
    QStringList created;
    for (QAction *action :
         tw->window.findChildren<QAction *>(QString(), Qt::FindDirectChildrenOnly))
        created.append(action->text());
    int last = -1;
    for (const ActionRow &row : actionTable()) {
        QVERIFY2(created.indexOf(row.text) > last, row.text);
        last = created.indexOf(row.text);
    }
}

void TestActions::menus_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("entries");

    QTest::newRow("file") << 0 << "&File"
                          << "&New Project, &Open Project..., Quick Start &Template, -, &Save, "
                             "Save &As..., -, Print Setup, &Print, Export..., -, E&xit";
    QTest::newRow("edit") << 1 << "&Edit"
                          << "Undo, Redo, -, Copy, Paste, Select &All, Delete item(s), -, Item "
                             "Properties, -, &Project Settings, Program Settings";
    QTest::newRow("view") << 2 << "&View"
                          << "Zoom In, Zoom Out, Actual Size, Display grid, &Toolbars [Unlock "
                             "toolbars, Item Toolbar]";
    QTest::newRow("help") << 3 << "&Help"
                          << "&Registration, Help Contents, &About";
}

void TestActions::menus()
{
    QFETCH(int, index);
    QFETCH(QString, title);
    QFETCH(QString, entries);
    const QAction *menu = tw->window.menuBar()->actions().at(index);

    QCOMPARE(menu->text(), title);
    QCOMPARE(describe(menu->menu()->actions()), entries);
}

void TestActions::contextMenus()
{
    QMenu *noteMenu = tw->window.getNoteContextMenu();
    QCOMPARE(describe(noteMenu->actions()),
             QString("Copy, -, Choose Font, Text Alignment [Align Left, Align Center, Justify, -, "
                     "Align Top, Center Vertically], Change Colors [Text Color, Item Color], "
                     "Change Role [%1], Mark not relevant, Item Properties, -, Delete item(s)")
                 .arg(RoleNames));
    QCOMPARE(tw->window.getNoteContextMenu(), noteMenu);

    QMenu *lineMenu = tw->window.getLineContextMenu();
    QCOMPARE(describe(lineMenu->actions()),
             QString("Copy, -, Item Color, Arrow Style [No Arrows, Single Arrow], Line Style "
                     "[Solid Line, Dashed Line], Item Properties, -, Delete item(s)"));
    QVERIFY(tw->window.getLineContextMenu() != lineMenu);

    QCOMPARE(describe(tw->window.getSceneContextMenu()->actions()),
             QString("Paste, -, Save page as PNG image..."));
}

void TestActions::toolbars()
{
    QCOMPARE(toolbar("ProjectToolbar")->windowTitle(), QString("Project Toolbar"));
    QCOMPARE(describe(toolbar("ProjectToolbar")->actions()), QString("Undo, Redo"));
    const QString texts = describe(toolbar("ItemToolbar")->actions());
    QVERIFY2(texts.endsWith("Item Color, Text Color, Choose Font, Align Left, Align Center, "
                            "Justify"),
             qPrintable(texts));
    QVERIFY(tw->window.toolBarBreak(toolbar("ToolsToolbar")));
    QCOMPARE(combo()->iconSize(), QSize(22, 22));
    QStringList roles;
    QStringList keys;
    for (int i = 0; i < combo()->count(); ++i) {
        roles.append(combo()->itemText(i));
        keys.append(combo()->itemData(i).toString());
    }
    QCOMPARE(roles.join(", "), QString(RoleNames));
    QCOMPARE(keys, QStringList(Role::rolesList.keys()));
}

void TestActions::atStart()
{
    QVERIFY(!tw->action("Delete item(s)")->isEnabled());
    QVERIFY(!tw->action("Item Properties")->isEnabled());
    QVERIFY(!toolbar("ItemToolbar")->isEnabled());
    QVERIFY(tw->action("&Save")->isEnabled());
    QVERIFY(tw->window.isGridEnabled());
    QVERIFY(!toolbar("ProjectToolbar")->isMovable());
    QVERIFY(toolbar("ToolsToolbar")->isMovable());
    QCOMPARE(tw->action("&Project Settings")->menuRole(), QAction::PreferencesRole);
    for (const char *text : {"Mark not relevant", "Display grid", "Align Left", "Align Top",
                             "Center Vertically", "No Arrows", "Dashed Line"})
        QVERIFY2(tw->action(text)->isCheckable(), text);
}

void TestActions::selectionEnables_data()
{
    QTest::addColumn<QString>("items");
    QTest::addColumn<bool>("canDelete");
    QTest::addColumn<bool>("properties");
    QTest::addColumn<bool>("toolbarOn");
    QTest::addColumn<bool>("roleAndFont");

    QTest::newRow("nothing") << "" << false << false << false << true;
    QTest::newRow("a note") << "n" << true << true << true << true;
    QTest::newRow("a line") << "l" << true << true << true << false;
    QTest::newRow("a picture") << "p" << true << false << false << true;
    QTest::newRow("a note and a line") << "nl" << true << true << true << true;
    QTest::newRow("a line and a picture") << "lp" << true << true << true << false;
}

void TestActions::selectionEnables()
{
    QFETCH(QString, items);
    QFETCH(bool, canDelete);
    QFETCH(bool, properties);
    QFETCH(bool, toolbarOn);
    QFETCH(bool, roleAndFont);
    ProjectItem *note = tw->addNote("Event", QPointF(200, 200));
    ProjectItem *line = tw->addLine(QPointF(400, 400), QPointF(600, 400));
    ProjectItem *picture = tw->addBarrier(QPointF(700, 200));
    note->setSelected(items.contains('n'));
    line->setSelected(items.contains('l'));
    picture->setSelected(items.contains('p'));
    QCoreApplication::processEvents();

    QCOMPARE(tw->action("Delete item(s)")->isEnabled(), canDelete);
    QCOMPARE(tw->action("Item Properties")->isEnabled(), properties);
    QCOMPARE(toolbar("ItemToolbar")->isEnabled(), toolbarOn);
    QCOMPARE(combo()->isEnabledTo(toolbar("ItemToolbar")), roleAndFont);
    QCOMPARE(tw->action("Choose Font")->isEnabled(), roleAndFont);
    QCOMPARE(tw->action("Text Color")->isEnabled(), roleAndFont);
    QVERIFY(tw->action("Item Color")->isEnabled());
    QVERIFY(tw->action("Align Left")->isEnabled());
    QVERIFY(tw->action("Copy")->isEnabled());
}

void TestActions::selectionShowsFirstNote()
{
    Sticky *note = tw->addNote("Loss", QPointF(200, 200));
    note->setTextAlignment(Qt::AlignJustify | Qt::AlignTop);
    note->setNotRelevant(true);
    note->setCustomFont(QFont("Arial", 14, QFont::Bold));
    note->setSelected(true);
    QCoreApplication::processEvents();

    QCOMPARE(combo()->currentData().toString(), QString("Loss"));
    QVERIFY(tw->action("Justify")->isChecked());
    QVERIFY(tw->action("Align Top")->isChecked());
    QVERIFY(tw->action("Mark not relevant")->isChecked());
    QCOMPARE(tw->action("Choose Font")->data().value<QFont>().pointSize(), 14);
}

void TestActions::mixedSelectionShowsNoteAndLine()
{
    Line *line = tw->addLine(QPointF(400, 400), QPointF(600, 400));
    line->setLineStyle(Qt::DashLine);
    line->setArrowStyle(Line::ArrowAtEnd);
    Sticky *note = tw->addNote("Condition", QPointF(200, 200));
    line->setSelected(true);
    note->setSelected(true);
    QCoreApplication::processEvents();

    QCOMPARE(combo()->currentData().toString(), QString("Condition"));
    QVERIFY(tw->action("Dashed Line")->isChecked());
    QVERIFY(tw->action("Single Arrow")->isChecked());
    line->setArrowStyle(Line::NoArrows);
    tw->chart()->clearSelection();
    line->setSelected(true);
    QCoreApplication::processEvents();
    QVERIFY(tw->action("No Arrows")->isChecked());
}

void TestActions::textEditing()
{
    auto *palette = tw->window.findChild<ToolsToolBar *>();
    tw->window.onTextEditingChanged(true);
    const QStringList texts = {"Copy", "Paste", "Undo", "Redo", "Select &All", "Delete item(s)"};
    for (const QString &text : texts)
        QVERIFY2(!tw->action(text)->isEnabled(), qPrintable(text));
    QCOMPARE(palette->getSelectedTool(), int(SelectTool));
    // Whatever the selection may be.
    tw->window.onTextEditingChanged(false);
    for (const QString &text : texts)
        QVERIFY2(tw->action(text)->isEnabled(), qPrintable(text));
}

void TestActions::escapeReturnsToSelect()
{
    auto *palette = tw->window.findChild<ToolsToolBar *>();
    for (QAction *action : palette->findChildren<QAction *>()) {
        if (action->text() == "Hand")
            action->trigger();
    }
    auto *view = tw->view();
    QTest::mouseClick(view->viewport(), Qt::LeftButton);
    tw->window.onEscapePressed();

    QCOMPARE(tw->window.selectedTool(), int(SelectTool));
    QCOMPARE(view->dragMode(), QGraphicsView::NoDrag);
}

void TestActions::handToolDragsEverySheet()
{
    tw->makeFactor(tw->addNote("Event", QPointF(200, 200)));
    QCOMPARE(tw->tabs->count(), 3);
    tw->window.onToolSelectionChanged(HandTool);
    for (int tab : {1, 2})
        QCOMPARE(qobject_cast<GraphWidget *>(tw->tabs->widget(tab))->dragMode(),
                 QGraphicsView::ScrollHandDrag);
    tw->window.onToolSelectionChanged(EventTool);
    for (int tab : {1, 2})
        QCOMPARE(qobject_cast<GraphWidget *>(tw->tabs->widget(tab))->dragMode(),
                 QGraphicsView::NoDrag);
}

void TestActions::refusedRoleStaysInTheCombo()
{
    tw->addNote("Loss", QPointF(600, 200));
    Sticky *note = tw->addNote("Event", QPointF(200, 200));
    note->setSelected(true);
    QCoreApplication::processEvents();

    BoxAnswer refusal(QMessageBox::Ok);
    combo()->setCurrentIndex(combo()->findData("Loss"));
    tw->window.onRoleComboChanged(combo()->currentIndex());
    QVERIFY(refusal.wasAsked());
    QCOMPARE(note->getRoleType(), QString("Event"));
    QCOMPARE(combo()->currentData().toString(), QString("Loss"));

    QAction condition("Condition", nullptr);
    condition.setData("Condition");
    tw->window.onRoleItemTriggered(&condition);
    QCOMPARE(note->getRoleType(), QString("Condition"));
    QCOMPARE(combo()->currentData().toString(), QString("Condition"));
}

void TestActions::alignment_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<int>("expected");

    QTest::newRow("left") << "Align Left" << int(Qt::AlignLeft | Qt::AlignVCenter);
    QTest::newRow("justified") << "Justify" << int(Qt::AlignJustify | Qt::AlignVCenter);
    QTest::newRow("top") << "Align Top" << int(Qt::AlignHCenter | Qt::AlignTop);
}

void TestActions::alignment()
{
    QFETCH(QString, action);
    QFETCH(int, expected);
    Sticky *note = tw->addNote("Event", QPointF(200, 200));
    note->setSelected(true);
    QCoreApplication::processEvents();
    tw->action(action)->trigger();

    QCOMPARE(int(note->getRecord().textAlignment), expected);
    tw->chart()->getUndoStack()->undo();
    QCOMPARE(int(note->getRecord().textAlignment), int(Qt::AlignCenter));
}

void TestActions::lineStyles()
{
    Line *line = tw->addLine(QPointF(400, 400), QPointF(600, 400));
    tw->action("Dashed Line")->trigger();
    QCOMPARE(tw->chart()->getUndoStack()->count(), 0);

    line->setSelected(true);
    QCoreApplication::processEvents();
    tw->action("Dashed Line")->trigger();
    tw->action("Single Arrow")->trigger();
    QCOMPARE(line->getRecord().lineStyle, int(Qt::DashLine));
    QCOMPARE(line->getRecord().arrowStyle, int(Line::ArrowAtEnd));
    QCOMPARE(tw->chart()->getUndoStack()->count(), 2);
}

void TestActions::colours()
{
    Sticky *note = tw->addNote("Event", QPointF(200, 200));
    note->setSelected(true);
    const auto choose = [](QWidget *widget) {
        auto *dialog = qobject_cast<QColorDialog *>(widget);
        if (!dialog || dialog->currentColor() != QColor(Qt::black))
            return false;
        dialog->setCurrentColor(Qt::red);
        dialog->accept();
        return true;
    };
    DialogAnswer item(choose);
    tw->action("Item Color")->trigger();
    QVERIFY(item.wasAsked());
    DialogAnswer text(choose);
    tw->action("Text Color")->trigger();
    QVERIFY(text.wasAsked());
    QCOMPARE(note->getCustomBackgroundColor(), QColor(Qt::red));
    QCOMPARE(note->getTextColor(), QColor(Qt::red));

    const int steps = tw->chart()->getUndoStack()->count();
    DialogAnswer cancelled(cancellation());
    tw->action("Item Color")->trigger();
    QVERIFY(cancelled.wasAsked());
    QCOMPARE(tw->chart()->getUndoStack()->count(), steps);
}

void TestActions::notRelevant()
{
    Sticky *note = tw->addNote("Event", QPointF(200, 200));
    note->setSelected(true);
    QCoreApplication::processEvents();
    tw->action("Mark not relevant")->trigger();
    QVERIFY(note->isNotRelevant());
    tw->action("Mark not relevant")->trigger();
    QVERIFY(!note->isNotRelevant());
}

void TestActions::selectAllAndDelete()
{
    tw->addNote("Event", QPointF(200, 200));
    tw->addLine(QPointF(400, 400), QPointF(600, 400));
    tw->action("Select &All")->trigger();
    QCOMPARE(tw->chart()->getSelectedProjectItems().size(), 2);
    QCoreApplication::processEvents();
    tw->action("Delete item(s)")->trigger();
    QVERIFY(tw->chart()->getProjectItems().isEmpty());
    tw->chart()->getUndoStack()->undo();
    QCOMPARE(tw->chart()->getProjectItems().size(), 2);
}

void TestActions::toolbarLock()
{
    QAction *lock = tw->action("Unlock toolbars");
    lock->trigger();
    QCOMPARE(lock->text(), QString("Lock toolbars"));
    QCOMPARE(lock->statusTip(), QString("Lock the toolbars to prevent them from being moved"));
    QCOMPARE(lock->icon().pixmap(22).toImage(),
             PMIconLoader::loadIcon("encrypted").pixmap(22).toImage());
    QVERIFY(toolbar("ProjectToolbar")->isMovable());
    QVERIFY(toolbar("ItemToolbar")->isMovable());
    lock->trigger();
    QCOMPARE(lock->text(), QString("Unlock toolbars"));
    QVERIFY(!toolbar("ItemToolbar")->isMovable());
}

void TestActions::gridIsRemembered()
{
    tw->action("Display grid")->trigger();
    QVERIFY(!tw->window.isGridEnabled());
    QCOMPARE(QSettings().value("showGrid"), QVariant(false));
    tw->action("Display grid")->trigger();
    QCOMPARE(QSettings().value("showGrid"), QVariant(true));
}

EXAMINER_TEST_MAIN(TestActions)
#include "testactions.moc"
