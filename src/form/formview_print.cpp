#include "form/formprinter.h"
#include "form/formview.h"
#include "support/printing.h"
#include "support/progressbox.h"
#include "support/toolbarmore.h"

#include <QChildEvent>
#include <QMarginsF>
#include <QPaintEngine>
#include <QPointer>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QTemporaryFile>
#include <QTimer>

namespace
{

const QMarginsF PaperMargins(18, 15, 15, 15); // millimetres

/// Sees the print dialog come in a preview.
class ProposalFilter : public QObject
{
public:
    using QObject::QObject;

    QString file;

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::ChildAdded) {
            const QPointer<QObject> child = static_cast<QChildEvent *>(event)->child();
            QTimer::singleShot(0, this, [this, child] {
                if (auto *dialog = qobject_cast<QPrintDialog *>(child))
                    proposePrintFile(dialog, file);
            });
        }
        return false;
    }
};

} // namespace

void FormView::onPrintRequested()
{
    if (!isReady())
        return;
    FormPrinter printer;
    printer.setDocName(getFieldValue("incidentTitle").simplified().replace('/', '-'));
    printer.setPageMargins(PaperMargins, QPageLayout::Millimeter);
    QPrintPreviewDialog dialog(&printer, this);
    dialog.resize(window()->size()); // a page can be read, and no button is left out
    showToolbarMore(&dialog);
    ProposalFilter filter;
    filter.file = proposeFile ? proposeFile() : QString();
    dialog.installEventFilter(&filter);
    QString outcome;
    connect(&dialog, &QPrintPreviewDialog::paintRequested, this, [&] {
        QWidget *parent = dialog.isVisible() ? &dialog : window();
        if (printer.paintEngine()->type() != QPaintEngine::Picture)
            outcome = printOut(printer, parent);
        else
            paint(printer, FormEngine::Preview, parent);
        if (printer.isStopped())
            QTimer::singleShot(0, &dialog, &QDialog::reject);
    });
    dialog.exec();
    if (!outcome.isEmpty())
        emit printed(outcome);
}

QString FormView::printOut(FormPrinter &printer, QWidget *parent)
{
    const QString outcome =
        printWhole(printer, [&] { return paint(printer, FormEngine::Final, parent); });
    return printer.isStopped() ? tr("The printing was stopped.") : outcome;
}

bool FormView::paint(FormPrinter &printer, FormEngine::Quality quality, QWidget *parent)
{
    ProgressBox box(tr("Printing..."), parent);
    // An engine that lays out all pages before it paints one has nothing to show for it.
    const auto goOn = [&box](int page, int pages) { return box.goOn(page, page > 1 ? pages : 0); };
    printer.setHead(getPaperName(), countPages(printer.pageLayout(), goOn));
    printer.setGoOn(goOn);
    if (printer.askOn())
        engine->print(&printer, quality);
    printer.setGoOn({});
    return !printer.isStopped() && printer.printerState() != QPrinter::Error;
}

int FormView::countPages(const QPageLayout &layout, const FormPrinter::GoOn &goOn)
{
    QTemporaryFile file;
    if (!file.open())
        return 0;
    FormPrinter counter;
    counter.setOutputFormat(QPrinter::PdfFormat);
    counter.setOutputFileName(file.fileName());
    counter.setPageLayout(layout);
    counter.setGoOn(goOn);
    engine->print(&counter, FormEngine::Draft);
    return counter.getPageCount();
}

QString FormView::getPaperName() const
{
    QStringList names = {getFieldValue("incidentTitle"), getFieldValue("fileNumber")};
    names.removeAll(QString());
    return names.join(QString::fromUtf8(" · "));
}
