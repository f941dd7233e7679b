#pragma once

#include "project/projectfile.h"
#include "sheet/projectscene.h"
#include "testing/fakes.h"
#include "testing/files.h"

#include <QTemporaryDir>

#include <memory>
#include <vector>

/// A project without a window: what is read becomes items on bare sheets.
class TestProject : public QObject, public FakeHost
{
public:
    TestProject() : file(this)
    {
        addSheet(nullptr);
        connect(&file, &ProjectFile::loadedItem, this, [this](CanvasItemInfo &info) {
            records[info.guid] = info;
            auto *note = qobject_cast<Sticky *>(add(info, info.parent));
            if (info.parent.isEmpty() && info.role.isParentItem())
                addSheet(note);
        });
        connect(&file, &ProjectFile::loadedFormData, this,
                [this](const FormValues &values) { formValues = values; });
    }

    ~TestProject() override { sheets.clear(); } // nobody is found any more

    /// Opens the file.
    explicit TestProject(const QString &path) : TestProject() { QVERIFY(open(path)); }

    bool open(const QString &path) { return file.openFile(path); }
    bool save(const QString &path) { return file.saveFile(path, items, formValues); }
    bool saveNew(const QString &path) { return file.saveNewFile(path, items, formValues); }

    /// A new item on the sheet of the owner; null for a type without items.
    ProjectItem *add(CanvasItemInfo info, const QString &owner = QString())
    {
        auto *sheet = static_cast<ProjectScene *>(getSceneForParent(owner));
        ProjectItem *item = sheet->loadCanvasItem(info);
        if (item)
            items.append(item);
        return item;
    }
    template<typename Item = ProjectItem> Item *find(const QString &guid) const
    {
        return qobject_cast<Item *>(getItem(guid));
    }

    QMap<QString, CanvasItemInfo> records; // as they were emitted
    FormValues formValues;
    QList<ProjectItem *> items;
    ProjectFile file;

private:
    void addSheet(Sticky *owner)
    {
        scenes.push_back(std::make_unique<ProjectScene>(this, nullptr, nullptr, nullptr,
                                                        QSize(1606, 1030), owner));
        sheets.append(scenes.back().get());
    }

    std::vector<std::unique_ptr<ProjectScene>> scenes; // the main sheet first
};

/// The statements that make an empty project, and `more`.
inline QStringList emptyProject(const QStringList &more = {})
{
    const QString statements = R"(CREATE TABLE items (guid TEXT,type INTEGER,role TEXT,x INTEGER,
y INTEGER,width INTEGER,height INTEGER,text TEXT,font TEXT,image BLOB,parent TEXT);
CREATE TABLE connections (lineguid TEXT,startguid TEXT,endguid TEXT,startside INTEGER,
endside INTEGER);
CREATE TABLE properties (guid TEXT,name TEXT,value TEXT);
CREATE TABLE formdata (id TEXT, value TEXT, image BLOB);
INSERT INTO properties VALUES('project','dbVersion','1'))";
    return statements.split(";\n") + more;
}

/// The same for a small project: a factor {f} with a sheet, an event {e}, a barrier {b}, a
/// connector {l} between {e} and {f}, and on the factor's sheet a note {n} and a line {m}.
inline QStringList sampleProject(const QStringList &more = {})
{
    const QString rows = R"(INSERT INTO items VALUES
('{n}',3,'Condition',480,140,160,80,'on the sheet','',NULL,'{f}'),
('{m}',16,'#808080',10,20,-5.5,7.25,0,0,0,'{f}'),
('{f}',3,'Causal_Factor',240,200,160,80,'cause','',NULL,NULL),
('{e}',3,'Event',20.25,200.5,160,80,'event','Arial,12,-1,5,75,0,0,0,0,0',NULL,NULL),
('{b}',128,'0',500,300,17,82,'0','0',0,NULL), ('{l}',8,'#ff0000',180,240,60,0,0,0,0,NULL);
INSERT INTO connections VALUES('{l}','{e}','{f}',3,1), ('{m}',NULL,'{n}',0,2);
INSERT INTO properties VALUES ('{f}','causalFactorNumber','2'), ('{f}','notRelevant','true'),
('{f}','sibling','causalFactor_text_2,{x}'), ('{f}','textAlignment','AlignLeft AlignTop'),
('{f}','borderLineWidth','4'), ('{f}','backgroundColor','#fff2cc'), ('{f}','textColor','#1f4e9e'),
('{e}','font','Arial,12,-1,5,75,0,0,0,0,0'), ('{e}','textAlignment','AlignHCenter AlignVCenter'),
('{n}','textAlignment','AlignHCenter AlignVCenter'), ('{l}','arrowStyle','0'),
('{l}','lineStyle','2'), ('{l}','borderLineWidth','3'), ('{m}','arrowStyle','1'),
('{m}','lineStyle','1'), ('{m}','borderLineWidth','2');
INSERT INTO formdata VALUES('loss','a loss',NULL), ('causalFactor_text_2','cause',NULL))";
    return emptyProject(rows.split(";\n") + more);
}

/// Tests of a file in a folder of its own.
class ProjectTest : public QObject
{
protected:
    /// Gives its path.
    QString makeFile(const QStringList &statements = sampleProject()) const
    {
        QFile::remove(path);
        runSql(path, statements);
        return path;
    }
    QStringList read(const char *statement) const { return runSql(path, {statement}); }
    /// Corrupts pages that nothing but a check of the whole file reads.
    void damageHiddenPages() const
    {
        runSql(path, {"CREATE TABLE more (a)", "INSERT INTO more VALUES(zeroblob(50000))"});
        QByteArray bytes = readBytes(path);
        writeBytes(path, bytes.replace(bytes.size() - 4096, 4, QByteArray(4, '\xff')));
    }

    QTemporaryDir folder;
    const QString path = folder.filePath("project.epf");
};
