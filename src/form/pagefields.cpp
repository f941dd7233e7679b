#include "form/pagefields.h"

#include <QHelpEngineCore>
#include <QHelpLink>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTextDocumentFragment>

namespace
{

using Attributes = QHash<QString, QString>;

QString decode(const QString &text)
{
    return text.contains('&') ? QTextDocumentFragment::fromHtml(text).toPlainText() : text;
}

Attributes readAttributes(const QString &text)
{
    static const QRegularExpression shape(
        R"re(([\w-]+)(?:\s*=\s*(?:"([^"]*)"|'([^']*)'|([^\s"']+)))?)re");
    Attributes attributes;
    for (auto found = shape.globalMatch(text); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        attributes.insert(match.captured(1).toLower(),
                          decode(match.captured(2) + match.captured(3) + match.captured(4)));
    }
    return attributes;
}

/// False for an input that is no field of the form, as a button.
bool findKind(const QString &tag, const QString &type, FormField::Kind &kind)
{
    static const QHash<QString, FormField::Kind> kinds = {
        {"textarea", FormField::Area},     {"select", FormField::Choice},
        {"input radio", FormField::Radio}, {"input text", FormField::Line},
        {"input file", FormField::File},   {"input hidden", FormField::Hidden},
    };
    const auto found = kinds.find(tag == "input" ? "input " + type.toLower() : tag);
    if (found == kinds.end())
        return false;
    kind = *found;
    return true;
}

QString getFirstValue(const FormField &field, const Attributes &attributes, const QString &text)
{
    if (field.kind == FormField::Radio)
        return attributes.contains("checked") ? "true" : "false";
    return field.kind == FormField::Area ? text : attributes.value("value");
}

void addOption(FormField &choice, bool isSelected, const QString &text)
{
    choice.options << text.simplified();
    if (isSelected || choice.options.size() == 1)
        choice.value = choice.options.last();
}

/// By the ids of their fields.
QHash<QString, QString> readLabels(const QString &html)
{
    static const QRegularExpression shape("<label\\b([^>]*)>(.*?)</label>",
                                          QRegularExpression::DotMatchesEverythingOption |
                                              QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression tag("<[^>]*>");
    QHash<QString, QString> labels;
    for (auto found = shape.globalMatch(html); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        const QString text = decode(match.captured(2).remove(tag)).simplified();
        labels.insert(readAttributes(match.captured(1)).value("for"), text);
    }
    return labels;
}

} // namespace

QHash<QString, FormField> readPageFields(QString html)
{
    static const QRegularExpression aside("<!--.*?-->|<(template|script)\\b.*?</\\1>",
                                          QRegularExpression::DotMatchesEverythingOption |
                                              QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression shape(
        R"re(<(input|textarea|select|option)\b((?:[^>"']|"[^"]*"|'[^']*')*)>\n?([^<]*))re",
        QRegularExpression::CaseInsensitiveOption);
    QHash<QString, FormField> fields;
    QString choice; // the one that options belong to
    html.remove(aside);
    const QHash<QString, QString> labels = readLabels(html);
    for (auto found = shape.globalMatch(html); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        const QString tag = match.captured(1).toLower();
        const Attributes attributes = readAttributes(match.captured(2));
        const QString text = decode(match.captured(3));
        FormField field;
        if (tag == "option" && !choice.isEmpty())
            addOption(fields[choice], attributes.contains("selected"), text);
        if (!findKind(tag, attributes.value("type"), field.kind) || !attributes.contains("id"))
            continue;
        field.value = getFirstValue(field, attributes, text);
        field.group = attributes.value("name");
        field.label = labels.value(attributes.value("id"));
        field.place = fields.size();
        fields.insert(attributes.value("id"), field);
        choice = field.kind == FormField::Choice ? attributes.value("id") : QString();
    }
    return fields;
}

QHash<QString, FormField> readPageFields()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    const QHelpEngineCore helpEngine(folder + "/formdata.qhc");
    const QList<QHelpLink> links = helpEngine.documentsForIdentifier("index");
    if (links.isEmpty())
        return {};
    return readPageFields(QString::fromUtf8(helpEngine.fileData(links.first().url)));
}
