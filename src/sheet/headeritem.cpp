#include "sheet/headeritem.h"

#include "support/datatexts.h"
#include "support/log.h"

#include <QFile>
#include <QPainter>
#include <QRegularExpression>
#include <QTextLayout>

namespace
{

// Scene units.
constexpr int TextHeight = 13;
constexpr int LineHeight = 15;
constexpr int Ascent = 12;
constexpr int Padding = 2; // with the rule above
constexpr int RowSpace = 3;
constexpr int LabelIndent = 2; // like the next from the rule on the left
constexpr int ValueIndent = 105;
constexpr int FactWidth = 219; // of the left one of two
constexpr int TableWidth = 440;
constexpr int MostShown = 2000; // characters of a value: breaking a word costs its length squared

QFont getHeaderFont()
{
    QFont font("Arial");
    font.setPixelSize(TextHeight); // points would follow the resolution of a printer
    font.setKerning(false);
    font.setCapitalization(QFont::SmallCaps);
    return font;
}

QStringList breakLines(const QString &text, qreal width)
{
    QStringList lines;
    const QStringList paragraphs = text.left(MostShown).split('\n');
    for (const QString &paragraph : paragraphs) {
        QTextLayout layout(paragraph.simplified(), getHeaderFont());
        QTextOption option;
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        layout.setTextOption(option);
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(width);
            lines << layout.text().mid(line.textStart(), line.textLength());
        }
        layout.endLayout();
    }
    return lines;
}

} // namespace

HeaderItem::HeaderItem()
{
    setFocusPolicy(Qt::NoFocus);
    setFlag(ItemIsFocusable, false);
    setAcceptHoverEvents(false);
    setAcceptedMouseButtons(Qt::LeftButton);
    resize(800, 300);
}

void HeaderItem::loadTemplate(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qCDebug(sheetLog) << "Couldn't open the header template" << path;
        return;
    }
    static const QRegularExpression cell(
        "<(tr)>|<td class=\"label\">([^<]*)</td>|<span id=\"(\\w+)\">");
    auto cells = cell.globalMatch(QString::fromUtf8(file.readAll()));
    const QHash<QString, QString> texts = getDataTexts("Header");
    QString label;
    while (cells.hasNext()) {
        const QRegularExpressionMatch found = cells.next();
        if (found.capturedStart(1) != -1) {
            rows.append(QVector<Fact>());
        } else if (found.capturedStart(2) != -1) {
            label = texts.value(found.captured(2), found.captured(2));
        } else if (!rows.isEmpty()) {
            rows.last().append({label, found.captured(3)});
            shown.insert(found.captured(3), QString());
        }
    }
    layOut();
}

void HeaderItem::setHeaderValue(const QString &id, const QString &value)
{
    const auto known = shown.find(id);
    if (known == shown.end() || *known == value)
        return;
    *known = value;
    layOut();
}

void HeaderItem::setHeaderValues(const FormValues &values)
{
    for (auto value = values.begin(); value != values.end(); ++value) {
        if (!value->value.isEmpty())
            setHeaderValue(value.key(), value->value);
    }
}

void HeaderItem::layOut()
{
    texts.clear();
    rules = {QRectF(0, 0, TableWidth, 1)};
    int top = 0;
    for (const QVector<Fact> &row : qAsConst(rows))
        top = layOutRow(row, top);
    for (int x : {0, TableWidth - 1})
        rules << QRectF(x, 0, 1, top + 1);
    resize(TableWidth, top + 1);
    update();
}

int HeaderItem::layOutRow(const QVector<Fact> &facts, int top)
{
    QVector<Text> row;
    int lines = 1;
    qreal left = 0;
    for (const Fact &fact : facts) {
        const int right = &fact == &facts.last() ? TableWidth - 1 : FactWidth;
        const qreal indent = left + ValueIndent;
        row << Text{QPointF(left + LabelIndent, top),
                    breakLines(fact.label, ValueIndent - 2 * LabelIndent)}
            << Text{QPointF(indent, top), breakLines(shown.value(fact.id), right - indent - 1)};
        left = right + 0.5;
    }
    for (const Text &text : qAsConst(row))
        lines = qMax<int>(lines, text.lines.size());
    for (Text &text : row)
        text.place.ry() += Padding + ((lines - text.lines.size()) * LineHeight + 1) / 2;
    texts += row;
    const int bottom = top + lines * LineHeight + RowSpace;
    for (int i = 1; i < facts.size(); ++i)
        rules << QRectF(i * FactWidth, top, 1, bottom - top);
    rules << QRectF(0, bottom, TableWidth, 1);
    return bottom;
}

void HeaderItem::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    painter->fillRect(rect(), Qt::white);
    for (const QRectF &rule : qAsConst(rules))
        painter->fillRect(rule, Qt::black);
    painter->setPen(Qt::black);
    painter->setFont(getHeaderFont());
    for (const Text &text : qAsConst(texts)) {
        for (int i = 0; i < text.lines.size(); ++i)
            painter->drawText(text.place + QPointF(0, i * LineHeight + Ascent), text.lines.at(i));
    }
}
