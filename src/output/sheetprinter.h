#pragma once

#include <QList>
#include <QRectF>
#include <QString>
#include <QVector>

#include <functional>

class ProjectScene;
class QPainter;
class QPrinter;
struct PdfOutlineEntry;

/// Sheets on paper and as pictures. One scene unit is one pixel, and one pixel of a printer
/// at screen resolution.
namespace SheetPrinter
{

/// Whether prints, documents and pictures show header, page labels and legend. Off at first; the
/// user's choice for all projects.
bool isDecorated();
void setDecorated(bool decorated);

/// The paper of the settings, landscape.
void setUpPage(QPrinter &printer);

/// What a document calls itself: the incident's title in one line, else the project's name.
QString makeTitle(const QString &incidentTitle, const QString &projectName);

/// Told before each page or strip how far the work has come; false stops it, which counts as a
/// failure. May be empty.
using GoOn = std::function<bool(int done, int total)>;

/// The main sheet and then the others, each if its flag says so, on the pages of the main
/// sheet's grid. False if the painter could not start. The outline takes the printed sheets.
bool paint(QPrinter &printer, ProjectScene *mainScene, const QList<ProjectScene *> &factorScenes,
           QVector<PdfOutlineEntry> *outline = nullptr, const GoOn &goOn = {});

/// One paper sheet for each page of the grid that holds something. Returns how often a new one
/// was begun. Asks before each one, if there is somebody to ask; places count empty pages too.
int paintScene(ProjectScene *scene, QPainter &painter, QPrinter &printer, int verticalPages,
               int horizontalPages, const std::function<bool(int place)> &goOn = {});

/// A document of what paint() prints, with title, program, date and outline. Returns why it
/// failed, in the user's words; empty after success. A failure leaves the file as it was.
QString writePDF(ProjectScene *mainScene, const QList<ProjectScene *> &factorScenes,
                 const QString &title, const QString &path, const GoOn &goOn = {});

/// The scene inside the bound, without grid and selection. Returns what writePDF() does; an empty
/// bound and one of more than 400 megapixels are refused before anything is drawn.
QString writePNG(ProjectScene *scene, const QRectF &bound, const QString &path,
                 const GoOn &goOn = {});

} // namespace SheetPrinter
