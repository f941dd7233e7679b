#include "output/wordxmlexport.h"

#include "chart/formfields.h"
#include "output/reportlayout.h"
#include "support/filereplacement.h"
#include "support/images.h"
#include "support/log.h"
#include "support/pageinfo.h"
#include "support/progressbox.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDate>
#include <QDesktopServices>
#include <QFile>
#include <QLocale>
#include <QStandardPaths>
#include <QUrl>
#include <QVector>

using ReportLayout::findElements;
using ReportLayout::getKey;

namespace
{
constexpr int ProgressSteps = 7;
constexpr int Fineness = 100; // parts of a step that are told
constexpr double PictureStep = 1;
/// A file may hold any number; a chart with more causal factors than this is no chart.
constexpr int MaxRows = 999;
constexpr int MaxPiece = 1000;

using Tags = QVector<QDomElement>;

struct RowId {
    QString prefix;
    QString number;
};

/// Empty unless the id has the three parts of a row's field.
RowId splitRowId(const QString &id)
{
    const QStringList parts = id.split('_', Qt::SkipEmptyParts);
    return parts.size() == 3 ? RowId{parts.first(), parts.last()} : RowId();
}

QHash<QString, int> countRows(const FormValues &values)
{
    QHash<QString, int> counts;
    for (auto it = values.begin(); it != values.end(); ++it) {
        const RowId id = splitRowId(it.key());
        if (id.prefix.isEmpty())
            continue;
        const int number = id.number.toInt(); // 0 if it is none
        int &count = counts[id.prefix];
        if (number <= MaxRows)
            count = qMax(count, number);
    }
    return counts;
}

/// What the template can show of a row beside its fields: its number, and how many there are.
void addRowNumbers(FormValues &values)
{
    QHash<QString, QSet<int>> rows;
    values["causalFactor_count"]; // a report without any tells so
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        const RowId id = splitRowId(it.key());
        const int number = id.number.toInt();
        if (number > 0 && number <= MaxRows)
            rows[id.prefix].insert(number);
    }
    for (auto row = rows.cbegin(); row != rows.cend(); ++row) {
        values[row.key() + "_count"].value = QString::number(row->size());
        for (int number : *row)
            values[QString("%1_number_%2").arg(row.key()).arg(number)].value =
                QString::number(number);
    }
}

/// What the report shows for a value: a radio button has its answer in its id, and the form has a
/// label for it.
QString getShownText(const QString &key, const QString &value)
{
    if (!key.contains('-') || (value != "true" && value != "false"))
        return value;
    if (value == "false")
        return QString();
    const QString answer = key.section('-', -1).section('_', 0, 0);
    return QCoreApplication::translate("FormPage", answer.toUtf8());
}

bool isAllowedInXml(const QString &text, int i)
{
    const QChar c = text.at(i);
    if (c.isHighSurrogate())
        return i + 1 < text.length() && text.at(i + 1).isLowSurrogate();
    if (c.isLowSurrogate())
        return i > 0 && text.at(i - 1).isHighSurrogate();
    const ushort code = c.unicode();
    return code >= 0x20 ? code < 0xfffe : code == '\t' || code == '\n' || code == '\r';
}

/// The text without the characters that no XML file may hold.
QString stripForbidden(const QString &text)
{
    QString allowed;
    allowed.reserve(text.length());
    for (int i = 0; i < text.length(); ++i) {
        if (isAllowedInXml(text, i))
            allowed.append(text.at(i));
    }
    return allowed;
}

QDomElement makeLine(QDomDocument &document, const QString &line)
{
    QDomElement element = document.createElement("w:t");
    if (line != line.simplified()) // else a reader may drop what indents the line
        element.setAttribute("xml:space", "preserve");
    int start = 0;
    do {
        // Escaping a text moves its rest along at each mark, so long ones go in by pieces.
        int end = qMin(start + MaxPiece, line.length());
        if (end < line.length() && line.at(end).isLowSurrogate())
            ++end;
        element.appendChild(document.createTextNode(line.mid(start, end - start)));
        start = end;
    } while (start < line.length());
    return element;
}

struct Stopped {
};

/// Takes bytes until the progress stops them: a photograph is compressed for many seconds.
class StoppableBuffer : public QBuffer
{
public:
    StoppableBuffer(qint64 mostBytes, const WordXMLExport::Progress &progress)
        : mostBytes(mostBytes), progress(progress)
    {
    }

protected:
    qint64 writeData(const char *bytes, qint64 length) override
    {
        const double part = qMin(1.0, double(size()) / mostBytes);
        if (progress && !progress(PictureStep + part, QString()))
            return -1;
        return QBuffer::writeData(bytes, length);
    }

private:
    qint64 mostBytes;
    const WordXMLExport::Progress &progress;
};

/// Empty if it was stopped.
QString encodePng(const QImage &image, const WordXMLExport::Progress &progress)
{
    StoppableBuffer buffer(qMax<qint64>(1, image.sizeInBytes()), progress);
    buffer.open(QIODevice::WriteOnly);
    const bool whole = image.save(&buffer, "PNG");
    return whole ? QString::fromLatin1(buffer.data().toBase64()) : QString();
}

/// The number of the style item with the key, less its unit of two letters;
/// the other value takes its place.
double takeNumber(QStringList &items, const QString &key, const QString &newValue)
{
    double number = 0;
    for (QString &item : items) {
        if (item.section(':', 0, 0) != key)
            continue;
        QString value = item.section(':', 1, 1);
        value.chop(2);
        number = value.toDouble();
        item = key + ":" + newValue;
    }
    return number;
}

QImage loadLogo()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    const QImage logo = readImageFile(folder + "/companylogo.png");
    return logo.isNull() ? QImage(":/images/blank.png") : logo;
}

/// False if the file can't be read; text that is no XML is only logged.
bool readTemplate(const QString &path, QDomDocument &document)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QString error;
    if (!document.setContent(&file, false, &error))
        qCDebug(outputLog) << "Couldn't parse the report template:" << error;
    return true;
}

bool writeDocument(const QString &path, const QByteArray &text)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    return file.write(text) == text.size() && file.flush();
}

/// A desktop takes a bare path as it stands: one with blanks or accents, which
/// a URL writes in another way, has to be told as a file.
QUrl getUrl(const QString &path)
{
    const QUrl url(path);
    return url.toEncoded() == path.toUtf8() ? url : QUrl::fromLocalFile(path);
}
} // namespace

QString WordXMLExport::getTemplatePath()
{
    return QCoreApplication::applicationDirPath() + "/reporttemplate.xml";
}

QString WordXMLExport::saveData(const QString &path, const FormValues &values, QWidget *parent)
{
    ProgressBox box(tr("Exporting to Microsoft Word"), parent);
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents); // a dialog may be leaving
    const auto tell = [&box](double step, const QString &text) {
        if (!text.isEmpty())
            box.setLabelText(text);
        return box.goOn(int(step * Fineness), ProgressSteps * Fineness);
    };
    const QString failure = writeReport(path, values, tell);
    if (!failure.isEmpty())
        return failure;
    tell(6, tr("Opening Microsoft Word..."));
    QDesktopServices::openUrl(getUrl(path));
    return QString();
}

QString WordXMLExport::writeReport(const QString &path, FormValues values, const Progress &progress,
                                   const QString &templatePath)
{
    try {
        return write(path, values, progress, templatePath);
    } catch (const Stopped &) {
        return tr("The export was stopped, nothing was written.");
    }
}

QString WordXMLExport::write(const QString &path, FormValues &values, const Progress &progress,
                             const QString &templatePath)
{
    const auto tell = [&progress](double step, const QString &text) {
        if (progress && !progress(step, text))
            throw Stopped();
    };
    QDomDocument document;
    tell(0, tr("Opening template file..."));
    if (!readTemplate(templatePath, document))
        return tr("The template %1 can't be read.").arg(templatePath);
    ReportLayout::translate(document);
    tell(PictureStep, tr("Writing images..."));
    replaceImages(document, values, progress);
    tell(3, tr("Writing fields..."));
    values["REPORTDATESTAMP"].value =
        QLocale::system().toString(QDate::currentDate(), QLocale::ShortFormat);
    addRowNumbers(values);
    createDynamicElements(document, values);
    tell(4, QString());
    ReportLayout::setPaper(document, PageInfo().pageSize);
    ReportLayout::dropUnfilled(document, values);
    ReportLayout::turnParagraphs(document, values);
    replaceFields(document, values);
    ReportLayout::closeUp(document);
    tell(5, tr("Writing document..."));
    const QByteArray text = document.toByteArray(1); // UTF-8
    tell(6, QString());
    return replaceFile(
        path, [&text](const QString &unfinished) { return writeDocument(unfinished, text); });
}

void WordXMLExport::replaceImages(QDomDocument &document, const FormValues &values,
                                  const Progress &progress)
{
    const QImage title = values.value(FormFields::TitleImage).image;
    if (!title.isNull())
        replaceImage("03000003.png", title, document, false, progress);
    const QImage logo = loadLogo();
    if (!logo.isNull())
        replaceImage("03000004.png", logo, document, true);
}

void WordXMLExport::createDynamicElements(QDomDocument &document, const FormValues &values)
{
    QHash<QString, int> counts = countRows(values);
    // The fields of the clones need no visit: their prefix is then down to 1.
    const Tags tags = findElements(document, "w:instrText");
    for (const QDomElement &tag : tags) {
        const auto count = counts.find(splitRowId(getKey(tag)).prefix);
        QDomNode row = findTopMostTableRow(tag);
        if (count == counts.end() || row.isNull())
            continue;
        QDomNode table = row.parentNode();
        for (int n = 2; *count >= 2; ++n, --*count) {
            QDomNode clone = row.cloneNode(true);
            replaceDynamicRowNumbers(clone, n);
            table.appendChild(clone);
        }
        if (*count == 1)
            replaceDynamicRowNumbers(row, 1);
    }
}

QDomNode WordXMLExport::findTopMostTableRow(QDomNode node) const
{
    QDomNode row;
    for (node = node.parentNode(); !node.isNull(); node = node.parentNode()) {
        if (node.nodeName() == "w:tr")
            row = node;
    }
    return row;
}

void WordXMLExport::replaceDynamicRowNumbers(QDomNode &node, int number)
{
    const Tags tags = findElements(node, "w:instrText");
    for (const QDomElement &tag : tags) {
        QDomNode text = tag.firstChild();
        if (!text.isNull())
            text.setNodeValue(text.nodeValue().replace("_NUM", QString("_%1").arg(number)));
    }
    ReportLayout::numberConditions(node, number);
}

void WordXMLExport::replaceFields(QDomDocument &document, const FormValues &values)
{
    const Tags tags = findElements(document, "w:instrText");
    for (QDomElement tag : tags) {
        if (tag.firstChild().isNull()) {
            qCDebug(outputLog) << "Null or no child nodes???????????";
            continue;
        }
        const QString key = getKey(tag);
        if (key.isEmpty())
            continue;
        const auto field = values.find(key);
        if (field == values.end())
            qCDebug(outputLog) << "WARNING: Encountered unhandled field value:" << key;
        else
            replaceFieldValue(document, tag, getShownText(key, field->value));
    }
}

void WordXMLExport::replaceFieldValue(QDomDocument &document, QDomElement &tag,
                                      const QString &value)
{
    QDomNode run = tag.parentNode();
    QDomNode paragraph = run.parentNode();
    const QString text = stripForbidden(value);
    if (text.isEmpty()) {
        // Without siblings of the run, the field's begin and end stay in the paragraph.
        paragraph.removeChild(run);
        return;
    }
    const QStringList lines = text.split('\n');
    for (int i = 0; i < lines.size(); ++i) {
        if (i > 0) {
            run.appendChild(document.createElement("w:br"));
            // Beside a text nothing is indented: some readers show a blank there.
            run.appendChild(document.createTextNode(QString()));
        }
        run.appendChild(makeLine(document, lines.at(i)));
    }
    run.removeChild(tag);
    paragraph.removeChild(run.previousSiblingElement("w:r"));
    paragraph.removeChild(run.nextSiblingElement("w:r"));
}

void WordXMLExport::replaceImage(const QString &name, const QImage &image, QDomDocument &document,
                                 bool fitHeight, const Progress &progress)
{
    const QString slot = QString("wordml://%1").arg(name);
    const Tags pictures = findElements(document, "w:binData");
    for (const QDomElement &picture : pictures) {
        if (picture.attribute("w:name") != slot)
            continue;
        picture.firstChild().setNodeValue(encodePng(image, progress));
        QDomElement shape = picture.nextSiblingElement("v:shape");
        if (!shape.isNull())
            resizeShape(shape, image.size(), fitHeight);
    }
}

void WordXMLExport::resizeShape(QDomElement &shape, QSize imageSize, bool fitHeight)
{
    QStringList items = shape.attribute("style").split(';');
    const double boxWidth = takeNumber(items, "width", "%2pt");
    const double boxHeight = takeNumber(items, "height", "%3pt");
    const QSize box{int(boxWidth), int(boxHeight)};
    const QSize size = imageSize.scaled(box, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
    const double factor = fitHeight ? boxHeight / size.height() : 1.0;
    const double width = size.width() * factor;
    const double height = size.height() * factor;
    // One reader takes its size from here: without a unit, in hundredths of a millimetre.
    takeNumber(items, "mso-hundredths-width", QString::number(qRound(width * 2540 / 72)));
    takeNumber(items, "mso-hundredths-height", QString::number(qRound(height * 2540 / 72)));
    QString style = items.join(';');
    style.replace("%2", QString::number(width, 'f', 2));
    style.replace("%3", QString::number(height, 'f', 2));
    shape.setAttribute("style", style);
}
