#pragma once

#include "chart/chartsheet.h"
#include "chart/line.h"
#include "chart/sheethost.h"
#include "chart/sticky.h"
#include "chart/svgpicture.h"
#include "chart/toolid.h"
#include "project/projectfile.h"

#include <QGraphicsScene>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTest>

#include <memory>
#include <vector>

/// A sheet that only holds items.
class PlainSheet : public QGraphicsScene, public ChartSheet
{
public:
    PlainSheet(SheetHost *host, const QString &owner) : host(host), owner(owner) {}
    ~PlainSheet() override { clear(); }

    SheetHost *getHost() const override { return host; }
    QString getOwnerGUID() const override { return owner; }
    int getViewZoom() const override { return 100; }
    Sticky *getNoteAt(QPointF) const override { return nullptr; }
    ProjectItem *getItemWithGUID(const QString &guid) const override { return index.value(guid); }
    int getFirstUnusedCFNumber() const override { return 1; }
    void setHighlightToNote(Sticky *) override {}
    void dragNewLine(const QPointF &) override {}
    void setConnectedFormField(const QString &, const QString &) override {}
    void itemEntered(ProjectItem *item) override { index.insert(item->getGUID(), item); }
    void itemLeft(ProjectItem *item) override { index.remove(item->getGUID()); }

    ProjectItem *build(CanvasItemInfo &info);

private:
    SheetHost *host;
    QString owner;
    QHash<QString, ProjectItem *> index;
};

inline ProjectItem *PlainSheet::build(CanvasItemInfo &info)
{
    ProjectItem *item = nullptr;
    if (info.type >= EventTool && info.type <= ImageTool)
        item = new Sticky(this, info);
    else if (info.type == ConnectorTool || info.type == ArrowTool)
        item = new Line(this, info);
    else if (info.type == NewBarrierTool || info.type == FailedBarrierTool)
        item = new SVGPicture(":/images/newBarrier.svg", this, info);
    if (item)
        addItem(item);
    return item;
}

/// A project without a window: what is read becomes items on plain sheets.
class TestProject : public QObject, public SheetHost
{
public:
    TestProject() : mainSheet(this, QString()), file(this)
    {
        connect(&file, &ProjectFile::loadedItem, this, &TestProject::onLoadedItem);
        connect(&file, &ProjectFile::loadedFormData, this,
                [this](const FormValues &values) { formValues = values; });
    }

    int selectedTool() const override { return SelectTool; }
    bool isGridEnabled() const override { return true; }
    QMenu *getSceneContextMenu() override { return nullptr; }
    QMenu *getNoteContextMenu() override { return nullptr; }
    QMenu *getLineContextMenu() override { return nullptr; }
    Sticky *getNoteWithGUID(const QString &) const override { return nullptr; }
    void onCausalFactorChanged(Sticky *) override {}
    QWidget *getDialogParent() override { return nullptr; }
    ChartSheet *getSceneForParent(const QString &guid) const override
    {
        for (const auto &sheet : factorSheets) {
            if (sheet->getOwnerGUID() == guid)
                return sheet.get();
        }
        return const_cast<PlainSheet *>(&mainSheet);
    }

    bool open(const QString &path) { return file.openFile(path); }
    bool save(const QString &path) { return file.saveFile(path, items, formValues); }

    /// A new item, as a tool would make it.
    ProjectItem *add(CanvasItemInfo info, ChartSheet *sheet = nullptr)
    {
        if (info.guid.isEmpty())
            info.guid = QString("{item-%1}").arg(items.size());
        ProjectItem *item = static_cast<PlainSheet *>(sheet ? sheet : &mainSheet)->build(info);
        if (item)
            items.append(item);
        return item;
    }
    ProjectItem *find(const QString &guid) const
    {
        for (ProjectItem *item : items) {
            if (item->getGUID() == guid)
                return item;
        }
        return nullptr;
    }
    void remove(const QString &guid)
    {
        ProjectItem *item = find(guid);
        items.removeOne(item);
        delete item;
    }
    const CanvasItemInfo *getRecord(const QString &guid) const
    {
        for (const CanvasItemInfo &record : records) {
            if (record.guid == guid)
                return &record;
        }
        return nullptr;
    }

private:
    void onLoadedItem(CanvasItemInfo &info)
    {
        records.push_back(info);
        ProjectItem *item = static_cast<PlainSheet *>(getSceneForParent(info.parent))->build(info);
        if (!item)
            return;
        items.append(item);
        if (info.parent.isEmpty() && info.role.isParentItem())
            factorSheets.push_back(std::make_unique<PlainSheet>(this, info.guid));
    }

public:
    std::vector<CanvasItemInfo> records; // as they were emitted
    FormValues formValues;
    std::vector<std::unique_ptr<PlainSheet>> factorSheets;
    PlainSheet mainSheet;
    QList<ProjectItem *> items;
    ProjectFile file;
};

/// Runs the statements on the file by a connection of their own.
inline void runSql(const QString &path, const QStringList &statements)
{
    {
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "testing");
        db.setDatabaseName(path);
        QVERIFY(db.open());
        db.transaction();
        for (const QString &statement : statements) {
            QSqlQuery query(db);
            QVERIFY2(query.exec(statement), qPrintable(statement + query.lastError().text()));
        }
        QVERIFY(db.commit());
    }
    QSqlDatabase::removeDatabase("testing");
}

/// The rows of the query, sorted, their values joined by "|"; NULL as a word.
inline QStringList readRows(const QString &path, const QString &statement)
{
    QStringList rows;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "testing");
        db.setDatabaseName(path);
        db.open();
        QSqlQuery query(statement, db);
        while (query.next()) {
            QStringList values;
            for (int i = 0; i < query.record().count(); ++i)
                values << (query.isNull(i) ? "NULL" : query.value(i).toString());
            rows << values.join('|');
        }
    }
    QSqlDatabase::removeDatabase("testing");
    rows.sort();
    return rows;
}

inline QByteArray readBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline QStringList getTableStatements()
{
    return {
        "CREATE TABLE items (guid TEXT,type INTEGER,role TEXT,x INTEGER,y INTEGER,width INTEGER,"
        "height INTEGER,text TEXT,font TEXT,image BLOB,parent TEXT)",
        "CREATE TABLE connections (lineguid TEXT,startguid TEXT,endguid TEXT,startside INTEGER,"
        "endside INTEGER)",
        "CREATE TABLE properties (guid TEXT,name TEXT,value TEXT)",
        "CREATE TABLE formdata (id TEXT, value TEXT, image BLOB)",
        "INSERT INTO properties VALUES('project','dbVersion','1')",
    };
}

/// A small project: a factor {f} with a sheet, an event {e}, a barrier {b}, a connector {l}
/// between {e} and {f}, and on the factor's sheet a note {n} and a line {m}.
inline QStringList getSampleStatements()
{
    return getTableStatements() +
           QStringList{
               "INSERT INTO items VALUES('{n}',3,'Condition',480,140,160,80,'on the sheet','',NULL,"
               "'{f}')",
               "INSERT INTO items VALUES('{m}',16,'#808080',10,20,-5.5,7.25,0,0,0,'{f}')",
               "INSERT INTO items VALUES('{f}',3,'Causal_Factor',240,200,160,80,'cause','',NULL,"
               "NULL)",
               "INSERT INTO items VALUES('{e}',3,'Event',20.25,200.5,160,80,'event',"
               "'Arial,12,-1,5,75,0,0,0,0,0',NULL,NULL)",
               "INSERT INTO items VALUES('{b}',128,'0',500,300,17,82,'0','0',0,NULL)",
               "INSERT INTO items VALUES('{l}',8,'#ff0000',180,240,60,0,0,0,0,NULL)",
               "INSERT INTO connections VALUES('{l}','{e}','{f}',3,1)",
               "INSERT INTO connections VALUES('{m}',NULL,'{n}',0,2)",
               "INSERT INTO properties VALUES('{f}','causalFactorNumber','2')",
               "INSERT INTO properties VALUES('{f}','sibling','causalFactor_text_2,{x}')",
               "INSERT INTO properties VALUES('{f}','textAlignment','AlignLeft AlignTop')",
               "INSERT INTO properties VALUES('{f}','notRelevant','true')",
               "INSERT INTO properties VALUES('{f}','borderLineWidth','4')",
               "INSERT INTO properties VALUES('{f}','backgroundColor','#fff2cc')",
               "INSERT INTO properties VALUES('{f}','textColor','#1f4e9e')",
               "INSERT INTO properties VALUES('{e}','font','Arial,12,-1,5,75,0,0,0,0,0')",
               "INSERT INTO properties VALUES('{e}','textAlignment','AlignHCenter AlignVCenter')",
               "INSERT INTO properties VALUES('{n}','textAlignment','AlignHCenter AlignVCenter')",
               "INSERT INTO properties VALUES('{l}','arrowStyle','0')",
               "INSERT INTO properties VALUES('{l}','lineStyle','2')",
               "INSERT INTO properties VALUES('{l}','borderLineWidth','3')",
               "INSERT INTO properties VALUES('{m}','arrowStyle','1')",
               "INSERT INTO properties VALUES('{m}','lineStyle','1')",
               "INSERT INTO properties VALUES('{m}','borderLineWidth','2')",
               "INSERT INTO formdata VALUES('loss','a loss',NULL)",
               "INSERT INTO formdata VALUES('causalFactor_text_2','cause',NULL)",
           };
}
