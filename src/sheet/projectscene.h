#pragma once

#include "chart/chartsheet.h"
#include "editing/line.h"

#include <QGraphicsScene>
#include <QMultiHash>
#include <QSet>
#include <QTimer>

class BoxItem;
class FormView;
class HeaderItem;
class ProjectFile;
class QUndoGroup;
class QUndoStack;

/// One chart sheet: a grid of whole pages that grows and shrinks with its items.
/// It is a secondary sheet exactly when it has a parent note.
class ProjectScene : public QGraphicsScene, public ChartSheet
{
    Q_OBJECT

public:
    /// `pageSize` is one page in scene units. The stack of the sheet joins `group`.
    ProjectScene(SheetHost *host, QUndoGroup *group, ProjectFile *projectFile, FormView *formView,
                 QSize pageSize, Sticky *parentNote = nullptr);
    ~ProjectScene() override;

    static QSizeF gridToSize(int columns, int rows);
    /// The size of a new item, and of the landing rectangle.
    static QSizeF getStandardItemSize(int tool);

    QUndoStack *getUndoStack() const { return undoStack; }
    /// Null on the main sheet.
    Sticky *getParentNote() const { return parentNote; }
    bool isPrintEnabled() const { return printEnabled; }
    QSize getPageSize() const { return pageSize; }
    QPointF getLastContextMenuPos() const { return lastContextMenuPos; }
    int getNumVerticalPages() const;
    int getNumHorizontalPages() const;
    QRectF getPageBoundsAtPoint(const QPointF &p) const;
    bool pageContainsItems(const QRectF &page) const;
    QRectF projectItemsBoundingRect() const;

    /// Loss first, Loss Of Control second; null where there is none.
    QPair<Sticky *, Sticky *> getLossAndLoCNotes() const;
    QList<Sticky *> getAllCausalFactors() const;
    QList<Sticky *> getAllNotes() const;
    QList<Sticky *> getSelectedNotes() const;
    QList<Line *> getSelectedLines() const;
    QList<BoxItem *> getSelectedBoxes() const;
    QList<ProjectItem *> getProjectItems() const;
    QList<ProjectItem *> getSelectedProjectItems() const;

    void setPrintEnabled(bool enabled) { printEnabled = enabled; }
    void setPagesGrid(int rows, int columns);
    void setPageSize(QSize size);
    void setRenderBackground(bool render, bool showFooters, bool showHeader);
    /// As new, except for the default font. Deletes every item that the sheet
    /// ever made, also those that only its undo steps still knew.
    void clear();

    /// The user's act, with an undo step; nothing for a cancelled image.
    void createItemAt(QPointF scenePos, int tool);
    /// For files and seeded sheets: no undo step. Null for an unknown type.
    ProjectItem *loadCanvasItem(CanvasItemInfo &info);

    /// Refusals are told to the user and change nothing.
    bool setSelectedNotesRole(const QString &role);
    bool checkRoleChangePermission(const QString &role, const QList<Sticky *> &notes);
    void deleteSelectedItems();
    void setSelectedNotesAlignment(Qt::Alignment alignment);
    void setSelectedNotesProperty(const QByteArray &property, const QVariant &value);
    void setSelectedLinesProperty(const QByteArray &property, const QVariant &value);
    void setSelectedLinesArrowStyle(Line::ArrowType style);
    void setSelectedLinesStyle(Qt::PenStyle style);
    void setItemsFont(const QFont &font);
    void selectAll();
    void finishEditing();
    /// Whether the key must go to the note under edit rather than to a shortcut.
    bool handleEditingCommand(QKeyEvent *event) const;
    void hideHighlightItem();

    SheetHost *getHost() const override { return host; }
    QString getOwnerGUID() const override;
    int getViewZoom() const override;
    Sticky *getNoteAt(QPointF scenePos) const override;
    ProjectItem *getItemWithGUID(const QString &guid) const override;
    int getFirstUnusedCFNumber() const override;
    void setHighlightToNote(Sticky *note) override;
    void dragNewLine(const QPointF &scenePos) override;
    void setConnectedFormField(const QString &id, const QString &text) override;
    void itemEntered(ProjectItem *item) override;
    void itemLeft(ProjectItem *item) override;

public slots:
    ProjectItem *createCanvasItem(CanvasItemInfo &info, bool undo = true);
    void checkCanvasSize();
    void updatePageNumberItems();
    void onItemMoveStarted();
    void onItemMoveFinished(BoxItem *item, const QRectF &oldGeometry);
    void onRequestCausalFactorNumberChange(Sticky *note);
    void onStickyTextEdited(Sticky *source, QString from, QString to);
    void onEditingStarted(Sticky *note);
    void onSelectionChanged();
    void onFormValueChanged(QString id, QString value);

signals:
    void textEditingChanged(bool editing);
    void selectionChanged(QList<QGraphicsItem *> items);
    void causalFactorAdded(Sticky *note);
    void causalFactorRemoved(Sticky *note);
    void headerEditRequested();

protected:
    void drawBackground(QPainter *painter, const QRectF &rect) override;
    void dragEnterEvent(QGraphicsSceneDragDropEvent *event) override;
    void dragMoveEvent(QGraphicsSceneDragDropEvent *event) override;
    void dragLeaveEvent(QGraphicsSceneDragDropEvent *event) override;
    void dropEvent(QGraphicsSceneDragDropEvent *event) override;
    void mousePressEvent(QGraphicsSceneMouseEvent *event) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent *event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent *event) override;
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QGraphicsSceneContextMenuEvent *event) override;

private:
    bool printEnabled = true;
    SheetHost *host; // not owned, like the next two; all outlive the sheet
    ProjectFile *projectFile;
    FormView *formView;
    Line *newLine = nullptr;                    // being drawn with a line tool
    QGraphicsRectItem *highlightItem = nullptr; // shows where something will land
    QSize pageSize;
    QFont defaultFont;
    QUndoStack *undoStack;
    bool renderBackground = true;
    QList<QGraphicsItem *> footerItems;
    Sticky *parentNote; // on the main sheet, outlives this one
    Sticky *editingNote = nullptr;
    QTimer canvasCheckTimer;
    HeaderItem *headerItem = nullptr; // main sheet only
    QPointF lastContextMenuPos;
    QHash<QString, ProjectItem *> itemIndex; // by GUID, of items on the sheet
};
