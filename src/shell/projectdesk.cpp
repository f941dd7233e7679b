#include "shell/projectdesk.h"

#include "form/formview.h"
#include "output/sheetprinter.h"
#include "project/projectfile.h"
#include "project/saveprogressdialog.h"
#include "sheet/projectscene.h"
#include "sheet/sheetbook.h"
#include "shell/filenames.h"
#include "support/desktoprecents.h"
#include "support/log.h"
#include "support/pageinfo.h"

#include <QApplication>
#include <QCoreApplication>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QGraphicsView>
#include <QLabel>
#include <QMainWindow>
#include <QMessageBox>
#include <QScopeGuard>
#include <QScopedValueRollback>
#include <QSettings>
#include <QStandardPaths>
#include <QStatusBar>
#include <QTimer>
#include <QUndoGroup>
#include <QUndoStack>
#include <QWindow>

#include <algorithm>

namespace
{

constexpr int MessageTime = 15000; // milliseconds, like the next
constexpr int BusyPause = 50;
constexpr int LabelIndent = 8; // pixels from a message that is cut off
constexpr char SaveFailedText[] =
    QT_TRANSLATE_NOOP("ProjectDesk", "Saving failed.\nThe error message is: %1");
constexpr char ProjectFilter[] =
    QT_TRANSLATE_NOOP("ProjectDesk", "TRAC/Ex Examiner Project (*.epf)");
constexpr char LastSaveText[] =
    QT_TRANSLATE_NOOP("ProjectDesk", "Who saves last replaces what the other has saved; what is "
                                     "replaced stays among the kept copies.");

} // namespace

ProjectDesk::ProjectDesk(QMainWindow *window) : QObject(window), window(window) {}

void ProjectDesk::setProject(ProjectFile *file, SheetBook *sheets, FormView *form,
                             QUndoGroup *group)
{
    projectFile = file;
    book = sheets;
    formView = form;
    undoGroup = group;
    connect(file, &ProjectFile::requestAutoSave, this, &ProjectDesk::onAutoSaveRequested);
    connect(file, &ProjectFile::requestSnapshot, this, &ProjectDesk::onSnapshotRequested);
    // Queued: nothing may run within the opening.
    connect(file, &ProjectFile::openedAsCopy, this, &ProjectDesk::tellOfCopy, Qt::QueuedConnection);
    connect(file, &ProjectFile::dirtyChanged, this, &ProjectDesk::onDirtyChanged);
    connect(form, &FormView::formChanged, this, &ProjectDesk::onFormChanged);
    otherPlaceLabel = new QLabel;
    otherPlaceLabel->setObjectName("otherPlaceLabel");
    otherPlaceLabel->setToolTip(tr(LastSaveText)); // the message may be cut off, and goes
    otherPlaceLabel->setIndent(LabelIndent);
    window->statusBar()->insertPermanentWidget(0, otherPlaceLabel);
    otherPlaceLabel->hide();
    connect(file, &ProjectFile::projectNameChanged, this, &ProjectDesk::showOtherPlace);
}

void ProjectDesk::showUntitled()
{
    window->setWindowTitle(tr("untitled[*] - TRAC/Ex Examiner"));
}

void ProjectDesk::setTitleFor(const QString &path)
{
    window->setWindowTitle(QString(path).replace("[*]", "[*][*]") + "[*] - TRAC/Ex Examiner");
}

void ProjectDesk::forgetChanges()
{
    formTouched = false;
    unaskedChanges = false;
}

bool ProjectDesk::isBusy() const
{
    return storing || (projectFile && projectFile->isBusy());
}

void ProjectDesk::newProject()
{
    qCDebug(shellLog) << "new project";
    if (isBusy())
        return;
    if (!projectFile) {
        emit interfaceNeeded();
        showUntitled();
        return;
    }
    const SaveAnswer answer = checkSave();
    if (answer == Cancelled)
        return;
    const bool kept = giveUpProject(answer);
    emit clearing();
    if (kept)
        projectFile->discardAutoSaveFile();
    projectFile->resetOpenFilename();
    showUntitled();
}

bool ProjectDesk::openProject(const QString &name, bool addToRecentFiles)
{
    if (isBusy()) {
        waitingOpenName = name;
        return false;
    }
    if (!name.isEmpty() && !QFile::exists(name)) {
        tellThatFileIsGone(name);
        return false;
    }
    const SaveAnswer answer = checkSave();
    if (answer == Cancelled)
        return false;
    openFilename = name.isEmpty() ? askOpenName() : name;
    if (openFilename.isEmpty())
        return false;
    const bool kept = giveUpProject(answer);
    emit interfaceNeeded();
    emit clearing();
    if (kept && !name.endsWith(".autosave"))
        projectFile->discardAutoSaveFile();
    readProject(addToRecentFiles);
    openWaitingProject();
    return true;
}

void ProjectDesk::tellThatFileIsGone(const QString &name)
{
    QSettings settings;
    QStringList files = settings.value("recentFiles").toStringList();
    if (files.removeOne(name)) {
        settings.setValue("recentFiles", files);
        emit recentFilesChanged();
    }
    QMessageBox::critical(getWindowInFront(), tr("Open failed"),
                          tr("The file %1 is no longer there.").arg(name), QMessageBox::Ok);
}

QWidget *ProjectDesk::getWindowInFront() const
{
    const bool stands = window->isVisible() && window->windowHandle()->isExposed();
    return stands ? window : QApplication::activeWindow();
}

QString ProjectDesk::askOpenName()
{
    return QFileDialog::getOpenFileName(getWindowInFront(), tr("Open project file..."),
                                        getStartFolder("lastOpenPath"), tr(ProjectFilter));
}

void ProjectDesk::readProject(bool addToRecentFiles)
{
    QGraphicsView *mainView = book->getMainSheet()->views().first();
    mainView->setViewportUpdateMode(QGraphicsView::NoViewportUpdate);
    const auto resume = qScopeGuard([mainView] {
        mainView->setViewportUpdateMode(QGraphicsView::MinimalViewportUpdate);
        mainView->update();
        mainView->viewport()->update();
    });
    const bool opened = projectFile->openFile(openFilename);
    // The settings hold the paper of a refused file, too.
    book->getMainSheet()->setPageSize(PageInfo().getPrintableArea().size());
    if (opened) {
        onProjectOpened(addToRecentFiles);
    } else {
        QMessageBox::critical(getWindowInFront(), tr("Open failed"),
                              tr("Opening failed, this does not seem to be a valid project file."),
                              QMessageBox::Ok);
        showUntitled();
    }
}

void ProjectDesk::onProjectOpened(bool addToRecentFiles)
{
    if (addToRecentFiles) {
        addRecentFile(openFilename);
        rememberFolder("lastOpenPath", openFilename);
    }
    emit opened();
    setTitleFor(projectFile->getOpenFilename());
    tellOfOtherPlace(tr("This project is also open %1."));
}

void ProjectDesk::doUndisturbed(const std::function<void()> &work)
{
    {
        const QScopedValueRollback<bool> guard(storing, true);
        work();
    }
    openWaitingProject();
}

void ProjectDesk::openWaitingProject()
{
    if (waitingOpenName.isNull())
        return;
    const QString name = waitingOpenName;
    waitingOpenName.clear();
    QMetaObject::invokeMethod(
        this, [this, name] { openProject(name, true); }, Qt::QueuedConnection);
}

void ProjectDesk::openQuickStart()
{
    if (isBusy())
        return;
    const QString dataFolder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    if (!openProject(dataFolder + "/templates/quickstart2.epf", false))
        return;
    projectFile->resetOpenFilename();
    showUntitled();
}

void ProjectDesk::saveProject(bool chooseNewName, bool autoSave)
{
    if (isBusy() || !registrationCheck.permitsSaving())
        return;
    if (autoSave)
        book->shareEditedText();
    else
        book->commitEditing();
    emit savingAllowed(false);
    const bool chosen = !autoSave && (chooseNewName || projectFile->requiresFilenamePrompt());
    const QString name = chosen     ? askNewName()
                         : autoSave ? projectFile->getAutoSaveNameForOpenFile()
                                    : projectFile->getOpenFilename();
    if (name.isNull())
        return; // cancelled: the Save action stays off until a later save has ended
    if (autoSave)
        qCDebug(shellLog) << "Auto Saving to " << name;
    const auto finish = qScopeGuard([this] { emit savingAllowed(true); });
    if (autoSave)
        storeAutoSave(name);
    else
        storeProject(name, chosen ? &ProjectFile::saveNewFile : &ProjectFile::saveFile);
    openWaitingProject();
}

void ProjectDesk::onAutoSaveRequested()
{
    qCDebug(shellLog) << "Auto save requested";
    saveProject(false, true);
}

QString ProjectDesk::proposeFile(const QString &folderKey, const QString &ending) const
{
    if (!projectFile->requiresFilenamePrompt())
        return getProposal(QFileInfo(projectFile->getOpenFilename()).absolutePath() + "/",
                           projectFile->getOpenProjectName(), ending);
    return getProposal(getStartFolder(folderKey), getDocumentTitle(), ending);
}

QString ProjectDesk::getDocumentTitle() const
{
    return SheetPrinter::makeTitle(formView->getFieldValue("incidentTitle"),
                                   projectFile->getOpenProjectName());
}

QString ProjectDesk::askNewName()
{
    const QString name =
        askSaveName(window, tr("Save project file..."), proposeFile("lastSavePath", ".epf"),
                    tr(ProjectFilter), ".epf", Qt::CaseSensitive);
    if (name.isNull())
        return name;
    rememberFolder("lastSavePath", name);
    addRecentFile(name);
    return name;
}

void ProjectDesk::storeAutoSave(const QString &name)
{
    const QScopedValueRollback<bool> guard(storing, true);
    window->statusBar()->showMessage(tr("Autosaving..."));
    const auto clear = qScopeGuard([this] { window->statusBar()->clearMessage(); });
    if (writeProject(name, book->getProjectItems(), &ProjectFile::saveFile))
        return;
    const QString message = projectFile->getLastError();
    keepSnapshot(); // the project's folder is gone, perhaps; the work must not live in memory alone
    tellOfFailedSave(message);
}

void ProjectDesk::storeProject(const QString &name, Write write)
{
    const QScopedValueRollback<bool> guard(storing, true);
    const QList<ProjectItem *> items = book->getProjectItems();
    const bool foreignChange =
        name == projectFile->getOpenFilename() && projectFile->hasChangedOnDisk();
    SaveProgressDialog progress(tr("Saving..."), items.size(), window);
    connect(projectFile, &ProjectFile::itemSaved, &progress,
            &SaveProgressDialog::incrementProgress);
    progress.setWindowModality(Qt::WindowModal);
    progress.show();
    QCoreApplication::processEvents();
    if (!writeProject(name, items, write)) {
        progress.hide(); // else the keys would be its own after the message
        return tellOfFailedSave(projectFile->getLastError());
    }
    setTitleFor(name);
    forgetChanges();
    if (foreignChange)
        tellOfForeignChange();
    else if (!projectFile->getOtherPlace().isEmpty())
        tellOfOtherPlace(tr("Saved, but this project is also open %1."));
    else
        window->statusBar()->showMessage(tr("Saved %1").arg(name), MessageTime);
}

bool ProjectDesk::writeProject(const QString &name, const QList<ProjectItem *> &items, Write write)
{
    const FormValues values = collectFormValues();
    return (projectFile->*write)(name, items, values);
}

void ProjectDesk::tellOfFailedSave(const QString &message)
{
    QMessageBox::critical(window, tr("Save failed"), tr(SaveFailedText).arg(message),
                          QMessageBox::Ok);
}

void ProjectDesk::tellOfCopy()
{
    QMessageBox::information(
        window, "TRAC/Ex Examiner",
        tr("This project is of an older version and its file can't be written.\n"
           "Use Save As to keep your changes under another name."),
        QMessageBox::Ok);
}

void ProjectDesk::tellOfForeignChange()
{
    window->statusBar()->showMessage(
        tr("Another program had changed the file. What it wrote is among the "
           "kept copies."),
        MessageTime);
}

void ProjectDesk::showOtherPlace()
{
    const QString place = projectFile->getOtherPlace();
    otherPlaceLabel->setText(tr("Also open %1").arg(place));
    otherPlaceLabel->setVisible(!place.isEmpty());
}

void ProjectDesk::tellOfOtherPlace(const QString &what)
{
    const QString place = projectFile->getOtherPlace();
    if (place.isEmpty())
        return;
    window->statusBar()->showMessage(what.arg(place) + ' ' + tr(LastSaveText), MessageTime);
}

void ProjectDesk::keepUnsavedWork()
{
    if (!projectFile || projectFile->isBusy() || !(projectFile->isDirty() || unaskedChanges))
        return;
    keepSnapshot();
    try {
        projectFile->saveFile(projectFile->getAutoSaveNameForOpenFile(), book->getProjectItems(),
                              collectFormValues());
    } catch (const QString &) { // the disk is full, perhaps; there is nobody to tell
        projectFile->abandonSave();
    }
}

void ProjectDesk::endFromOutside()
{
    if (projectFile && projectFile->isBusy()) {
        QTimer::singleShot(BusyPause, this, &ProjectDesk::endFromOutside);
        return;
    }
    const auto end = qScopeGuard([] { QCoreApplication::quit(); });
    keepUnsavedWork();
}

void ProjectDesk::onHandlerFailed(const QString &message)
{
    if (projectFile)
        projectFile->abandonSave();
    tellOfFailedSave(message);
}

bool ProjectDesk::keepSnapshot()
{
    book->shareEditedText();
    return projectFile->keepSnapshot(book->getProjectItems(), collectFormValues());
}

bool ProjectDesk::giveUpProject(SaveAnswer answer)
{
    if (!projectFile)
        return true;
    const bool savedInVain = answer == SaveWasRun && projectFile->isDirty();
    return !(savedInVain || unaskedChanges) || keepSnapshot();
}

FormValues ProjectDesk::collectFormValues() const
{
    return formView->collectForSave();
}

ProjectDesk::SaveAnswer ProjectDesk::checkSave()
{
    if (!projectFile)
        return NothingInTheWay;
    book->finishEditing();
    if (!projectFile->isDirty())
        return NothingInTheWay;
    const QMessageBox::StandardButton answer = QMessageBox::question(
        window, "TRAC/Ex Examiner",
        tr("The project contains unsaved changes\nDo you want to save the changes?"),
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    if (answer == QMessageBox::Save) {
        saveProject(false, false);
        return SaveWasRun;
    }
    return answer == QMessageBox::Discard ? NothingInTheWay : Cancelled;
}

bool ProjectDesk::leaveProject()
{
    if (isBusy())
        return false;
    const SaveAnswer answer = checkSave();
    if (answer == Cancelled)
        return false;
    const bool kept = giveUpProject(answer);
    if (projectFile && kept)
        projectFile->discardAutoSaveFile();
    return true;
}

void ProjectDesk::addRecentFile(const QString &name)
{
    const QString path = QFileInfo(name).absoluteFilePath();
    addToDesktopRecents(path);
    QSettings settings;
    QStringList files = settings.value("recentFiles").toStringList();
    if (files.contains(path))
        return;
    if (files.size() >= MaximumRecentFiles)
        files.removeLast();
    files.prepend(path);
    settings.setValue("recentFiles", files);
}

void ProjectDesk::onFormChanged()
{
    formTouched = true;
    projectFile->setDirty();
}

void ProjectDesk::onDirtyChanged(bool dirty)
{
    window->setWindowModified(dirty);
    if (dirty)
        return;
    // One stack that becomes clean makes the whole project look so.
    unaskedChanges = unaskedChanges || formTouched || hasChangedStack();
    const QList<QUndoStack *> stacks = undoGroup->stacks();
    for (QUndoStack *stack : stacks)
        stack->setClean();
}

bool ProjectDesk::hasChangedStack() const
{
    const QList<QUndoStack *> stacks = undoGroup->stacks();
    return std::any_of(stacks.cbegin(), stacks.cend(),
                       [](const QUndoStack *stack) { return !stack->isClean(); });
}
