#pragma once

#include "project/rowindex.h"
#include "project/statement.h"
#include "support/formvalue.h"

#include <QCoreApplication>

#include <functional>

class Line;
class ProjectItem;
struct CanvasItemInfo;

/// A step of writing that failed, in the words for the user.
struct SaveError {
    QString text;
};

/// Reconciles the rows of an open project database with the project: rows of what is gone go,
/// known rows are updated, new ones inserted. The rows come out as if each statement sought
/// its row by its text, but none does, as that would read a table for each item.
class ProjectWriter
{
    Q_DECLARE_TR_FUNCTIONS(ProjectWriter)

public:
    /// `onItem` is called for each entry of the items, whatever it is.
    ProjectWriter(const QSqlDatabase &db, const std::function<void()> &onItem);

    /// Writes all within the caller's transaction; throws SaveError.
    void write(const QList<ProjectItem *> &items, const FormValues &formValues);
    /// Whether the last write found items in the file that are gone from the project.
    bool hasDeletedItems() const { return deletedItems; }

private:
    void deleteGoneItems(const QList<ProjectItem *> &items);
    void writeProjectProperties();
    void writeItem(ProjectItem *item);
    void keepOrder(const ProjectItem *item, bool isKnown);
    void writeNote(const CanvasItemInfo &info, bool isKnown);
    void insertNote(const CanvasItemInfo &info);
    void updateNote(const CanvasItemInfo &info);
    void writeNoteProperties(const CanvasItemInfo &info);
    void writePicture(const CanvasItemInfo &info, bool isKnown);
    void writeLine(Line *line, bool isKnown);
    void insertLine(const CanvasItemInfo &info);
    void updateLine(const CanvasItemInfo &info);
    void writeLineProperties(const CanvasItemInfo &info);
    void writeConnection(Line *line);
    void writeFormValues(const FormValues &formValues);
    bool writeFormValue(const QString &id, const FormValue &value);

    bool removeProperties(const QString &guid);
    bool setProperty(const QString &guid, const QString &name, const QString &value);

    std::function<void()> onItem;
    QSqlDatabase db;
    RowIndex itemRows;
    RowIndex propertyRows;
    RowIndex connectionRows;
    RowIndex formRows;
    Statement insertNoteRow;
    Statement updateNoteRow;
    Statement insertPictureRow;
    Statement updatePictureRow;
    Statement insertLineRow;
    Statement updateLineRow;
    Statement deleteItemRow;
    Statement moveItemRow;
    Statement insertProperty;
    Statement updateProperty;
    Statement deleteProperty;
    Statement insertConnection;
    Statement deleteConnection;
    Statement insertFormValue;
    Statement updateFormValue;
    Statement deleteFormValue;
    bool deletedItems = false;
    QString orderedOwner; // of the sheet whose items come
    qint64 topRow = 0;    // of that sheet so far
};
