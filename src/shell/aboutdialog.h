#pragma once

#include <QDialog>
#include <memory>

class Ui_AboutDialog;

/// Name, version and makers of the program.
class AboutDialog : public QDialog
{
    Q_OBJECT

public:
    explicit AboutDialog(QWidget *parent);
    ~AboutDialog() override;

private:
    std::unique_ptr<Ui_AboutDialog> ui;
};
