#include "benchmark.h"
#include "benchsheet.h"

#include "project/projectfile.h"

#include <QApplication>
#include <QGraphicsView>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>
#include <QVariant>

// Opening and saving a whole project, beside the bare work of database and scene.

namespace
{

constexpr int Runs = 5;
const char *const Tables[] = {"items", "connections", "properties", "formdata"};

/// A project on one sheet in a window that doesn't paint while it is loaded.
class BenchProject : public BenchHost
{
public:
    BenchProject()
        : file(this), scene(this, &group, &file, nullptr, QSize(1606, 1030)), view(&scene)
    {
        QObject::connect(&file, &ProjectFile::loadedItem, &scene, [this](CanvasItemInfo &info) {
            if (ProjectItem *item = scene.loadCanvasItem(info))
                items.append(item);
        });
        view.setViewportUpdateMode(QGraphicsView::NoViewportUpdate);
        view.show();
    }
    ~BenchProject() { QCoreApplication::processEvents(); }

    ChartSheet *getSceneForParent(const QString &) const override
    {
        return const_cast<ProjectScene *>(&scene);
    }

    QUndoGroup group;
    ProjectFile file;
    ProjectScene scene;
    QGraphicsView view;
    QList<ProjectItem *> items;
};

void require(bool done)
{
    if (!done)
        qFatal("The benchmark's own project failed.");
}

void settle()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

/// Saves the chart as a project file.
void makeProject(const BenchChart &chart, const QString &path)
{
    BenchSheet sheet(chart);
    QList<ProjectItem *> items;
    for (Sticky *note : sheet.notes)
        items.append(note);
    for (Line *line : sheet.lines)
        items.append(line);
    settle();
    BenchHost host;
    ProjectFile file(&host);
    require(file.saveFile(path, items, {{"loss", {"a loss", QImage()}}}));
}

/// Hands each row of the table to the function.
void scan(QSqlDatabase &db, const QString &table, const std::function<void(QSqlQuery &)> &onRow)
{
    QSqlQuery query(db);
    query.setForwardOnly(true);
    query.exec("SELECT * FROM " + table);
    while (query.next())
        onRow(query);
}

void addBareItem(QGraphicsScene &scene, const QSqlQuery &row)
{
    const QRectF place(row.value(3).toDouble(), row.value(4).toDouble(), row.value(5).toDouble(),
                       row.value(6).toDouble());
    if (row.value(1).toInt() == ConnectorTool) {
        QPainterPath path(place.topLeft());
        path.lineTo(place.bottomRight());
        scene.addPath(path);
        return;
    }
    auto *box = scene.addRect(QRectF(QPointF(), place.size()));
    box->setPos(place.topLeft());
    auto *text = new QGraphicsTextItem(row.value(7).toString(), box);
    text->setTextWidth(place.width());
}

/// Reads every value of every row, and puts a bare item on the scene for each row of the items.
double openBare(const QString &path)
{
    QGraphicsScene scene;
    QGraphicsView view(&scene);
    view.setViewportUpdateMode(QGraphicsView::NoViewportUpdate);
    view.show();
    settle();
    QSqlDatabase db = QSqlDatabase::database(QSqlDatabase::defaultConnection, false);
    const double time = timed([&] {
        db.setDatabaseName(path);
        require(db.open());
        for (const char *table : Tables) {
            scan(db, table, [&](QSqlQuery &row) {
                for (int i = row.record().count() - 1; i >= 0; --i)
                    row.value(i);
                if (table == Tables[0])
                    addBareItem(scene, row);
            });
        }
        db.close();
        settle();
    });
    return time;
}

double openOurs(const QString &path)
{
    BenchProject project;
    settle();
    const double time = timed([&] {
        require(project.file.openFile(path));
        settle();
    });
    require(project.items.size() > 0);
    return time;
}

using Rows = std::vector<QVariantList>;

Rows readRows(const QString &path, const QString &table)
{
    Rows rows;
    QSqlDatabase db = QSqlDatabase::database(QSqlDatabase::defaultConnection, false);
    db.setDatabaseName(path);
    require(db.open());
    scan(db, table, [&](QSqlQuery &row) {
        QVariantList values;
        for (int i = 0; i < row.record().count(); ++i)
            values << row.value(i);
        rows.push_back(values);
    });
    db.close();
    return rows;
}

void insertRows(QSqlDatabase &db, const QString &table, const Rows &rows)
{
    if (rows.empty())
        return;
    QStringList places;
    for (int i = 0; i < rows.front().size(); ++i)
        places << "?";
    QSqlQuery query(db);
    query.prepare("INSERT INTO " + table + " VALUES(" + places.join(',') + ")");
    for (const QVariantList &row : rows) {
        for (int i = 0; i < row.size(); ++i)
            query.bindValue(i, row.at(i));
        require(query.exec());
    }
}

/// Inserts the rows of the project into a new file.
double saveBare(const std::vector<Rows> &tables, const QString &path)
{
    QFile::remove(path);
    BenchHost host;
    ProjectFile file(&host);
    QSqlDatabase db = QSqlDatabase::database(QSqlDatabase::defaultConnection, false);
    return timed([&] {
        db.setDatabaseName(path);
        require(db.open() && file.createTables(db) && db.transaction());
        for (size_t i = 0; i < tables.size(); ++i)
            insertRows(db, Tables[i], tables[i]);
        require(db.commit());
        db.close();
    });
}

std::vector<Rows> readTables(const QString &path)
{
    std::vector<Rows> tables;
    for (const char *table : Tables)
        tables.push_back(readRows(path, table));
    return tables;
}

} // namespace

void benchOpen()
{
    BenchTable table("open: a project of notes and as many connectors");
    for (int size : BenchSizes) {
        const QTemporaryDir folder;
        const QString path = folder.filePath("project.epf");
        makeProject(BenchChart(size), path);
        table.add(size, measure(
                            Runs, [&] { return openOurs(path); }, [&] { return openBare(path); }));
    }
}

void benchSave()
{
    for (const bool known : {false, true}) {
        BenchTable table(known ? "save: again into the same file" : "save: into a new file");
        for (int size : BenchSizes) {
            const QTemporaryDir folder;
            const QString path = folder.filePath("project.epf");
            makeProject(BenchChart(size), path);
            const std::vector<Rows> tables = readTables(path);
            BenchProject project;
            require(project.file.openFile(path) && project.file.saveFile(path, project.items, {}));
            const auto save = [&] {
                const QString target = known ? path : folder.filePath("new.epf");
                if (!known)
                    QFile::remove(target);
                return timed([&] {
                    require(project.file.saveFile(target, project.items,
                                                  {{"loss", {"a loss", QImage()}}}));
                });
            };
            table.add(size, measure(Runs, save,
                                    [&] { return saveBare(tables, folder.filePath("bare.epf")); }));
        }
    }
}
