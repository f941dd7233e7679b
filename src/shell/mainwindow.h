#pragma once

#include "chart/sheethost.h"
#include "output/sheetprinter.h"
#include "sheet/projectscene.h"
#include "sheet/sheetbook.h"
#include "shell/chartcommands.h"
#include "shell/exportdialog.h"
#include "shell/projectdesk.h"

#include <QMainWindow>
#include <QPointer>

class ChartCheck;
class FindBar;
class GraphWidget;
class IntroScreen;
class ProjectTabWidget;
class QPainter;
class QPrinter;
class QShortcut;
class StatusLine;

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
    ProjectScene *getCurrentScene() const { return currentScene; }
    /// The scenes of the causal factors, by number.
    QList<ProjectScene *> getFactorScenes() const { return book->getFactorSheets(); }
    ProjectScene *getSceneForParent(const QString &guid) const override
    {
        return book->getSheetForOwner(guid);
    }
    Sticky *getNoteWithGUID(const QString &guid) const override
    {
        return book->getNoteWithGUID(guid);
    }
    int selectedTool() const override { return commands->getSelectedTool(); }
    bool isGridEnabled() const override { return commands->isGridEnabled(); }
    QMenu *getSceneContextMenu() override { return commands->getSceneContextMenu(); }
    QMenu *getNoteContextMenu() override { return commands->getNoteContextMenu(); }
    QMenu *getLineContextMenu() override { return commands->getLineContextMenu(); }
    QWidget *getDialogParent() override { return this; }

    void loadFullInterface();
    /// Empties every sheet and the form.
    void clearInterface();
    /// Asks about unsaved changes; a ProjectDesk::SaveAnswer.
    int checkSave() { return desk->checkSave(); }
    void addRecentFile(const QString &path) { desk->addRecentFile(path); }

    /// Follows the main sheet's grid on every sheet. False if the painter could not start.
    bool paintPrinter(QPrinter &printer, const SheetPrinter::GoOn &goOn = {});
    void printProjectScene(ProjectScene *scene, QPainter &painter, QPrinter &printer,
                           int verticalPages, int horizontalPages);

    /// The toolkit's own would hide toolbars that no menu brings back.
    QMenu *createPopupMenu() override;
    bool eventFilter(QObject *object, QEvent *event) override;

public slots:
    void newProject() { desk->newProject(); }
    /// An empty name asks the user.
    void openProject(QString openName = QString(), bool addToRecentFiles = true);
    void openQuickStart() { desk->openQuickStart(); }
    void saveProject(bool chooseNewName = false, bool autoSave = false);
    void saveProjectAs() { desk->saveProject(true, false); }
    void onAutoSaveRequested() { desk->onAutoSaveRequested(); }
    void keepUnsavedWork() { desk->keepUnsavedWork(); }
    void endFromOutside();
    void onHandlerFailed(const QString &message) { desk->onHandlerFailed(message); }
    void onDirtyChanged(bool dirty) { desk->onDirtyChanged(dirty); }

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

    void onSelectionChanged(const QList<QGraphicsItem *> &items) { commands->showSelection(items); }
    void onToolSelectionChanged(int toolId) { commands->setTool(toolId); }
    void onTextEditingChanged(bool editing) { commands->setTextEditing(editing); }
    void onRoleComboChanged(int index) { commands->setRoleFromBox(index); }
    void onRoleItemTriggered(QAction *selectedAct) { commands->setRoleFromMenu(selectedAct); }
    void onMarkNotRelevantTriggered(bool mark) { commands->setNotRelevant(mark); }
    void onItemColorActionTriggered() { commands->chooseItemColor(); }
    void onTextColorActionTriggered() { commands->chooseTextColor(); }
    void onChooseFontTriggered() { commands->chooseFont(); }
    void onAlignmentChanged() { commands->applyAlignment(); }
    void onArrowStyleChanged() { commands->applyArrowStyle(); }
    void onLineStyleChanged() { commands->applyLineStyle(); }
    void onSelectAllTriggered() { commands->selectAll(); }
    void onDeleteTriggered() { commands->deleteSelection(); }
    void toggleToolbarLock() { commands->toggleToolbarLock(); }
    void onShowGridTriggered() { commands->rememberGrid(); }
    void onEscapePressed();
    void onFactorFollowed(Sticky *note);
    void showItemPropertiesDialog() { commands->showItemProperties(); }

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
    void createStatusBar();
    /// The tip of a factor's tab tells what the factor is.
    void describeTab(int index);
    void giveKeysTo(QWidget *tab);
    void createFindBar();
    void awaitFocus();
    /// Brings an item into view and selects it; null for the sheet as such.
    void showPlace(ProjectScene *sheet, ProjectItem *item);
    void connectCommands();
    void connectSheet(ProjectScene *sheet, GraphWidget *view);
    void printTo(QPrinter &printer);
    void remember();
    void rememberTabs();
    void arrangeTabs();
    QString getTabName(int index) const;
    QWidget *getTab(const QString &name) const;
    void onSheetCame(ProjectScene *sheet);
    void onSheetGoes(ProjectScene *sheet);

    /// In the status bar, for a while.
    void say(const QString &text);
    /// The failure in the user's words, or empty.
    void tellOfExport(const QString &failure, const QString &filename);
    QString proposeExport(const QString &ending) const;
    /// False when the user stopped it.
    bool doWithProgress(const QString &label,
                        const std::function<void(const SheetPrinter::GoOn &)> &work);
    /// `write` returns why it failed.
    void exportTo(const QString &filename,
                  const std::function<QString(const SheetPrinter::GoOn &)> &write);
    QString askExportName(ExportDialog::ExportFormat format, const QString &extension);
    QRectF getExportBound(ExportDialog::ExportArea area) const;

    QPointer<IntroScreen> introScreen;
    ProjectDesk *desk;
    ProjectFile *projectFile = nullptr; // null until the full interface stands, like what follows
    QUndoGroup *undoGroup = nullptr;
    FormView *formView = nullptr;
    SheetBook *book = nullptr;            // deleted first, with the views of its sheets
    ProjectScene *currentScene = nullptr; // of the sheet tab last shown
    GraphWidget *mainView = nullptr;
    ProjectTabWidget *tabWidget = nullptr;
    ZoomWidget *zoomWidget = nullptr;
    StatusLine *statusLine = nullptr;
    ChartCheck *chartCheck = nullptr;
    FindBar *findBar = nullptr;
    QShortcut *escapeShortcut = nullptr;
    ChartCommands *commands = nullptr;
    QString exportedProject; // whose last export lies in the folder of exports
    bool interfaceLoaded = false;
};
