#pragma once

#include <QDialog>
#include <QHash>
#include <memory>

class Ui_ExportDialog;

/// Asks for the format and the area of an export.
class ExportDialog : public QDialog
{
    Q_OBJECT

public:
    enum ExportFormat { PNG = 0, PDF = 1, EMF = 2 };
    enum ExportArea { SelectedItems = 0, CurrentPage = 1, EntireChart = 2, PageAtPoint = 3 };

    explicit ExportDialog(QWidget *parent);
    ~ExportDialog() override;

    /// What the dialog shows, also when it was never run.
    ExportArea getExportArea() const;
    ExportFormat getExportFormat() const;
    /// Without a dot; empty for an unknown format.
    QString getFormatExtension(ExportFormat format) const;

private slots:
    void on_formatCombo_currentIndexChanged(int index);

private:
    std::unique_ptr<Ui_ExportDialog> ui;
    const QHash<ExportFormat, QString> extensions;
};
