#include "support/pageinfo.h"

#include <QHash>
#include <QPageLayout>
#include <QPrinter>
#include <QStringList>

#include <cmath>

namespace
{

constexpr double CentimetresPerInch = 2.54;

// By their numbers. Those of the papers from A3Extra on are the toolkit's own.
constexpr QPageSize::PageSizeId Papers[] = {
    QPageSize::A4,      QPageSize::B5,  QPageSize::Letter, QPageSize::Legal,  QPageSize::Executive,
    QPageSize::A0,      QPageSize::A1,  QPageSize::A2,     QPageSize::A3,     QPageSize::A5,
    QPageSize::A6,      QPageSize::A7,  QPageSize::A8,     QPageSize::A9,     QPageSize::B0,
    QPageSize::B1,      QPageSize::B10, QPageSize::B2,     QPageSize::B3,     QPageSize::B4,
    QPageSize::B6,      QPageSize::B7,  QPageSize::B8,     QPageSize::B9,     QPageSize::C5E,
    QPageSize::Comm10E, QPageSize::DLE, QPageSize::Folio,  QPageSize::Ledger, QPageSize::Tabloid,
    QPageSize::Custom,  QPageSize::A10};
constexpr int PaperCount = sizeof(Papers) / sizeof(*Papers);
static_assert(QPageSize::A3Extra == PaperCount);

struct Paper {
    QSize full;      // device pixels, landscape, like the next
    QSize printable; // inside the margins that the printer wants by itself
    int resolution;
};

Paper measurePaper(int pageSize)
{
    QPrinter printer(QPrinter::ScreenResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setPageSize(getPaperSize(pageSize));
    printer.setPageOrientation(QPageLayout::Landscape);
    const int resolution = printer.resolution();
    const QPageLayout layout = printer.pageLayout();
    return {layout.fullRectPixels(resolution).size(), layout.paintRectPixels(resolution).size(),
            resolution};
}

// A scratch printer costs half a millisecond, and paper does not change.
Paper getPaper(int pageSize)
{
    static QHash<int, Paper> papers;
    auto paper = papers.find(pageSize);
    if (paper == papers.end())
        paper = papers.insert(pageSize, measurePaper(pageSize));
    return *paper;
}

int readPageSize()
{
    const int number = ProjectSettings().getPageSize();
    return getPaperSize(number).isValid() ? number : ProjectSettings::Tabloid;
}

int toPixels(double centimetres, int resolution)
{
    return int(centimetres / CentimetresPerInch * resolution);
}

} // namespace

QPageSize getPaperSize(int number)
{
    if (number < 0 || number > QPageSize::LastPageSize)
        return QPageSize();
    return QPageSize(number < PaperCount ? Papers[number] : QPageSize::PageSizeId(number));
}

PageInfo::PageInfo()
{
    if (!readMargins())
        deriveMargins();
}

QRect PageInfo::getPrintableArea()
{
    pageSize = readPageSize();
    const Paper paper = getPaper(pageSize);
    return getAreaOn(paper.full, paper.resolution);
}

QString PageInfo::getMarginsString() const
{
    QStringList texts;
    for (double margin : {leftMargin, rightMargin, topMargin, bottomMargin})
        texts.append(QString::number(margin, 'g', 6));
    return texts.join(",");
}

bool PageInfo::readMargins()
{
    const QStringList texts = ProjectSettings().getMargins();
    if (texts.size() != 4)
        return false;
    leftMargin = texts.at(0).toDouble();
    rightMargin = texts.at(1).toDouble();
    topMargin = texts.at(2).toDouble();
    bottomMargin = texts.at(3).toDouble();
    return leavesPageOn(readPageSize());
}

void PageInfo::deriveMargins()
{
    pageSize = readPageSize();
    const Paper paper = getPaper(pageSize);
    const QSize difference = paper.full - paper.printable;
    const double perPixel = CentimetresPerInch / paper.resolution;
    leftMargin = rightMargin = difference.width() / 2.0 * perPixel;
    topMargin = bottomMargin = difference.height() / 2.0 * perPixel;
}

bool PageInfo::leavesPageOn(int pageSize) const
{
    const Paper paper = getPaper(pageSize);
    // No paper is that wide, and beyond it pixels would not fit an int.
    constexpr double Limit = 1000;
    for (double margin : {leftMargin, rightMargin, topMargin, bottomMargin}) {
        if (!std::isfinite(margin) || margin < 0 || margin > Limit)
            return false;
    }
    const QSize page = getAreaOn(paper.full, paper.resolution).size();
    return page.width() >= MinimumPage && page.height() >= MinimumPage;
}

QRect PageInfo::getAreaOn(const QSize &paper, int resolution) const
{
    const int left = toPixels(leftMargin, resolution);
    const int right = toPixels(rightMargin, resolution);
    const int top = toPixels(topMargin, resolution);
    const int bottom = toPixels(bottomMargin, resolution);
    return QRect(left, right, paper.width() - left - right, paper.height() - top - bottom);
}
