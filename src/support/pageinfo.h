#pragma once

#include "support/projectsettings.h"

#include <QPageSize>
#include <QRect>
#include <QString>

/// The paper that settings and project files mean by a number, whatever the toolkit counts today;
/// not valid for numbers that mean none.
QPageSize getPaperSize(int number);

/// Paper and margins, read from the settings each time one is made, so a new
/// one is the current truth. The orientation is always landscape.
class PageInfo
{
public:
    /// The shortest side of a page that a sheet or a printer is given; scene units.
    static constexpr int MinimumPage = 50;

    /// Margins that are no numbers, negative or leave no page count as not set.
    PageInfo();

    /// Device pixels of a printer at screen resolution, which are scene units.
    /// y is the right margin; only the height knows the top one.
    QRect getPrintableArea();
    /// Left, right, top, bottom, joined by commas, six significant digits each.
    QString getMarginsString() const;
    /// Whether the margins leave a page on the paper, as numbered in files.
    bool leavesPageOn(int pageSize) const;

    int pageSize = ProjectSettings::Tabloid;
    double leftMargin = 0; ///< centimetres, like all four
    double rightMargin = 0;
    double topMargin = 0;
    double bottomMargin = 0;

private:
    bool readMargins();
    void deriveMargins();
    QRect getAreaOn(const QSize &paper, int resolution) const;
};
