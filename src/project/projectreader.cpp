#include "project/projectreader.h"

#include "chart/toolid.h"
#include "project/rowvalues.h"
#include "support/fonts.h"
#include "support/images.h"
#include "support/projectsettings.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QtMath>

namespace
{

// Two gigabytes of pictures in one project: one half in full, then smaller ones, then none.
constexpr qint64 MaximumPixels = 500 * 1000 * 1000;
constexpr qint64 SmallPixels = 1000 * 1000; // for ten centimetres on paper

double boundCoordinate(double value)
{
    constexpr double limit = ProjectReader::MaximumCoordinate;
    return qIsFinite(value) ? qBound(-limit, value, limit) : 0;
}

/// Keeps the far end on the canvas too. Values that lie there already stay as they are.
double boundExtent(double start, double extent)
{
    const double bounded = boundCoordinate(extent);
    const double end = boundCoordinate(start + bounded);
    return end == start + bounded ? bounded : end - start;
}

bool readFont(const QString &text, QFont &font)
{
    QFont decoded;
    if (!decodeFont(text, decoded))
        return false;
    // Written so that a size that is no number fails too.
    if (!(decoded.pointSizeF() <= ProjectReader::MaximumFontSize) ||
        decoded.pixelSize() > ProjectReader::MaximumFontSize)
        return false;
    font = decoded;
    return true;
}

void readColor(const QString &text, QColor &color)
{
    color = QColor::isValidColor(text) ? QColor(text) : QColor();
}

/// Some words for a number reach far beyond what a pen knows.
void readLineStyle(const QString &text, int &style)
{
    const int number = text.toInt();
    if (number >= Qt::NoPen && number <= Qt::DashDotDotLine)
        style = number;
}

/// Null for a column that the table lacks.
QVariant getValue(const QSqlQuery &query, int column)
{
    return column < 0 ? QVariant() : query.value(column);
}

} // namespace

struct ProjectReader::ItemColumns {
    explicit ItemColumns(const QSqlRecord &record)
        : guid(record.indexOf("guid")), type(record.indexOf("type")), role(record.indexOf("role")),
          x(record.indexOf("x")), y(record.indexOf("y")), width(record.indexOf("width")),
          height(record.indexOf("height")), text(record.indexOf("text")),
          font(record.indexOf("font")), image(record.indexOf("image")),
          parent(record.indexOf("parent"))
    {
    }

    int guid, type, role, x, y, width, height, text, font, image, parent;
};

ProjectReader::ProjectReader(const QSqlDatabase &db, const std::function<void()> &onRow)
    : db(db), onRow(onRow), pixelsLeft(MaximumPixels)
{
}

ProjectReader::Result ProjectReader::checkTables()
{
    QSqlQuery query(db);
    run(query, "SELECT type, lower(name), lower(tbl_name), rootpage FROM sqlite_master");
    const QStringList known = {"items", "connections", "properties", "formdata"};
    QStringList found;
    bool empty = true;
    while (query.next()) {
        empty = false;
        const QString type = query.value(0).toString();
        const QString name = query.value(1).toString();
        // A virtual table has no page of its own.
        const bool stored = type == "table" && query.value(3).toLongLong() > 0;
        if (known.contains(name) && !stored)
            return Damaged;
        if (type == "trigger" && known.contains(query.value(2).toString()))
            return Damaged;
        if (known.contains(name))
            found.append(name);
    }
    if (getResult(query) != Done)
        return Missing;
    query.finish();
    for (const QString &table : qAsConst(found)) {
        if (!isPlainTable(table))
            return Damaged;
    }
    return empty || found.contains("items") ? Done : Missing;
}

bool ProjectReader::isPlainTable(const QString &table)
{
    static const QStringList rowNames = {"rowid", "_rowid_", "oid"};
    QSqlQuery query(db);
    run(query, "PRAGMA table_xinfo(" + table + ")");
    const int name = query.record().indexOf("name");
    const int hidden = query.record().indexOf("hidden");
    while (query.next()) {
        if (rowNames.contains(query.value(name).toString().toLower()) ||
            query.value(hidden).toInt() != 0)
            return false;
    }
    // Fails for a table that was made without row ids.
    return getResult(query) == Done && run(query, "SELECT rowid FROM " + table + " LIMIT 0");
}

bool ProjectReader::run(QSqlQuery &query, const QString &statement)
{
    query.setForwardOnly(true);
    return query.exec(statement);
}

ProjectReader::Result ProjectReader::getResult(const QSqlQuery &query)
{
    const QSqlError error = query.lastError();
    if (!error.isValid())
        return Done;
    errorText = error.text();
    constexpr int GenericError = 1; // SQLITE_ERROR
    return (error.nativeErrorCode().toInt() & 0xff) == GenericError ? Missing : Damaged;
}

ProjectReader::Result ProjectReader::readProjectProperties(int &version)
{
    version = 0;
    QSqlQuery query(db);
    if (!run(query, "SELECT * FROM properties WHERE guid = \"project\""))
        return getResult(query);
    const int name = query.record().indexOf("name");
    const int value = query.record().indexOf("value");
    while (query.next()) {
        const QString text = getValue(query, value).toString();
        if (!text.isEmpty())
            acceptProjectProperty(getValue(query, name).toString(), text, version);
    }
    return getResult(query);
}

void ProjectReader::acceptProjectProperty(const QString &name, const QString &value, int &version)
{
    ProjectSettings settings;
    bool isNumber = false;
    const int number = value.toInt(&isNumber);
    QFont font;
    if (name == "margins") {
        settings.setMargins(value);
    } else if (name == "paperSize" && isNumber) {
        settings.setPageSize(number);
    } else if (name == "font" && readFont(value, font)) {
        settings.setFont(value);
        settings.sync();
    } else if (name == ProjectSettings::PageNumbers || name == ProjectSettings::Legend ||
               name == ProjectSettings::Header) {
        settings.setShown(name, stringToBool(value));
    } else if (name == "dbVersion") {
        version = number;
    }
}

ProjectReader::Result ProjectReader::readItemCount(int &count)
{
    QSqlQuery query(db);
    if (!run(query, "SELECT COUNT(guid) FROM items") || !query.next()) {
        getResult(query);
        return Damaged;
    }
    count = query.value(0).toInt();
    return Done;
}

ProjectReader::Result ProjectReader::readItems(std::vector<CanvasItemInfo> &items)
{
    // The table has no index: a look-up for each item would read it as often as there are items.
    if (readItemProperties() == Damaged)
        return Damaged;
    QSqlQuery query(db);
    run(query, "SELECT * FROM items");
    const ItemColumns columns(query.record());
    while (query.next()) {
        items.emplace_back();
        readItem(query, columns, items.back());
        onRow();
    }
    itemProperties.clear();
    return getResult(query);
}

ProjectReader::Result ProjectReader::readItemProperties()
{
    QSqlQuery query(db);
    run(query, "SELECT * FROM properties");
    const QSqlRecord record = query.record();
    const int guid = record.indexOf("guid");
    const int name = record.indexOf("name");
    const int value = record.indexOf("value");
    while (query.next()) {
        const QString text = getValue(query, value).toString();
        const QString owner = getValue(query, guid).toString();
        if (!text.isEmpty() && !owner.isNull())
            itemProperties[owner].append({getValue(query, name).toString(), text});
        onRow();
    }
    return getResult(query);
}

void ProjectReader::readItem(const QSqlQuery &query, const ItemColumns &columns,
                             CanvasItemInfo &info)
{
    const auto get = [&](int column) { return getValue(query, column); };
    info.guid = get(columns.guid).toString();
    info.type = get(columns.type).toInt();
    readPlace(query, columns, info);
    const QString role = get(columns.role).toString();
    info.role = Role(role);
    if (info.type == ConnectorTool || info.type == ArrowTool)
        readColor(role, info.backgroundColor);
    if (info.type == NoteItemType || info.type == ImageTool) {
        info.text = get(columns.text).toString();
        const QString font = get(columns.font).toString();
        info.customFont = !font.isEmpty();
        if (info.customFont)
            readFont(font, info.font);
    }
    info.parent = get(columns.parent).toString();
    if (!info.guid.isNull()) {
        const auto found = itemProperties.constFind(info.guid);
        if (found != itemProperties.constEnd()) {
            for (const Property &property : *found)
                acceptItemProperty(property, info);
        }
    }
    if (info.type == ImageTool)
        info.image =
            QPixmap::fromImage(readImage(get(columns.image).toByteArray(), info.hiddenImage));
}

void ProjectReader::readPlace(const QSqlQuery &query, const ItemColumns &columns,
                              CanvasItemInfo &info)
{
    const auto get = [&](int column) { return getValue(query, column).toDouble(); };
    const QPointF start(boundCoordinate(get(columns.x)), boundCoordinate(get(columns.y)));
    info.startPoint = start;
    info.size = QSizeF(boundExtent(start.x(), get(columns.width)),
                       boundExtent(start.y(), get(columns.height)));
    info.endPoint = QPointF(start.x() + info.size.width(), start.y() + info.size.height());
}

void ProjectReader::acceptItemProperty(const Property &property, CanvasItemInfo &info)
{
    const QString &name = property.name;
    const QString &value = property.value;
    if (name == "textAlignment") {
        info.textAlignment = stringToAlignment(value);
    } else if (name == "borderLineWidth") {
        info.borderLineWidth = qBound(0, value.toInt(), MaximumBorderLineWidth);
    } else if (name == "arrowStyle") {
        info.arrowStyle = value.toInt();
    } else if (name == "lineStyle") {
        readLineStyle(value, info.lineStyle);
    } else if (name == "sibling") {
        info.siblings = value.split(',', Qt::SkipEmptyParts);
    } else if (name == "causalFactorNumber") {
        info.causalFactorNumber = value.toInt();
    } else if (name == "font") {
        info.customFont = true;
        readFont(value, info.font);
    } else if (name == "backgroundColor") {
        readColor(value, info.backgroundColor);
    } else if (name == "textColor") {
        readColor(value, info.textColor);
    } else if (name == "notRelevant") {
        info.notRelevant = value == "true";
    }
}

ProjectReader::Result ProjectReader::readConnections(std::vector<ConnectionRow> &connections)
{
    QSqlQuery query(db);
    run(query, "SELECT * FROM connections");
    const QSqlRecord record = query.record();
    const int columns[] = {record.indexOf("lineguid"), record.indexOf("startguid"),
                           record.indexOf("endguid"), record.indexOf("startside"),
                           record.indexOf("endside")};
    const auto get = [&](int i) { return getValue(query, columns[i]); };
    while (query.next()) {
        connections.push_back({get(0).toString(), get(1).toString(), get(2).toString(),
                               get(3).toInt(), get(4).toInt()});
        onRow();
    }
    return getResult(query);
}

ProjectReader::Result ProjectReader::readFormData(FormValues &values)
{
    QSqlQuery query(db);
    run(query, "SELECT * from formdata");
    const QSqlRecord record = query.record();
    const int id = record.indexOf("id");
    const int value = record.indexOf("value");
    const int image = record.indexOf("image");
    while (query.next()) {
        FormValue field;
        field.value = getValue(query, value).toString();
        field.image = readImage(getValue(query, image).toByteArray(), field.hiddenImage);
        values.insert(getValue(query, id).toString(), field);
        onRow();
    }
    return getResult(query);
}

/// The next file gets the hidden one, or the picture would be lost or stay small.
QImage ProjectReader::readImage(const QByteArray &bytes, QByteArray &hidden)
{
    if (bytes.isEmpty())
        return QImage();
    const bool inFull = pixelsLeft > MaximumPixels / 2;
    QImage image;
    if (pixelsLeft > 0)
        image = readImageData(bytes, inFull ? MaximumPixels : SmallPixels);
    pixelsLeft -= qint64(image.width()) * image.height();
    if (!inFull || image.isNull())
        hidden = bytes;
    return image;
}
