#include "support/pageinfo.h"

#include <QHash>
#include <QPageLayout>
#include <QPrinter>
#include <QStringList>

#include <cmath>

namespace
{

constexpr double CentimetresPerInch = 2.54;

struct Paper {
    QSize full;      // device pixels, landscape, like the next
    QSize printable; // inside the margins that the printer wants by itself
    int resolution;
};

Paper measurePaper(int pageSize)
{
    QPrinter printer(QPrinter::ScreenResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setPageSize(QPageSize(QPageSize::PageSizeId(pageSize)));
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
    const bool known =
        number >= 0 && number <= QPageSize::LastPageSize && number != QPageSize::Custom;
    return known ? number : ProjectSettings::Tabloid;
}

int toPixels(double centimetres, int resolution)
{
    return int(centimetres / CentimetresPerInch * resolution);
}

} // namespace

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
