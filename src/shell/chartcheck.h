#pragma once

#include <QList>
#include <QPointer>
#include <QStringList>
#include <QTimer>
#include <QToolButton>

class ProjectItem;
class ProjectScene;
class SheetBook;

/// Says in the status bar what on the charts still wants a hand, and leads there, one place a
/// click. It looks once the user pauses, so that no edit waits for it.
class ChartCheck : public QToolButton
{
    Q_OBJECT

public:
    explicit ChartCheck(SheetBook *book, QWidget *parent = nullptr);

public slots:
    /// Something has changed: looks again soon.
    void lookSoon() { pause.start(); }
    void look();

signals:
    /// The item is null where a whole sheet is meant.
    void placeWanted(ProjectScene *sheet, ProjectItem *item);

private:
    struct Place {
        QPointer<ProjectScene> sheet;
        QPointer<ProjectItem> item;
    };

    void lookAt(ProjectScene *sheet);
    void showFindings();
    void goToNext();

    SheetBook *book; // not owned
    QTimer pause;
    QList<Place> empty;
    QList<Place> unconnected;
    QList<Place> torn; // by a page's edge
    QList<Place> unworked;
    QStringList unworkedNumbers;
    QList<Place> places; // all of them, in the order of the words
    int next = 0;        // of the places
};
