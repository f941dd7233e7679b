#include "project/projectwriter.h"

#include "chart/chartsheet.h"
#include "chart/line.h"
#include "chart/toolid.h"
#include "project/rowvalues.h"
#include "support/pageinfo.h"
#include "support/projectsettings.h"

#include <QSet>

#include <limits>

namespace
{

constexpr qint64 LastRow = std::numeric_limits<qint64>::max(); // that the database can number

/// Of a text that is translated only here.
void require(bool done, const char *failure)
{
    if (!done)
        throw SaveError{ProjectWriter::tr(failure)};
}

/// Of a note or a form field.
template<typename Record> QByteArray getImage(const Record &record)
{
    return record.hiddenImage.isEmpty() ? encodeImage(record.image) : record.hiddenImage;
}

} // namespace

ProjectWriter::ProjectWriter(const QSqlDatabase &db, const std::function<void()> &onItem)
    : onItem(onItem), db(db), itemRows(db, "items", "guid"),
      propertyRows(db, "properties", "guid, name"), connectionRows(db, "connections", "lineguid"),
      formRows(db, "formdata", "id"),
      insertNoteRow(db, "INSERT INTO items VALUES(:guid, :type, :role, :x, :y, :width, :height, "
                        ":text, :font, :image, :parent)"),
      updateNoteRow(db, "UPDATE items SET role=:role, x=:x, y=:y, width=:width, height=:height, "
                        "text=:text, font=:font WHERE rowid=:row"),
      insertPictureRow(db, "INSERT INTO items VALUES(:guid, :type, 0, :x, :y, :width, :height, 0, "
                           "0, 0, :parent)"),
      updatePictureRow(db, "UPDATE items SET x=:x, y=:y, width=:width, height=:height "
                           "WHERE rowid=:row"),
      insertLineRow(db, "INSERT INTO items VALUES(:guid, :type, :role, :x, :y, :width, :height, "
                        "0, 0, 0, :parent)"),
      updateLineRow(db, "UPDATE items SET role=:role, x=:x, y=:y, width=:width, height=:height "
                        "WHERE rowid=:row"),
      deleteItemRow(db, "DELETE FROM items WHERE rowid=:row"),
      moveItemRow(db, "UPDATE items SET rowid=(SELECT max(rowid)+1 FROM items) WHERE rowid=:row "
                      "AND (SELECT max(rowid) FROM items)<:last"),
      insertProperty(db, "INSERT INTO properties VALUES(:guid, :name, :value)"),
      updateProperty(db, "UPDATE properties SET value=:value WHERE rowid=:row"),
      deleteProperty(db, "DELETE FROM properties WHERE rowid=:row"),
      insertConnection(db, "INSERT INTO connections VALUES(:lineguid, :startguid, :endguid, "
                           ":startside, :endside)"),
      deleteConnection(db, "DELETE FROM connections WHERE rowid=:row"),
      insertFormValue(db, "INSERT INTO formdata VALUES(:id, :value, :image)"),
      updateFormValue(db, "UPDATE formdata SET value=:value, image=:image WHERE rowid=:row"),
      deleteFormValue(db, "DELETE FROM formdata WHERE rowid=:row")
{
}

void ProjectWriter::write(const QList<ProjectItem *> &items, const FormValues &formValues)
{
    require(itemRows.load(), QT_TR_NOOP("Failed to get previous items"));
    deleteGoneItems(items);
    writeProjectProperties();
    for (ProjectItem *item : items) {
        if (item)
            writeItem(item);
        onItem();
    }
    writeFormValues(formValues);
}

void ProjectWriter::deleteGoneItems(const QList<ProjectItem *> &items)
{
    QSet<QString> present;
    for (const ProjectItem *item : items) {
        if (item)
            present.insert(item->getGUID());
    }
    const QStringList guids = itemRows.getKeys();
    for (const QString &guid : guids) {
        if (present.contains(guid))
            continue;
        for (const RowIndex::Row &row : itemRows.take(guid))
            require(deleteItemRow.run({row.id}), QT_TR_NOOP("Failed to delete item"));
        require(removeProperties(guid), QT_TR_NOOP("Failed to remove deleted item properties"));
        deletedItems = true;
    }
}

void ProjectWriter::writeProjectProperties()
{
    require(QSqlQuery(db).exec("DELETE FROM properties WHERE guid=\"project\""),
            QT_TR_NOOP("Failed to delete project properties"));
    propertyRows.take("project");
    const ProjectSettings settings;
    const auto write = [this](const char *name, const QString &value, const char *failure) {
        require(setProperty("project", name, value), failure);
    };
    write("margins", PageInfo().getMarginsString(),
          QT_TR_NOOP("Couldn't write margins project property"));
    write("paperSize", QString::number(settings.getPageSize()),
          QT_TR_NOOP("Couldn't write paper size project property"));
    write("font", settings.getFont(), QT_TR_NOOP("Couldn't write font project property"));
    const auto writeShown = [&](const char *part, const char *failure) {
        write(part, boolToString(settings.shows(part)), failure);
    };
    writeShown(ProjectSettings::PageNumbers,
               QT_TR_NOOP("Couldn't write page numbers project property"));
    writeShown(ProjectSettings::Legend, QT_TR_NOOP("Couldn't write legend project property"));
    writeShown(ProjectSettings::Header, QT_TR_NOOP("Couldn't write header project property"));
    write("dbVersion", QString::number(ProjectVersion),
          QT_TR_NOOP("Couldn't write DB version project property"));
}

void ProjectWriter::writeItem(ProjectItem *item)
{
    const bool isKnown = itemRows.contains(item->getGUID());
    switch (item->type()) {
    case ProjectItem::StickyType:
        writeNote(item->getCanvasItemInfo(), isKnown);
        break;
    case ProjectItem::SVGPictureType:
        writePicture(item->getCanvasItemInfo(), isKnown);
        break;
    case ProjectItem::LineType:
        writeLine(static_cast<Line *>(item), isKnown);
        break;
    default:
        break;
    }
    keepOrder(item, isKnown);
}

/// Rows are read by their number, and what is read later comes to lie on top of what is read
/// before. An item that left the sheet and came back lies above others, so its row follows.
void ProjectWriter::keepOrder(const ProjectItem *item, bool isKnown)
{
    const QString owner = item->getSheet()->getOwnerGUID();
    if (owner != orderedOwner)
        topRow = 0;
    orderedOwner = owner;
    const RowIndex::Rows rows = itemRows.getRows(item->getGUID());
    if (isKnown && (rows.size() > 1 || rows.first().id > topRow)) {
        topRow = rows.last().id;
        return;
    }
    if (isKnown)
        require(moveItemRow.run({rows.first().id, LastRow}),
                QT_TR_NOOP("Couldn't update note entry"));
    topRow = LastRow; // the new one is the highest of all
}

void ProjectWriter::writeNote(const CanvasItemInfo &info, bool isKnown)
{
    if (isKnown)
        updateNote(info);
    else
        insertNote(info);
    writeNoteProperties(info);
}

void ProjectWriter::insertNote(const CanvasItemInfo &info)
{
    // A note whose picture doesn't show is a plain one on the sheet.
    const int type = info.hiddenImage.isEmpty() ? info.type : int(ImageTool);
    const QByteArray image = getImage(info);
    require(insertNoteRow.run({info.guid, type, info.role.getTypeName(), info.startPoint.x(),
                               info.startPoint.y(), info.size.width(), info.size.height(),
                               textOf(info.text), fontOf(info), image, guidOrNull(info.parent)}),
            QT_TR_NOOP("Couldn't write note entry"));
}

void ProjectWriter::updateNote(const CanvasItemInfo &info)
{
    for (const RowIndex::Row &row : itemRows.getRows(info.guid)) {
        require(updateNoteRow.run({info.role.getTypeName(), info.startPoint.x(),
                                   info.startPoint.y(), info.size.width(), info.size.height(),
                                   textOf(info.text), fontOf(info), row.id}),
                QT_TR_NOOP("Couldn't update note entry"));
    }
    require(removeProperties(info.guid), QT_TR_NOOP("Failed to delete properties for item"));
}

void ProjectWriter::writeNoteProperties(const CanvasItemInfo &info)
{
    const auto write = [&](bool isDue, const char *name, const QString &value,
                           const char *failure) {
        if (isDue)
            require(setProperty(info.guid, name, value), failure);
    };
    write(info.backgroundColor.isValid(), "backgroundColor", info.backgroundColor.name(),
          QT_TR_NOOP("Couldn't write color property entry"));
    write(info.textColor.isValid(), "textColor", info.textColor.name(),
          QT_TR_NOOP("Couldn't write text color property entry"));
    write(info.customFont, "font", fontOf(info), QT_TR_NOOP("Couldn't write font property entry"));
    write(info.causalFactorNumber != 0, "causalFactorNumber",
          QString::number(info.causalFactorNumber),
          QT_TR_NOOP("Couldn't write causal factor number property entry"));
    write(!info.siblings.isEmpty(), "sibling", info.siblings.join(','),
          QT_TR_NOOP("Couldn't write sibling UID property entry"));
    write(true, "textAlignment", alignmentToString(info.textAlignment),
          QT_TR_NOOP("Couldn't write text alignment property entry"));
    write(info.notRelevant, "notRelevant", "true",
          QT_TR_NOOP("Couldn't write relevancy property entry"));
    write(info.borderLineWidth > 0, "borderLineWidth", QString::number(info.borderLineWidth),
          QT_TR_NOOP("Couldn't write line width property entry"));
}

void ProjectWriter::writePicture(const CanvasItemInfo &info, bool isKnown)
{
    if (!isKnown) {
        require(
            insertPictureRow.run({info.guid, info.type, info.startPoint.x(), info.startPoint.y(),
                                  info.size.width(), info.size.height(), guidOrNull(info.parent)}),
            QT_TR_NOOP("Couldn't write SVG picture entry"));
        return;
    }
    for (const RowIndex::Row &row : itemRows.getRows(info.guid)) {
        require(updatePictureRow.run({info.startPoint.x(), info.startPoint.y(), info.size.width(),
                                      info.size.height(), row.id}),
                QT_TR_NOOP("Couldn't update svg picture entry"));
    }
}

void ProjectWriter::writeLine(Line *line, bool isKnown)
{
    CanvasItemInfo info = line->getCanvasItemInfo();
    // A line doesn't keep its own record of the sheet up to date.
    const QString owner = line->getSheet()->getOwnerGUID();
    if (!owner.isEmpty())
        info.parent = owner;
    if (isKnown)
        updateLine(info);
    else
        insertLine(info);
    writeLineProperties(info);
    writeConnection(line);
}

void ProjectWriter::insertLine(const CanvasItemInfo &info)
{
    require(insertLineRow.run({info.guid, info.type, info.backgroundColor.name(),
                               info.startPoint.x(), info.startPoint.y(), info.size.width(),
                               info.size.height(), guidOrNull(info.parent)}),
            QT_TR_NOOP("Couldn't write line entry"));
}

void ProjectWriter::updateLine(const CanvasItemInfo &info)
{
    for (const RowIndex::Row &row : itemRows.getRows(info.guid)) {
        require(
            updateLineRow.run({info.backgroundColor.name(), info.startPoint.x(),
                               info.startPoint.y(), info.size.width(), info.size.height(), row.id}),
            QT_TR_NOOP("Couldn't update line entry"));
    }
    require(connectionRows.load(), QT_TR_NOOP("Failed to delete connections for item"));
    for (const RowIndex::Row &row : connectionRows.take(info.guid))
        require(deleteConnection.run({row.id}),
                QT_TR_NOOP("Failed to delete connections for item"));
}

void ProjectWriter::writeLineProperties(const CanvasItemInfo &info)
{
    require(setProperty(info.guid, "arrowStyle", QString::number(info.arrowStyle)),
            QT_TR_NOOP("Couldn't write arrow style property entry"));
    require(setProperty(info.guid, "lineStyle", QString::number(info.lineStyle)),
            QT_TR_NOOP("Couldn't write line style property entry"));
    if (info.borderLineWidth > 0)
        require(setProperty(info.guid, "borderLineWidth", QString::number(info.borderLineWidth)),
                QT_TR_NOOP("Couldn't write line width property entry"));
}

void ProjectWriter::writeConnection(Line *line)
{
    const ConnectionInfo start = line->getStartConnection();
    const ConnectionInfo end = line->getEndConnection();
    if (!start.item && !end.item)
        return;
    const auto getGuid = [](const ConnectionInfo &connection) {
        return connection.item ? connection.item->getGUID() : QString();
    };
    require(insertConnection.run({line->getGUID(), getGuid(start), getGuid(end),
                                  int(start.item ? start.side : Sticky::NoSide),
                                  int(end.item ? end.side : Sticky::NoSide)}),
            QT_TR_NOOP("Couldn't write line connection entry"));
    // For a second line of the same guid.
    connectionRows.add(line->getGUID(), {insertConnection.getLastRow(), QString()});
}

void ProjectWriter::writeFormValues(const FormValues &formValues)
{
    require(formRows.load(), QT_TR_NOOP("Failed to get previous form data"));
    const QStringList ids = formRows.getKeys();
    for (const QString &id : ids) {
        if (formValues.contains(id))
            continue;
        for (const RowIndex::Row &row : formRows.take(id))
            require(deleteFormValue.run({row.id}), QT_TR_NOOP("Failed to delete form item"));
    }
    for (auto field = formValues.begin(); field != formValues.end(); ++field)
        require(writeFormValue(field.key(), field.value()),
                QT_TR_NOOP("Couldn't insert form value"));
}

bool ProjectWriter::writeFormValue(const QString &id, const FormValue &value)
{
    const QByteArray image = getImage(value);
    const RowIndex::Rows rows = formRows.getRows(id);
    for (const RowIndex::Row &row : rows) {
        if (!updateFormValue.run({textOf(value.value), image, row.id}))
            return false;
    }
    return !rows.isEmpty() || insertFormValue.run({textOf(id), textOf(value.value), image});
}

bool ProjectWriter::removeProperties(const QString &guid)
{
    if (!propertyRows.load())
        return false;
    for (const RowIndex::Row &row : propertyRows.take(guid)) {
        if (!deleteProperty.run({row.id}))
            return false;
    }
    return true;
}

bool ProjectWriter::setProperty(const QString &guid, const QString &name, const QString &value)
{
    if (!propertyRows.load())
        return false;
    bool found = false;
    for (const RowIndex::Row &row : propertyRows.getRows(guid)) {
        if (row.name != name)
            continue;
        found = true;
        if (!updateProperty.run({textOf(value), row.id}))
            return false;
    }
    if (found)
        return true;
    if (!insertProperty.run({guid, name, textOf(value)}))
        return false;
    propertyRows.add(guid, {insertProperty.getLastRow(), name});
    return true;
}
