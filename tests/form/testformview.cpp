#include "chart/formfields.h"
#include "shell/application.h"
#include "testing/dialogs.h"
#include "testing/form.h"
#include "testing/rows.h"

#include <memory>
#include <stdexcept>

/// Values on their way into the form's page and back.
class TestFormView : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QSettings().clear();
        form = std::make_unique<Form>();
        QVERIFY(form->waitUntilLoaded());
    }

    void setAndGet()
    {
        const QString radio = "causalFactor_worthFixing-Yes_1";
        const QString awkward = QString::fromUtf8("\"Don't\" \\ <b>&amp;</b> %1 結果 🔥 שלום");
        const struct {
            const char *name;
            QString id, value, expected;
        } rows[] = {
            {"text", "incidentTitle", awkward, awkward},
            {"text area", "loss", "\n a\n\nb \n" + awkward, "\n a\n\nb \n" + awkward},
            {"empty text", "loss", "", "before"},
            {"hidden", "lastStepShown", "3", "3"},
            {"radio, capitals", radio, "TRUE", "true"},
            {"radio, no such word", radio, "yes", "false"},
            {"option", "reportStatus", "For review", "For review"},
            {"no such option", "reportStatus", "Lost", "Draft"},
            {"quote in an option", "reportStatus", "it's", "Final"},
            {"no field", "progress", "text", ""},
        };
        QSignalSpy changed(&form->view, &FormView::formChanged);
        form->view.addCausalFactor(Guid, 1, "note");
        for (const auto &row : rows) {
            const Row in(row.name);
            form->view.setFieldValue("loss", "before");
            form->view.setFieldValue("reportStatus", "Final");
            QVERIFY(form->view.setFieldValue(row.id, row.value));
            QCOMPARE(form->view.getFieldValue(row.id), row.expected);
            QCOMPARE(form->view.getAllFieldValues().value(row.id).value, row.expected);
        }
        QCOMPARE(changed.count(), 0);
        QVERIFY(!form->view.setFieldValue("noSuchField", "x"));
        form->view.onFieldChanged("noSuchField");
        QCOMPARE(changed.count(), 1);
    }

    void loadOpensRowsAndSections()
    {
        form->run("document.getElementById('loss').disabled = true");
        QSignalSpy loaded(&form->view, &FormView::formValueLoaded);
        const FormValues values = {{"causalFactor_text_10", formValue("ten")},
                                   {"causalFactor_text_2", formValue("two")},
                                   {"causalFactor_dueDate_0", formValue("zero")},
                                   {"loss", formValue("a ship")},
                                   {"fileNumber", formValue("")},
                                   {"elsewhere", formValue("told nevertheless")}};
        form->view.onFormDataLoaded(values);
        QCOMPARE(loaded.count(), values.size() - 1);
        QCOMPARE(form->run("Array.from(document.querySelectorAll('.factor')).map(e => e.id).join()")
                     .toString(),
                 QString("causalFactor-0,causalFactor-2,causalFactor-10"));
        QCOMPARE(form->find("#step5").styleProperty("display", QWebElement::InlineStyle),
                 QString("block"));
        QVERIFY(!form->run("document.getElementById('loss').disabled").toBool());
        QCOMPARE(form->view.getFieldValue("causalFactor_text_10"), QString("ten"));
    }

    void stepsComeBack()
    {
        const QPair<QString, int> rows[] = {{"", 1},  {"0", 1}, {"4;5", 1}, {"-4", 1},
                                            {"٣", 1}, {"3", 3}, {"999", 7}};
        for (const auto &row : rows) {
            const QByteArray name = row.first.toUtf8();
            const Row in(name);
            form->view.onFormDataLoaded({{"lastStepShown", formValue(row.first)}});
            QCOMPARE(form->run("sections().filter(isShown).length").toInt(), row.second);
            QCOMPARE(form->view.getFieldValue("lastStepShown"),
                     row.first.isEmpty() ? QString("1") : row.first);
        }
    }

    /// What a file brought is what a save takes until the page's fields stand in for it.
    void valuesWaitForThePage()
    {
        const FormValues values = {{"loss", formValue("a ship")}, {"elsewhere", formValue("kept")}};
        Form early;
        early.view.clearForm(); // as the window does when it is made to open a project
        early.view.onFormDataLoaded(values);
        QCOMPARE(early.view.collectForSave().value("elsewhere").value, QString("kept"));
        early.view.addCausalFactor(Guid, 1, "gone");
        early.view.addCausalFactor(OtherGuid, 2, "moved");
        early.view.removeCausalFactor(1);
        early.view.changeCausalFactorNumber(OtherGuid, 2, 6, QString());
        QTRY_COMPARE(early.run("document.getElementById('loss').value").toString(),
                     QString("a ship"));
        QCOMPARE(early.view.getFieldValue("causalFactor_text_6"), QString("moved"));
        QCOMPARE(early.view.getFieldValue("causalFactor_guid_6"), QString(OtherGuid));
        QVERIFY(early.find("#causalFactor_text_1, #causalFactor_text_2").isNull());

        early.view.clearForm();
        QVERIFY(early.view.getAllFieldValues().isEmpty());
        QVERIFY(early.waitUntilLoaded());
        QVERIFY(early.view.getFieldValue("loss").isEmpty());
        QVERIFY(early.find(".factor").isNull());
    }

    /// As when a reload is cut short by a second one.
    void aPageWithoutFieldsStandsForNothing()
    {
        form->view.onFormDataLoaded({{"organisation", formValue("Harbour")}});
        form->run("document.body.innerHTML = ''");
        QMetaObject::invokeMethod(&form->view, "onPageLoaded", Q_ARG(bool, true));
        QCOMPARE(form->view.getAllFieldValues().value("organisation").value, QString("Harbour"));
        QCOMPARE(form->view.getFieldValue("organisation"), QString("Harbour"));
    }

    void titleImageSurvives()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath("it's.png"), other = folder.filePath("other.png");
        const auto getCollected = [this] {
            return form->view.collectForSave().value("titleImageFile").image;
        };
        QImage image(30, 20, QImage::Format_RGB32);
        image.fill(Qt::blue);
        form->view.onFormDataLoaded({{"titleImageFile", formValue(path, image)}});
        QTRY_COMPARE(form->run("document.getElementById('titleImagePreview').naturalWidth").toInt(),
                     30);
        QVERIFY(form->view.getAllFieldValues().value("titleImageFile").image.isNull());
        QCOMPARE(getCollected(), image);

        // Another path has no picture until its file was seen once.
        form->view.setFieldValue("titleImageFile", other);
        QVERIFY(getCollected().isNull());
        form->view.setFieldValue("titleImageFile", path);
        QCOMPARE(getCollected(), image);
        QVERIFY(image.scaled(60, 40).save(other));
        DialogAnswer answer(fileChoice(other));
        QSignalSpy changed(&form->view, &FormView::formChanged);
        form->view.onChooseImageClicked();
        QCOMPARE(changed.count(), 0);
        QCOMPARE(QSettings().value("lastImagePath").toString(), folder.path());
        QCOMPARE(getCollected().size(), QSize(60, 40));
        QVERIFY(image.scaled(90, 60).save(other));
        QCOMPARE(getCollected().size(), QSize(90, 60));
        QVERIFY(QFile::remove(other));
        QCOMPARE(getCollected().size(), QSize(90, 60));

        form->view.clearForm();
        QVERIFY(form->waitUntilLoaded());
        form->view.setFieldValue("titleImageFile", other);
        QVERIFY(getCollected().isNull());
    }

    void rowsComeGoAndMove()
    {
        fillRow(3, Guid, "a");
        fillRow(1, OtherGuid, "b");
        QString three = describeRow(3), one = describeRow(1);
        QCOMPARE(form->view.changeCausalFactorNumber(Guid, 3, 5, QString()),
                 QString("causalFactor_text_5"));
        QCOMPARE(describeRow(5), three);
        QCOMPARE(describeRow(1), one);
        QCOMPARE(describeRow(3), QString("|||||||"));
        form->view.changeCausalFactorNumber(Guid, 5, 1, OtherGuid);
        QCOMPARE(describeRow(1), three);
        QCOMPARE(describeRow(5), one);
        QCOMPARE(form->run("document.querySelectorAll('.factor').length").toInt(), 2);
        form->view.removeCausalFactor(1);
        form->view.removeCausalFactor(7);
        QCOMPARE(describeRow(5), one);
        QVERIFY(form->find("#causalFactor-1").isNull());
    }

    /// They would end the process inside the script engine.
    void exceptionsLeaveNoSlotOfTheBridge()
    {
        QSignalSpy failed(static_cast<Application *>(qApp), &Application::handlerFailed);
        const auto fail = [] { throw std::runtime_error("Couldn't save"); };
        connect(&form->view, &FormView::formChanged, this, fail);
        connect(&form->view, &FormView::exportFormRequested, this, fail);
        QCOMPARE(form->run("window.formView.onFieldChanged('loss');"
                           "document.getElementById('exportFormButton').click(); 'went on'")
                     .toString(),
                 QString("went on"));
        QCOMPARE(failed.count(), 0);
        QTRY_COMPARE(failed.count(), 2);
        QCOMPARE(failed.first().first().toString(), QString("Couldn't save"));
    }

private:
    void fillRow(int number, const QString &guid, const QString &mark)
    {
        QCOMPARE(form->view.addCausalFactor(guid, number, "It's\n\"" + mark),
                 QString("causalFactor_text_%1").arg(number));
        for (const char *pattern : FormFields::CausalFactorRow) {
            if (pattern != FormFields::CausalFactorGuid && pattern != FormFields::CausalFactorText)
                form->view.setFieldValue(FormFields::getRowField(pattern, number), mark + pattern);
        }
        form->view.setFieldValue(
            QString("causalFactor_worthFixing-%1_%2").arg(mark == "a" ? "Yes" : "No").arg(number),
            "true");
    }

    QString describeRow(int number) const
    {
        QStringList values;
        for (const char *pattern : FormFields::CausalFactorRow)
            values << form->view.getFieldValue(FormFields::getRowField(pattern, number));
        return values.join('|');
    }

    const QString Guid = "{16d902c1-a84f-452b-9c0a-85606e7c061c}";
    const QString OtherGuid = "{b2dd2fb1-e844-422d-af16-ff4a7df8a3ea}";

    std::unique_ptr<Form> form;
};

int main(int argc, char **argv)
{
    TestHome home;
    prepareTestApplication();
    Application application(argc, argv);
    makeDataFolder();
    TestFormView test;
    return QTest::qExec(&test, argc, argv);
}

#include "testformview.moc"
