#pragma once

#include "chart/canvasiteminfo.h"
#include "support/formvalue.h"

#include <QHash>
#include <QSqlDatabase>
#include <QVector>

#include <functional>
#include <vector>

class QSqlError;
class QSqlQuery;

/// One row of the connections; guids are empty for free ends.
struct ConnectionRow {
    QString line;
    QString startNote;
    QString endNote;
    int startSide;
    int endSide;
};

/// All that a project file holds beside the project's own properties, in the order of its rows.
struct ProjectContent {
    std::vector<CanvasItemInfo> items;
    std::vector<ConnectionRow> connections;
    FormValues formValues;
};

/// Reads the rows of an open project database. The file may hold anything: what it says is
/// brought into bounds, and a file that can't be read to its end is told from a whole one.
class ProjectReader
{
public:
    enum Result {
        Done,
        Missing, ///< the statement doesn't fit the file: no such table or column
        Damaged  ///< the file itself can't be read
    };

    /// Places beyond, on either side of the origin, are pulled in. In scene units: 26 metres.
    static constexpr double MaximumCoordinate = 100000;
    static constexpr int MaximumBorderLineWidth = 1000;
    static constexpr int MaximumFontSize = 1000; ///< points or pixels

    /// `onRow` is called for each row that is read.
    explicit ProjectReader(
        const QSqlDatabase &db, const std::function<void()> &onRow = [] {});

    /// The driver's text for the last result but Done.
    const QString &getErrorText() const { return errorText; }

    /// Missing when other tables stand where a project has its own, Damaged when one of the
    /// four is no plain table.
    Result checkTables();
    /// Copies the project's own properties into the settings as it meets them.
    Result readProjectProperties(int &version);
    Result readItemCount(int &count);
    Result readItems(std::vector<CanvasItemInfo> &items);
    Result readConnections(std::vector<ConnectionRow> &connections);
    Result readFormData(FormValues &values);

private:
    struct Property {
        QString name;
        QString value;
    };
    struct ItemColumns;

    bool isPlainTable(const QString &table);
    bool run(QSqlQuery &query, const QString &statement);
    /// Whether the last run or walk of rows came to its end.
    Result getResult(const QSqlQuery &query);
    void acceptProjectProperty(const QString &name, const QString &value, int &version);
    Result readItemProperties();
    void readItem(const QSqlQuery &query, const ItemColumns &columns, CanvasItemInfo &info);
    void readPlace(const QSqlQuery &query, const ItemColumns &columns, CanvasItemInfo &info);
    void acceptItemProperty(const Property &property, CanvasItemInfo &info);
    QImage readImage(const QByteArray &bytes, QByteArray &hidden);

    QSqlDatabase db;
    std::function<void()> onRow;
    QString errorText;
    QHash<QString, QVector<Property>> itemProperties; // by guid, in the order of their rows
    qint64 pixelsLeft;                                // that pictures may still take
};
