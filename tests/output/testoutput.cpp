#include "output/sheetprinter.h"
#include "output/wordxmlexport.h"
#include "sheet/footeritem.h"
#include "shell/pagesetupdialog.h"
#include "support/pageinfo.h"
#include "testing/files.h"
#include "testing/rows.h"
#include "testing/sheet.h"

#include <QCheckBox>
#include <QDesktopServices>
#include <QListWidget>
#include <QPrinter>
#include <QRegularExpression>

#include <csignal>
#include <sys/resource.h>

/// Sheets with their footers on paper and in pictures, and the form's values in a report.
class TestOutput : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QSettings().clear();
        QFile::remove(path);
    }

    void badPapersCountAsNotSet()
    {
        const QString derived = PageInfo().getMarginsString();
        QCOMPARE(PageInfo().getPrintableArea().size(), QSize(1606, 1030));
        for (const char *margins : {"1 2 3", "-1 1 1 1", "30 30 1 1", "1 1 14 13.9", "1e300 1 1 1",
                                    "1 inf 1 1", "1 1 nan 1"}) {
            QSettings().setValue("margins", QString(margins).split(' '));
            QCOMPARE(PageInfo().getMarginsString(), derived);
        }
        QSettings().setValue("margins", QStringList({"0", "2", "1", "3"}));
        // At 96 to the inch 1, 2 and 3 cm are 37, 75 and 113 whole pixels.
        QCOMPARE(PageInfo().getPrintableArea(), QRect(0, 75, 1632 - 75, 1056 - 37 - 113));

        QSettings().setValue("margins", QStringList({"0", "0", "0", "0"}));
        for (int number : {8, 2, 999, -1, int(QPageSize::Custom)}) {
            QSettings().setValue("pageSize", number);
            QPrinter printer(QPrinter::ScreenResolution);
            SheetPrinter::setUpPage(printer);
            QCOMPARE(printer.pageLayout().fullRectPixels(printer.resolution()).size(), pageSize());
        }
    }

    void pages()
    {
        // What is filled, by column and row, whether chart and factor are printed, and how many
        // pages come, with those that the outline leads to.
        const std::tuple<const char *, QList<QPoint>, bool, bool, const char *> rows[] = {
            {"an empty chart is one blank sheet", {}, true, false, "1: 0"},
            {"a full row", {{0, 0}, {1, 0}}, true, false, "2: 0"},
            {"an empty first page costs nothing", {{1, 0}}, true, false, "1: 0"},
            {"an empty middle page costs nothing", {{0, 0}, {2, 0}}, true, false, "2: 0"},
            {"an empty last cell leaves a blank sheet", {{1, 0}, {0, 1}}, true, true, "5: 0 3"},
            {"a factor ends at the main sheet's pages", {{0, 0}}, true, true, "2: 0 1"},
            {"a factor alone follows a blank sheet", {{0, 0}}, false, true, "2: 1"},
            {"none", {{0, 0}}, false, false, "1:"},
        };
        Sheet factor(pageSize());
        fill(factor, {{0, 0}, {2, 2}});
        for (const auto &[name, filled, isChartPrinted, isFactorPrinted, expected] : rows) {
            const Row in(name);
            Sheet chart(pageSize());
            fill(chart, filled);
            chart.scene.setPrintEnabled(isChartPrinted);
            factor.scene.setPrintEnabled(isFactorPrinted);
            QCOMPARE(SheetPrinter::writePDF(&chart.scene, {&factor.scene}, QString(), path),
                     QString());
            QCOMPARE(getPages(), QString(expected));
        }
    }

    /// The box of the main sheet opens checked, the list shows the flags.
    void setupChoosesTheSheets()
    {
        Sheet chart;
        ProjectScene factor(&chart.program, &chart.group, nullptr, nullptr, pageSize(),
                            chart.addFactor(3));
        chart.program.sheets.append(&factor);
        chart.scene.setPrintEnabled(false);
        factor.setPrintEnabled(false);
        PageSetupDialog dialog(&chart.program);
        dialog.setCausalFactorCharts({&factor});
        QListWidgetItem *item = dialog.findChild<QListWidget *>()->item(0);
        QCOMPARE(item->checkState(), Qt::Unchecked);
        item->setCheckState(Qt::Checked);
        dialog.accept();
        QVERIFY(factor.isPrintEnabled() && chart.scene.isPrintEnabled());
    }

    /// Chosen in the dialog: header and footer are seen, frames are not, and no page more comes.
    void decorations()
    {
        Sheet sheet(pageSize());
        fill(sheet, {{0, 0}, {1, 1}});
        const QRectF bound(QPointF(), QSizeF(pageSize()) * 2);
        const QPoint legendFrame(pageSize().width() - 1, pageSize().height() - 20), header(300, 0);
        for (bool decorated : {false, true}) {
            PageSetupDialog dialog(&sheet.program);
            dialog.findChild<QCheckBox *>("decorationsCheckbox")->setChecked(decorated);
            dialog.accept();
            QCOMPARE(SheetPrinter::writePNG(&sheet.scene, bound, path), QString());
            const QImage image(path);
            QCOMPARE(image.pixelColor(header) == Qt::black, decorated);
            QCOMPARE(image.pixelColor(legendFrame) == Qt::black, decorated);
            QCOMPARE(image.pixelColor(pageSize().width(), 500), QColor(Qt::white));
            QCOMPARE(SheetPrinter::writePDF(&sheet.scene, {}, QString(), path), QString());
            QCOMPARE(getPages(), QString("2: 0"));
        }
    }

    /// The place below the top edge is that of the right margin.
    void marginsPlaceThePage()
    {
        QSettings().setValue("margins", QStringList({"1", "3", "2", "2"}));
        Sheet sheet(pageSize());
        sheet.addNote(QRectF(0, 0, 120, 80))->setCustomBackgroundColor(Qt::red);
        sheet.scene.selectAll();
        QPrinter printer(QPrinter::ScreenResolution);
        SheetPrinter::setUpPage(printer);
        QImage image(500, 500, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        SheetPrinter::paintScene(&sheet.scene, painter, printer, 1, 1);
        const auto isRed = [&](int x, int y) { return image.pixelColor(x, y) == Qt::red; };
        QVERIFY(isRed(67, 123) && !isRed(34, 123) && !isRed(67, 110)); // 96 dots to the inch
        QVERIFY(sheet.scene.selectedItems().isEmpty());
    }

    void pictures()
    {
        // Higher than two bands, with a line across where they meet.
        Sheet sheet(pageSize());
        sheet.addNote(QRectF(100, 300, 400, 700))->setCustomBackgroundColor(Qt::red);
        const QRectF bound(90.4, 90.4, 199.6, 1100.4);
        QCOMPARE(SheetPrinter::writePNG(&sheet.scene, bound, path), QString());
        const QImage image(path);
        QCOMPARE(image.size(), QSize(200, 1100));
        for (int y : {300, 511, 512, 800})
            QCOMPARE(image.pixelColor(100, y), QColor(Qt::red));
        QCOMPARE(image.pixelColor(100, 1090), QColor(Qt::white)); // neither grid nor frame
    }

    void whatCanNotBeWrittenWholeLeavesTheFile()
    {
        Sheet sheet(pageSize());
        fill(sheet, {{0, 0}});
        writeBytes(path, "former");
        const QRectF large(0, 0, 20001, 20000), bound(0, 0, 2000, 2000);
        QVERIFY(SheetPrinter::writePNG(&sheet.scene, large, path).contains("400 megapixels"));
        QVERIFY(!SheetPrinter::writePNG(&sheet.scene, QRectF(), path).isEmpty());
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit former;
        QCOMPARE(getrlimit(RLIMIT_FSIZE, &former), 0);
        const rlimit small = {4000, former.rlim_max};
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &small), 0);
        const QString reasons[] = {SheetPrinter::writePNG(&sheet.scene, bound, path),
                                   SheetPrinter::writePDF(&sheet.scene, {}, QString(), path),
                                   exporter.writeReport(path, FormValues())};
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &former), 0);
        for (const QString &reason : reasons)
            QVERIFY2(reason.contains("File too large"), qPrintable(reason));
        const auto stopAtOnce = [](int, int) { return false; };
        QVERIFY(!SheetPrinter::writePNG(&sheet.scene, bound, path, stopAtOnce).isEmpty());
        QVERIFY(!SheetPrinter::writePDF(&sheet.scene, {}, QString(), path, stopAtOnce).isEmpty());
        QCOMPARE(readBytes(path), QByteArray("former"));

        // The file keeps its mode, and the links that lead to it.
        QVERIFY(
            QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        const auto mode = QFile::permissions(path);
        QVERIFY(QFile::link("x", path + "link"));
        QCOMPARE(SheetPrinter::writePNG(&sheet.scene, bound, path + "link"), QString());
        QVERIFY(readBytes(path).startsWith("\x89PNG"));
        QCOMPARE(QFile::permissions(path), mode);
        QVERIFY(QFile::link("/dev/null", path + "device") && QFile::link("xround", path + "round"));
        for (const QString &target : {path + "device", path + "round", folder.path()})
            QVERIFY(SheetPrinter::writePNG(&sheet.scene, bound, target).contains("no regular"));
        const QDir::Filters all = QDir::Files | QDir::System | QDir::Hidden;
        QCOMPARE(QDir(folder.path()).entryList(all).join(' '), QString("x xdevice xlink xround"));
    }

    void reportValues()
    {
        const QString yes = "causalFactor_worthFixing-Yes_3";
        const std::tuple<const char *, QString, const char *, const char *> rows[] = {
            {"lines", "loss", "one\ntwo\n", "[*one|two|]"},
            {"marks of XML", "loss", "<w:p a=\"1\">&amp;", "[*&lt;w:p a=\"1\">&amp;amp;]"},
            {"chosen radio button", yes, "true", "[*Yes]"},
            {"other radio button", yes, "false", "[()]"},
            {"capitals are a text", yes, "True", "[*True]"},
            {"the last hyphen counts", "a-b-Maybe_later_2", "true", "[*Maybe]"},
            {"true as a text", "loss", "true", "[*true]"},
            {"an empty text leaves begin and end", "loss", "", "[()]"},
        };
        for (const auto &[name, key, value, text] : rows) {
            const Row in(name);
            QDomDocument document = parse("<d>[" + makeField(key) + "]</d>");
            exporter.replaceFields(document, makeValues(key + '=' + value));
            QCOMPARE(getText(document), QString(text));
        }
    }

    /// Of two tables, one in the other, the outer one's row is repeated.
    void reportRows()
    {
        const std::tuple<const char *, const char *, const char *> rows[] = {
            {"no factor", "", "(*{f_text_NUM})//"},
            {"a gap", "1 3", "*t1//(*{f_text_2})//*t3//"},
            {"a number that is none", "x -4 0", "(*{f_text_NUM})//"},
            {"beyond any chart", "1000 2000000000 99999999999999999999 1", "*t1//"},
        };
        for (const auto &[name, numbers, expected] : rows) {
            const Row in(name);
            QCOMPARE(getRows(numbers), "(*{f_text_NUM})" + QString(expected));
        }
        const QStringList most = getRows("2 10 999").split("//");
        QCOMPARE(most.size(), 1000);
        QCOMPARE(most.at(1) + most.at(9) + most.at(998), QString("*t2*t10*t999"));
    }

    void reportPictures()
    {
        const std::tuple<QSize, const char *, bool, const char *> rows[] = {
            {{400, 100}, "width:200pt;height:200pt", false, "width:200.00pt;height:50.00pt"},
            {{100, 400}, "width:200pt;height:200pt", false, "width:50.00pt;height:200.00pt"},
            {{100, 100}, "width:50pt;height:60.5pt", true, "width:60.50pt;height:60.50pt"},
            {{10, 10}, "a:1;height:20cm;;width:40cm;", false, "a:1;height:20.00pt;;width:20.00pt;"},
        };
        for (const auto &[size, style, fitHeight, expected] : rows) {
            const Row in(style);
            const QString slot = QString("<w:binData w:name='wordml://%2.png'>old</w:binData>"
                                         "<v:shape style='%1'/>")
                                     .arg(style);
            QImage image(size, QImage::Format_RGB32);
            image.fill(Qt::blue);
            QDomDocument document = parse("<d>" + slot.arg("a") + slot.arg("b") + "</d>");
            exporter.replaceImage("a.png", image, document, fitHeight);
            const QDomNodeList parts = document.documentElement().childNodes();
            const QByteArray bytes = parts.at(0).toElement().text().toLatin1();
            QCOMPARE(QImage::fromData(QByteArray::fromBase64(bytes)).size(), size);
            QCOMPARE(parts.at(1).toElement().attribute("style"), QString(expected));
            QCOMPARE(parts.at(2).toElement().text(), QString("old"));
            QCOMPARE(parts.at(3).toElement().attribute("style"), QString(style));
        }
    }

    void reportHoldsEveryValue()
    {
        FormValues values;
        const QString shown = getText(parse(readBytes(WordXMLExport::getTemplatePath())));
        const QRegularExpression field("\\{([^}]*)\\}");
        for (auto i = field.globalMatch(shown); i.hasNext();) {
            const QString key = i.next().captured(1);
            for (const char *number : {"_1", "_2"}) {
                const QString id = QString(key).replace("_NUM", number);
                values[id].value = id.contains('-') ? "true" : "value of " + id + ".";
            }
        }
        for (const char *counted : {"causalFactor_count", "causalFactor_number_1",
                                    "causalFactor_number_2", "REPORTDATESTAMP"})
            QCOMPARE(values.remove(counted), 1);
        // What no XML file may hold is left out.
        for (ushort code = 0; code < 0x20; ++code)
            values["loss"].value += QChar(code);
        values["loss"].value += QString("a") + QChar(0xd800) + "b" + QChar(0xdc00) + "c" +
                                QChar(0xfffe) + QString::fromUtf8("d🌉");
        QCOMPARE(exporter.writeReport(path, values), QString());
        const QString text = getText(parse(readBytes(path)));
        values["loss"].value = QString::fromUtf8("abcd🌉");
        for (auto value = values.cbegin(); value != values.cend(); ++value)
            QVERIFY2(value.key().contains('-') || text.contains(value->value),
                     qPrintable(value.key()));
        QVERIFY(text.contains("YesNo") && !text.contains('{'));
    }

    void reportFitsItsValues()
    {
        QSettings().setValue("pageSize", int(QPageSize::A3));
        const FormValues values =
            makeValues("causalFactor_text_1=no plate|causalFactor_correctiveAction_1=|fileNumber=|"
                       "causalFactor_worthFixing-No_1=false|causalFactor_text_3=אין שלט|"
                       "causalFactor_correctiveAction_3=a new plate|timelineNotes=");
        QCOMPARE(exporter.writeReport(path, values), QString());
        const QDomDocument report = parse(readBytes(path));
        const QString xml = report.toString(-1), text = getText(report);
        QVERIFY(text.contains("2, described") && text.contains("{causalFactor_text_2}"));
        QCOMPARE(text.count("Corrective action"), 1);
        for (const char *gone : {"Worth fixing", "File ", "timeline", "No causal factors"})
            QVERIFY2(!text.contains(gone), gone);
        QVERIFY(!xml.contains("filled=") && xml.contains("w:w=\"11906\""));
        QCOMPARE(xml.count("<w:bidi/>"), 1);
    }

    /// Only a report that was written is shown, in the desktop's word processor.
    void failedReportLeavesTheFile()
    {
        QDesktopServices::setUrlHandler("", this, "onUrl");
        FormValues values = makeValues("loss=a bridge");
        QCOMPARE(exporter.saveData(path, values, nullptr), QString());
        const QByteArray before = readBytes(path);
        QVERIFY(!exporter.writeReport(path, {}, {}, path + "missing.xml").isEmpty());
        QCOMPARE(readBytes(path), before);
        QVERIFY(!exporter.saveData(path + "/no/folder.doc", {}, nullptr).isEmpty());
        values["titleImageFile"].image = QImage(64, 64, QImage::Format_RGB32);
        for (int step = 0; step <= 6; ++step) {
            const auto goOn = [step](double done, const QString &) { return done < step; };
            QVERIFY(!exporter.writeReport(path, values, goOn).isEmpty());
            QCOMPARE(readBytes(path), before);
        }
        QCOMPARE(urls, QList<QUrl>({QUrl(path)}));
    }

    void onUrl(const QUrl &url) { urls.append(url); }

    void footerNamesThePageAndFollowsNoTheme()
    {
        FooterItem footer(26, 11);
        footer.showFooter(true, "<b>Plant", false);
        QCOMPARE(footer.getText(), QString("<b>Plant - [12"));
        QGraphicsScene scene;
        auto *legend = new FooterItem(0, 0);
        legend->showFooter(false, QString(), true);
        legend->adjustSize();
        scene.addItem(legend);
        QImage legends[] = {QImage(600, 60, QImage::Format_RGB32), legends[0]};
        for (QImage &image : legends) {
            image.fill(Qt::cyan);
            QPainter painter(&image);
            painter.setPen(&image == legends ? Qt::black : Qt::white);
            scene.render(&painter);
        }
        QCOMPARE(legends[1], legends[0]);
    }

private:
    static QSize pageSize() { return PageInfo().getPrintableArea().size(); }

    static void fill(Sheet &sheet, const QList<QPoint> &pages)
    {
        for (const QPoint &page : pages)
            sheet.addNote(QRectF((page.x() + 0.5) * pageSize().width(),
                                 (page.y() + 0.5) * pageSize().height(), 120, 80));
    }

    /// The pages of the document, and those that its outline leads to: "3: 0 2".
    QString getPages() const
    {
        const QString document = QString::fromLatin1(readBytes(path));
        const QRegularExpression kids("/Kids \\[ ([^]]*) R \\]"), target("/Dest \\[ (\\d+ 0) R");
        const QStringList pages = kids.match(document).captured(1).split(" R ");
        QString text = QString("%1:").arg(pages.size());
        for (auto i = target.globalMatch(document); i.hasNext();)
            text += QString(" %1").arg(pages.indexOf(i.next().captured(1)));
        return text;
    }

    /// From "id=text|id=text".
    static FormValues makeValues(const QString &fields)
    {
        FormValues values;
        for (const QString &field : fields.split('|'))
            values[field.section('=', 0, 0)].value = field.section('=', 1);
        return values;
    }

    /// A template's field, with the runs that begin and end it as "(" and ")" and its look as "*".
    static QString makeField(const QString &key)
    {
        return "<w:r><w:fldChar>(</w:fldChar></w:r><w:r><w:rPr>*</w:rPr><w:instrText>MACROBUTTON " +
               key + " shown here</w:instrText></w:r><w:r><w:fldChar>)</w:fldChar></w:r>";
    }

    static QDomDocument parse(const QString &text)
    {
        QDomDocument document;
        document.setContent(text, false);
        return document;
    }

    /// The texts, with "|" for a line break, "/" for the end of a row and "{key}" for a field.
    static QString getText(const QDomDocument &document)
    {
        const QRegularExpression field("<w:instrText>MACROBUTTON ([^ <]+)[^<]*"), tag("<[^>]*>");
        QString text = document.toString(-1).replace("<w:br/>", "|").replace("</w:tr>", "/");
        return text.replace(field, "{\\1}").remove(tag);
    }

    /// What becomes of a template's row when factors have the numbers.
    QString getRows(const QString &numbers)
    {
        FormValues values = makeValues("plain=x");
        for (const QString &number : numbers.split(' '))
            values["f_text_" + number].value = 't' + number;
        const QString field = makeField("f_text_NUM"), row = "<w:tr><w:tc>%1</w:tc></w:tr>";
        QDomDocument document = parse("<d>" + field + row.arg(row.arg(field)) + "</d>");
        exporter.createDynamicElements(document, values);
        exporter.replaceFields(document, values);
        return getText(document);
    }

    QTemporaryDir folder;
    const QString path = folder.filePath("x");
    QList<QUrl> urls;
    WordXMLExport exporter;
};

EXAMINER_TEST_MAIN(TestOutput)
#include "testoutput.moc"
