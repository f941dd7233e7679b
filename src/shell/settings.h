#pragma once

#include <QDialog>
#include <QFont>
#include <QList>
#include <memory>

class QDoubleSpinBox;
class Ui_Settings;

/// "Project Settings": font, paper, margins and what dresses the sheets. It
/// writes the settings keys on OK; applying them is up to the caller.
class Settings : public QDialog
{
    Q_OBJECT

public:
    explicit Settings(QWidget *parent);
    ~Settings() override;

    void accept() override;

private slots:
    void chooseFont();

private:
    void showButtonIcons();
    void fillPaperSizes();
    void readSettings();
    void showFont();
    QList<QDoubleSpinBox *> getMargins() const;
    void checkMargins();

    std::unique_ptr<Ui_Settings> ui;
    QFont font;
};
