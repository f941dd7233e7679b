#include "shell/aboutdialog.h"

#include "support/images.h"
#include "ui_aboutdialog.h"

#include <QCoreApplication>

namespace
{

void fillPlaceholders(QLabel *label)
{
    label->setText(label->text()
                       .replace("$(VERSION)", QCoreApplication::applicationVersion())
                       .replace("$(APP_NAME)", "TRAC/Ex Examiner"));
}

} // namespace

AboutDialog::AboutDialog(QWidget *parent) : QDialog(parent), ui(new Ui_AboutDialog)
{
    ui->setupUi(this);
    setWindowTitle(tr("About TRAC/Ex Examiner"));
    ui->logoLabel->setPixmap(loadPicture(":/images/tracexlogo.png"));
    fillPlaceholders(ui->titleText);
    fillPlaceholders(ui->aboutText);
}

AboutDialog::~AboutDialog() = default;
