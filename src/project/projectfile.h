#pragma once

#include "chart/canvasiteminfo.h"
#include "project/keptcopies.h"
#include "project/projectlock.h"
#include "project/rowvalues.h"
#include "support/formvalue.h"

#include <QHash>
#include <QMutex>
#include <QObject>
#include <QTimer>

#include <functional>

class ProjectItem;
class SaveProgressDialog;
struct ProjectContent;
class QSqlDatabase;
class QSqlQuery;
class SheetHost;

/// The project on disk: opening, saving, the dirty flag and the auto-save clock.
/// Failures give false and leave their text in getLastError().
class ProjectFile : public QObject
{
    Q_OBJECT

public:
    static constexpr int Version = ProjectVersion;

    /// `host` finds sheets and is where progress dialogs stand; it outlives this object.
    explicit ProjectFile(SheetHost *host);
    ~ProjectFile() override;

    bool isDirty() const { return dirty; }
    /// A path, a bare name after a restored auto-save, or "untitled".
    const QString &getOpenFilename() const { return openFilename; }
    /// The latest failure; never cleared.
    const QString &getLastError() const { return lastError; }
    /// The name for display, without folder and ".epf".
    QString getOpenProjectName() const;
    bool requiresFilenamePrompt() const;
    /// The path of the auto-save file of the open project; null without a name.
    QString getAutoSaveNameForOpenFile() const;
    /// While a file is opened or saved nothing else may open or save: the clocks rest, and
    /// openFile, saveFile and keepSnapshot give false.
    bool isBusy() const { return busy; }
    /// Whether something else wrote into the open file since it was read or saved here.
    /// False for a file that is gone.
    bool hasChangedOnDisk() const;
    /// Where else the open project is open, in the user's words, as of its opening or its last
    /// save; empty when it isn't.
    const QString &getOtherPlace() const { return lock.getOtherPlace(); }

    /// Reads all of the file before it emits anything. After a failure the project is untitled.
    /// A restored auto-save asks for a new one through requestAutoSave(), from the event loop.
    bool openFile(const QString &filename);
    /// Reconciles the rows of the file with the items. An error at the commit
    /// leaves it as a QString exception, told by the driver; who catches it
    /// calls abandonSave().
    bool saveFile(const QString &filename, const QList<ProjectItem *> &items,
                  const QHash<QString, FormValue> &formValues);
    /// The same into a new file, which takes the place of what stands there when it is whole and
    /// the former is kept; until then nothing is removed. For a name chosen by the user.
    bool saveNewFile(const QString &filename, const QList<ProjectItem *> &items,
                     const QHash<QString, FormValue> &formValues);
    /// After an exception out of a save: rolls back and closes the database. The project
    /// stays open and dirty. Harmless at any other time.
    void abandonSave();
    void resetOpenFilename();
    void discardAutoSaveFile();
    void setLastError(const QString &message);

    /// Milliseconds of unbroken editing until requestSnapshot(); 10 minutes at first.
    void setSnapshotInterval(int interval) { snapshotTimer.setInterval(interval); }

    /// Puts a copy of a file into the kept copies unless this process wrote the file last. False
    /// when that fails: then the file must not be removed.
    bool keepCopy(const QString &path);
    /// Writes the whole project into a new file among the kept copies. Name, dirty mark and
    /// auto-save stay as they are. For work that would else be lost: given up after a failed
    /// save, closed with changes on some sheet, or asked for by requestSnapshot(). False when
    /// that fails, which lastError tells.
    bool keepSnapshot(const QList<ProjectItem *> &items,
                      const QHash<QString, FormValue> &formValues);

    bool createTables(QSqlDatabase &db);
    /// Only version 0 is older. False when a row can't be written; the caller then rolls back.
    bool upgradeFileDatabase(QSqlDatabase &db, int version);
    bool setItemProperty(QSqlQuery &query, const QString &guid, const QString &name,
                         const QString &value);
    /// Null when there is no such row.
    QString getItemProperty(QSqlQuery &query, const QString &guid, const QString &name);
    bool setFormValue(QSqlQuery &query, const QString &id, const FormValue &value);

    static QString boolToString(bool value) { return ::boolToString(value); }
    static bool stringToBool(const QString &text) { return ::stringToBool(text); }
    static QString alignmentToString(Qt::Alignment alignment)
    {
        return ::alignmentToString(alignment);
    }
    static Qt::Alignment stringToAlignment(const QString &text)
    {
        return ::stringToAlignment(text);
    }

public slots:
    /// Restarts the auto-save clock when true, stops it when false.
    void setDirty(bool d = true);
    void setClean(bool clean);

signals:
    void loadedItem(CanvasItemInfo &info);
    void loadedFormData(QHash<QString, FormValue> values);
    void projectNameChanged();
    void itemLoadingComplete(int, int);
    void itemSaved();
    void dirtyChanged(bool dirty);
    void requestAutoSave();
    /// An older file that can't be written was opened from a copy in its newer form: the user
    /// has to save it under another name, which requiresFilenamePrompt() tells too.
    void openedAsCopy();
    /// The project is dirty, and for 10 minutes neither a save nor an auto-save came about:
    /// time for keepSnapshot().
    void requestSnapshot();

private slots:
    void onAutoSaveTimeout();
    void onSnapshotTimeout();

private:
    class BusyGuard
    {
    public:
        explicit BusyGuard(ProjectFile *file);
        ~BusyGuard();

    private:
        Q_DISABLE_COPY(BusyGuard)
        ProjectFile *file;
    };

    using Write = bool (ProjectFile::*)(const QString &target, const QList<ProjectItem *> &items,
                                        const QHash<QString, FormValue> &formValues);

    static bool isAutoSaveName(const QString &filename);
    bool refuseWhenBusy();
    bool isSafeFile(const QString &filename);
    bool readFile(const QString &filename);
    /// `guid` becomes that of the note, empty without one.
    bool mirrorNote(QSqlQuery &query, const QString &role, const QString &fieldId, QString &guid);
    bool mirrorCausalFactors(QSqlQuery &query, const QString &lossOfControl);
    bool openDatabase(QSqlDatabase &db, const QString &filename);
    bool readVersion(QSqlDatabase &db, int &version);
    bool upgradeOpenedFile(QSqlDatabase &db, const QString &filename, int version,
                           const QString &copy);
    bool upgradeInTransaction(QSqlDatabase &db);
    bool refuse(QSqlDatabase &db, const QString &message);
    bool readContent(QSqlDatabase &db, ProjectContent &content, SaveProgressDialog &progress);
    void deliver(ProjectContent &content, SaveProgressDialog &progress);
    void connectLines(const ProjectContent &content, SaveProgressDialog &progress);
    void finishOpening(const QString &filename, bool fromAutoSave);
    bool save(const QString &filename, const QList<ProjectItem *> &items,
              const QHash<QString, FormValue> &formValues, Write write);
    bool writeInto(const QString &target, const QList<ProjectItem *> &items,
                   const QHash<QString, FormValue> &formValues);
    bool writeInPlaceOf(const QString &target, const QList<ProjectItem *> &items,
                        const QHash<QString, FormValue> &formValues);
    bool openForWriting(QSqlDatabase &db, const QString &filename);
    /// `deletedItems` tells whether the file held items that are gone.
    bool writeProject(QSqlDatabase &db, const QList<ProjectItem *> &items,
                      const QHash<QString, FormValue> &formValues,
                      const std::function<void()> &onItem, bool &deletedItems);
    bool writeSnapshot(const QString &path, const QList<ProjectItem *> &items,
                       const QHash<QString, FormValue> &formValues);
    /// Throws the driver's text, like a failed commit.
    void shrink(QSqlDatabase &db);
    void restartSnapshotClock();
    void finishSaving(const QString &filename, const QString &autoSaveName);

    bool dirty = false;
    QString openFilename = "untitled";
    SheetHost *host;
    QString lastError;
    QTimer *autoSaveTimer;
    QMutex saveMutex;
    QString autoSavePath; // ends in "/"
    bool busy = false;
    bool isCopy = false;        // of a file that can't be written
    bool autoSaveWaits = false; // its time came while a file was opened or saved
    QTimer snapshotTimer;
    KeptCopies keptCopies;
    ProjectLock lock;         // of the open file
    QByteArray openStamp;     // the open file as it was read or saved
    qint64 readingBudget = 0; // steps that the database may still take
};
