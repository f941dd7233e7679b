#include "form/formview.h"
#include "project/projectfile.h"
#include "project/saveprogressdialog.h"
#include "shell/graphwidget.h"
#include "shell/mainwindow.h"
#include "support/pageinfo.h"

#include <QAction>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QDebug>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QFileOpenEvent>
#include <QMessageBox>
#include <QScopeGuard>
#include <QScopedValueRollback>
#include <QSettings>
#include <QStandardPaths>
#include <QStatusBar>
#include <QUndoGroup>
#include <QUndoStack>

#include <algorithm>

namespace
{

constexpr int MaximumRecentFiles = 4;
constexpr int MessageTime = 15000; // milliseconds
const QString SaveFailedText = "Saving failed.\nThe error message is: ";
const char ProjectFilter[] = "TRAC/Ex Examiner Project (*.epf)";

QString getStartFolder(const QString &key)
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QSettings().value(key, documents).toString() + "/";
}

void rememberFolder(const QString &key, const QString &path)
{
    QSettings().setValue(key, QFileInfo(path).absolutePath());
}

} // namespace

bool MainWindow::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() != QEvent::FileOpen)
        return QMainWindow::eventFilter(object, event);
    openProject(static_cast<QFileOpenEvent *>(event)->file(), true);
    return true;
}

bool MainWindow::isBusy() const
{
    return storing || (projectFile && projectFile->isBusy());
}

void MainWindow::newProject()
{
    qDebug() << "new project";
    if (isBusy())
        return;
    if (!interfaceLoaded) {
        loadFullInterface();
        setUntitledTitle();
        return;
    }
    const int answer = checkSave();
    if (answer == 2)
        return;
    const bool kept = giveUpProject(answer);
    clearInterface();
    if (kept)
        projectFile->discardAutoSaveFile();
    projectFile->resetOpenFilename();
    setUntitledTitle();
}

void MainWindow::openProject(QString openName, bool addToRecentFiles)
{
    if (isBusy()) {
        waitingOpenName = openName;
        return;
    }
    const int answer = checkSave();
    if (answer == 2)
        return;
    openFilename = openName.isEmpty() ? askOpenName() : openName;
    if (openFilename.isEmpty())
        return;
    const bool kept = giveUpProject(answer);
    loadFullInterface();
    clearInterface();
    if (kept && !openName.endsWith(".autosave"))
        projectFile->discardAutoSaveFile();
    readProject(addToRecentFiles);
    openWaitingProject();
}

QString MainWindow::askOpenName()
{
    return QFileDialog::getOpenFileName(this, "Open project file...",
                                        getStartFolder("lastOpenPath"), ProjectFilter);
}

void MainWindow::readProject(bool addToRecentFiles)
{
    mainView->setViewportUpdateMode(QGraphicsView::NoViewportUpdate);
    const auto resume = qScopeGuard([this] {
        mainView->setViewportUpdateMode(QGraphicsView::MinimalViewportUpdate);
        mainView->update();
        mainView->viewport()->update();
    });
    if (projectFile->openFile(openFilename)) {
        onProjectOpened(addToRecentFiles);
    } else {
        QMessageBox::critical(this, "Open failed",
                              "Opening failed, this does not seem to be a valid project file.",
                              QMessageBox::Ok);
        setUntitledTitle();
    }
}

void MainWindow::onProjectOpened(bool addToRecentFiles)
{
    if (addToRecentFiles) {
        addRecentFile(openFilename);
        rememberFolder("lastOpenPath", openFilename);
    }
    setTitleFor(projectFile->getOpenFilename());
    getMainScene()->setPageSize(PageInfo().getPrintableArea().size());
}

void MainWindow::openWaitingProject()
{
    if (waitingOpenName.isNull())
        return;
    const QString name = waitingOpenName;
    waitingOpenName.clear();
    QMetaObject::invokeMethod(
        this, [this, name] { openProject(name); }, Qt::QueuedConnection);
}

void MainWindow::openQuickStart()
{
    if (isBusy())
        return;
    const QString dataFolder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    openProject(dataFolder + "/templates/quickstart2.epf", false);
    projectFile->resetOpenFilename();
    setUntitledTitle();
}

void MainWindow::saveProject(bool chooseNewName, bool autoSave)
{
    if (isBusy() || !registrationCheck.permitsSaving())
        return;
    saveAction->setEnabled(false);
    const QString name =
        autoSave ? projectFile->getAutoSaveNameForOpenFile() : getSaveName(chooseNewName);
    if (name.isNull())
        return; // cancelled: the Save action stays off until a later save has ended
    if (autoSave)
        qDebug() << "Auto Saving to " << name;
    const auto finish = qScopeGuard([this] { saveAction->setEnabled(true); });
    storeProject(name, autoSave);
    openWaitingProject();
}

void MainWindow::saveProjectAs()
{
    saveProject(true, false);
}

void MainWindow::onAutoSaveRequested()
{
    qDebug() << "Auto save requested";
    saveProject(false, true);
}

QString MainWindow::getSaveName(bool chooseNewName)
{
    if (!chooseNewName && !projectFile->requiresFilenamePrompt())
        return projectFile->getOpenFilename();
    QString name = QFileDialog::getSaveFileName(this, "Save project file...",
                                                getStartFolder("lastSavePath"), ProjectFilter);
    if (name.isNull())
        return name;
    if (name.right(4) != ".epf")
        name += ".epf";
    rememberFolder("lastSavePath", name);
    removeFormerFile(name);
    addRecentFile(name);
    return name;
}

void MainWindow::removeFormerFile(const QString &name)
{
    if (!QFile::exists(name))
        return;
    projectFile->keepCopy(name);
    qDebug() << "deleting existing file" << name;
    qDebug() << QFile::remove(name);
}

void MainWindow::storeProject(const QString &name, bool autoSave)
{
    const QScopedValueRollback<bool> guard(storing, true);
    const QList<ProjectItem *> items = book->getProjectItems();
    if (autoSave) {
        statusBar()->showMessage("Autosaving...");
        const auto clear = qScopeGuard([this] { statusBar()->clearMessage(); });
        writeProject(name, items);
        return;
    }
    const bool foreignChange =
        name == projectFile->getOpenFilename() && projectFile->hasChangedOnDisk();
    SaveProgressDialog progress("Saving...", items.size(), this);
    connect(projectFile, &ProjectFile::itemSaved, &progress,
            &SaveProgressDialog::incrementProgress);
    progress.setWindowModality(Qt::WindowModal);
    progress.show();
    QCoreApplication::processEvents();
    if (!writeProject(name, items))
        return;
    setTitleFor(name);
    formTouched = false;
    unaskedChanges = false;
    if (foreignChange)
        tellOfForeignChange();
}

bool MainWindow::writeProject(const QString &name, const QList<ProjectItem *> &items)
{
    const FormValues values = collectFormValues();
    if (!projectFile->saveFile(name, items, values)) {
        QMessageBox::critical(this, "Save failed", SaveFailedText + projectFile->getLastError(),
                              QMessageBox::Ok);
        return false;
    }
    formView->rememberTitleImage(values);
    return true;
}

void MainWindow::tellOfForeignChange()
{
    statusBar()->showMessage("Another program had changed the file. What it wrote is among the "
                             "kept copies.",
                             MessageTime);
}

void MainWindow::onHandlerFailed(const QString &message)
{
    if (projectFile)
        projectFile->abandonSave();
    QMessageBox::critical(this, "Save failed", SaveFailedText + message, QMessageBox::Ok);
}

void MainWindow::onSnapshotRequested()
{
    keepSnapshot();
}

bool MainWindow::keepSnapshot()
{
    return projectFile->keepSnapshot(book->getProjectItems(), collectFormValues());
}

bool MainWindow::giveUpProject(int answer)
{
    if (!interfaceLoaded)
        return true;
    const bool savedInVain = answer == 0 && projectFile->isDirty();
    return !(savedInVain || unaskedChanges) || keepSnapshot();
}

FormValues MainWindow::collectFormValues() const
{
    FormValues values = formView->getAllFieldValues();
    formView->fillInTitleImage(values);
    return values;
}

int MainWindow::checkSave()
{
    if (!interfaceLoaded || !projectFile->isDirty())
        return 1;
    const QMessageBox::StandardButton answer = QMessageBox::question(
        this, "TRAC/Ex Examiner",
        "The project contains unsaved changes\nDo you want to save the changes?",
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    if (answer == QMessageBox::Save) {
        saveProject(false, false);
        return 0;
    }
    return answer == QMessageBox::Discard ? 1 : 2;
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    event->ignore(); // also when a save fails with an exception
    if (isBusy())
        return;
    const int answer = checkSave();
    if (answer == 2)
        return;
    const bool kept = giveUpProject(answer);
    if (projectFile && kept)
        projectFile->discardAutoSaveFile();
    event->accept();
}

void MainWindow::addRecentFile(const QString &path)
{
    QSettings settings;
    QStringList files = settings.value("recentFiles").toStringList();
    if (files.contains(path))
        return;
    if (files.size() >= MaximumRecentFiles)
        files.removeLast();
    files.prepend(path);
    settings.setValue("recentFiles", files);
}

void MainWindow::onFormChanged()
{
    formTouched = true;
    projectFile->setDirty();
}

void MainWindow::onDirtyChanged(bool dirty)
{
    setWindowModified(dirty);
    if (dirty)
        return;
    // One stack that becomes clean makes the whole project look so.
    unaskedChanges = unaskedChanges || formTouched || hasChangedStack();
    const QList<QUndoStack *> stacks = undoGroup->stacks();
    for (QUndoStack *stack : stacks)
        stack->setClean();
}

bool MainWindow::hasChangedStack() const
{
    const QList<QUndoStack *> stacks = undoGroup->stacks();
    return std::any_of(stacks.cbegin(), stacks.cend(),
                       [](const QUndoStack *stack) { return !stack->isClean(); });
}
