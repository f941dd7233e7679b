#pragma once

#include <QDialog>
#include <QPixmap>
#include <memory>

class Ui_ImagePreviewDialog;

/// Shows a note's picture at full size, or as large as the screen allows, and
/// can copy and save it.
class ImagePreviewDialog : public QDialog
{
    Q_OBJECT

public:
    ImagePreviewDialog(QWidget *parent, const QPixmap &picture);
    ~ImagePreviewDialog() override;

private slots:
    void onCloseClicked();
    void onCopyClicked();
    void onSaveClicked();

private:
    void showPicture();

    std::unique_ptr<Ui_ImagePreviewDialog> ui;
    QPixmap picture; // at full size
    QPixmap shown;   // perhaps scaled down
};
