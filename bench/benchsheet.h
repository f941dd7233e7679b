#pragma once

#include "chart/canvasiteminfo.h"
#include "chart/sheethost.h"
#include "sheet/projectscene.h"

#include <QGraphicsRectItem>
#include <QGraphicsScene>
#include <QUndoGroup>

#include <memory>
#include <vector>

/// A chart of rows of notes, each joined to the next. A later note of a row faces
/// the one before; the last one of a row leads back to the next.
struct BenchChart {
    explicit BenchChart(int notes);

    struct Link {
        int start; ///< index of a note
        int end;
    };
    std::vector<CanvasItemInfo> notes;
    std::vector<CanvasItemInfo> lines;
    std::vector<Link> links; ///< of the line with the same index
};

/// A program without a window.
class BenchHost : public SheetHost
{
public:
    int selectedTool() const override { return SelectTool; }
    bool isGridEnabled() const override { return true; }
    QMenu *getSceneContextMenu() override { return nullptr; }
    QMenu *getNoteContextMenu() override { return nullptr; }
    QMenu *getLineContextMenu() override { return nullptr; }
    Sticky *getNoteWithGUID(const QString &) const override { return nullptr; }
    ChartSheet *getSceneForParent(const QString &) const override { return nullptr; }
    void onCausalFactorChanged(Sticky *) override {}
    QWidget *getDialogParent() override { return nullptr; }
};

/// A chart on a sheet of the program.
struct BenchSheet {
    explicit BenchSheet(const BenchChart &chart);

    BenchHost host;
    QUndoGroup group;
    ProjectScene scene;
    std::vector<Sticky *> notes;
    std::vector<Line *> lines;
};

/// A box that takes the ends of its paths along.
class BareBox : public QGraphicsRectItem
{
public:
    explicit BareBox(const QRectF &rect);

    /// The end of the path follows the place in the box.
    void attach(QGraphicsPathItem *path, const QPointF &place) { hooks.push_back({path, place}); }

protected:
    QVariant itemChange(GraphicsItemChange change, const QVariant &value) override;

private:
    struct Hook {
        QGraphicsPathItem *path;
        QPointF place;
    };
    std::vector<Hook> hooks;
};

/// The same chart as bare items: a box and a text for a note, a path for a line.
struct BareSheet {
    explicit BareSheet(const BenchChart &chart);

    QGraphicsScene scene;
    std::vector<BareBox *> boxes;
    std::vector<QGraphicsPathItem *> paths;
};

void addBareNote(QGraphicsScene &scene, const CanvasItemInfo &info);
