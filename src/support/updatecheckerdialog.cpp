#include "support/updatecheckerdialog.h"

#include "support/images.h"
#include "ui_updatecheckerdialog.h"

#include <QPushButton>

UpdateCheckerDialog::UpdateCheckerDialog(QWidget *parent)
    : QDialog(parent), ui(std::make_unique<Ui_UpdateChecker>())
{
    ui->setupUi(this);
    ui->imageLabel->setPixmap(loadPicture(":/images/48/system-software-update.png"));
    ui->buttonBox->button(QDialogButtonBox::Close)->hide();
    connect(ui->textLabel, &QLabel::linkActivated, this, &UpdateCheckerDialog::downloadClicked);
}

UpdateCheckerDialog::~UpdateCheckerDialog() = default;

void UpdateCheckerDialog::onUpdateAvailable()
{
    showResult(tr("<h2>Update Available</h2>An application update is available.  Click "
                  "<a href=\"updatesite\">here</a> to open the download site."));
}

void UpdateCheckerDialog::onNoUpdateAvailable()
{
    showResult(tr("<h2>No Update Available</h2>Your version of the application is the current "
                  "version."));
}

void UpdateCheckerDialog::onUpdateError(QString text)
{
    showResult(tr("<h2>Cannot connect to the update site</h2>There was an error connecting to the "
                  "update site.<br>Ensure you are connected to the internet and try again later."
                  "<br>  The error message is: %1")
                   .arg(text));
}

void UpdateCheckerDialog::showResult(const QString &text)
{
    ui->progressBar->hide();
    ui->textLabel->setText(text);
    ui->buttonBox->button(QDialogButtonBox::Close)->show();
    ui->buttonBox->button(QDialogButtonBox::Cancel)->hide();
    layout()->activate();
    resize(width(), qMax(height(), heightForWidth(width()))); // the text may take several lines
}
