#include "shell/pagesetupdialog.h"

#include "chart/sheethost.h"
#include "chart/sticky.h"
#include "output/sheetprinter.h"
#include "sheet/projectscene.h"
#include "ui_pagesetupdialog.h"

PageSetupDialog::PageSetupDialog(SheetHost *host)
    : QDialog(host->getDialogParent()), ui(new Ui_PageSetupDialog), host(host)
{
    ui->setupUi(this);
    ui->decorationsCheckbox->setChecked(SheetPrinter::isDecorated());
}

PageSetupDialog::~PageSetupDialog() = default;

void PageSetupDialog::setCausalFactorCharts(const QList<ProjectScene *> &scenes)
{
    ui->causalFactorsListWidget->clear();
    entries.clear();
    for (const ProjectScene *scene : scenes) {
        entries.append(makeEntry(scene));
        ui->causalFactorsListWidget->addItem(entries.last());
    }
}

QListWidgetItem *PageSetupDialog::makeEntry(const ProjectScene *scene) const
{
    const Sticky *owner = scene->getParentNote();
    auto *entry = new QListWidgetItem(tr("Causal Factor %1").arg(owner->getCausalFactorNumber()));
    entry->setFlags(Qt::ItemIsSelectable | Qt::ItemIsUserCheckable | Qt::ItemIsEnabled);
    entry->setCheckState(scene->isPrintEnabled() ? Qt::Checked : Qt::Unchecked);
    entry->setData(Qt::UserRole, owner->getGUID());
    return entry;
}

ProjectScene *PageSetupDialog::getSheet(const QString &ownerGUID) const
{
    return dynamic_cast<ProjectScene *>(host->getSceneForParent(ownerGUID));
}

void PageSetupDialog::accept()
{
    getSheet(QString())->setPrintEnabled(ui->ecsChartCheckbox->isChecked());
    for (const QListWidgetItem *entry : qAsConst(entries)) {
        ProjectScene *sheet = getSheet(entry->data(Qt::UserRole).toString());
        sheet->setPrintEnabled(entry->checkState() == Qt::Checked);
    }
    SheetPrinter::setDecorated(ui->decorationsCheckbox->isChecked());
    QDialog::accept();
}
