#pragma once

#include "shell/registrationcheck.h"
#include "support/formvalue.h"

#include <QObject>
#include <QString>

#include <functional>

class FormView;
class ProjectFile;
class ProjectItem;
class QLabel;
class QMainWindow;
class QUndoGroup;
class SheetBook;

/// The project's road between the window and the disk: new, open, save, the question about
/// unsaved changes, and what is kept when a project is given up.
class ProjectDesk : public QObject
{
    Q_OBJECT

public:
    /// What checkSave() gives; callers proceed unless it is Cancelled.
    enum SaveAnswer {
        SaveWasRun = 0, ///< whatever became of it
        NothingInTheWay = 1,
        Cancelled = 2
    };

    static constexpr int MaximumRecentFiles = 4;

    explicit ProjectDesk(QMainWindow *window);

    /// Once the interface stands. All outlive this object.
    void setProject(ProjectFile *file, SheetBook *book, FormView *form, QUndoGroup *undoGroup);
    const RegistrationCheck &getRegistrationCheck() const { return registrationCheck; }

    void newProject();
    /// An empty name asks the user. False when the project shown stays.
    bool openProject(const QString &name, bool addToRecentFiles);
    void openQuickStart();
    void saveProject(bool chooseNewName, bool autoSave);
    SaveAnswer checkSave();
    /// Whether the window may close. Then the project is given up.
    bool leaveProject();
    void addRecentFile(const QString &name);
    /// What a document of the project calls itself.
    QString getDocumentTitle() const;
    /// A path for a dialog to start with: the project's name beside its file, or what the incident
    /// is called in the folder kept under the settings key.
    QString proposeFile(const QString &folderKey, const QString &ending) const;
    FormValues collectFormValues() const;
    /// Nothing is opened or saved and the window stays while the work handles events.
    void doUndisturbed(const std::function<void()> &work);
    void showUntitled();
    /// What is shown is as it was saved, or empty.
    void forgetChanges();
    /// Something is unsaved that the dirty mark does not tell.
    void noteUnaskedChange() { unaskedChanges = true; }

    /// Writes what is unsaved into a snapshot and an auto-save, which the start screen offers
    /// next time. Shows nothing and asks nothing; does nothing while a file is opened or saved.
    void keepUnsavedWork();
    /// Ends the program in order, once the file under work is opened or saved; unsaved work is
    /// kept, and nobody is asked.
    void endFromOutside();
    void onAutoSaveRequested();
    void onSnapshotRequested() { keepSnapshot(); }
    /// An exception left an event handler: a save that broke off is given up, and the project
    /// stays open with its changes.
    void onHandlerFailed(const QString &message);
    void onFormChanged();
    void onDirtyChanged(bool dirty);

signals:
    /// A project is to be shown: the window builds what it has not built yet.
    void interfaceNeeded();
    /// The project shown goes.
    void clearing();
    /// A file was opened and is shown.
    void opened();
    /// A save begins or has ended.
    void savingAllowed(bool allowed);
    /// A file left the list.
    void recentFilesChanged();

private:
    /// Into the file, or in the place of a former one.
    using Write = bool (ProjectFile::*)(const QString &name, const QList<ProjectItem *> &items,
                                        const FormValues &values);

    bool isBusy() const;
    /// The start screen as long as it stands in the window's place.
    QWidget *getWindowInFront() const;
    QString askOpenName();
    void tellThatFileIsGone(const QString &name);
    void readProject(bool addToRecentFiles);
    void onProjectOpened(bool addToRecentFiles);
    /// What was asked for while a file was opened or saved.
    void openWaitingProject();
    void setTitleFor(const QString &path);
    /// Null when the user cancelled.
    QString askNewName();
    void storeAutoSave(const QString &name);
    void storeProject(const QString &name, Write write);
    bool writeProject(const QString &name, const QList<ProjectItem *> &items, Write write);
    void tellOfFailedSave(const QString &message);
    void tellOfForeignChange();
    /// Where else the project is open stands in the status bar as long as it is so.
    void showOtherPlace();
    void tellOfOtherPlace(const QString &what);
    /// What was opened is a copy of a file that can't be written.
    void tellOfCopy();
    bool keepSnapshot();
    /// Keeps what the user wasn't asked about or could not save. Takes what checkSave gave.
    /// False when that failed: then an auto-save may be all that is left of the work.
    bool giveUpProject(SaveAnswer answer);
    bool hasChangedStack() const;

    QMainWindow *window;
    QLabel *otherPlaceLabel = nullptr;  // in the status bar, once the interface stands
    ProjectFile *projectFile = nullptr; // null until the interface stands, like the next three
    SheetBook *book = nullptr;
    FormView *formView = nullptr;
    QUndoGroup *undoGroup = nullptr;
    RegistrationCheck registrationCheck;
    QString openFilename;        // of the latest attempt to open
    QString waitingOpenName;     // asked for while the file was busy
    bool formTouched = false;    // since the last save or opening
    bool unaskedChanges = false; // something is unsaved that the dirty mark does not tell
    bool storing = false;        // from the first progress event to the end of a save
};
