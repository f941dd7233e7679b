#include "testing/form.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QPrintPreviewDialog>
#include <QTimer>
#include <QUndoStack>

#include <memory>
#include <stdexcept>

class TestFormView : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void setAndGet_data();
    void setAndGet();
    void emptyValueKeepsText();
    void unknownFieldIsNull();
    void valuesBeforeThePageStands();
    void clearBeforeThePageStands();
    void valuesAfterThePageStands();
    void withoutPageValuesComeBack();
    void loadTellsTextsOnly();
    void loadOpensRowsAndSections();
    void stepsRestored_data();
    void stepsRestored();
    void clearEmptiesTheForm();
    void reloadCutShortKeepsTheValues();
    void handlersAreAddedOnce();
    void changeIsTold();
    void buttonsOfThePage();
    void imageChosen();
    void titleImageSurvives();
    void previewFollowsTitleImage();
    void rowComesAndGoes();
    void numberMoves();
    void numbersSwap();
    void rowBeforeThePageStands();
    void exceptionsLeaveNoSlotOfTheBridge();
    void stackBelongsToTheGroup();

private:
    static FormValues makeRow(int number, const QString &mark);
    static void setRow(FormView &view, const FormValues &row);
    static FormValues readRow(const FormView &view, const FormValues &like);

    std::unique_ptr<Form> form;
};

namespace
{

const char Guid[] = "{16d902c1-a84f-452b-9c0a-85606e7c061c}";
const char OtherGuid[] = "{b2dd2fb1-e844-422d-af16-ff4a7df8a3ea}";

} // namespace

void TestFormView::initTestCase()
{
    copyFormCollection();
}

void TestFormView::init()
{
    QSettings().clear();
    form = std::make_unique<Form>();
    QVERIFY(form->waitUntilLoaded());
}

void TestFormView::setAndGet_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("expected");

    const QString radio = "causalFactor_worthFixing-Yes_1";
    const QString awkward =
        QString::fromUtf8("\"Don't\" \\ <b>&amp;</b> %1 \u7d50\u679c \U0001F525 "
                          "\u05e9\u05dc\u05d5\u05dd");
    QTest::newRow("text") << "incidentTitle" << awkward << awkward;
    QTest::newRow("text area") << "loss" << awkward << awkward;
    QTest::newRow("line breaks in a text area") << "loss"
                                                << "\n a\n\nb \n"
                                                << "\n a\n\nb \n";
    QTest::newRow("hidden") << "lastStepShown"
                            << "3"
                            << "3";
    QTest::newRow("100 kB") << "evidence" << QString("abcde fgh\n").repeated(10000)
                            << QString("abcde fgh\n").repeated(10000);
    QTest::newRow("radio on") << radio << "true"
                              << "true";
    QTest::newRow("radio on, capitals") << radio << "TRUE"
                                        << "true";
    QTest::newRow("radio off") << radio << "false"
                               << "false";
    QTest::newRow("radio, no such word") << radio << "yes"
                                         << "false";
    QTest::newRow("radio, empty") << radio << ""
                                  << "false";
    QTest::newRow("option") << "reportStatus"
                            << "For review"
                            << "For review";
    QTest::newRow("no such option") << "reportStatus"
                                    << "Lost"
                                    << "Draft";
    QTest::newRow("empty option") << "reportStatus"
                                  << ""
                                  << "Draft";
}

void TestFormView::setAndGet()
{
    QFETCH(QString, id);
    QFETCH(QString, value);
    QFETCH(QString, expected);

    form->view.addCausalFactor(Guid, 1, "note");
    QSignalSpy changed(&form->view, &FormView::formChanged);
    QVERIFY(form->view.setFieldValue(id, value));
    QCOMPARE(form->view.getFieldValue(id), expected);
    QCOMPARE(form->view.getAllFieldValues().value(id).value, expected);
    QCOMPARE(changed.count(), 0);
}

void TestFormView::emptyValueKeepsText()
{
    form->view.setFieldValue("loss", "a ship");
    QVERIFY(form->view.setFieldValue("loss", QString()));
    QCOMPARE(form->view.getFieldValue("loss"), QString("a ship"));
}

void TestFormView::unknownFieldIsNull()
{
    QVERIFY(!form->view.setFieldValue("noSuchField", "x"));
    QVERIFY(form->view.getFieldValue("noSuchField").isEmpty());
    QVERIFY(form->view.setFieldValue("progress", "an element that is no field"));
    QVERIFY(form->view.getFieldValue("progress").isEmpty());
    QVERIFY(!form->view.getAllFieldValues().contains("noSuchField"));
}

void TestFormView::valuesBeforeThePageStands()
{
    const FormValues values = {{"loss", formValue("a ship")}, {"elsewhere", formValue("kept")}};
    Form early;
    early.view.onFormDataLoaded(values);
    QCOMPARE(early.view.getFieldValue("loss"), QString("a ship"));
    QCOMPARE(early.view.getAllFieldValues().size(), 2);
    QCOMPARE(early.view.getAllFieldValues().value("elsewhere").value, QString("kept"));

    QSignalSpy loaded(&early.view, &FormView::formValueLoaded);
    QVERIFY(early.waitUntilLoaded());
    QCOMPARE(loaded.count(), 2);
    QCOMPARE(early.run("document.getElementById('loss').value").toString(), QString("a ship"));
    QVERIFY(early.view.getAllFieldValues().contains("incidentTitle"));
}

void TestFormView::clearBeforeThePageStands()
{
    // As the window does when it is made to open a project.
    Form early;
    early.view.clearForm();
    early.view.onFormDataLoaded({{"loss", formValue("a ship")}});
    QTRY_COMPARE(early.run("document.getElementById('loss').value").toString(), QString("a ship"));
    QVERIFY(early.view.getAllFieldValues().contains("incidentTitle"));
    QCOMPARE(early.view.getFieldValue("loss"), QString("a ship"));
}

void TestFormView::valuesAfterThePageStands()
{
    form->view.onFormDataLoaded({{"loss", formValue("a ship")}});
    QCOMPARE(form->run("document.getElementById('loss').value").toString(), QString("a ship"));
    form->view.onFormDataLoaded({{"loss", formValue("a boat")}});
    QCOMPARE(form->view.getFieldValue("loss"), QString("a boat"));
}

void TestFormView::withoutPageValuesComeBack()
{
    const QString collection = makeDataFolder() + "/formdata.qhc";
    QVERIFY(QFile::rename(collection, collection + ".away"));
    Form blank;
    QImage image(4, 3, QImage::Format_RGB32);
    image.fill(Qt::red);
    blank.view.onFormDataLoaded({{"titleImageFile", formValue("/gone.png", image)}});
    const FormValues values = blank.view.getAllFieldValues();
    QVERIFY(QFile::remove(collection));
    QVERIFY(QFile::rename(collection + ".away", collection));

    QCOMPARE(values.value("titleImageFile").value, QString("/gone.png"));
    QCOMPARE(values.value("titleImageFile").image, image);
}

void TestFormView::loadTellsTextsOnly()
{
    QSignalSpy loaded(&form->view, &FormView::formValueLoaded);
    form->view.onFormDataLoaded({{"incidentTitle", formValue("Fire")},
                                 {"fileNumber", formValue("")},
                                 {"noSuchField", formValue("text")}});
    QMap<QString, QString> told;
    for (const QList<QVariant> &arguments : loaded)
        told[arguments.at(0).toString()] = arguments.at(1).toString();
    const QMap<QString, QString> expected = {{"incidentTitle", "Fire"}, {"noSuchField", "text"}};
    QCOMPARE(told, expected);
}

void TestFormView::loadOpensRowsAndSections()
{
    QVERIFY(!form->find("#step5").isNull());
    QCOMPARE(form->find("#step5").styleProperty("display", QWebElement::InlineStyle),
             QString("none"));
    form->run("document.getElementById('loss').disabled = true");

    FormValues values = makeRow(10, "ten");
    for (const FormValues &row : {makeRow(2, "two"), makeRow(0, "zero")}) {
        for (auto field = row.cbegin(); field != row.cend(); ++field)
            values.insert(field.key(), *field);
    }
    values.insert("loss", formValue("a ship"));
    form->view.onFormDataLoaded(values);

    QCOMPARE(form->run("Array.from(document.querySelectorAll('.factor')).map(e => e.id).join()")
                 .toString(),
             QString("causalFactor-0,causalFactor-2,causalFactor-10"));
    QCOMPARE(form->find("#step5").styleProperty("display", QWebElement::InlineStyle),
             QString("block"));
    QVERIFY(!form->run("document.getElementById('loss').disabled").toBool());
    const FormValues saved = form->view.getAllFieldValues();
    for (auto field = values.cbegin(); field != values.cend(); ++field)
        QCOMPARE(saved.value(field.key()).value, field->value);
}

void TestFormView::stepsRestored_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("shown");

    QTest::newRow("three") << "3" << 3;
    QTest::newRow("all") << "7" << 7;
    QTest::newRow("beyond the last") << "999999999" << 7;
    QTest::newRow("none") << "0" << 1;
    QTest::newRow("no argument") << "" << 1;
    QTest::newRow("not a number") << "4;5" << 1;
    QTest::newRow("negative") << "-4" << 1;
    QTest::newRow("other digits") << QString::fromUtf8("\u0663") << 1;
}

void TestFormView::stepsRestored()
{
    QFETCH(QString, value);
    QFETCH(int, shown);

    form->view.onFormDataLoaded({{"lastStepShown", formValue(value)}});
    QCOMPARE(form->run("sections().filter(isShown).length").toInt(), shown);
    // What the file said is what the next save says.
    const QString expected = value.isEmpty() ? "1" : value;
    QCOMPARE(form->view.getFieldValue("lastStepShown"), expected);
}

void TestFormView::clearEmptiesTheForm()
{
    FormValues values = makeRow(4, "four");
    values.insert("incidentTitle", formValue("Fire"));
    form->view.onFormDataLoaded(values);
    form->view.clearForm();
    QVERIFY(form->view.getAllFieldValues().isEmpty());
    QVERIFY(form->waitUntilLoaded());

    QVERIFY(form->view.getFieldValue("incidentTitle").isEmpty());
    QVERIFY(form->find(".factor").isNull());
    QVERIFY(form->run("typeof window.formView.onFieldChanged").toString() == "function");

    // The values of the next project outlive the reload.
    form->view.clearForm();
    form->view.onFormDataLoaded({{"incidentTitle", formValue("Flood")}});
    QCOMPARE(form->view.getAllFieldValues().size(), 1);
    QVERIFY(form->waitUntilLoaded());
    QCOMPARE(form->view.getFieldValue("incidentTitle"), QString("Flood"));
}

/// The page of the first reload still stands when it is given up for the second.
void TestFormView::reloadCutShortKeepsTheValues()
{
    form->view.clearForm();
    form->view.clearForm();
    form->view.onFormDataLoaded({{"organisation", formValue("Harbour")}});
    QSignalSpy loads(form->web, &QWebView::loadFinished);
    while (loads.isEmpty() || !loads.last().first().toBool()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
        QCOMPARE(form->view.getAllFieldValues().value("organisation").value, QString("Harbour"));
        QVERIFY(loads.size() < 5);
    }
}

void TestFormView::handlersAreAddedOnce()
{
    QCOMPARE(form->find("#loss").attribute("onchange"),
             QString("window.formView.onFieldChanged(this.id);"));
    QVERIFY(!form->find("#lastStepShown").hasAttribute("onchange"));
    QCOMPARE(form->find("#exportFormButton").attribute("onclick"),
             QString("window.formView.onExportFormClicked();"));

    form->find("#loss").setAttribute("onchange", "mine()");
    form->view.addCausalFactor(Guid, 1, "note");
    QCOMPARE(form->find("#loss").attribute("onchange"), QString("mine()"));
    QCOMPARE(form->find("#causalFactor_worthFixing-No_1").attribute("onclick"),
             QString("window.formView.onFieldChanged(this.id);"));
    QVERIFY(!form->find("#causalFactor_worthFixing-No_1").hasAttribute("onchange"));
    QVERIFY(form->find("#causalFactor_dueDate_1").hasAttribute("onchange"));
}

void TestFormView::changeIsTold()
{
    QSignalSpy changed(&form->view, &FormView::formChanged);
    QSignalSpy valueChanged(&form->view, &FormView::formValueChanged);
    form->view.setFieldValue("loss", "a ship");
    form->run("window.formView.onFieldChanged('loss')");
    QCOMPARE(changed.count(), 1);
    QCOMPARE(valueChanged.count(), 1);
    QCOMPARE(valueChanged.first(), QList<QVariant>({"loss", "a ship"}));

    form->run("window.formView.onFieldChanged('noSuchField')");
    QCOMPARE(changed.count(), 2);
    QCOMPARE(valueChanged.count(), 1);
}

void TestFormView::buttonsOfThePage()
{
    QSignalSpy exported(&form->view, &FormView::exportFormRequested);
    form->run("document.getElementById('exportFormButton').click()");
    QCOMPARE(exported.count(), 1);

    bool previewed = false;
    QTimer::singleShot(0, [&previewed] {
        auto *dialog = qobject_cast<QPrintPreviewDialog *>(QApplication::activeModalWidget());
        previewed = dialog != nullptr;
        if (dialog)
            dialog->reject();
    });
    form->run("document.getElementById('printFormButton').click()");
    QVERIFY(previewed);
}

void TestFormView::imageChosen()
{
    QTemporaryDir folder;
    const QString file = folder.filePath("bild's.png");
    QImage image(30, 20, QImage::Format_RGB32);
    image.fill(Qt::blue);
    QVERIFY(image.save(file));
    QSettings().setValue("lastImagePath", folder.path());

    QSignalSpy changed(&form->view, &FormView::formChanged);
    QString title, shownFolder;
    QTimer::singleShot(0, [&] {
        auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        title = dialog->windowTitle();
        shownFolder = dialog->directory().path();
        dialog->findChild<QLineEdit *>("fileNameEdit")->setText(file);
        QTest::keyClick(dialog, Qt::Key_Return);
    });
    form->view.onChooseImageClicked();
    QCOMPARE(title, QString("Open image..."));
    QCOMPARE(shownFolder, folder.path());
    QCOMPARE(QSettings().value("lastImagePath").toString(), folder.path());
    QCOMPARE(form->view.getFieldValue("titleImageFile"), file);
    QCOMPARE(form->view.getAllFieldValues().value("titleImageFile").image.size(), QSize(30, 20));
    QCOMPARE(changed.count(), 0);

    // The picture is read afresh when its file has changed, and gone when the file is.
    QVERIFY(image.scaled(60, 40).save(file));
    QCOMPARE(form->view.getAllFieldValues().value("titleImageFile").image.size(), QSize(60, 40));
    QVERIFY(QFile::remove(file));
    QVERIFY(form->view.getAllFieldValues().value("titleImageFile").image.isNull());
}

void TestFormView::titleImageSurvives()
{
    QTemporaryDir folder;
    const QString path = folder.filePath("picture.png"), other = folder.filePath("other.png");
    const auto getCollected = [this] {
        return form->view.collectForSave().value("titleImageFile").image;
    };
    QImage image(30, 20, QImage::Format_RGB32);
    image.fill(Qt::blue);
    form->view.onFormDataLoaded({{"titleImageFile", formValue(path, image)}});
    QVERIFY(form->view.getAllFieldValues().value("titleImageFile").image.isNull());
    QCOMPARE(getCollected(), image);

    // Another path has no picture until its file was seen once.
    form->view.setFieldValue("titleImageFile", other);
    QVERIFY(getCollected().isNull());
    form->view.setFieldValue("titleImageFile", path);
    QCOMPARE(getCollected(), image);
    form->view.setFieldValue("titleImageFile", other);
    QVERIFY(image.scaled(60, 40).save(other));
    QCOMPARE(getCollected().size(), QSize(60, 40));
    QVERIFY(QFile::remove(other));
    QCOMPARE(getCollected().size(), QSize(60, 40));

    form->view.clearForm();
    QVERIFY(form->waitUntilLoaded());
    form->view.setFieldValue("titleImageFile", other);
    QVERIFY(getCollected().isNull());
}

void TestFormView::previewFollowsTitleImage()
{
    const QString width = "document.getElementById('titleImagePreview').naturalWidth";
    QImage image(1000, 500, QImage::Format_RGB32);
    image.fill(Qt::blue);
    QVERIFY(!form->find("#titleImagePreview").hasAttribute("src"));
    form->view.onFormDataLoaded({{"titleImageFile", formValue("/gone/picture.png", image)}});
    QTRY_COMPARE(form->run(width).toInt(), 480);

    form->run("removeTitleImage()");
    QVERIFY(!form->find("#titleImagePreview").hasAttribute("src"));
    QVERIFY(form->view.getFieldValue("titleImageFile").isEmpty());
}

FormValues TestFormView::makeRow(int number, const QString &mark)
{
    const QString n = QString::number(number);
    return {
        {"causalFactor_guid_" + n, formValue(mark == "other" ? OtherGuid : Guid)},
        {"causalFactor_text_" + n, formValue(mark + " text\nof two lines")},
        {"causalFactor_description_" + n, formValue(mark + " 'description'")},
        {"causalFactor_worthFixing-Yes_" + n, formValue(mark == "other" ? "false" : "true")},
        {"causalFactor_worthFixing-No_" + n, formValue(mark == "other" ? "true" : "false")},
        {"causalFactor_correctiveAction_" + n, formValue(mark + " \"action\"")},
        {"causalFactor_responsible_" + n, formValue(mark + " person")},
        {"causalFactor_dueDate_" + n, formValue(mark + " date")},
    };
}

void TestFormView::setRow(FormView &view, const FormValues &row)
{
    for (auto field = row.cbegin(); field != row.cend(); ++field)
        QVERIFY2(view.setFieldValue(field.key(), field->value), qPrintable(field.key()));
}

/// The fields of the page that have the ids of like.
FormValues TestFormView::readRow(const FormView &view, const FormValues &like)
{
    FormValues row;
    const FormValues values = view.getAllFieldValues();
    for (const QString &id : like.keys()) {
        if (values.contains(id))
            row.insert(id, values.value(id));
    }
    return row;
}

bool operator==(const FormValue &a, const FormValue &b)
{
    return a.value == b.value && a.image == b.image;
}

void TestFormView::rowComesAndGoes()
{
    QCOMPARE(form->view.addCausalFactor(Guid, 3, "It's\n\"so\""), QString("causalFactor_text_3"));
    form->view.addCausalFactor(OtherGuid, 1, "");
    QCOMPARE(form->view.getFieldValue("causalFactor_text_3"), QString("It's\n\"so\""));
    QCOMPARE(form->view.getFieldValue("causalFactor_guid_3"), QString(Guid));
    QCOMPARE(form->view.getFieldValue("causalFactor_guid_1"), QString(OtherGuid));
    QCOMPARE(readRow(form->view, makeRow(3, "")).size(), 8);

    form->view.removeCausalFactor(3);
    QCOMPARE(readRow(form->view, makeRow(3, "")).size(), 0);
    QCOMPARE(readRow(form->view, makeRow(1, "")).size(), 8);
    form->view.removeCausalFactor(7);
    form->run("window.formView.removeCausalFactor(1)");
    QVERIFY(form->find(".factor").isNull());
}

void TestFormView::numberMoves()
{
    const FormValues before = makeRow(3, "moved"), after = makeRow(5, "moved");
    form->view.addCausalFactor(Guid, 3, "");
    form->view.addCausalFactor(OtherGuid, 4, "stays");
    setRow(form->view, before);

    QCOMPARE(form->view.changeCausalFactorNumber(Guid, 3, 5, QString()),
             QString("causalFactor_text_5"));
    QVERIFY(readRow(form->view, before).isEmpty());
    QVERIFY(readRow(form->view, after) == after);
    QCOMPARE(form->view.getFieldValue("causalFactor_text_4"), QString("stays"));
}

void TestFormView::numbersSwap()
{
    form->view.addCausalFactor(Guid, 1, "");
    form->view.addCausalFactor(OtherGuid, 2, "");
    setRow(form->view, makeRow(1, "one"));
    setRow(form->view, makeRow(2, "other"));

    QCOMPARE(form->view.changeCausalFactorNumber(Guid, 1, 2, OtherGuid),
             QString("causalFactor_text_2"));
    QVERIFY(readRow(form->view, makeRow(2, "one")) == makeRow(2, "one"));
    QVERIFY(readRow(form->view, makeRow(1, "other")) == makeRow(1, "other"));
    QCOMPARE(form->run("document.querySelectorAll('.factor').length").toInt(), 2);
}

void TestFormView::rowBeforeThePageStands()
{
    Form early;
    early.view.addCausalFactor(Guid, 1, "gone");
    early.view.addCausalFactor(OtherGuid, 2, "moved");
    early.view.removeCausalFactor(1);
    early.view.changeCausalFactorNumber(OtherGuid, 2, 6, QString());
    QVERIFY(early.waitUntilLoaded());
    QVERIFY(early.find("#causalFactor_text_1").isNull());
    QVERIFY(early.find("#causalFactor_text_2").isNull());
    QCOMPARE(early.view.getFieldValue("causalFactor_text_6"), QString("moved"));
    QCOMPARE(early.view.getFieldValue("causalFactor_guid_6"), QString(OtherGuid));
}

/// Notes what the application's own event handling would catch.
class Application : public QApplication
{
public:
    using QApplication::QApplication;

    bool notify(QObject *receiver, QEvent *event) override
    {
        try {
            return QApplication::notify(receiver, event);
        } catch (const std::runtime_error &error) {
            caught << error.what();
            return false;
        }
    }

    QStringList caught;
};

void TestFormView::exceptionsLeaveNoSlotOfTheBridge()
{
    auto *application = static_cast<Application *>(qApp);
    application->caught.clear();
    const auto fail = [] { throw std::runtime_error("Couldn't save"); };
    connect(&form->view, &FormView::formChanged, this, fail);
    connect(&form->view, &FormView::exportFormRequested, this, fail);

    QCOMPARE(form->run("window.formView.onFieldChanged('loss'); 'went on'").toString(),
             QString("went on"));
    form->run("document.getElementById('exportFormButton').click()");
    QCOMPARE(application->caught.size(), 0);
    QTRY_COMPARE(application->caught, QStringList({"Couldn't save", "Couldn't save"}));
}

void TestFormView::stackBelongsToTheGroup()
{
    QVERIFY(form->group.stacks().contains(form->view.getUndoStack()));
}

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
