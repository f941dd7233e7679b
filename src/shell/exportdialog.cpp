#include "shell/exportdialog.h"

#include "ui_exportdialog.h"

ExportDialog::ExportDialog(QWidget *parent)
    : QDialog(parent), ui(new Ui_ExportDialog),
      extensions({{PNG, "png"}, {PDF, "pdf"}, {EMF, "emf"}})
{
    ui->setupUi(this);
    ui->formatCombo->addItem(tr("PDF Document"), PDF);
    ui->formatCombo->addItem(tr("PNG Image"), PNG);
}

ExportDialog::~ExportDialog() = default;

ExportDialog::ExportArea ExportDialog::getExportArea() const
{
    return ExportArea(ui->areaCombo->currentData().toInt());
}

ExportDialog::ExportFormat ExportDialog::getExportFormat() const
{
    return ExportFormat(ui->formatCombo->currentData().toInt());
}

QString ExportDialog::getFormatExtension(ExportFormat format) const
{
    return extensions.value(format);
}

void ExportDialog::on_formatCombo_currentIndexChanged(int index)
{
    ui->areaCombo->clear();
    ui->areaCombo->addItem(tr("Entire Chart"), EntireChart);
    if (ui->formatCombo->itemData(index).toInt() == PDF)
        return;
    ui->areaCombo->addItem(tr("Current Page"), CurrentPage);
    ui->areaCombo->addItem(tr("Selected Items"), SelectedItems);
}
