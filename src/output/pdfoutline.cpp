#include "output/pdfoutline.h"

#include "support/log.h"

#include <QFile>

#define POINTERHOLDER_TRANSITION 4 // the library's own pointer type of old is not used
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFWriter.hh>

#include <memory>

namespace
{

QPDFObjectHandle makeEntry(QPDF &document, const PdfOutlineEntry &entry,
                           const QPDFObjectHandle &root)
{
    QPDFObjectHandle made = document.makeIndirectObject(QPDFObjectHandle::newDictionary());
    const QPDFObjectHandle page = document.getAllPages().at(size_t(entry.page));
    const auto fit = QPDFObjectHandle::newName("/Fit");
    made.replaceKey("/Title", QPDFObjectHandle::newUnicodeString(entry.name.toStdString()));
    made.replaceKey("/Dest", QPDFObjectHandle::newArray({page, fit}));
    made.replaceKey("/Parent", root);
    return made;
}

QPDFObjectHandle makeOutline(QPDF &document, const QVector<PdfOutlineEntry> &outline)
{
    QPDFObjectHandle root = document.makeIndirectObject(QPDFObjectHandle::newDictionary());
    QPDFObjectHandle last;
    for (const PdfOutlineEntry &entry : outline) {
        QPDFObjectHandle made = makeEntry(document, entry, root);
        if (last.isInitialized()) {
            last.replaceKey("/Next", made);
            made.replaceKey("/Prev", last);
        } else {
            root.replaceKey("/First", made);
        }
        last = made;
    }
    root.replaceKey("/Last", last);
    root.replaceKey("/Count", QPDFObjectHandle::newInteger(outline.size()));
    return root;
}

void complete(QPDF &document, const QVector<PdfOutlineEntry> &outline)
{
    QPDFObjectHandle catalog = document.getRoot();
    auto preferences = QPDFObjectHandle::newDictionary();
    preferences.replaceKey("/DisplayDocTitle", QPDFObjectHandle::newBool(true));
    catalog.replaceKey("/ViewerPreferences", preferences);
    if (outline.isEmpty())
        return;
    catalog.replaceKey("/Outlines", makeOutline(document, outline));
    catalog.replaceKey("/PageMode", QPDFObjectHandle::newName("/UseOutlines"));
}

bool writeAll(const QString &path, const Buffer &buffer)
{
    QFile file(path);
    const qint64 size = qint64(buffer.getSize());
    return file.open(QIODevice::WriteOnly) &&
           file.write(reinterpret_cast<const char *>(buffer.getBuffer()), size) == size &&
           file.flush();
}

} // namespace

bool addOutline(const QString &path, const QVector<PdfOutlineEntry> &outline)
{
    try {
        QPDF document;
        document.setAttemptRecovery(false); // half a document is none
        document.setSuppressWarnings(true);
        document.processFile(QFile::encodeName(path).constData());
        complete(document, outline);
        QPDFWriter writer(document);
        writer.setOutputMemory();
        writer.write();
        const std::unique_ptr<Buffer> buffer(writer.getBuffer());
        return writeAll(path, *buffer);
    } catch (const std::exception &error) {
        qCDebug(outputLog) << "The outline failed:" << error.what();
        return false;
    }
}
