#include "output/wordxmlexport.h"
#include "testing/rows.h"
#include "testing/testmain.h"

#include <QDesktopServices>
#include <QPageSize>
#include <QUrl>

/// The form's values in the Word template.
class TestReport : public QObject
{
    Q_OBJECT

private slots:
    void values()
    {
        const QString yes = "causalFactor_worthFixing-Yes_3";
        const struct {
            const char *name;
            QString key, value, text;
            int runs = 3; // with a text before and one behind
        } rows[] = {
            {"lines", "loss", "one\ntwo\n", "one|two|"},
            {"marks of XML", "loss", "<w:p a=\"1\">&amp;", "<w:p a=\"1\">&amp;"},
            {"chosen radio button", yes, "true", "Yes"},
            {"other radio button", yes, "false", "", 4},
            {"capitals are a text", yes, "True", "True"},
            {"the last hyphen counts", "a-b-Maybe_later_2", "true", "Maybe"},
            {"true as a text", "loss", "true", "true"},
            {"an empty text leaves begin and end", "loss", "", "", 4},
        };
        for (const auto &row : rows) {
            const Row in(row.name);
            QDomDocument document =
                makeDocument("<w:p><w:r><w:t>[</w:t></w:r>" + makeField(row.key) +
                             "<w:r><w:t>]</w:t></w:r></w:p>");
            exporter.replaceFields(document, makeValues({{row.key, row.value}}));
            QCOMPARE(getText(document), '[' + row.text + ']');
            QCOMPARE(getKeys(document), QStringList());
            QCOMPARE(document.elementsByTagName("w:r").size(), row.runs);
            QCOMPARE(document.elementsByTagName("w:b").size(), row.text.isEmpty() ? 0 : 1);
        }
    }

    void rows()
    {
        const struct {
            const char *name;
            QStringList numbers;
            QStringList expected;
        } rows[] = {
            {"no factor", {}, {"f_text_NUM f_worth-Yes_NUM"}},
            {"one", {"1"}, {"t1Yes"}},
            {"a gap", {"1", "3"}, {"t1Yes", "f_text_2 f_worth-Yes_2", "t3Yes"}},
            {"a number that is none", {"x", "-4", "0"}, {"f_text_NUM f_worth-Yes_NUM"}},
            {"beyond any chart", {"1000", "2000000000", "99999999999999999999", "1"}, {"t1Yes"}},
        };
        for (const auto &row : rows) {
            const Row in(row.name);
            QCOMPARE(getRows(row.numbers), row.expected);
        }
        const QStringList most = getRows({"2", "10", "999"});
        QCOMPARE(most.size(), 999);
        QCOMPARE((QStringList{most.at(1), most.at(9), most.at(998)}),
                 QStringList({"t2Yes", "t10Yes", "t999Yes"}));
    }

    void outermostRowIsRepeated()
    {
        const QString table = "<w:tbl><w:tr><w:tc>%1</w:tc></w:tr></w:tbl>";
        QDomDocument document =
            makeDocument(makeField("f_text_NUM") + table.arg(table.arg(makeField("f_text_NUM"))));
        exporter.createDynamicElements(document, makeValues({{"f_text_2", "b"}}));
        QCOMPARE(getKeys(document), QStringList({"f_text_NUM", "f_text_1", "f_text_2"}));
        QCOMPARE(document.elementsByTagName("w:tbl").size(), 3);
    }

    void pictures()
    {
        const struct {
            QSize size;
            const char *style;
            bool fitHeight;
            const char *expected;
        } rows[] = {
            {{400, 100}, "width:200pt;height:200pt", false, "width:200.00pt;height:50.00pt"},
            {{100, 400}, "width:200pt;height:200pt", false, "width:50.00pt;height:200.00pt"},
            {{10, 5}, "width:200.9pt;height:300pt", false, "width:200.00pt;height:100.00pt"},
            {{400, 100}, "width:200pt;height:60pt", true, "width:240.00pt;height:60.00pt"},
            {{100, 100}, "width:50pt;height:60.5pt", true, "width:60.50pt;height:60.50pt"},
            {{10, 10}, "a:1;height:20cm;;width:40cm;", false, "a:1;height:20.00pt;;width:20.00pt;"},
        };
        const QString slot = "<w:binData w:name='wordml://%1.png'>old</w:binData>"
                             "<v:shape style='%2'/>";
        for (const auto &row : rows) {
            const Row in(row.style);
            QImage image(row.size, QImage::Format_RGB32);
            image.fill(Qt::blue);
            QDomDocument document = makeDocument("<w:pict>" + slot.arg("a", row.style) +
                                                 slot.arg("b", row.style) + "</w:pict>");
            exporter.replaceImage("a.png", image, document, row.fitHeight);
            const QDomNodeList shapes = document.elementsByTagName("v:shape");
            QCOMPARE(shapes.at(0).toElement().attribute("style"), QString(row.expected));
            QCOMPARE(shapes.at(1).toElement().attribute("style"), QString(row.style));
            const QDomNodeList data = document.elementsByTagName("w:binData");
            const QByteArray bytes = data.at(0).toElement().text().toLatin1();
            QCOMPARE(QImage::fromData(QByteArray::fromBase64(bytes)).size(), row.size);
            QCOMPARE(data.at(1).toElement().text(), QString("old"));
        }
    }

    void reportHoldsEveryValue()
    {
        FormValues values;
        QStringList keys = getKeys(read(WordXMLExport::getTemplatePath()));
        keys.removeDuplicates();
        QVERIFY(keys.contains("causalFactor_dueDate_NUM") && keys.contains("REPORTDATESTAMP"));
        for (const QString &key : qAsConst(keys)) {
            if (key == "causalFactor_count" || key == "causalFactor_number_NUM")
                continue; // counted by the exporter
            for (const char *number : {"_1", "_2"}) {
                const QString id = QString(key).replace("_NUM", number);
                values[id].value = id.contains('-') ? "true" : "value of " + id + ".";
            }
        }
        // What no XML file may hold is left out.
        for (ushort code = 0; code < 0x20; ++code)
            values["loss"].value += QChar(code);
        values["loss"].value += QString("a") + QChar(0xd800) + "b" + QChar(0xdc00) + "c" +
                                QChar(0xfffe) + QString::fromUtf8("d🌉");
        QCOMPARE(exporter.writeReport(path, values), QString());
        const QDomDocument report = read(path);
        const QString text = getText(report);
        values.remove("REPORTDATESTAMP");
        values["loss"].value = QString::fromUtf8("abcd🌉");
        for (auto field = values.cbegin(); field != values.cend(); ++field)
            QVERIFY2(field.key().contains('-') || text.contains(field->value),
                     qPrintable(field.key()));
        QVERIFY(text.contains("YesNo"));
        QVERIFY(
            text.contains(QLocale::system().toString(QDate::currentDate(), QLocale::ShortFormat)));
        QCOMPARE(getKeys(report), QStringList());
    }

    void reportFitsItsValues()
    {
        QSettings().setValue("pageSize", int(QPageSize::A3));
        const FormValues values = makeValues({{"causalFactor_text_1", "no plate"},
                                              {"causalFactor_correctiveAction_1", ""},
                                              {"causalFactor_worthFixing-No_1", "false"},
                                              {"causalFactor_text_3", "אין שלט"},
                                              {"causalFactor_correctiveAction_3", "a new plate"},
                                              {"fileNumber", ""},
                                              {"timelineNotes", ""}});
        QCOMPARE(exporter.writeReport(path, values), QString());
        const QDomDocument report = read(path);
        const QString text = getText(report), xml = report.toString(-1);
        QVERIFY(text.contains("2, described"));
        QCOMPARE(text.count("Corrective action"), 1);
        for (const char *gone : {"Worth fixing", "File ", "timeline", "No causal factors"})
            QVERIFY2(!text.contains(gone), gone);
        QVERIFY(xml.contains("causalFactor_text_2") && !xml.contains("filled="));
        QCOMPARE(xml.count("<w:bidi/>"), 1);
        QCOMPARE(report.elementsByTagName("w:pgSz").at(0).toElement().attribute("w:w"),
                 QString("11906"));
    }

    void failedReportLeavesTheFile()
    {
        QVERIFY(exporter.saveData(path, makeValues({{"loss", "a bridge"}}), nullptr));
        QCOMPARE(urls, QList<QUrl>({QUrl(path)}));
        const QString before = read(path).toString();
        QVERIFY(!exporter.writeReport(path, {}, {}, folder.filePath("missing.xml")).isEmpty());
        QCOMPARE(read(path).toString(), before);
        QVERIFY(!exporter.saveData(folder.filePath("no/such/folder.doc"), {}, nullptr));
        QCOMPARE(urls.size(), 1);
    }

    /// Stands in for the desktop's word processor.
    void onUrl(const QUrl &url) { urls.append(url); }

private:
    static FormValues makeValues(const QMap<QString, QString> &texts)
    {
        FormValues values;
        for (auto text = texts.begin(); text != texts.end(); ++text)
            values[text.key()].value = text.value();
        return values;
    }

    /// A template's field, with the runs that begin and end it.
    static QString makeField(const QString &key)
    {
        return "<w:r><w:fldChar w:fldCharType='begin'/></w:r>"
               "<w:r><w:rPr><w:b/></w:rPr><w:instrText>MACROBUTTON " +
               key +
               " shown here</w:instrText></w:r>"
               "<w:r><w:fldChar w:fldCharType='end'/></w:r>";
    }

    static QDomDocument makeDocument(const QString &body)
    {
        QDomDocument document;
        document.setContent("<w:wordDocument>" + body + "</w:wordDocument>");
        return document;
    }

    static QDomDocument read(const QString &path)
    {
        QFile file(path);
        QDomDocument document;
        if (file.open(QIODevice::ReadOnly))
            document.setContent(&file, false);
        return document;
    }

    /// The texts below the node, with "|" for a line break.
    static QString getText(const QDomNode &node)
    {
        if (node.nodeName() == "w:br")
            return "|";
        if (node.nodeName() == "w:t")
            return node.toElement().text();
        QString text;
        for (QDomNode child = node.firstChild(); !child.isNull(); child = child.nextSibling())
            text += getText(child);
        return text;
    }

    /// The words behind MACROBUTTON in the fields that are left.
    static QStringList getKeys(const QDomNode &node)
    {
        QStringList keys;
        for (QDomElement child = node.firstChildElement(); !child.isNull();
             child = child.nextSiblingElement())
            keys += child.tagName() == "w:instrText" ? QStringList(child.text().section(' ', 1, 1))
                                                     : getKeys(child);
        return keys;
    }

    /// What becomes of a template's row when factors have the numbers.
    QStringList getRows(const QStringList &numbers)
    {
        FormValues values = makeValues({{"plain", "x"}});
        for (const QString &number : numbers) {
            values["f_text_" + number].value = 't' + number;
            values["f_worth-Yes_" + number].value = "true";
        }
        QDomDocument document =
            makeDocument("<w:tbl><w:tr><w:tc><w:p>" + makeField("f_text_NUM") + "</w:p><w:p>" +
                         makeField("f_worth-Yes_NUM") + "</w:p></w:tc></w:tr></w:tbl>");
        exporter.createDynamicElements(document, values);
        exporter.replaceFields(document, values);
        QStringList texts;
        for (QDomNode row = document.documentElement().firstChild().firstChild(); !row.isNull();
             row = row.nextSibling())
            texts.append((QStringList(getText(row)) + getKeys(row)).join(' ').trimmed());
        return texts;
    }

    QTemporaryDir folder;
    QString path = folder.filePath("report.doc");
    QList<QUrl> urls;
    WordXMLExport exporter;

public:
    TestReport() { QDesktopServices::setUrlHandler("", this, "onUrl"); }
};

EXAMINER_TEST_MAIN(TestReport)
#include "testreport.moc"
