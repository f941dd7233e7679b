#pragma once

#include "chart/sheethost.h"
#include "sheet/projectscene.h"
#include "sheet/sheetbook.h"
#include "shell/exportdialog.h"
#include "shell/registrationcheck.h"
#include "support/formvalue.h"

#include <QHash>
#include <QIcon>
#include <QMainWindow>
#include <QPair>
#include <QPointer>
#include <QTimer>

#include <memory>
#include <vector>

class ClipBoard;
class GraphWidget;
class IntroScreen;
class ProjectTabWidget;
class QAction;
class QActionGroup;
class QComboBox;
class QLabel;
class QMenu;
class QPainter;
class QPrinter;
class QShortcut;
class QToolBar;
class ToolsToolBar;
class ZoomWidget;

/// The coordinator of the program: it owns the open project's objects, builds the full
/// interface on first need, and is reused for every project.
class MainWindow : public QMainWindow, public SheetHost
{
    Q_OBJECT

public:
    /// Shows nothing yet. `introScreen` may be null; it goes when the interface comes.
    explicit MainWindow(IntroScreen *introScreen);
    ~MainWindow() override;

    ProjectScene *getMainScene() const { return book->getMainSheet(); }
    QList<ProjectScene *> getFactorScenes() const { return book->getFactorSheets(); }
    ProjectScene *getCurrentScene() const { return currentScene; }
    ProjectScene *getSceneForParent(const QString &guid) const override
    {
        return book->getSheetForOwner(guid);
    }
    Sticky *getNoteWithGUID(const QString &guid) const override
    {
        return book->getNoteWithGUID(guid);
    }
    int selectedTool() const override;
    bool isGridEnabled() const override;
    QMenu *getSceneContextMenu() override;
    QMenu *getNoteContextMenu() override;
    QMenu *getLineContextMenu() override;
    QWidget *getDialogParent() override { return this; }

    void loadFullInterface();
    /// Empties every sheet and the form.
    void clearInterface();
    /// Asks about unsaved changes. 0 after a save was run, whatever became of it, 1 when
    /// nothing stands in the way, 2 when the user cancelled.
    int checkSave();
    void addRecentFile(const QString &path);

    /// Follows the main sheet's grid on every sheet. False if the painter could not start.
    bool paintPrinter(QPrinter &printer);
    void printProjectScene(ProjectScene *scene, QPainter &painter, QPrinter &printer,
                           int verticalPages, int horizontalPages);

    bool eventFilter(QObject *object, QEvent *event) override;

public slots:
    void newProject();
    /// An empty name asks the user.
    void openProject(QString openName = QString(), bool addToRecentFiles = true);
    void openQuickStart();
    void saveProject(bool chooseNewName = false, bool autoSave = false);
    void saveProjectAs();
    void onAutoSaveRequested();
    void onSnapshotRequested();
    /// An exception left an event handler: a save that broke off is given up, and the project
    /// stays open with its changes.
    void onHandlerFailed(const QString &message);
    void onFormChanged();
    void onDirtyChanged(bool dirty);

    void onCurrentTabChanged(int tabIndex);
    void focusFormTab();
    void onZoomChanged(int zoom);
    void showHelp();
    void showAboutDialog();
    void showSettings();
    void showProgramSettings();
    void showPageSetupDialog();

    void onCanvasItemLoaded(CanvasItemInfo &info) { book->onItemLoaded(info); }
    void onCausalFactorAdded(Sticky *note) { book->onCausalFactorAdded(note); }
    void onCausalFactorRemoved(Sticky *note) { book->onCausalFactorRemoved(note); }
    void onCausalFactorChanged(Sticky *note) override;

    void onSelectionChanged(const QList<QGraphicsItem *> &items);
    void onToolSelectionChanged(int toolId);
    void onTextEditingChanged(bool editing);
    void onRoleComboChanged(int index);
    void onRoleItemTriggered(QAction *selectedAct);
    void onMarkNotRelevantTriggered(bool notRelevant);
    void onItemColorActionTriggered();
    void onTextColorActionTriggered();
    void onChooseFontTriggered();
    void onAlignmentChanged();
    void onArrowStyleChanged();
    void onLineStyleChanged();
    void onSelectAllTriggered();
    void onDeleteTriggered();
    void toggleToolbarLock();
    void onShowGridTriggered();
    void onEscapePressed();
    void showItemPropertiesDialog();

    void print();
    void onPrintFormTriggered();
    void onExportFormTriggered();
    void onExportClicked(bool showDialog = true,
                         ExportDialog::ExportFormat presetFormat = ExportDialog::PNG);
    /// Without the dialog, whose own format then names the ending.
    void saveCurrentPagePNG();
    void exportPNG(const QString &filename, const QRectF &bound);
    void exportPDF(const QString &filename, const QRectF &bound);
    /// The format exists in name only.
    void exportEMF(const QString &filename, const QRectF &bound);

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void createProjectObjects();
    void createMainSheet();
    void connectSheet(ProjectScene *sheet, GraphWidget *view);
    void onSheetCame(ProjectScene *sheet);
    void onSheetGoes(ProjectScene *sheet);
    void createStatusBar();
    void setUntitledTitle();
    void setTitleFor(const QString &path);

    template<typename Slot>
    QAction *createAction(const QString &text, const QString &iconName,
                          const QKeySequence &shortcut, const QString &statusTip, Slot slot);
    QAction *createGroupAction(const QString &text, const QString &iconName,
                               const QKeySequence &shortcut = QKeySequence());
    QActionGroup *createGroup(const QList<QAction *> &actions, void (MainWindow::*slot)());
    void createAllActions();
    void createFileActions();
    void createEditActions();
    void createSettingsActions();
    void createNoteActions();
    void createLineActions();
    void createActionGroups();
    void createFormActions();
    void createToolbars();
    void createItemToolbar();
    void createAllMenus();
    void createFileMenu();
    void createEditMenu();
    void createViewMenu();
    void createHelpMenu();
    void createNoteContextMenu();
    void createRoleMenu(QMenu *menu);
    QMenu *createContextMenu();

    void showNoteState(Sticky *note);
    void showLineState(Line *line, bool alone);
    void showEmptyState();
    void checkAlignmentActions(Qt::Alignment alignment);

    bool isBusy() const;
    QString askOpenName();
    void readProject(bool addToRecentFiles);
    void onProjectOpened(bool addToRecentFiles);
    /// What was asked for while a file was opened or saved.
    void openWaitingProject();
    /// The name to save under, null when the user cancelled.
    QString getSaveName(bool chooseNewName);
    void removeFormerFile(const QString &name);
    void storeProject(const QString &name, bool autoSave);
    bool writeProject(const QString &name, const QList<ProjectItem *> &items);
    FormValues collectFormValues() const;
    void tellOfForeignChange();
    bool keepSnapshot();
    /// Keeps what the user wasn't asked about or could not save. Takes what checkSave gave.
    /// False when that failed: then an auto-save may be all that is left of the work.
    bool giveUpProject(int answer);
    bool hasChangedStack() const;

    QString askExportName(ExportDialog::ExportFormat format, const QString &extension);
    QRectF getExportBound(ExportDialog::ExportArea area) const;

    bool toolbarsLocked = false;
    QMenu *fileMenu = nullptr;
    QMenu *editMenu = nullptr;
    QMenu *viewMenu = nullptr;
    QMenu *helpMenu = nullptr;
    QMenu *toolbarsMenu = nullptr;
    QMenu *noteContextMenu = nullptr; // made on first use
    std::vector<std::unique_ptr<QMenu>> contextMenus;

    QAction *newProjectAction = nullptr;
    QAction *openProjectAction = nullptr;
    QAction *quickStartAction = nullptr;
    QAction *saveAction = nullptr;
    QAction *saveAsAction = nullptr;
    QAction *printSetupAction = nullptr;
    QAction *printAction = nullptr;
    QAction *exportAction = nullptr;
    QAction *savePagePNGAction = nullptr;
    QAction *exitAction = nullptr;
    QAction *undoAction = nullptr;
    QAction *redoAction = nullptr;
    QAction *copyAction = nullptr;
    QAction *pasteAction = nullptr;
    QAction *selectAllAction = nullptr;
    QAction *deleteAction = nullptr;
    QAction *itemPropertiesAction = nullptr;
    QAction *markNotRelevantAction = nullptr;
    QAction *projectSettingsAction = nullptr;
    QAction *programSettingsAction = nullptr;
    QAction *showGridAction = nullptr;
    QAction *lockToolbarsAction = nullptr;
    QAction *registrationAction = nullptr;
    QAction *helpContentsAction = nullptr;
    QAction *aboutAction = nullptr;
    QAction *chooseFontAction = nullptr;
    QAction *itemColorAction = nullptr;
    QAction *textColorAction = nullptr;
    QAction *alignLeftAction = nullptr;
    QAction *alignCenterAction = nullptr;
    QAction *justifyAction = nullptr;
    QAction *centerVerticallyAction = nullptr;
    QAction *alignTopAction = nullptr;
    QAction *noArrowsAction = nullptr;
    QAction *singleArrowAction = nullptr;
    QAction *solidLineAction = nullptr;
    QAction *dashedLineAction = nullptr;
    QAction *exportFormAction = nullptr;
    QAction *printFormAction = nullptr;

    QActionGroup *noteFormatGroup = nullptr;
    QActionGroup *horizontalAlignmentGroup = nullptr;
    QActionGroup *verticalAlignmentGroup = nullptr;
    QActionGroup *arrowStyleGroup = nullptr;
    QActionGroup *lineStyleGroup = nullptr;
    QActionGroup *roleGroup = nullptr;
    QIcon lockedIcon;
    QIcon unlockedIcon;
    QToolBar *itemToolbar = nullptr;
    QToolBar *projectToolbar = nullptr;
    ToolsToolBar *toolsToolbar = nullptr;

    QString openFilename; // of the latest attempt to open
    ProjectFile *projectFile = nullptr;
    SheetBook *book = nullptr; // deleted first of all but the views
    GraphWidget *mainView = nullptr;
    QLabel *roleLabel = nullptr;
    QLabel *registrationLabel = nullptr;
    QComboBox *roleCombo = nullptr;
    QPointer<IntroScreen> introScreen;
    ProjectTabWidget *tabWidget = nullptr;
    QUndoGroup *undoGroup = nullptr;
    ProjectScene *currentScene = nullptr; // of the sheet tab last shown
    ClipBoard *clipBoard = nullptr;
    ZoomWidget *zoomWidget = nullptr;
    QShortcut *escapeShortcut = nullptr;
    bool interfaceLoaded = false;
    FormView *formView = nullptr;
    RegistrationCheck registrationCheck;

    bool formTouched = false;    // since the last save or opening
    bool unaskedChanges = false; // something is unsaved that the dirty mark does not tell
    bool storing = false;        // from the first progress event to the end of a save
    QString waitingOpenName;     // asked for while the file was busy
};
