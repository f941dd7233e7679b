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
#include "support/printing.h"
#include "support/progressbox.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QPrintDialog>
#include <QPrinter>
#include <QStatusBar>
#include <QTimer>

namespace
{

constexpr int MessageTime = 15000; // milliseconds
constexpr int LongestJobName = 80; // print servers refuse more than 255 bytes

/// The toolkit shows a choice of pages that the options do not offer; it comes anew with the
/// dialog.
void hidePageRange(QPrintDialog *dialog)
{
    QTimer::singleShot(0, dialog, [dialog] {
        if (auto *range = dialog->findChild<QWidget *>("gbPrintRange"))
            range->hide();
    });
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
    printer.setDocName(desk->getDocumentTitle().left(LongestJobName));
    QPrintDialog dialog(&printer, this);
    dialog.setOptions(QAbstractPrintDialog::PrintToFile);
    dialog.setWindowTitle(tr("Print the Charts")); // also in front of the form, which has its own
    hidePageRange(&dialog);
    proposePrintFile(&dialog, proposeExport(".pdf"));
    if (dialog.exec() == QDialog::Accepted)
        printTo(printer);
}

void MainWindow::say(const QString &text)
{
    statusBar()->showMessage(text, MessageTime);
}

void MainWindow::tellOfExport(const QString &failure, const QString &filename)
{
    say(failure.isEmpty() ? tr("Exported to %1").arg(filename) : failure);
}

void MainWindow::printTo(QPrinter &printer)
{
    QString outcome;
    const auto work = [&](const SheetPrinter::GoOn &goOn) {
        outcome = printWhole(printer, [&] { return paintPrinter(printer, goOn); });
    };
    const bool whole = doWithProgress(tr("Printing..."), work);
    say(whole ? outcome : tr("The printing was stopped."));
}

bool MainWindow::doWithProgress(const QString &label,
                                const std::function<void(const SheetPrinter::GoOn &)> &work)
{
    ProgressBox box(label, this);
    desk->doUndisturbed(
        [&] { work([&box](int done, int total) { return box.goOn(done, total); }); });
    return !box.wasCanceled();
}

bool MainWindow::paintPrinter(QPrinter &printer, const SheetPrinter::GoOn &goOn)
{
    return SheetPrinter::paint(printer, book->getMainSheet(), book->getFactorSheets(), nullptr,
                               goOn);
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
    const QString name = askSaveName(this, tr("Export file to..."), proposeExport(".doc"),
                                     tr("Microsoft Word XML (*.doc)"), ".doc", Qt::CaseInsensitive);
    if (name.isEmpty())
        return;
    const FormValues values = desk->collectFormValues();
    desk->doUndisturbed([&] { tellOfExport(WordXMLExport().saveData(name, values, this), name); });
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

QString MainWindow::proposeExport(const QString &ending) const
{
    const QString proposal = desk->proposeFile("lastExportPath", ending);
    return exportedProject == projectFile->getOpenFilename()
               ? getStartFolder("lastExportPath") + QFileInfo(proposal).fileName()
               : proposal;
}

QString MainWindow::askExportName(ExportDialog::ExportFormat format, const QString &extension)
{
    static const QHash<int, QPair<QString, QString>> texts = {
        {ExportDialog::PNG, {tr("Export to Image (PNG)..."), tr("PNG Image (*.png)")}},
        {ExportDialog::PDF,
         {tr("Export to Portable Document Format (PDF)..."),
          tr("Portable Document Format (*.pdf)")}},
        {ExportDialog::EMF,
         {tr("Export to Microsoft Office (EMF)..."), tr("Enhanced Metafile (*.emf)")}},
    };
    const QString name = askSaveName(this, texts[format].first, proposeExport("." + extension),
                                     texts[format].second, "." + extension, Qt::CaseInsensitive);
    if (!name.isEmpty()) {
        rememberFolder("lastExportPath", name);
        exportedProject = projectFile->getOpenFilename();
    }
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

void MainWindow::exportTo(const QString &filename,
                          const std::function<QString(const SheetPrinter::GoOn &)> &write)
{
    QString failure;
    const auto work = [&](const SheetPrinter::GoOn &goOn) { failure = write(goOn); };
    if (doWithProgress(tr("Exporting..."), work))
        tellOfExport(failure, filename);
    else
        say(tr("The export was stopped, nothing was written."));
}

void MainWindow::exportPNG(const QString &filename, const QRectF &bound)
{
    exportTo(filename, [&](const SheetPrinter::GoOn &goOn) {
        return SheetPrinter::writePNG(currentScene, bound, filename, goOn);
    });
}

void MainWindow::exportPDF(const QString &filename, const QRectF &)
{
    exportTo(filename, [&](const SheetPrinter::GoOn &goOn) {
        return SheetPrinter::writePDF(book->getMainSheet(), book->getFactorSheets(),
                                      desk->getDocumentTitle(), filename, goOn);
    });
}

void MainWindow::exportEMF(const QString &, const QRectF &) {}
