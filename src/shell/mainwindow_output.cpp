#include "form/formview.h"
#include "output/sheetprinter.h"
#include "output/wordxmlexport.h"
#include "project/projectfile.h"
#include "shell/filenames.h"
#include "shell/graphwidget.h"
#include "shell/mainwindow.h"
#include "shell/pagesetupdialog.h"
#include "shell/programsettings.h"
#include "shell/settings.h"
#include "support/fonts.h"
#include "support/pageinfo.h"

#include <QCoreApplication>
#include <QPrintDialog>
#include <QPrinter>
#include <QStandardPaths>
#include <QStatusBar>
#include <QTimer>

namespace
{

constexpr int MessageTime = 15000; // milliseconds
constexpr int LongestJobName = 80; // print servers refuse more than 255 bytes

QString getDocumentsFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

/// Does nothing when the text is empty.
void showExportFailure(QStatusBar *bar, const QString &text)
{
    if (!text.isEmpty())
        bar->showMessage(text, MessageTime);
}

} // namespace

void MainWindow::showSettings()
{
    Settings dialog(this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    book->setItemsFont(getStandardFont());
    book->setPageSize(PageInfo().getPrintableArea().size());
}

void MainWindow::showProgramSettings()
{
    ProgramSettings dialog(this);
    dialog.exec();
}

void MainWindow::showPageSetupDialog()
{
    PageSetupDialog dialog(this);
    dialog.setCausalFactorCharts(book->getFactorSheets());
    dialog.exec();
}

void MainWindow::print()
{
    book->finishEditing();
    QPrinter printer(QPrinter::ScreenResolution);
    SheetPrinter::setUpPage(printer);
    printer.setColorMode(QPrinter::Color);
    printer.setDocName(getDocumentTitle().left(LongestJobName));
    QPrintDialog dialog(&printer, this);
    dialog.setOptions(QAbstractPrintDialog::PrintToFile);
    // The toolkit shows a choice of pages that these options do not offer, anew with the dialog.
    if (auto *range = dialog.findChild<QWidget *>("gbPrintRange"))
        QTimer::singleShot(0, range, &QWidget::hide);
    if (dialog.exec() == QDialog::Accepted)
        paintPrinter(printer);
}

QString MainWindow::getDocumentTitle() const
{
    return SheetPrinter::makeTitle(formView->getFieldValue("incidentTitle"),
                                   projectFile->getOpenProjectName());
}

bool MainWindow::paintPrinter(QPrinter &printer)
{
    return SheetPrinter::paint(printer, book->getMainSheet(), book->getFactorSheets());
}

void MainWindow::printProjectScene(ProjectScene *scene, QPainter &painter, QPrinter &printer,
                                   int verticalPages, int horizontalPages)
{
    SheetPrinter::paintScene(scene, painter, printer, verticalPages, horizontalPages);
}

void MainWindow::onPrintFormTriggered()
{
    book->finishEditing();
    formView->onPrintRequested();
}

void MainWindow::onExportFormTriggered()
{
    book->finishEditing();
    const QString name = askSaveName(this, "Export file to...", getDocumentsFolder(),
                                     "Microsoft Word XML (*.doc)", ".doc", Qt::CaseInsensitive);
    if (name.isEmpty())
        return;
    WordXMLExport().saveData(name, desk->collectFormValues(), this);
}

void MainWindow::saveCurrentPagePNG()
{
    onExportClicked(false, ExportDialog::PNG);
}

void MainWindow::onExportClicked(bool showDialog, ExportDialog::ExportFormat presetFormat)
{
    book->finishEditing();
    ExportDialog dialog(this);
    ExportDialog::ExportFormat format = presetFormat;
    ExportDialog::ExportArea area = ExportDialog::PageAtPoint;
    if (showDialog) {
        if (dialog.exec() != QDialog::Accepted)
            return;
        format = dialog.getExportFormat();
        area = dialog.getExportArea();
    }
    // The ending is that of the format which the dialog shows, even if it never came up.
    const QString name = askExportName(format, dialog.getFormatExtension(dialog.getExportFormat()));
    if (name.isEmpty())
        return;
    QCoreApplication::processEvents(); // the file dialog leaves the screen
    const QRectF bound = getExportBound(area);
    if (format == ExportDialog::PNG)
        exportPNG(name, bound);
    else if (format == ExportDialog::PDF)
        exportPDF(name, bound);
}

QString MainWindow::askExportName(ExportDialog::ExportFormat format, const QString &extension)
{
    static const QHash<int, QPair<QString, QString>> texts = {
        {ExportDialog::PNG, {"Export to Image (PNG)...", "PNG Image (*.png)"}},
        {ExportDialog::PDF,
         {"Export to Portable Document Format (PDF)...", "Portable Document Format (*.pdf)"}},
        {ExportDialog::EMF, {"Export to Microsoft Office (EMF)...", "Enhanced Metafile (*.emf)"}},
    };
    const QString name = askSaveName(this, texts[format].first, getStartFolder("lastExportPath"),
                                     texts[format].second, "." + extension, Qt::CaseInsensitive);
    if (!name.isEmpty())
        rememberFolder("lastExportPath", name);
    return name;
}

QRectF MainWindow::getExportBound(ExportDialog::ExportArea area) const
{
    QRectF bound;
    switch (area) {
    case ExportDialog::EntireChart:
        return QRectF(0, 0, qRound(currentScene->width()), qRound(currentScene->height()));
    case ExportDialog::CurrentPage:
        return mainView->getCurrentPageBounds();
    case ExportDialog::PageAtPoint:
        return currentScene->getPageBoundsAtPoint(currentScene->getLastContextMenuPos());
    case ExportDialog::SelectedItems:
        for (ProjectItem *item : currentScene->getSelectedProjectItems())
            bound |= item->sceneBoundingRect();
        return bound.isNull() ? bound : bound.adjusted(-2, -2, 2, 2);
    }
    return bound;
}

void MainWindow::exportPNG(const QString &filename, const QRectF &bound)
{
    showExportFailure(statusBar(), SheetPrinter::writePNG(currentScene, bound, filename));
}

void MainWindow::exportPDF(const QString &filename, const QRectF &)
{
    showExportFailure(statusBar(),
                      SheetPrinter::writePDF(book->getMainSheet(), book->getFactorSheets(),
                                             getDocumentTitle(), filename));
}

void MainWindow::exportEMF(const QString &, const QRectF &) {}
