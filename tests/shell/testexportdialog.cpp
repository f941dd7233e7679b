#include "shell/exportdialog.h"
#include "testing/testmain.h"

#include <QComboBox>
#include <QLabel>

class TestExportDialog : public QObject
{
    Q_OBJECT

private slots:
    void offersPdfFirst();
    void areasFollowTheFormat();
    void extensions();
};

namespace
{

QStringList getTexts(const QComboBox *combo)
{
    QStringList texts;
    for (int i = 0; i < combo->count(); ++i)
        texts.append(combo->itemText(i));
    return texts;
}

} // namespace

void TestExportDialog::offersPdfFirst()
{
    const ExportDialog dialog(nullptr);
    QCOMPARE(dialog.windowTitle(), QString("Export"));
    QCOMPARE(getTexts(dialog.findChild<QComboBox *>("formatCombo")),
             QStringList({"PDF Document", "PNG Image"}));
    QCOMPARE(dialog.getExportFormat(), ExportDialog::PDF);
    QCOMPARE(dialog.getExportArea(), ExportDialog::EntireChart);
    QCOMPARE(dialog.findChild<QLabel *>("label")->text(),
             QString("Exporting to other file formats allows you to save your project for use with "
                     "other applications."));
}

void TestExportDialog::areasFollowTheFormat()
{
    const ExportDialog dialog(nullptr);
    auto *format = dialog.findChild<QComboBox *>("formatCombo");
    auto *area = dialog.findChild<QComboBox *>("areaCombo");
    QCOMPARE(getTexts(area), QStringList{"Entire Chart"});
    format->setCurrentIndex(1);
    QCOMPARE(getTexts(area), QStringList({"Entire Chart", "Current Page", "Selected Items"}));
    area->setCurrentIndex(2);
    QCOMPARE(dialog.getExportArea(), ExportDialog::SelectedItems);
    area->setCurrentIndex(1);
    QCOMPARE(dialog.getExportArea(), ExportDialog::CurrentPage);
    format->setCurrentIndex(0);
    QCOMPARE(dialog.getExportArea(), ExportDialog::EntireChart);
}

void TestExportDialog::extensions()
{
    const ExportDialog dialog(nullptr);
    QCOMPARE(dialog.getFormatExtension(ExportDialog::PNG), QString("png"));
    QCOMPARE(dialog.getFormatExtension(ExportDialog::PDF), QString("pdf"));
    QCOMPARE(dialog.getFormatExtension(ExportDialog::EMF), QString("emf"));
    QCOMPARE(dialog.getFormatExtension(ExportDialog::ExportFormat(3)), QString());
}

EXAMINER_TEST_MAIN(TestExportDialog)
#include "testexportdialog.moc"
