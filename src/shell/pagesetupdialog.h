#pragma once

#include <QDialog>
#include <QList>
#include <memory>

class ProjectScene;
class QListWidgetItem;
class SheetHost;
class Ui_PageSetupDialog;

/// Chooses which sheets are printed, and whether header, page labels and legend are.
class PageSetupDialog : public QDialog
{
    Q_OBJECT

public:
    /// The host outlives the dialog.
    explicit PageSetupDialog(SheetHost *host);
    ~PageSetupDialog() override;

    /// Lists these secondary sheets, each as its print flag stands.
    void setCausalFactorCharts(const QList<ProjectScene *> &scenes);

    void accept() override;

private:
    QListWidgetItem *makeEntry(const ProjectScene *scene) const;
    ProjectScene *getSheet(const QString &ownerGUID) const;

    std::unique_ptr<Ui_PageSetupDialog> ui;
    QList<QListWidgetItem *> entries; // owned by the list widget
    SheetHost *host;
};
