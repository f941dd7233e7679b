#include "shell/programsettings.h"

#include "support/images.h"
#include "ui_programsettings.h"

#include <QFile>
#include <QFileDialog>
#include <QSaveFile>
#include <QSettings>
#include <QStandardPaths>

namespace
{

QString getLogoPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + "/companylogo.png";
}

/// Keeps the old logo, silently, when the new one can't be written whole.
void saveLogo(const QImage &logo)
{
    QSaveFile file(getLogoPath());
    if (!logo.isNull() && file.open(QIODevice::WriteOnly) && logo.save(&file, "PNG"))
        file.commit();
}

} // namespace

ProgramSettings::ProgramSettings(QWidget *parent) : QDialog(parent), ui(new Ui_ProgramSettings)
{
    ui->setupUi(this);
    ui->updateCheck->setChecked(QSettings().value("checkUpdates", true).toBool());
    ui->updateCheck->hide();
    connect(ui->chooseLogo, &QPushButton::clicked, this, &ProgramSettings::on_chooseLogo_clicked);
    connect(ui->clearButton, &QPushButton::clicked, this, &ProgramSettings::on_clearButton_clicked);
    const bool anyLogo = QFile::exists(getLogoPath());
    ui->clearButton->setEnabled(anyLogo);
    if (anyLogo)
        showLogo();
}

ProgramSettings::~ProgramSettings() = default;

void ProgramSettings::showLogo()
{
    ui->label->setPixmap(QPixmap::fromImage(readImageFile(getLogoPath())));
}

void ProgramSettings::accept()
{
    QSettings().setValue("checkUpdates", ui->updateCheck->isChecked());
    QDialog::accept();
}

void ProgramSettings::on_chooseLogo_clicked()
{
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    const QString path = QFileDialog::getOpenFileName(
        this, tr("Open image..."), QSettings().value("lastImagePath", pictures).toString() + '/',
        tr("Images (*.png *.jpg *.jpeg *.bmp *.gif)"));
    if (path.isEmpty())
        return;
    saveLogo(readImageFile(path));
    showLogo();
}

void ProgramSettings::on_clearButton_clicked()
{
    QFile::remove(getLogoPath());
    ui->label->setPixmap(QPixmap());
    ui->clearButton->setEnabled(false);
}
