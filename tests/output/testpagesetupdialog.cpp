#include "shell/pagesetupdialog.h"
#include "testing/sheet.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTextDocument>

class TestPageSetupDialog : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void texts();
    void listsTheFactorSheets();
    void okSetsTheFlags();
    void okTurnsTheMainSheetOnAgain();
    void cancelChangesNothing();

private:
    void open();

    std::unique_ptr<Sheet> sheet;
    std::unique_ptr<ProjectScene> factors[2];
    std::unique_ptr<PageSetupDialog> dialog;
};

void TestPageSetupDialog::init()
{
    sheet.reset(new Sheet);
    for (int i = 0; i < 2; ++i) {
        factors[i].reset(new ProjectScene(&sheet->program, &sheet->group, nullptr, nullptr,
                                          QSize(1606, 1030), sheet->addFactor(i + 3)));
        sheet->program.scenes.append(factors[i].get());
    }
    factors[0]->setPrintEnabled(false);
    open();
}

void TestPageSetupDialog::cleanup()
{
    dialog.reset();
    for (auto &factor : factors)
        factor.reset();
    sheet.reset();
}

void TestPageSetupDialog::open()
{
    dialog.reset(new PageSetupDialog(&sheet->program));
    dialog->setCausalFactorCharts({factors[0].get(), factors[1].get()});
}

void TestPageSetupDialog::texts()
{
    QCOMPARE(dialog->windowTitle(), QString("Page Setup"));
    QTextDocument text;
    text.setHtml(dialog->findChild<QLabel *>("label")->text());
    QCOMPARE(text.toPlainText(), QString("All of the selected charts will be printed when you "
                                         "choose Print from the File menu."));
    QCOMPARE(dialog->findChild<QCheckBox *>("ecsChartCheckbox")->text(), QString("Main ECS Chart"));
    QCOMPARE(dialog->findChild<QGroupBox *>("groupBox")->title(), QString("Additional Charts"));
}

void TestPageSetupDialog::listsTheFactorSheets()
{
    const auto *list = dialog->findChild<QListWidget *>("causalFactorsListWidget");
    QCOMPARE(list->count(), 2);
    QCOMPARE(list->item(0)->text(), QString("Causal Factor 3"));
    QCOMPARE(list->item(0)->checkState(), Qt::Unchecked);
    QCOMPARE(list->item(1)->text(), QString("Causal Factor 4"));
    QCOMPARE(list->item(1)->checkState(), Qt::Checked);
    QCOMPARE(list->item(1)->flags(),
             Qt::ItemIsSelectable | Qt::ItemIsUserCheckable | Qt::ItemIsEnabled);
    QCOMPARE(list->item(1)->data(Qt::UserRole).toString(), factors[1]->getOwnerGUID());
    dialog->setCausalFactorCharts({});
    QCOMPARE(list->count(), 0);
}

void TestPageSetupDialog::okSetsTheFlags()
{
    const auto *list = dialog->findChild<QListWidget *>("causalFactorsListWidget");
    list->item(0)->setCheckState(Qt::Checked);
    list->item(1)->setCheckState(Qt::Unchecked);
    dialog->findChild<QCheckBox *>("ecsChartCheckbox")->setChecked(false);
    dialog->findChild<QDialogButtonBox *>("buttonBox")->button(QDialogButtonBox::Ok)->click();
    QVERIFY(!sheet->scene.isPrintEnabled());
    QVERIFY(factors[0]->isPrintEnabled());
    QVERIFY(!factors[1]->isPrintEnabled());
}

void TestPageSetupDialog::okTurnsTheMainSheetOnAgain()
{
    sheet->scene.setPrintEnabled(false);
    open();
    QVERIFY(dialog->findChild<QCheckBox *>("ecsChartCheckbox")->isChecked());
    dialog->accept();
    QVERIFY(sheet->scene.isPrintEnabled());
    QVERIFY(!factors[0]->isPrintEnabled());
}

void TestPageSetupDialog::cancelChangesNothing()
{
    dialog->findChild<QCheckBox *>("ecsChartCheckbox")->setChecked(false);
    dialog->findChild<QListWidget *>("causalFactorsListWidget")
        ->item(0)
        ->setCheckState(Qt::Checked);
    dialog->reject();
    QVERIFY(sheet->scene.isPrintEnabled());
    QVERIFY(!factors[0]->isPrintEnabled());
}

EXAMINER_TEST_MAIN(TestPageSetupDialog)
#include "testpagesetupdialog.moc"
