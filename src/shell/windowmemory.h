#pragma once

#include <QRect>
#include <QString>
#include <QStringList>

class QMainWindow;

/// What the settings keep of the window from one start of the program to the next. They may hold
/// anything: what makes no sense counts as not there.
namespace WindowMemory
{

/// The window's place and where its toolbars stand.
void store(const QMainWindow &window);
/// Shows the window where it stood last, and all of it on a screen; at first maximized.
void show(QMainWindow &window);
/// Where a window of that place may stand, in the room of a screen.
QRect fitInto(const QRect &room, QRect place);

/// Percent, of the chart; 100 at first.
int getZoom();
void storeZoom(int percent);

/// The names of a project's tabs in the order that the user gave them; empty when it is the usual
/// one.
QStringList getTabs(const QString &project);
/// Those of the newest projects stay.
void storeTabs(const QString &project, const QStringList &tabs);

} // namespace WindowMemory
