#include "output/reportlayout.h"

#include "support/datatexts.h"
#include "support/pageinfo.h"

#include <algorithm>

namespace
{

using Elements = QVector<QDomElement>;

const char Filled[] = "filled";
const char Unfilled[] = "unfilled";

void collect(const QDomNode &node, const QString &name, Elements &found)
{
    for (QDomElement child = node.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        if (child.tagName() == name)
            found.append(child);
        collect(child, name, found);
    }
}

QStringList getKeysInside(const QDomElement &element)
{
    QStringList keys;
    const Elements tags = ReportLayout::findElements(element, "w:instrText");
    for (const QDomElement &tag : tags)
        keys.append(ReportLayout::getKey(tag));
    return keys;
}

QStringList getKeys(const QDomElement &element, const QString &condition)
{
    if (condition == "*")
        return getKeysInside(element);
    return condition.split(' ');
}

/// A radio button that is off shows nothing either.
bool isAnyFilled(const QStringList &keys, const FormValues &values)
{
    return std::any_of(keys.begin(), keys.end(), [&values](const QString &key) {
        const QString text = values.value(key).value;
        return !text.isEmpty() && !(text == "false" && key.contains('-'));
    });
}

bool isAnyKnown(const QStringList &keys, const FormValues &values)
{
    return std::any_of(keys.begin(), keys.end(),
                       [&values](const QString &key) { return values.contains(key); });
}

bool isFieldRun(const QDomElement &run)
{
    return !run.firstChildElement("w:fldChar").isNull() ||
           !run.firstChildElement("w:instrText").isNull();
}

void removeAllBut(const QDomElement &child)
{
    QDomNode parent = child.parentNode();
    while (!child.nextSiblingElement().isNull())
        parent.removeChild(child.nextSiblingElement());
    while (!child.previousSiblingElement().isNull() &&
           !child.previousSiblingElement().tagName().endsWith("Pr"))
        parent.removeChild(child.previousSiblingElement());
}

/// Leaves the row with one line that keeps the row's fields out of sight.
void fold(QDomElement &row)
{
    QDomElement cell = row.firstChildElement("w:tc");
    QDomElement line = cell.lastChildElement("w:p");
    const Elements runs = ReportLayout::findElements(row, "w:r");
    for (const QDomElement &run : runs) {
        if (isFieldRun(run))
            line.appendChild(run);
    }
    line.firstChildElement("w:pPr").firstChildElement("w:pStyle").setAttribute("w:val", "Folded");
    removeAllBut(line);
    removeAllBut(cell);
    QDomElement look = cell.firstChildElement("w:tcPr");
    for (const char *name : {"w:tcBorders", "w:shd"})
        look.removeChild(look.firstChildElement(name));
}

/// Nothing is indented beside a text, be it an empty one.
void interleave(QDomNode node)
{
    QDomDocument document = node.ownerDocument();
    for (QDomElement child = node.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        node.insertBefore(document.createTextNode(QString()), child);
        interleave(child);
    }
    if (node.lastChild().isElement())
        node.appendChild(document.createTextNode(QString()));
}

/// True if the element is still there.
bool apply(QDomElement &element, const char *attribute, bool shownIfFilled,
           const FormValues &values)
{
    if (!element.hasAttribute(attribute))
        return true;
    const QStringList keys = getKeys(element, element.attribute(attribute));
    element.removeAttribute(attribute);
    if (isAnyFilled(keys, values) == shownIfFilled)
        return true;
    if (!getKeysInside(element).isEmpty() && !isAnyKnown(keys, values)) {
        if (element.tagName() == "w:tr")
            fold(element);
        return true;
    }
    element.parentNode().removeChild(element);
    return false;
}

void walk(const QDomNode &node, const FormValues &values)
{
    QDomElement next;
    for (QDomElement child = node.firstChildElement(); !child.isNull(); child = next) {
        next = child.nextSiblingElement();
        if (apply(child, Filled, true, values) && apply(child, Unfilled, false, values))
            walk(child, values);
    }
}

} // namespace

QVector<QDomElement> ReportLayout::findElements(const QDomNode &node, const QString &name)
{
    Elements found;
    collect(node, name, found);
    return found;
}

QString ReportLayout::getKey(const QDomElement &tag)
{
    const QStringList words = tag.firstChild().nodeValue().split(' ', Qt::SkipEmptyParts);
    return words.size() >= 2 && words.first() == "MACROBUTTON" ? words.at(1) : QString();
}

void ReportLayout::translate(QDomDocument &document)
{
    const QHash<QString, QString> texts = getDataTexts("Report");
    if (texts.isEmpty())
        return;
    const Elements shown = findElements(document, "w:t") + findElements(document, "o:Title");
    for (const QDomElement &element : shown) {
        QDomNode node = element.firstChild();
        const QString words = node.nodeValue().trimmed();
        if (texts.contains(words))
            node.setNodeValue(node.nodeValue().replace(words, texts.value(words)));
    }
}

void ReportLayout::numberConditions(const QDomNode &node, int number)
{
    for (QDomElement child = node.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        if (child.hasAttribute(Filled))
            child.setAttribute(Filled,
                               child.attribute(Filled).replace("_NUM", QString("_%1").arg(number)));
        numberConditions(child, number);
    }
}

void ReportLayout::dropUnfilled(QDomDocument &document, const FormValues &values)
{
    walk(document, values);
}

void ReportLayout::turnParagraphs(QDomDocument &document, const FormValues &values)
{
    const Elements tags = findElements(document, "w:instrText");
    for (const QDomElement &tag : tags) {
        if (!values.value(getKey(tag)).value.isRightToLeft())
            continue;
        QDomNode run = tag.parentNode();
        QDomElement look = run.firstChildElement("w:rPr");
        if (look.isNull())
            look = run.insertBefore(document.createElement("w:rPr"), tag).toElement();
        look.appendChild(document.createElement("w:rtl"));
        QDomElement paragraph = run.parentNode().firstChildElement("w:pPr");
        if (paragraph.firstChildElement("w:bidi").isNull())
            paragraph.appendChild(document.createElement("w:bidi"));
    }
}

void ReportLayout::closeUp(QDomDocument &document)
{
    const Elements paragraphs = findElements(document, "w:p");
    for (const QDomElement &paragraph : paragraphs)
        interleave(paragraph);
}

void ReportLayout::setPaper(QDomDocument &document, int pageSize)
{
    if (getPaperSize(pageSize).definitionUnits() != QPageSize::Millimeter)
        return;
    const int width = 11906, height = 16838; // twentieths of a point
    const Elements sizes = findElements(document, "w:pgSz");
    for (QDomElement size : sizes) {
        const int spare = size.attribute("w:w").toInt() - width;
        size.setAttribute("w:w", width);
        size.setAttribute("w:h", height);
        QDomElement margins = size.nextSiblingElement("w:pgMar");
        for (const char *side : {"w:left", "w:right"})
            margins.setAttribute(side, margins.attribute(side).toInt() - spare / 2);
    }
}
