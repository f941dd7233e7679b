// The tables of a project, single rows of them, and the upgrade of older files.

#include "chart/formfields.h"
#include "project/projectfile.h"
#include "project/rowvalues.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariant>

namespace
{

/// What the upgrade looks at in a note.
struct NoteRow {
    QString guid;
    QString text;
};

QVector<NoteRow> readMainNotes(QSqlQuery &query, const QString &role)
{
    QVector<NoteRow> notes;
    query.prepare("SELECT * FROM items WHERE role=:role AND parent IS NULL");
    query.bindValue(":role", role);
    query.exec();
    const int guid = query.record().indexOf("guid");
    const int text = query.record().indexOf("text");
    while (query.next())
        notes.append({query.value(guid).toString(), query.value(text).toString()});
    query.finish();
    return notes;
}

} // namespace

bool ProjectFile::createTables(QSqlDatabase &db)
{
    static const struct {
        const char *statement;
        const char *failure;
    } tables[] = {
        {"CREATE TABLE IF NOT EXISTS items (guid TEXT,type INTEGER,role TEXT,x INTEGER,y INTEGER,"
         "width INTEGER,height INTEGER,text TEXT,font TEXT,image BLOB,parent TEXT)",
         QT_TR_NOOP("Couldn't create the items table")},
        {"CREATE TABLE IF NOT EXISTS connections (lineguid TEXT,startguid TEXT,endguid TEXT,"
         "startside INTEGER,endside INTEGER)",
         QT_TR_NOOP("Couldn't create the connections table")},
        {"CREATE TABLE IF NOT EXISTS properties (guid TEXT,name TEXT,value TEXT)",
         QT_TR_NOOP("Couldn't create the properties table")},
        {"CREATE TABLE IF NOT EXISTS formdata (id TEXT, value TEXT, image BLOB)",
         QT_TR_NOOP("Couldn't create the form data table")},
    };
    QSqlQuery query(db);
    for (const auto &table : tables) {
        if (!query.prepare(table.statement) || !query.exec()) {
            setLastError(tr(table.failure));
            return false;
        }
    }
    return true;
}

bool ProjectFile::setItemProperty(QSqlQuery &query, const QString &guid, const QString &name,
                                  const QString &value)
{
    const auto run = [&](const char *statement) {
        query.prepare(statement);
        query.bindValue(":guid", textOf(guid));
        query.bindValue(":name", textOf(name));
        query.bindValue(":value", textOf(value));
        return query.exec();
    };
    if (!run("UPDATE properties SET value=:value WHERE guid=:guid AND name=:name"))
        return false;
    return query.numRowsAffected() > 0 ||
           run("INSERT INTO properties VALUES(:guid, :name, :value)");
}

QString ProjectFile::getItemProperty(QSqlQuery &query, const QString &guid, const QString &name)
{
    query.prepare("SELECT value FROM properties WHERE guid=:guid AND name=:name");
    query.bindValue(":guid", textOf(guid));
    query.bindValue(":name", textOf(name));
    QString value;
    if (query.exec() && query.next())
        value = query.value(0).toString();
    query.finish();
    return value;
}

bool ProjectFile::setFormValue(QSqlQuery &query, const QString &id, const FormValue &value)
{
    const QByteArray image = encodeImage(value.image);
    const auto run = [&](const char *statement) {
        query.prepare(statement);
        query.bindValue(":id", textOf(id));
        query.bindValue(":value", textOf(value.value));
        query.bindValue(":image", image);
        return query.exec();
    };
    if (!run("UPDATE formdata SET value=:value, image=:image WHERE id=:id"))
        return false;
    return query.numRowsAffected() > 0 || run("INSERT INTO formdata VALUES(:id, :value, :image)");
}

bool ProjectFile::upgradeFileDatabase(QSqlDatabase &db, int version)
{
    if (version != 0)
        return true;
    QSqlQuery query(db);
    QString lossOfControl;
    QString loss;
    return createTables(db) &&
           mirrorNote(query, RoleType::LossOfControl, FormFields::LossOfControl, lossOfControl) &&
           mirrorNote(query, RoleType::Loss, FormFields::Loss, loss) &&
           mirrorCausalFactors(query, lossOfControl) &&
           setItemProperty(query, "project", "dbVersion", QString::number(Version));
}

bool ProjectFile::mirrorNote(QSqlQuery &query, const QString &role, const QString &fieldId,
                             QString &guid)
{
    const NoteRow note = readMainNotes(query, role).value(0);
    guid = note.guid;
    if (note.guid.isEmpty())
        return true;
    QStringList siblings = getItemProperty(query, note.guid, "sibling").split(',');
    if (!siblings.contains(fieldId))
        siblings.append(fieldId);
    return setItemProperty(query, note.guid, "sibling", siblings.join(',')) &&
           setFormValue(query, fieldId, {note.text, QImage()});
}

bool ProjectFile::mirrorCausalFactors(QSqlQuery &query, const QString &lossOfControl)
{
    const QVector<NoteRow> notes = readMainNotes(query, RoleType::CausalFactor);
    QList<int> numbers;
    for (const NoteRow &note : notes)
        numbers.append(getItemProperty(query, note.guid, "causalFactorNumber").toInt());
    bool done = true;
    for (int i = 0; done && i < notes.size(); ++i) {
        const NoteRow &note = notes.at(i);
        const QString textId = FormFields::getRowField(FormFields::CausalFactorText, numbers.at(i));
        QStringList siblings = getItemProperty(query, note.guid, "sibling").split(',');
        if (!siblings.contains(QString()))
            siblings.append(textId);
        // The list goes to the loss of control, where older files have always had it.
        done = setItemProperty(query, lossOfControl, "sibling", siblings.join(',')) &&
               setFormValue(query, textId, {note.text, QImage()}) &&
               setFormValue(query,
                            FormFields::getRowField(FormFields::CausalFactorGuid, numbers.at(i)),
                            {note.guid, QImage()});
    }
    return done;
}
