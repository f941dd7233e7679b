#include "form/formview.h"
#include "project/projectfile.h"
#include "project/saveprogressdialog.h"
#include "sheet/pageinfo.h"
#include "shell/graphwidget.h"
#include "shell/mainwindow.h"

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

namespace
{

constexpr int MaximumRecentFiles = 4;
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
    if (checkSave() == 2)
        return;
    clearInterface();
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
    if (checkSave() == 2)
        return;
    openFilename = openName.isEmpty() ? askOpenName() : openName;
    if (openFilename.isEmpty())
        return;
    loadFullInterface();
    clearInterface();
    if (!openName.endsWith(".autosave"))
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
    mainScene->setPageSize(PageInfo().getPrintableArea().size());
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
    const QList<ProjectItem *> items = collectItems();
    if (autoSave) {
        statusBar()->showMessage("Autosaving...");
        const auto clear = qScopeGuard([this] { statusBar()->clearMessage(); });
        writeProject(name, items);
        return;
    }
    SaveProgressDialog progress("Saving...", items.size(), this);
    connect(projectFile, &ProjectFile::itemSaved, &progress,
            &SaveProgressDialog::incrementProgress);
    progress.setWindowModality(Qt::WindowModal);
    progress.show();
    QCoreApplication::processEvents();
    if (writeProject(name, items))
        setTitleFor(name);
}

bool MainWindow::writeProject(const QString &name, const QList<ProjectItem *> &items)
{
    FormValues values = formView->getAllFieldValues();
    formView->fillInTitleImage(values);
    if (!projectFile->saveFile(name, items, values)) {
        QMessageBox::critical(this, "Save failed",
                              "Saving failed.\nThe error message is: " +
                                  projectFile->getLastError(),
                              QMessageBox::Ok);
        return false;
    }
    formView->rememberTitleImage(values);
    return true;
}

QList<ProjectItem *> MainWindow::collectItems() const
{
    QList<ProjectItem *> items = mainScene->getProjectItems();
    const QList<ProjectScene *> factorScenes = getFactorScenes();
    for (ProjectScene *scene : factorScenes)
        items += scene->getProjectItems();
    return items;
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
    if (isBusy() || checkSave() == 2)
        return;
    if (projectFile)
        projectFile->discardAutoSaveFile();
    event->accept();
}

void MainWindow::addRecentFile(const QString &path)
{
    QSettings settings;
    QStringList files = settings.value("recentFiles").toStringList();
    if (files.contains(path))
        return;
    while (files.size() >= MaximumRecentFiles)
        files.removeLast();
    files.prepend(path);
    settings.setValue("recentFiles", files);
}

void MainWindow::onDirtyChanged(bool dirty)
{
    setWindowModified(dirty);
    if (dirty)
        return;
    const QList<QUndoStack *> stacks = undoGroup->stacks();
    for (QUndoStack *stack : stacks)
        stack->setClean();
}
