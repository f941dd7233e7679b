#pragma once

#include "chart/canvasiteminfo.h"
#include "form/formvalue.h"

#include <QHash>
#include <QMutex>
#include <QObject>
#include <QTimer>

class ProjectItem;
class QSqlDatabase;
class QSqlQuery;
class SheetHost;

/// The project on disk: opening, saving, the dirty flag and the auto-save clock.
/// Failures give false and leave their text in getLastError().
class ProjectFile : public QObject
{
    Q_OBJECT

public:
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
    /// While a file is opened or saved nothing else may open or save.
    bool isBusy() const { return busy; }

    bool openFile(const QString &filename);
    /// Reconciles the rows of the file with the items. An error at the commit
    /// leaves it as a QString exception, told by the driver.
    bool saveFile(const QString &filename, const QList<ProjectItem *> &items,
                  const QHash<QString, FormValue> &formValues);
    void resetOpenFilename();
    void discardAutoSaveFile();
    void setLastError(const QString &message);

    bool createTables(QSqlDatabase &db);
    void upgradeFileDatabase(QSqlDatabase &db, int version);
    bool setItemProperty(QSqlQuery &query, const QString &guid, const QString &name,
                         const QString &value);
    /// Null when there is no such row.
    QString getItemProperty(QSqlQuery &query, const QString &guid, const QString &name);
    bool setFormValue(QSqlQuery &query, const QString &id, const FormValue &value);

    static QString boolToString(bool value);
    /// True for exactly "true".
    static bool stringToBool(const QString &text);
    static QString alignmentToString(Qt::Alignment alignment);
    static Qt::Alignment stringToAlignment(const QString &text);

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

private:
    bool dirty = false;
    QString openFilename = "untitled";
    SheetHost *host;
    QString lastError;
    QTimer *autoSaveTimer;
    QMutex saveMutex;
    QString autoSavePath; // ends in "/"
    bool busy = false;
};
