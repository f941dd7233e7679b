#include "output/wordxmlexport.h"
#include "testing/testmain.h"

#include <QDesktopServices>
#include <QElapsedTimer>
#include <QPageSize>
#include <QProgressDialog>
#include <QSettings>
#include <QUrl>

/// Stands in for the desktop's word processor.
class UrlCatcher : public QObject
{
    Q_OBJECT

public:
    UrlCatcher()
    {
        QDesktopServices::setUrlHandler("", this, "onUrl");
        QDesktopServices::setUrlHandler("file", this, "onUrl");
    }
    ~UrlCatcher() override
    {
        QDesktopServices::unsetUrlHandler("");
        QDesktopServices::unsetUrlHandler("file");
    }

    QList<QUrl> urls;

public slots:
    void onUrl(const QUrl &url) { urls.append(url); }
};

class TestWordXMLExport : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void fieldValues_data();
    void fieldValues();
    void emptyValueLeavesBeginAndEnd();
    void runKeepsItsProperties();
    void otherFieldsStay();
    void rows_data();
    void rows();
    void outermostRowIsRepeated();
    void fieldOutsideTableIsNotRepeated();
    void largeRowNumberMakesNoRows_data();
    void largeRowNumberMakesNoRows();
    void imageSizes_data();
    void imageSizes();
    void imageIsEmbeddedWhole();
    void otherImagesStay();
    void reportHoldsEveryValue();
    void reportFitsItsValues();
    void reportWithoutPicturesKeepsTitleSlot();
    void logoComesFromDataFolder();
    void forbiddenCharactersAreStripped();
    void longValuesAreFast_data();
    void longValuesAreFast();
    void failedReportLeavesFileAlone();
    void brokenTemplateIsWrittenOn();
    void savedReportIsOpened_data();
    void savedReportIsOpened();
    void failedSaveOpensNothing();

private:
    static FormValues makeValues(const QMap<QString, QString> &texts);
    static QString makeField(const QString &key);
    static QDomDocument makeDocument(const QString &body);
    static QString getText(const QDomNode &node);
    static QStringList getKeys(const QDomNode &node);
    static QStringList getRowTexts(const QDomDocument &document);
    static QDomDocument read(const QString &path);
    static QStringList getTemplateKeys();

    QScopedPointer<QTemporaryDir> folder;
    WordXMLExport exporter;
};

void TestWordXMLExport::init()
{
    folder.reset(new QTemporaryDir);
    QFile::remove(makeDataFolder() + "/companylogo.png");
}

FormValues TestWordXMLExport::makeValues(const QMap<QString, QString> &texts)
{
    FormValues values;
    for (auto it = texts.begin(); it != texts.end(); ++it)
        values[it.key()].value = it.value();
    return values;
}

/// A template's field, with the runs that begin and end it.
QString TestWordXMLExport::makeField(const QString &key)
{
    return "<w:r><w:fldChar w:fldCharType='begin'/></w:r>"
           "<w:r><w:rPr><w:b/></w:rPr><w:instrText>MACROBUTTON " +
           key +
           " shown here</w:instrText></w:r>"
           "<w:r><w:fldChar w:fldCharType='end'/></w:r>";
}

QDomDocument TestWordXMLExport::makeDocument(const QString &body)
{
    QDomDocument document;
    document.setContent("<w:wordDocument>" + body + "</w:wordDocument>");
    return document;
}

/// The texts below the node, with "|" for a line break.
QString TestWordXMLExport::getText(const QDomNode &node)
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
QStringList TestWordXMLExport::getKeys(const QDomNode &node)
{
    QStringList keys;
    const QDomNodeList tags = node.toElement().elementsByTagName("w:instrText");
    for (int i = 0; i < tags.size(); ++i)
        keys.append(tags.at(i).toElement().text().section(' ', 1, 1));
    return keys;
}

QStringList TestWordXMLExport::getRowTexts(const QDomDocument &document)
{
    QStringList texts;
    for (QDomElement row =
             document.documentElement().firstChildElement("w:tbl").firstChildElement();
         !row.isNull(); row = row.nextSiblingElement())
        texts.append((QStringList(getText(row)) + getKeys(row)).join(' ').trimmed());
    return texts;
}

QDomDocument TestWordXMLExport::read(const QString &path)
{
    QFile file(path);
    QDomDocument document;
    if (file.open(QIODevice::ReadOnly))
        document.setContent(&file, false);
    return document;
}

QStringList TestWordXMLExport::getTemplateKeys()
{
    QStringList keys = getKeys(read(WordXMLExport::getTemplatePath()).documentElement());
    keys.removeDuplicates();
    return keys;
}

void TestWordXMLExport::fieldValues_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("text");

    const QString yes = "causalFactor_worthFixing-Yes_3";
    QTest::newRow("one line") << "loss"
                              << "a bridge"
                              << "a bridge";
    QTest::newRow("lines") << "loss"
                           << "one\ntwo"
                           << "one|two";
    QTest::newRow("a break at the end") << "loss"
                                        << "one\n"
                                        << "one|";
    QTest::newRow("breaks only") << "loss"
                                 << "\n\n"
                                 << "||";
    QTest::newRow("marks of XML") << "loss"
                                  << "<w:p a=\"1\">&amp;"
                                  << "<w:p a=\"1\">&amp;";
    QTest::newRow("other scripts")
        << "loss" << QString::fromUtf8("Brücke 橋 🌉") << QString::fromUtf8("Brücke 橋 🌉");
    QTest::newRow("chosen radio button") << yes << "true"
                                         << "Yes";
    QTest::newRow("other radio button") << yes << "false"
                                        << "";
    QTest::newRow("radio button in capitals is text") << yes << "True"
                                                      << "True";
    QTest::newRow("last hyphen counts") << "a-b-Maybe_later_2"
                                        << "true"
                                        << "Maybe";
    QTest::newRow("true as a text") << "loss"
                                    << "true"
                                    << "true";
    QTest::newRow("false as a text") << "loss"
                                     << "false"
                                     << "false";
}

void TestWordXMLExport::fieldValues()
{
    QFETCH(QString, key);
    QFETCH(QString, value);
    QFETCH(QString, text);
    QDomDocument document = makeDocument("<w:p>" + makeField(key) + "</w:p>");
    exporter.replaceFields(document, makeValues({{key, value}}));

    QCOMPARE(getText(document), text);
    QCOMPARE(getKeys(document.documentElement()), QStringList());
    if (!text.isEmpty()) {
        const QDomElement paragraph = document.documentElement().firstChildElement("w:p");
        QCOMPARE(paragraph.elementsByTagName("w:r").size(), 1);
        QCOMPARE(paragraph.elementsByTagName("w:t").size(), text.count('|') + 1);
        QCOMPARE(paragraph.elementsByTagName("w:br").size(), text.count('|'));
    }
}

void TestWordXMLExport::emptyValueLeavesBeginAndEnd()
{
    QDomDocument document = makeDocument("<w:p>" + makeField("loss") + "</w:p>");
    exporter.replaceFields(document, makeValues({{"loss", ""}}));

    const QDomNodeList runs = document.elementsByTagName("w:r");
    QCOMPARE(runs.size(), 2);
    QCOMPARE(runs.at(0).firstChildElement().attribute("w:fldCharType"), QString("begin"));
    QCOMPARE(runs.at(1).firstChildElement().attribute("w:fldCharType"), QString("end"));
}

void TestWordXMLExport::runKeepsItsProperties()
{
    QDomDocument document = makeDocument("<w:p><w:r><w:t>before</w:t></w:r>" + makeField("loss") +
                                         "<w:r><w:t>after</w:t></w:r></w:p>");
    exporter.replaceFields(document, makeValues({{"loss", "value"}}));

    const QDomNodeList runs = document.elementsByTagName("w:r");
    QCOMPARE(getText(document), QString("beforevalueafter"));
    QCOMPARE(runs.size(), 3);
    QVERIFY(!runs.at(1).firstChildElement("w:rPr").isNull());
}

void TestWordXMLExport::otherFieldsStay()
{
    QDomDocument document = makeDocument(
        "<w:p>" + makeField("known") + "</w:p><w:p>" + makeField("unknown") +
        "</w:p><w:p><w:r><w:instrText> PAGE </w:instrText></w:r><w:r><w:instrText/></w:r>"
        "<w:r><w:instrText>MACROBUTTON</w:instrText></w:r>"
        "<w:r><w:instrText>macrobutton known</w:instrText></w:r></w:p>");
    exporter.replaceFields(document, makeValues({{"known", "value"}}));

    QCOMPARE(getText(document), QString("value"));
    QCOMPARE(getKeys(document.documentElement()),
             QStringList({"unknown", "PAGE", "", "", "known"}));
}

void TestWordXMLExport::rows_data()
{
    QTest::addColumn<QList<int>>("numbers");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("no factor") << QList<int>()
                               << QStringList({"head", "f_text_NUM f_worth-Yes_NUM"});
    QTest::newRow("one") << QList<int>{1} << QStringList({"head", "t1Yes"});
    QTest::newRow("a gap") << QList<int>{1, 3}
                           << QStringList({"head", "t1Yes", "f_text_2 f_worth-Yes_2", "t3Yes"});
    QTest::newRow("a single high number")
        << QList<int>{3}
        << QStringList({"head", "f_text_1 f_worth-Yes_1", "f_text_2 f_worth-Yes_2", "t3Yes"});
    QTest::newRow("two digits sort as numbers")
        << QList<int>{2, 10, 9, 1, 3, 4, 5, 6, 7, 8}
        << QStringList({"head", "t1Yes", "t2Yes", "t3Yes", "t4Yes", "t5Yes", "t6Yes", "t7Yes",
                        "t8Yes", "t9Yes", "t10Yes"});
    QTest::newRow("zero") << QList<int>{0} << QStringList({"head", "f_text_NUM f_worth-Yes_NUM"});
    QTest::newRow("below zero") << QList<int>{-4}
                                << QStringList({"head", "f_text_NUM f_worth-Yes_NUM"});
}

void TestWordXMLExport::rows()
{
    QFETCH(QList<int>, numbers);
    QFETCH(QStringList, expected);
    FormValues values = makeValues({{"plain", "x"}, {"f_text_word", "no number"}});
    if (numbers.isEmpty())
        values.clear();
    for (int number : qAsConst(numbers)) {
        values[QString("f_text_%1").arg(number)].value = QString("t%1").arg(number);
        values[QString("f_worth-Yes_%1").arg(number)].value = "true";
    }
    QDomDocument document = makeDocument(
        "<w:tbl><w:tr><w:tc><w:p><w:r><w:t>head</w:t></w:r></w:p></w:tc></w:tr><w:tr><w:tc><w:p>" +
        makeField("f_text_NUM") + "</w:p></w:tc><w:tc><w:p>" + makeField("f_worth-Yes_NUM") +
        "</w:p></w:tc></w:tr></w:tbl>");
    exporter.createDynamicElements(document, values);
    exporter.replaceFields(document, values);

    QCOMPARE(getRowTexts(document), expected);
}

void TestWordXMLExport::outermostRowIsRepeated()
{
    QDomDocument document =
        makeDocument("<w:tbl><w:tr><w:tc><w:tbl><w:tr><w:tc><w:p>" + makeField("f_text_NUM") +
                     "</w:p></w:tc></w:tr></w:tbl></w:tc></w:tr></w:tbl>");
    exporter.createDynamicElements(document, makeValues({{"f_text_2", "b"}}));

    QCOMPARE(getRowTexts(document), QStringList({"f_text_1", "f_text_2"}));
    QCOMPARE(document.elementsByTagName("w:tbl").size(), 3);
}

void TestWordXMLExport::fieldOutsideTableIsNotRepeated()
{
    QDomDocument document =
        makeDocument("<w:p>" + makeField("f_text_NUM") + "</w:p><w:tbl><w:tr><w:tc><w:p>" +
                     makeField("f_text_NUM") + "</w:p></w:tc></w:tr></w:tbl>");
    exporter.createDynamicElements(document, makeValues({{"f_text_2", "b"}}));

    QCOMPARE(getKeys(document.documentElement()),
             QStringList({"f_text_NUM", "f_text_1", "f_text_2"}));
}

void TestWordXMLExport::largeRowNumberMakesNoRows_data()
{
    QTest::addColumn<QString>("number");

    QTest::newRow("beyond any chart") << "1000";
    QTest::newRow("two thousand million") << "2000000000";
    QTest::newRow("beyond an integer") << "99999999999999999999";
}

void TestWordXMLExport::largeRowNumberMakesNoRows()
{
    QFETCH(QString, number);
    const FormValues values = makeValues({{"f_text_" + number, "far"}, {"f_text_2", "b"}});
    QDomDocument document = makeDocument("<w:tbl><w:tr><w:tc><w:p>" + makeField("f_text_NUM") +
                                         "</w:p></w:tc></w:tr></w:tbl>");
    exporter.createDynamicElements(document, values);

    QCOMPARE(getRowTexts(document), QStringList({"f_text_1", "f_text_2"}));
}

void TestWordXMLExport::imageSizes_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QString>("style");
    QTest::addColumn<bool>("fitHeight");
    QTest::addColumn<QString>("expected");

    QTest::newRow("wide in a box") << QSize(400, 100) << "width:200pt;height:200pt" << false
                                   << "width:200.00pt;height:50.00pt";
    QTest::newRow("tall in a box") << QSize(100, 400) << "width:200pt;height:200pt" << false
                                   << "width:50.00pt;height:200.00pt";
    QTest::newRow("small grows") << QSize(10, 5) << "width:200pt;height:200pt" << false
                                 << "width:200.00pt;height:100.00pt";
    QTest::newRow("fractions of the box are dropped")
        << QSize(100, 100) << "width:200.9pt;height:300pt" << false
        << "width:200.00pt;height:200.00pt";
    QTest::newRow("height is taken in full")
        << QSize(400, 100) << "width:200pt;height:60pt" << true << "width:240.00pt;height:60.00pt";
    QTest::newRow("height is taken with its fraction")
        << QSize(100, 100) << "width:50pt;height:60.5pt" << true << "width:60.50pt;height:60.50pt";
    QTest::newRow("another unit ends as points")
        << QSize(10, 10) << "width:20cm;height:30cm" << false << "width:20.00pt;height:20.00pt";
    QTest::newRow("other items and their order stay")
        << QSize(10, 10) << "z-index:1;height:20pt;;position:absolute;width:40pt;" << false
        << "z-index:1;height:20.00pt;;position:absolute;width:20.00pt;";
    QTest::newRow("a size in hundredths follows")
        << QSize(200, 100)
        << "mso-hundredths-width:1;mso-hundredths-height:1;width:72pt;height:72pt" << false
        << "mso-hundredths-width:2540;mso-hundredths-height:1270;width:72.00pt;height:36.00pt";
    QTest::newRow("no size at all") << QSize(10, 10) << "" << true << "";
}

void TestWordXMLExport::imageSizes()
{
    QFETCH(QSize, size);
    QFETCH(QString, style);
    QFETCH(bool, fitHeight);
    QFETCH(QString, expected);
    QDomDocument document =
        makeDocument("<w:pict><w:binData w:name='wordml://a.png'>old</w:binData><v:shape style='" +
                     style + "'/></w:pict>");
    exporter.replaceImage("a.png", QImage(size, QImage::Format_RGB32), document, fitHeight);

    QCOMPARE(document.elementsByTagName("v:shape").at(0).toElement().attribute("style"), expected);
}

void TestWordXMLExport::imageIsEmbeddedWhole()
{
    QImage image(300, 200, QImage::Format_RGB32);
    image.fill(Qt::blue);
    image.setPixelColor(299, 199, Qt::red);
    QDomDocument document = makeDocument("<w:pict><w:binData w:name='wordml://a.png'>old"
                                         "</w:binData><v:shape style='width:9pt;height:9pt'/>"
                                         "</w:pict>");
    exporter.replaceImage("a.png", image, document, false);

    const QString data = document.elementsByTagName("w:binData").at(0).toElement().text();
    const QImage embedded = QImage::fromData(QByteArray::fromBase64(data.toLatin1()), "PNG");
    QCOMPARE(embedded.convertToFormat(image.format()), image);
}

void TestWordXMLExport::otherImagesStay()
{
    const QString body = "<w:pict><w:binData w:name='wordml://b.png'>old</w:binData>"
                         "<v:shape style='width:9pt;height:9pt'/></w:pict>";
    QDomDocument document = makeDocument(body);
    const QString before = document.toString();
    exporter.replaceImage("a.png", QImage(5, 5, QImage::Format_RGB32), document, false);

    QCOMPARE(document.toString(), before);
}

void TestWordXMLExport::reportHoldsEveryValue()
{
    FormValues values;
    const QStringList keys = getTemplateKeys();
    QVERIFY(keys.contains("causalFactor_dueDate_NUM"));
    QVERIFY(keys.contains("REPORTDATESTAMP"));
    for (QString key : keys) {
        if (key == "causalFactor_count" || key == "causalFactor_number_NUM")
            continue; // counted by the exporter
        for (int n = 1; n <= 2; ++n) {
            const QString id = QString(key).replace("_NUM", QString("_%1").arg(n));
            values[id].value = id.contains("-") ? "true" : "value of " + id + ".";
        }
    }
    const QString path = folder->filePath("report.doc");
    QVERIFY(exporter.writeReport(path, values));

    const QDomDocument report = read(path);
    QCOMPARE(getKeys(report.documentElement()), QStringList());
    const QString text = getText(report);
    for (auto it = values.begin(); it != values.end(); ++it) {
        if (!it.key().contains("-") && it.key() != "REPORTDATESTAMP")
            QVERIFY2(text.contains(it->value), qPrintable(it.key()));
    }
    QVERIFY(text.contains("YesNo"));
    QVERIFY(text.contains(QLocale::system().toString(QDate::currentDate(), QLocale::ShortFormat)));
}

void TestWordXMLExport::reportFitsItsValues()
{
    const FormValues values = makeValues({{"causalFactor_text_1", "no plate"},
                                          {"causalFactor_correctiveAction_1", ""},
                                          {"causalFactor_worthFixing-No_1", "false"},
                                          {"causalFactor_text_3", QString::fromUtf8("אין שלט")},
                                          {"causalFactor_correctiveAction_3", "a new plate"},
                                          {"fileNumber", ""},
                                          {"timelineNotes", ""}});
    QSettings().setValue("pageSize", int(QPageSize::A3));
    const QString path = folder->filePath("report.doc");
    QVERIFY(exporter.writeReport(path, values));
    QSettings().remove("pageSize");

    const QDomDocument report = read(path);
    const QString text = getText(report);
    QVERIFY(text.contains("2, described"));
    QCOMPARE(text.count("Corrective action"), 1);
    for (const char *gone : {"Worth fixing", "File ", "timeline", "No causal factors"})
        QVERIFY2(!text.contains(gone), gone);
    const QString xml = report.toString(-1);
    QVERIFY(xml.contains("causalFactor_text_2") && !xml.contains("filled="));
    QCOMPARE(xml.count("<w:bidi/>"), 1);
    QCOMPARE(report.elementsByTagName("w:pgSz").at(0).toElement().attribute("w:w"),
             QString("11906"));
}

void TestWordXMLExport::reportWithoutPicturesKeepsTitleSlot()
{
    const QString path = folder->filePath("report.doc");
    QVERIFY(exporter.writeReport(path, FormValues()));

    const QDomNodeList before =
        read(WordXMLExport::getTemplatePath()).elementsByTagName("w:binData");
    const QDomDocument report = read(path);
    const QDomNodeList after = report.elementsByTagName("w:binData");
    QCOMPARE(after.size(), 2);
    for (int i = 0; i < after.size(); ++i) {
        const bool title = after.at(i).toElement().attribute("w:name") == "wordml://03000003.png";
        const QDomElement shape = after.at(i).nextSiblingElement("v:shape");
        const QDomElement shapeBefore = before.at(i).nextSiblingElement("v:shape");
        QCOMPARE(after.at(i).toElement().text() == before.at(i).toElement().text(), title);
        QCOMPARE(shape.attribute("style") == shapeBefore.attribute("style"), title);
    }
}

void TestWordXMLExport::logoComesFromDataFolder()
{
    QImage logo(31, 17, QImage::Format_RGB32);
    logo.fill(Qt::green);
    QVERIFY(logo.save(makeDataFolder() + "/companylogo.png"));
    FormValues values;
    values["titleImageFile"].image = QImage(40, 30, QImage::Format_RGB32);
    const QString path = folder->filePath("report.doc");
    QVERIFY(exporter.writeReport(path, values));

    QMap<QString, QSize> sizes;
    const QDomDocument report = read(path);
    const QDomNodeList pictures = report.elementsByTagName("w:binData");
    for (int i = 0; i < pictures.size(); ++i) {
        const QDomElement picture = pictures.at(i).toElement();
        sizes[picture.attribute("w:name")] =
            QImage::fromData(QByteArray::fromBase64(picture.text().toLatin1())).size();
    }
    QCOMPARE(sizes.value("wordml://03000003.png"), QSize(40, 30));
    QCOMPARE(sizes.value("wordml://03000004.png"), QSize(31, 17));
}

void TestWordXMLExport::forbiddenCharactersAreStripped()
{
    QString value;
    for (ushort code = 0; code < 0x20; ++code)
        value += QChar(code);
    value += QString("a") + QChar(0xd800) + "b" + QChar(0xdc00) + "c" + QChar(0xfffe) +
             QChar(0xffff) + QString::fromUtf8("d🌉");
    const QString path = folder->filePath("report.doc");
    QVERIFY(exporter.writeReport(path, makeValues({{"loss", value}, {"mrph", QChar(1)}})));

    const QDomDocument report = read(path);
    QVERIFY(!report.isNull());
    QVERIFY(getText(report).contains(QString::fromUtf8("abcd🌉")));
}

void TestWordXMLExport::longValuesAreFast_data()
{
    QTest::addColumn<QString>("value");

    QTest::newRow("one line") << QString(1000000, 'x');
    QTest::newRow("short lines") << (QString(80, 'x') + "\n").repeated(12000);
    QTest::newRow("nothing but marks") << QString(1000000, '<');
    QTest::newRow("nothing but pairs") << QString::fromUtf8("🌉").repeated(100000);
}

void TestWordXMLExport::longValuesAreFast()
{
    QFETCH(QString, value);
    const QString path = folder->filePath("report.doc");
    QElapsedTimer timer;
    timer.start();
    QVERIFY(exporter.writeReport(path, makeValues({{"loss", value}})));

    QVERIFY2(timer.elapsed() < 15000, qPrintable(QString::number(timer.elapsed())));
    QVERIFY(getText(read(path)).contains(QString(value).replace('\n', '|')));
}

void TestWordXMLExport::failedReportLeavesFileAlone()
{
    const QString missing = folder->filePath("missing.xml");
    const QString path = folder->filePath("report.doc");
    QVERIFY(!exporter.writeReport(path, FormValues(), WordXMLExport::Progress(), missing));
    QVERIFY(!QFile::exists(path));

    QVERIFY(!exporter.writeReport(folder->filePath("no/such/folder.doc"), FormValues()));
    QVERIFY(!exporter.writeReport(folder->path(), FormValues()));
}

void TestWordXMLExport::brokenTemplateIsWrittenOn()
{
    const QString broken = folder->filePath("broken.xml");
    for (const QByteArray &content :
         {QByteArray(), QByteArray("no xml"), QByteArray("<a><w:tr>"),
          QByteArray("<a><w:instrText>MACROBUTTON loss</w:instrText>"
                     "<w:binData w:name='wordml://03000004.png'/></a>")}) {
        QFile file(broken);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        QVERIFY(exporter.writeReport(folder->filePath("report.doc"), makeValues({{"loss", "x"}}),
                                     WordXMLExport::Progress(), broken));
    }
}

void TestWordXMLExport::savedReportIsOpened_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("bare");

    QTest::newRow("plain name") << "report.doc" << true;
    QTest::newRow("blank") << "my report.doc" << false;
    QTest::newRow("accents") << QString::fromUtf8("Unglück 橋.doc") << false;
    QTest::newRow("marks of URLs") << "a#b?c%41.doc" << false;
}

void TestWordXMLExport::savedReportIsOpened()
{
    QFETCH(QString, name);
    QFETCH(bool, bare);
    UrlCatcher catcher;
    QWidget window;
    const QString path = folder->filePath(name);
    QVERIFY(exporter.saveData(path, makeValues({{"loss", "a bridge"}}), &window));

    QVERIFY(getText(read(path)).contains("a bridge"));
    QCOMPARE(catcher.urls.size(), 1);
    QCOMPARE(bare ? catcher.urls.first().toString() : catcher.urls.first().toLocalFile(), path);
    QVERIFY(window.findChildren<QProgressDialog *>().isEmpty());
}

void TestWordXMLExport::failedSaveOpensNothing()
{
    UrlCatcher catcher;
    QVERIFY(!exporter.saveData(folder->filePath("no/such/folder.doc"), FormValues(), nullptr));

    QCOMPARE(catcher.urls, QList<QUrl>());
}

EXAMINER_TEST_MAIN(TestWordXMLExport)
#include "testwordxmlexport.moc"
