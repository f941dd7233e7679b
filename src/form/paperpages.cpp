#include "form/paperpages.h"

#include "support/log.h"

#define POINTERHOLDER_TRANSITION 4 // the library's own pointer type of old is not used
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFWriter.hh>

#include <algorithm>
#include <memory>
#include <string>

namespace
{

const char HeadName[] = "/PageHead";

void read(QPDF &pdf, const QByteArray &document)
{
    pdf.setAttemptRecovery(false); // half a document is none
    pdf.setSuppressWarnings(true);
    pdf.processMemoryFile("form", document.constData(), size_t(document.size()));
}

void layOver(QPDF &pdf, QPDFPageObjectHelper &page, QPDFPageObjectHelper &head)
{
    const QPDFObjectHandle drawing = pdf.copyForeignObject(head.getFormXObjectForPage());
    QPDFObjectHandle resources = page.getAttribute("/Resources", true);
    resources.mergeResources(QPDFObjectHandle::parse("<< /XObject << >> >>"));
    resources.getKey("/XObject").replaceKey(HeadName, drawing);
    const QPDFObjectHandle::Rectangle paper = page.getMediaBox().getArrayAsRectangle();
    const std::string content = page.placeFormXObject(drawing, HeadName, paper);
    page.addPageContents(pdf.newStream("q\n"), true);
    page.addPageContents(pdf.newStream("\nQ\n" + content), false);
}

} // namespace

QByteArray layOver(const QByteArray &document, const QByteArray &heads)
{
    try {
        QPDF pdf, other;
        read(pdf, document);
        read(other, heads);
        auto pages = QPDFPageDocumentHelper(pdf).getAllPages();
        auto headPages = QPDFPageDocumentHelper(other).getAllPages();
        for (size_t i = 0; i < std::min(pages.size(), headPages.size()); ++i)
            layOver(pdf, pages[i], headPages[i]);
        const QPDFObjectHandle title = other.getTrailer().getKey("/Info");
        pdf.getTrailer().replaceKey("/Info", pdf.copyForeignObject(title));
        QPDFWriter writer(pdf);
        writer.setOutputMemory();
        writer.write();
        const std::unique_ptr<Buffer> buffer(writer.getBuffer());
        return QByteArray(reinterpret_cast<const char *>(buffer->getBuffer()),
                          int(buffer->getSize()));
    } catch (const std::exception &error) {
        qCDebug(formLog) << "The heads failed:" << error.what();
        return QByteArray();
    }
}
