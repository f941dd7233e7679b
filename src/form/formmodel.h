#pragma once

#include "support/formvalue.h"

#include <QStringList>

/// One field of the form's page and what stands in it.
struct FormField {
    enum Kind { Radio, Line, File, Hidden, Area, Choice };

    Kind kind = Line;
    QString value;
    QString group = QString();           ///< of radio buttons with one group one at most is checked
    QStringList options = QStringList(); ///< of a choice
    QString label = QString();           ///< what the page calls it
    int place = 0;                       ///< in the page, from above
    int lastWrite = 0;                   ///< the number of the program's last write into it
};

/// The form without its page: the values that wait until the page tells its fields, then the
/// fields, which take what is written by the same rules as the page's elements do.
class FormModel
{
public:
    static bool isFieldId(const QString &id);
    /// What scripts take as a number: digits, or nothing at all.
    static bool isDigits(const QString &text);
    /// False for a text with a quote or a line break: it leaves a choice as it is.
    static bool canBeOption(const QString &text);
    /// One id for each row that the values need, lowest number first.
    static QStringList getRowIds(const FormValues &values);

    bool hasFields() const { return !fields.isEmpty(); }
    bool hasField(const QString &id) const { return fields.contains(id); }
    const QHash<QString, FormField> &getFields() const { return fields; }
    const FormValues &getWaiting() const { return waiting; }
    /// Empty for an unknown id.
    QString getValue(const QString &id) const;
    FormValues getValues() const;
    /// The ids of the fields that show a text, in the page's order.
    QStringList getTextFields() const;

    /// Neither fields nor values.
    void clear();
    void setWaiting(const FormValues &values) { waiting = values; }
    /// The page's own fields with what the page holds by itself.
    void setFields(const QHash<QString, FormField> &newFields) { fields = newFields; }
    /// A write of the program. True if the field holds another text than before. Writes are
    /// numbered where the page may tell of a text that it had before it heard of them.
    bool write(const QString &id, const QString &value, int writeNumber = 0);
    /// The eight fields of a causal factor; what stands in them stays, but for the GUID.
    void addRow(int number, const QString &guid, int writeNumber = 0);
    void removeRow(int number, int writeNumber = 0);
    /// All that a file holds: rows first, then each value.
    void fill(const FormValues &values, int writeNumber);

    /// News from the page, which had seen the program's writes up to seenWrite; a later one wins.
    void take(const QString &id, const QString &value, int seenWrite);
    /// A field that came into the page, or a closer look at one.
    void takeField(const QString &id, const FormField &told, int seenWrite);
    /// A field that left the page.
    void loseField(const QString &id, int seenWrite);

private:
    static QString getRuled(const FormField &field, const QString &value);
    void makeRow(int number, int writeNumber);

    QHash<QString, FormField> fields;
    FormValues waiting;
    int lastRemoval = 0; // number of the write that removed a row last
};
