#pragma once

#include "chart/line.h"
#include "chart/svgpicture.h"
#include "project/projectfile.h"
#include "testing/fakes.h"
#include "testing/files.h"

#include <memory>
#include <vector>

/// A project without a window: what is read becomes items on bare sheets.
class TestProject : public QObject, public FakeHost
{
public:
    TestProject() : mainSheet(this), file(this)
    {
        connect(&file, &ProjectFile::loadedItem, this, [this](CanvasItemInfo &info) {
            records.push_back(info);
            ProjectItem *item = add(info, info.parent);
            if (item && info.parent.isEmpty() && info.role.isParentItem())
                factorSheets.push_back(std::make_unique<FakeSheet>(this, info.guid));
        });
        connect(&file, &ProjectFile::loadedFormData, this,
                [this](const FormValues &values) { formValues = values; });
    }

    /// Opens the file.
    explicit TestProject(const QString &path) : TestProject() { QVERIFY(open(path)); }

    bool open(const QString &path) { return file.openFile(path); }
    bool save(const QString &path) { return file.saveFile(path, items, formValues); }
    bool saveNew(const QString &path) { return file.saveNewFile(path, items, formValues); }

    /// A new item on the sheet of the owner; null for a type without items.
    ProjectItem *add(CanvasItemInfo info, const QString &owner = QString())
    {
        if (info.guid.isEmpty())
            info.guid = QString("{item-%1}").arg(items.size());
        auto *sheet = static_cast<FakeSheet *>(getSceneForParent(owner));
        ProjectItem *item = nullptr;
        if (info.type >= EventTool && info.type <= ImageTool)
            item = new Sticky(sheet, info);
        else if (info.type == ConnectorTool || info.type == ArrowTool)
            item = new Line(sheet, info);
        else if (info.type == NewBarrierTool)
            item = new SVGPicture(":/images/newBarrier.svg", sheet, info);
        if (!item)
            return nullptr;
        sheet->addItem(item);
        items.append(item);
        return item;
    }
    template<typename Item = ProjectItem> Item *find(const QString &guid) const
    {
        for (ProjectItem *item : items) {
            if (item->getGUID() == guid)
                return qobject_cast<Item *>(item);
        }
        return nullptr;
    }
    void remove(const QString &guid)
    {
        ProjectItem *item = find(guid);
        items.removeOne(item);
        delete item;
    }
    /// As it was emitted.
    CanvasItemInfo getRecord(const QString &guid) const
    {
        for (const CanvasItemInfo &record : records) {
            if (record.guid == guid)
                return record;
        }
        return CanvasItemInfo();
    }

    std::vector<CanvasItemInfo> records; // as they were emitted
    FormValues formValues;
    FakeSheet mainSheet;
    std::vector<std::unique_ptr<FakeSheet>> factorSheets;
    QList<ProjectItem *> items;
    ProjectFile file;
};

/// The statements that make an empty project, and `more`.
inline QStringList emptyProject(const QStringList &more = {})
{
    return QStringList{"CREATE TABLE items (guid TEXT,type INTEGER,role TEXT,x INTEGER,y INTEGER,"
                       "width INTEGER,height INTEGER,text TEXT,font TEXT,image BLOB,parent TEXT)",
                       "CREATE TABLE connections (lineguid TEXT,startguid TEXT,endguid TEXT,"
                       "startside INTEGER,endside INTEGER)",
                       "CREATE TABLE properties (guid TEXT,name TEXT,value TEXT)",
                       "CREATE TABLE formdata (id TEXT, value TEXT, image BLOB)",
                       "INSERT INTO properties VALUES('project','dbVersion','1')"} +
           more;
}

/// The same for a small project: a factor {f} with a sheet, an event {e}, a barrier {b}, a
/// connector {l} between {e} and {f}, and on the factor's sheet a note {n} and a line {m}.
inline QStringList sampleProject(const QStringList &more = {})
{
    const QStringList rows = {
        R"(INSERT INTO items VALUES
            ('{n}',3,'Condition',480,140,160,80,'on the sheet','',NULL,'{f}'),
            ('{m}',16,'#808080',10,20,-5.5,7.25,0,0,0,'{f}'),
            ('{f}',3,'Causal_Factor',240,200,160,80,'cause','',NULL,NULL),
            ('{e}',3,'Event',20.25,200.5,160,80,'event','Arial,12,-1,5,75,0,0,0,0,0',NULL,NULL),
            ('{b}',128,'0',500,300,17,82,'0','0',0,NULL),
            ('{l}',8,'#ff0000',180,240,60,0,0,0,0,NULL))",
        "INSERT INTO connections VALUES('{l}','{e}','{f}',3,1), ('{m}',NULL,'{n}',0,2)",
        R"(INSERT INTO properties VALUES ('{f}','causalFactorNumber','2'),
            ('{f}','sibling','causalFactor_text_2,{x}'), ('{f}','notRelevant','true'),
            ('{f}','textAlignment','AlignLeft AlignTop'), ('{f}','borderLineWidth','4'),
            ('{f}','backgroundColor','#fff2cc'), ('{f}','textColor','#1f4e9e'),
            ('{e}','font','Arial,12,-1,5,75,0,0,0,0,0'),
            ('{e}','textAlignment','AlignHCenter AlignVCenter'),
            ('{n}','textAlignment','AlignHCenter AlignVCenter'), ('{l}','arrowStyle','0'),
            ('{l}','lineStyle','2'), ('{l}','borderLineWidth','3'), ('{m}','arrowStyle','1'),
            ('{m}','lineStyle','1'), ('{m}','borderLineWidth','2'))",
        "INSERT INTO formdata VALUES('loss','a loss',NULL), ('causalFactor_text_2','cause',NULL)",
    };
    return emptyProject(rows + more);
}

/// Corrupts pages that nothing but a check of the whole file reads.
inline void damageHiddenPages(const QString &path)
{
    runSql(path, {"CREATE TABLE more (a)", "INSERT INTO more VALUES(zeroblob(50000))"});
    QByteArray bytes = readBytes(path);
    writeBytes(path, bytes.replace(bytes.size() - 4096, 4, QByteArray(4, '\xff')));
}
