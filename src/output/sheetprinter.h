#pragma once

#include <QList>
#include <QRectF>

class ProjectScene;
class QPainter;
class QPrinter;

/// Sheets on paper and as pictures. One scene unit is one pixel, and one pixel of a printer
/// at screen resolution.
namespace SheetPrinter
{

/// The paper of the settings, landscape.
void setUpPage(QPrinter &printer);

/// The main sheet and then the others, each if its flag says so, on the pages of the main
/// sheet's grid. False if the painter could not start.
bool paint(QPrinter &printer, ProjectScene *mainScene, const QList<ProjectScene *> &factorScenes);

/// One paper sheet for each page of the grid that holds something.
void paintScene(ProjectScene *scene, QPainter &painter, QPrinter &printer, int verticalPages,
                int horizontalPages);

/// The scene inside the bound, without grid and selection. False for an empty bound, which
/// leaves no file, and for a file that can't be written.
bool writePNG(ProjectScene *scene, const QRectF &bound, const QString &path);

} // namespace SheetPrinter
