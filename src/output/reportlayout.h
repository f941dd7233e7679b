#pragma once

#include "support/formvalue.h"

#include <QDomDocument>
#include <QVector>

/// What makes a report out of the template's tree fit the values that go into it.
namespace ReportLayout
{

/// The elements under the node, in the document's order. The list of the toolkit is made anew at
/// each look after a change.
QVector<QDomElement> findElements(const QDomNode &node, const QString &name);
/// The form field that a tag stands for; empty if it is no such tag.
QString getKey(const QDomElement &tag);

/// Puts a row's number into the conditions under it.
void numberConditions(const QDomNode &node, int number);
/// Puts the template's own words into the user's language, as long as no value stands in it.
void translate(QDomDocument &document);
/// Takes out what the template shows only beside a value (attribute "filled": ids of fields, or
/// "*" for those inside the element) or only without any ("unfilled"). Fields that are unknown
/// stay; a row of nothing else is folded up to a line that does not show.
void dropUnfilled(QDomDocument &document, const FormValues &values);
/// Sets what is written from right to left that way.
void turnParagraphs(QDomDocument &document, const FormValues &values);
/// Keeps indentation out of the paragraphs, where some readers show it as blanks between words.
void closeUp(QDomDocument &document);
/// A4 for paper measured in millimetres, else Letter; the lines keep their width.
void setPaper(QDomDocument &document, int pageSize);

} // namespace ReportLayout
