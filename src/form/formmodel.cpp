#include "form/formmodel.h"

#include "chart/formfields.h"

#include <QMap>
#include <QRegularExpression>

#include <iterator>

namespace
{

constexpr int MaxNumber = 999; // the highest number of a row that is made, as in form.js
constexpr FormField::Kind RowKinds[] = {
    FormField::Hidden, FormField::Area, FormField::Area, FormField::Radio,
    FormField::Radio,  FormField::Area, FormField::Line, FormField::Line,
};
constexpr int RowLength = std::size(RowKinds);

bool isRow(int number)
{
    return number >= 0 && number <= MaxNumber;
}

} // namespace

bool FormModel::isFieldId(const QString &id)
{
    static const QRegularExpression shape("\\A[A-Za-z0-9_-]+\\z");
    return shape.match(id).hasMatch();
}

bool FormModel::isDigits(const QString &text)
{
    static const QRegularExpression digits("\\A[0-9]{0,9}\\z");
    return digits.match(text).hasMatch();
}

bool FormModel::canBeOption(const QString &text)
{
    static const QRegularExpression ending("['\\n\\r\\x{2028}\\x{2029}]");
    return !text.contains(ending);
}

QStringList FormModel::getRowIds(const FormValues &values)
{
    QMap<QString, QString> rows;
    for (auto field = values.cbegin(); field != values.cend(); ++field) {
        const QStringList parts = field.key().split('_');
        if (parts.size() == 3 && isFieldId(field.key()))
            rows[parts.first() + parts.last().rightJustified(5, '0')] = field.key();
    }
    return rows.values();
}

QString FormModel::getValue(const QString &id) const
{
    return hasFields() ? fields.value(id).value : waiting.value(id).value;
}

FormValues FormModel::getValues() const
{
    if (!hasFields())
        return waiting;
    FormValues values;
    for (auto field = fields.cbegin(); field != fields.cend(); ++field)
        values[field.key()].value = field->value;
    return values;
}

QStringList FormModel::getTextFields() const
{
    QMultiMap<int, QString> places;
    for (auto field = fields.cbegin(); field != fields.cend(); ++field) {
        if (field->kind == FormField::Line || field->kind == FormField::Area ||
            field->kind == FormField::Choice)
            places.insert(field->place, field.key());
    }
    return places.values();
}

void FormModel::clear()
{
    fields.clear();
    waiting.clear();
    lastRemoval = 0;
}

QString FormModel::getRuled(const FormField &field, const QString &value)
{
    if (field.kind == FormField::Radio)
        return value.toLower() == "true" ? "true" : "false";
    if (field.kind == FormField::Choice)
        return canBeOption(value) ? field.options.value(qMax(0, field.options.lastIndexOf(value)))
                                  : field.value;
    if (value.isEmpty() || field.kind == FormField::File)
        return field.value; // an empty text never overwrites what the page holds
    QString text = value;
    if (field.kind == FormField::Area)
        text.replace("\r\n", "\n").replace('\r', '\n');
    else if (field.kind == FormField::Line)
        text.remove('\r').remove('\n');
    return text;
}

bool FormModel::write(const QString &id, const QString &value, int writeNumber)
{
    if (!hasFields()) {
        if (!value.isEmpty())
            waiting[id].value = value;
        return false;
    }
    const auto field = fields.find(id);
    if (field == fields.end())
        return false;
    const QString text = getRuled(*field, value);
    if (text == field->value)
        return false;
    field->value = text;
    field->lastWrite = qMax(field->lastWrite, writeNumber);
    if (field->kind != FormField::Radio || text != "true" || field->group.isEmpty())
        return true;
    for (auto other = fields.begin(); other != fields.end(); ++other) {
        if (other != field && other->group == field->group) {
            other->value = "false";
            other->lastWrite = qMax(other->lastWrite, writeNumber);
        }
    }
    return true;
}

void FormModel::take(const QString &id, const QString &value, int seenWrite)
{
    const auto field = fields.find(id);
    if (field != fields.end() && field->lastWrite <= seenWrite)
        field->value = value;
}

void FormModel::takeField(const QString &id, const FormField &told, int seenWrite)
{
    const FormField mine = fields.value(id);
    if (!hasField(id) && seenWrite < lastRemoval)
        return; // of a row that the page has yet to remove
    FormField &field = fields[id];
    field = told;
    field.lastWrite = mine.lastWrite;
    if (mine.lastWrite > seenWrite)
        field.value = mine.value;
}

void FormModel::loseField(const QString &id, int seenWrite)
{
    const auto field = fields.find(id);
    if (field != fields.end() && field->lastWrite <= seenWrite)
        fields.erase(field);
}

void FormModel::addRow(int number, const QString &guid, int writeNumber)
{
    const QString id = FormFields::getRowField(FormFields::CausalFactorGuid, number);
    if (!hasFields()) {
        if (!guid.isEmpty())
            waiting[id].value = guid;
        return;
    }
    makeRow(number, writeNumber);
    const auto field = fields.find(id);
    if (field != fields.end()) {
        field->value = guid;
        field->lastWrite = writeNumber;
    }
}

void FormModel::makeRow(int number, int writeNumber)
{
    if (!isRow(number) || hasField(FormFields::getRowField(FormFields::CausalFactorGuid, number)))
        return;
    const int first = 10000 + number * RowLength; // behind the page's own
    for (int i = 0; i < RowLength; ++i) {
        FormField field;
        field.kind = RowKinds[i];
        field.place = first + i;
        field.lastWrite = writeNumber;
        if (field.kind == FormField::Radio) {
            field.group = QString("worthFixing-%1").arg(number);
            field.value = "false";
        }
        const QString id = FormFields::getRowField(FormFields::CausalFactorRow[i], number);
        field.label = QString(id).replace('_', ' ');
        fields.insert(id, field);
    }
}

void FormModel::removeRow(int number, int writeNumber)
{
    lastRemoval = writeNumber;
    for (const char *pattern : FormFields::CausalFactorRow) {
        const QString id = FormFields::getRowField(pattern, number);
        if (hasFields())
            fields.remove(id);
        else
            waiting.remove(id);
    }
}

void FormModel::fill(const FormValues &values, int writeNumber)
{
    static const QRegularExpression row("\\AcausalFactor_[A-Za-z0-9-]*_([0-9]{1,9})\\z");
    for (const QString &id : getRowIds(values)) {
        const QRegularExpressionMatch match = row.match(id);
        if (match.hasMatch())
            makeRow(match.captured(1).toInt(), writeNumber);
    }
    for (auto field = values.cbegin(); field != values.cend(); ++field)
        write(field.key(), field->value, writeNumber);
}
