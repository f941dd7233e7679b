#pragma once

#include <QDialog>
#include <memory>

class Ui_ProgramSettings;

/// "Program Settings": the company's logo, which is replaced and cleared at
/// once, whatever button ends the dialog.
class ProgramSettings : public QDialog
{
    Q_OBJECT

public:
    explicit ProgramSettings(QWidget *parent);
    ~ProgramSettings() override;

    void accept() override;

private:
    void on_chooseLogo_clicked();
    void on_clearButton_clicked();
    /// Empties the preview where there is no readable logo.
    void showLogo();

    std::unique_ptr<Ui_ProgramSettings> ui;
};
