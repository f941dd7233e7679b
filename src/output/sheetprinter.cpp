#include "output/sheetprinter.h"

#include "chart/sheethost.h"
#include "chart/sticky.h"
#include "output/pdfoutline.h"
#include "output/pngwriter.h"
#include "sheet/projectscene.h"
#include "support/filereplacement.h"
#include "support/pageinfo.h"
#include "support/version.h"

#include <QCoreApplication>
#include <QPainter>
#include <QPrinter>
#include <QScopeGuard>
#include <QSettings>

namespace
{

constexpr double CentimetresPerInch = 2.54;
constexpr char DecorationsKey[] = "printDecorations";
constexpr int LongestEntry = 100; // characters of a note
constexpr int BandHeight = 512;   // pixels of a picture that stand in memory at once
constexpr qint64 MostPixels = 400000000;

int toDevice(double centimetres, const QPrinter &printer)
{
    return int(centimetres / CentimetresPerInch * printer.resolution());
}

/// Where a page of a sheet lies on the paper, in device units.
QRectF getTarget(const QPrinter &printer)
{
    const PageInfo page;
    const QRect paper = printer.pageLayout().fullRectPixels(printer.resolution());
    const int left = toDevice(page.leftMargin, printer);
    const int right = toDevice(page.rightMargin, printer);
    const int top = toDevice(page.topMargin, printer);
    const int bottom = toDevice(page.bottomMargin, printer);
    // The right margin stands in for the top one, as in the printable area of a sheet.
    return QRectF(left, right, paper.width() - left - right, paper.height() - top - bottom);
}

QImage renderBand(ProjectScene *scene, const QRectF &source, const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    scene->render(&painter, image.rect(), source, Qt::KeepAspectRatio);
    return image;
}

bool writeBands(PngWriter &writer, ProjectScene *scene, const QRectF &bound, const QSize &size,
                const SheetPrinter::GoOn &goOn)
{
    const double scale =
        qMin(size.width() / bound.width(), size.height() / bound.height()); // near 1
    for (int top = 0; top < size.height(); top += BandHeight) {
        if (goOn && !goOn(top, size.height()))
            return false;
        const QSize band(size.width(), qMin(BandHeight, size.height() - top));
        const QRectF source(bound.x(), bound.y() + top / scale, bound.width(),
                            band.height() / scale);
        if (!writer.writeRows(renderBand(scene, source, band)))
            return false;
    }
    return true;
}

/// The start of a note, with no character cut in two.
QString makeEntry(const QString &text)
{
    if (text.length() <= LongestEntry)
        return text.simplified();
    const bool isPair = text.at(LongestEntry).isLowSurrogate();
    return text.left(LongestEntry - (isPair ? 1 : 0)).simplified() + QChar(0x2026);
}

/// As on the sheet's tab, and a factor's text.
QString getSheetName(const ProjectScene *scene)
{
    if (scene->getOwnerGUID().isEmpty())
        return QCoreApplication::translate("SheetPrinter", "ECS Chart");
    const Sticky *owner = scene->getHost()->getNoteWithGUID(scene->getOwnerGUID());
    if (!owner)
        return QCoreApplication::translate("SheetPrinter", "Causal Factor");
    const QString text = makeEntry(owner->getText());
    const QString name = QCoreApplication::translate("SheetPrinter", "Causal Factor %1")
                             .arg(owner->getCausalFactorNumber());
    return text.isEmpty() ? name : name + ": " + text;
}

} // namespace

bool SheetPrinter::isDecorated()
{
    return QSettings().value(DecorationsKey, false).toBool();
}

void SheetPrinter::setDecorated(bool decorated)
{
    QSettings().setValue(DecorationsKey, decorated);
}

QString SheetPrinter::makeTitle(const QString &incidentTitle, const QString &projectName)
{
    const QString title = incidentTitle.simplified();
    return title.isEmpty() ? projectName : title;
}

void SheetPrinter::setUpPage(QPrinter &printer)
{
    PageInfo page;
    page.getPrintableArea(); // takes the paper of the sheets, also where the setting names none
    printer.setPageSize(getPaperSize(page.pageSize));
    printer.setPageOrientation(QPageLayout::Landscape);
}

bool SheetPrinter::paint(QPrinter &printer, ProjectScene *mainScene,
                         const QList<ProjectScene *> &factorScenes,
                         QVector<PdfOutlineEntry> *outline, const GoOn &goOn)
{
    const int horizontalPages = mainScene->getNumHorizontalPages();
    const int verticalPages = mainScene->getNumVerticalPages();
    printer.setFullPage(true);
    QPainter painter;
    if (!painter.begin(&printer))
        return false;
    const QList<ProjectScene *> scenes = QList<ProjectScene *>({mainScene}) + factorScenes;
    const int places = verticalPages * horizontalPages;
    int done = 0;
    bool stopped = false;
    const auto goOnWithPage = [&](int place) {
        stopped = stopped || (goOn && !goOn(done + place, places * scenes.size()));
        return !stopped;
    };
    int page = 0;
    for (ProjectScene *scene : scenes) {
        const auto pass = qScopeGuard([&] { done += places; });
        if (!scene->isPrintEnabled())
            continue;
        if (scene != mainScene) {
            printer.newPage();
            ++page;
        }
        if (outline)
            outline->append({getSheetName(scene), page});
        page += paintScene(scene, painter, printer, verticalPages, horizontalPages, goOnWithPage);
        if (stopped)
            break;
    }
    if (stopped)
        printer.abort();
    return painter.end() && !stopped;
}

int SheetPrinter::paintScene(ProjectScene *scene, QPainter &painter, QPrinter &printer,
                             int verticalPages, int horizontalPages,
                             const std::function<bool(int place)> &goOn)
{
    int begun = 0;
    if (!scene->isPrintEnabled())
        return begun;
    scene->clearSelection();
    scene->dressForPaper(isDecorated());
    const auto restore = qScopeGuard([scene] { scene->setRenderBackground(true, true, true); });
    const QRectF target = getTarget(printer);
    for (const auto &[row, column] :
         scene->getFilledPages(target.size(), verticalPages, horizontalPages)) {
        if (goOn && !goOn(row * horizontalPages + column))
            return begun;
        const QPointF corner(column * target.width(), row * target.height());
        scene->render(&painter, target, QRectF(corner, target.size()), Qt::KeepAspectRatio);
        if (row < verticalPages - 1 || column < horizontalPages - 1) {
            printer.newPage();
            ++begun;
        }
    }
    return begun;
}

QString SheetPrinter::writePDF(ProjectScene *mainScene, const QList<ProjectScene *> &factorScenes,
                               const QString &title, const QString &path, const GoOn &goOn)
{
    return replaceFile(path, [&](const QString &unfinished) {
        QPrinter printer(QPrinter::ScreenResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setDocName(title);
        printer.setCreator(QString("TRAC/Ex Examiner ") + ProgramVersionText);
        printer.setOutputFileName(unfinished);
        setUpPage(printer);
        QVector<PdfOutlineEntry> outline;
        return paint(printer, mainScene, factorScenes, &outline, goOn) &&
               addOutline(unfinished, outline);
    });
}

QString SheetPrinter::writePNG(ProjectScene *scene, const QRectF &bound, const QString &path,
                               const GoOn &goOn)
{
    const QSize size(qRound(bound.width()), qRound(bound.height()));
    if (size.isEmpty())
        return QCoreApplication::translate("SheetPrinter", "There is nothing to write.");
    if (qint64(size.width()) * size.height() > MostPixels)
        return QCoreApplication::translate(
            "SheetPrinter",
            "The picture would have more than 400 megapixels. Choose a smaller area.");
    scene->clearSelection();
    scene->dressForPaper(isDecorated());
    const auto restore = qScopeGuard([scene] { scene->setRenderBackground(true, true, true); });
    return replaceFile(path, [&](const QString &unfinished) {
        PngWriter writer(unfinished);
        return writer.begin(size) && writeBands(writer, scene, bound, size, goOn) && writer.end();
    });
}
