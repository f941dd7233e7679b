#include "support/pdfpages.h"

#include "support/log.h"

#include <QFile>

#define POINTERHOLDER_TRANSITION 4 // the library's own pointer type of old is not used
#include <qpdf/QPDF.hh>

namespace
{

int countPages(const std::function<void(QPDF &)> &read)
{
    try {
        QPDF pdf;
        pdf.setAttemptRecovery(false); // half a document is none
        pdf.setSuppressWarnings(true);
        read(pdf);
        return int(pdf.getAllPages().size());
    } catch (const std::exception &error) {
        qCDebug(supportLog) << "No document to print:" << error.what();
        return 0;
    }
}

} // namespace

int countPdfPages(const QByteArray &document)
{
    return countPages([&document](QPDF &pdf) {
        pdf.processMemoryFile("document", document.constData(), size_t(document.size()));
    });
}

int countPdfPages(const QString &path)
{
    return countPages([&path](QPDF &pdf) { pdf.processFile(QFile::encodeName(path).constData()); });
}
