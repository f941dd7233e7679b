#include "support/printing.h"

#include "support/filereplacement.h"
#include "support/pdfpages.h"

#include <QCoreApplication>
#include <QLineEdit>
#include <QPrintDialog>
#include <QPrinter>
#include <QTimer>

QString printWhole(QPrinter &printer, const std::function<bool()> &paint)
{
    const QString file = printer.outputFileName(); // empty for true paper
    if (file.isEmpty())
        return paint() ? QCoreApplication::translate("Printing", "Sent to the printer %1")
                             .arg(printer.printerName())
                       : QCoreApplication::translate("Printing", "Printing failed.");
    const QString failure = replaceFile(file, [&](const QString &unfinished) {
        printer.setOutputFileName(unfinished);
        return paint() && countPdfPages(unfinished) > 0; // the toolkit hides a full disk
    });
    return failure.isEmpty() ? QCoreApplication::translate("Printing", "Printed into %1").arg(file)
                             : failure;
}

void proposePrintFile(QPrintDialog *dialog, const QString &file)
{
    // The toolkit's own comes with the dialog's first look.
    QTimer::singleShot(0, dialog, [dialog, file] {
        if (auto *name = dialog->findChild<QLineEdit *>("filename"))
            name->setText(file);
    });
}
