#include "shell/windowmemory.h"

#include <QGuiApplication>
#include <QMainWindow>
#include <QScreen>
#include <QSettings>

#include <algorithm>

namespace
{

constexpr char PlaceKey[] = "windowPlace";
constexpr char MaximizedKey[] = "windowMaximized";
constexpr char ToolbarsKey[] = "toolbars";
constexpr char ToolbarsSumKey[] = "toolbarsSum";
constexpr char ZoomKey[] = "zoom";
constexpr char TabsKey[] = "tabs";
constexpr int MostProjects = 20;
constexpr int TitleHeight = 30; // pixels, above the place

uint getSum(const QByteArray &bytes)
{
    return qChecksum(bytes.constData(), uint(bytes.size()));
}

// The toolkit believes every number in its own bytes, so that they have to be whole.
QByteArray readToolbars()
{
    const QSettings settings;
    const QByteArray state = settings.value(ToolbarsKey).toByteArray();
    return settings.value(ToolbarsSumKey).toUInt() == getSum(state) ? state : QByteArray();
}

/// The screen that shows most of the place.
QRect getRoomFor(const QRect &place)
{
    QRect room = QGuiApplication::primaryScreen()->availableGeometry();
    const auto getShown = [&place](const QRect &screen) {
        const QRect shown = screen & place;
        return shown.isEmpty() ? 0 : qint64(shown.width()) * shown.height();
    };
    for (const QScreen *screen : QGuiApplication::screens()) {
        if (getShown(screen->availableGeometry()) > getShown(room))
            room = screen->availableGeometry();
    }
    return room;
}

/// One text for a project and its tabs; neither holds a line break.
QStringList readProjects()
{
    return QSettings().value(TabsKey).toStringList();
}

} // namespace

void WindowMemory::store(const QMainWindow &window)
{
    QSettings settings;
    settings.setValue(PlaceKey, window.normalGeometry());
    settings.setValue(MaximizedKey, window.isMaximized());
    const QByteArray state = window.saveState();
    settings.setValue(ToolbarsKey, state);
    settings.setValue(ToolbarsSumKey, getSum(state));
}

void WindowMemory::show(QMainWindow &window)
{
    const QSettings settings;
    const QRect place = settings.value(PlaceKey).toRect();
    if (place.isValid())
        window.setGeometry(fitInto(getRoomFor(place).adjusted(0, TitleHeight, 0, 0), place));
    window.restoreState(readToolbars());
    if (place.isValid() && !settings.value(MaximizedKey, true).toBool())
        window.show();
    else
        window.showMaximized();
}

QRect WindowMemory::fitInto(const QRect &room, QRect place)
{
    place.setSize(place.size().boundedTo(room.size()));
    place.moveRight(qMin(place.right(), room.right()));
    place.moveBottom(qMin(place.bottom(), room.bottom()));
    place.moveLeft(qMax(place.left(), room.left()));
    place.moveTop(qMax(place.top(), room.top()));
    return place;
}

int WindowMemory::getZoom()
{
    const int zoom = QSettings().value(ZoomKey).toInt();
    return zoom > 0 ? zoom : 100;
}

void WindowMemory::storeZoom(int percent)
{
    QSettings().setValue(ZoomKey, percent);
}

QStringList WindowMemory::getTabs(const QString &project)
{
    for (const QString &entry : readProjects()) {
        QStringList lines = entry.split('\n');
        if (lines.takeFirst() == project)
            return lines;
    }
    return {};
}

void WindowMemory::storeTabs(const QString &project, const QStringList &tabs)
{
    QStringList projects = readProjects();
    const auto isSame = [&project](const QString &entry) {
        return entry.section('\n', 0, 0) == project;
    };
    projects.erase(std::remove_if(projects.begin(), projects.end(), isSame), projects.end());
    if (!tabs.isEmpty())
        projects.prepend((QStringList(project) + tabs).join('\n'));
    QSettings().setValue(TabsKey, QStringList(projects.mid(0, MostProjects)));
}
