#include "chart/imagepreviewdialog.h"

#include "ui_imagepreviewdialog.h"

#include <QClipboard>
#include <QDir>
#include <QFileDialog>
#include <QGuiApplication>
#include <QMessageBox>
#include <QScreen>

ImagePreviewDialog::ImagePreviewDialog(QWidget *parent, const QPixmap &picture)
    : QDialog(parent), ui(new Ui_ImagePreviewDialog), picture(picture), shown(picture)
{
    ui->setupUi(this);
    showPicture();
    connect(ui->closeButton, &QPushButton::clicked, this, &ImagePreviewDialog::onCloseClicked);
    connect(ui->copyButton, &QPushButton::clicked, this, &ImagePreviewDialog::onCopyClicked);
    connect(ui->saveButton, &QPushButton::clicked, this, &ImagePreviewDialog::onSaveClicked);
}

ImagePreviewDialog::~ImagePreviewDialog() = default;

void ImagePreviewDialog::showPicture()
{
    const QSize limits = screen()->geometry().size() - QSize(50, 100);
    if (picture.width() > limits.width() || picture.height() > limits.height()) {
        shown = picture.scaled(limits, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        const int percentage = int(qint64(shown.width()) * 100 / picture.width());
        setWindowTitle(tr("Image Preview (%1%)").arg(percentage));
    }
    ui->imageLabel->setPixmap(shown);
}

void ImagePreviewDialog::onCloseClicked()
{
    accept();
}

void ImagePreviewDialog::onCopyClicked()
{
    QGuiApplication::clipboard()->setPixmap(picture);
}

void ImagePreviewDialog::onSaveClicked()
{
    QString path = QFileDialog::getSaveFileName(this, tr("Save image file..."), QDir::homePath(),
                                                tr("Images (*.png *.jpg)"));
    if (path.isEmpty())
        return;
    if (!path.endsWith(".png") && !path.endsWith(".jpg"))
        path += ".jpg";
    if (!picture.save(path))
        QMessageBox::critical(this, tr("Save failed"),
                              tr("Saving the image failed.\n"
                                 "Check if you have write permissions to this folder."));
}
