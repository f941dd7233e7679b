#pragma once

#include <QAction>
#include <QIcon>
#include <QList>
#include <QObject>

#include <array>
#include <memory>
#include <vector>

class ClipBoard;
class Line;
class ProjectItem;
class ProjectScene;
class QActionGroup;
class QComboBox;
class QGraphicsItem;
class QMainWindow;
class QMenu;
class QToolBar;
class QUndoGroup;
class SheetBook;
class Sticky;
class ToolsToolBar;
class ZoomWidget;

/// All actions of the window, its menus and toolbars, what follows the selection in them, and
/// what those for the chart do to the sheet of the moment.
class ChartCommands : public QObject
{
    Q_OBJECT

public:
    enum Command {
        NewProject,
        OpenProject,
        QuickStart,
        Save,
        SaveAs,
        PrintSetup,
        Print,
        Export,
        SavePagePNG,
        Exit,
        Undo,
        Redo,
        Copy,
        Paste,
        SelectAll,
        Delete,
        Find,
        FindNext,
        FindPrevious,
        ItemProperties,
        MarkNotRelevant,
        ProjectOptions,
        ProgramOptions,
        ShowGrid,
        LockToolbars,
        Registration,
        HelpContents,
        About,
        ChooseFont,
        ItemColor,
        TextColor,
        AlignLeft,
        AlignCenter,
        Justify,
        CenterVertically,
        AlignTop,
        NoArrows,
        SingleArrow,
        SolidLine,
        DashedLine,
        ExportForm,
        PrintForm,
        Duplicate,
        FitChart,
        FitSelection,
        CommandCount
    };

    /// The actions become children of the window. `currentSheet` points at the window's pointer
    /// to the sheet of the moment. All outlive this object.
    ChartCommands(QMainWindow *window, SheetBook *book, ProjectScene **currentSheet,
                  QUndoGroup *undoGroup, ZoomWidget *zoom);
    ~ChartCommands() override;

    QAction *getAction(Command command) const { return actions[command]; }
    ToolsToolBar *getPalette() const { return palette; }
    /// A ToolId.
    int getSelectedTool() const;
    bool isGridEnabled() const { return actions[ShowGrid]->isChecked(); }
    /// The lock, and the showing of what may be hidden.
    QList<QAction *> getToolbarActions() const;
    QMenu *getSceneContextMenu();
    QMenu *getLineContextMenu();
    /// The same one each time.
    QMenu *getNoteContextMenu();

    /// Connects what the window itself does.
    template<typename Receiver, typename Slot>
    void onTriggered(Command command, Receiver *receiver, Slot slot)
    {
        connect(actions[command], &QAction::triggered, receiver, slot);
    }

    /// Shows the state of the first note and the first line.
    void showSelection(const QList<QGraphicsItem *> &items);
    /// The keys of these commands belong to the text while one is edited.
    void setTextEditing(bool editing);
    /// Behind the form no chart is changed by a key or the Edit menu.
    void setSheetShown(bool shown);
    void setTool(int toolId);
    void setRoleFromBox(int index);
    void setRoleFromMenu(QAction *action);
    void setNotRelevant(bool notRelevant);
    void chooseItemColor();
    void chooseTextColor();
    void chooseFont();
    void applyAlignment();
    void applyArrowStyle();
    void applyLineStyle();
    void selectAll();
    void deleteSelection();
    void showItemProperties();
    void toggleToolbarLock();
    void rememberGrid();
    void fitChart();
    /// Nothing when nothing is selected.
    void fitSelection();
    /// Ends the editing of a text and takes the select tool.
    void leaveEverything();

private:
    ProjectScene *sheet() const { return *currentSheet; }
    bool isChecked(Command command) const { return actions[command]->isChecked(); }
    QList<QAction *> pick(const QList<Command> &commands) const;
    void createActions(QUndoGroup *undoGroup);
    void prepareActions();
    void connectActions();
    void createActionGroups();
    void createGroup(const QList<Command> &commands, void (ChartCommands::*slot)());
    void createToolbars();
    void createItemToolbar();
    void createMenus();
    QMenu *createContextMenu();
    void createNoteContextMenu();
    void createRoleMenu(QMenu *menu);

    void showNoteState(Sticky *note);
    void showLineState(Line *line, bool alone);
    void showEmptyState();
    void checkAlignment(Qt::Alignment alignment);
    void fit(const QList<ProjectItem *> &items);

    QMainWindow *window;
    SheetBook *book;
    ProjectScene **currentSheet;
    ZoomWidget *zoom;
    ClipBoard *clipBoard;
    std::array<QAction *, CommandCount> actions = {};
    QActionGroup *noteFormatGroup = nullptr;
    QToolBar *projectToolbar = nullptr;
    QToolBar *itemToolbar = nullptr;
    ToolsToolBar *palette = nullptr;
    QComboBox *roleBox = nullptr;
    QIcon lockedIcon;
    QIcon unlockedIcon;
    bool toolbarsLocked = false;
    QMenu *noteContextMenu = nullptr; // made on first use
    std::vector<std::unique_ptr<QMenu>> contextMenus;
};
