#pragma once

#include <QGraphicsView>
#include <QPointer>
#include <QTimer>
#include <QVector>

#include <optional>

class ProjectScene;
class QRubberBand;
class Sticky;

/// The view of one sheet, with a rubber band of its own, scrolling near the
/// edges during a drag, and zoom around the pointer.
class GraphWidget : public QGraphicsView
{
    Q_OBJECT

public:
    GraphWidget(ProjectScene *scene, QWidget *parent);

    /// The status tip of every sheet.
    static QString getZoomTip();

    ProjectScene *getProjectScene() const { return projectScene; }
    /// Percent.
    int getZoom() const { return zoom; }
    /// The page at the middle of what is shown, in scene units.
    QRectF getCurrentPageBounds() const;

    /// The greatest zoom that shows all of the area, in scene units.
    int getZoomFor(const QRectF &area) const;

    /// Stores the zoom and applies it.
    void setZoomScale(int percent);
    /// Marks notes on the screen alone, one of them (or none) more than the others.
    void setMarks(const QVector<QPointer<Sticky>> &notes, const Sticky *current);
    /// What is being dragged goes back, a rubber band selects nothing.
    void giveUpDrag();

public slots:
    void onScrollTimeout();

signals:
    /// True to zoom in. Whoever listens changes the zoom before the signal returns.
    void doZoom(bool zoomIn);

protected:
    bool event(QEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void drawForeground(QPainter *painter, const QRectF &rect) override;

private slots:
    void onSceneRectChanged(const QRectF &rect);

private:
    enum ScrollDirection { ScrollLeft = 1, ScrollRight = 2, ScrollUp = 4, ScrollDown = 8 };

    void setPaperPalette();
    /// The sheet may change its size from now on without moving on the screen.
    void holdView();
    void letGo() { setSceneRect(QRectF()); }
    void scrollBy(const QPoint &moved);
    void scrollOriginTo(const QPoint &pos);
    void endDrag();
    void startPanning(const QPoint &pos);
    void pan(const QPoint &pos);
    bool isOverEditedText(const QPoint &pos) const;
    void scrollSideways(QWheelEvent *event);
    /// In scene units.
    QPointF getViewCentre() const;
    void updateEdgeScrolling(const QPoint &pos);
    void updateRubberBand(const QPoint &pos);

    QTimer scrollTimer;
    int scrollDirections = 0;
    int scrollSpeed = 0; // pixels a tick
    QRubberBand *rubberBand;
    QPoint bandOrigin; // scene coordinates, so that it stays put while the view scrolls
    QPoint bandEnd;    // view coordinates
    bool bandPending = false;
    bool holding = false;         // under a drag
    std::optional<QPoint> panPos; // of the pointer, with the middle button down
    QCursor cursorBeforePanning;
    ProjectScene *projectScene; // not owned
    int zoom = 100;
    QVector<QPointer<Sticky>> marks;
    const Sticky *currentMark = nullptr; // compared, never followed
};
