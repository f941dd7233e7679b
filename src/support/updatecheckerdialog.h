#pragma once

#include <QDialog>

#include <memory>

class Ui_UpdateChecker;

/// Tells the user what a check for updates has found.
class UpdateCheckerDialog : public QDialog
{
    Q_OBJECT

public:
    explicit UpdateCheckerDialog(QWidget *parent = nullptr);
    ~UpdateCheckerDialog() override;

public slots:
    void onUpdateAvailable();
    void onNoUpdateAvailable();
    void onUpdateError(QString text);

signals:
    void downloadClicked();

private:
    void showResult(const QString &text);

    std::unique_ptr<Ui_UpdateChecker> ui;
};
