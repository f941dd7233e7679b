#pragma once

#include "chart/chartsheet.h"
#include "chart/line.h"

#include <QFont>
#include <QGraphicsScene>
#include <QMultiHash>
#include <QPointer>
#include <QSet>
#include <QTimer>
#include <QUndoStack>

#include <optional>
#include <set>
#include <utility>

class BoxItem;
class FooterItem;
class FormView;
class HeaderItem;
class InfoItem;
class ProjectFile;
class QMimeData;
class QUndoGroup;

/// One chart sheet: a grid of whole pages that grows and shrinks with its items.
/// It is a secondary sheet exactly when it has a parent note.
class ProjectScene : public QGraphicsScene, public ChartSheet
{
    Q_OBJECT

public:
    static constexpr int MaximumPages = 1000; ///< in each direction
    using PagePlace = std::pair<int, int>;    ///< row and column, from 0

    /// `pageSize` is one page in scene units. The stack of the sheet joins `group`.
    /// Without a project file nothing turns dirty, without a form nothing follows it.
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
    /// The page rectangle; `p` is not clamped to the sheet.
    QRectF getPageBoundsAtPoint(const QPointF &p) const;
    bool pageContainsItems(const QRectF &page) const;
    /// Of a grid of pages of this size from (0,0), those that contain items.
    std::set<PagePlace> getFilledPages(const QSizeF &page, int rows, int columns) const;
    /// From (0,0) to the farthest right and bottom of what a project saves.
    QRectF projectItemsBoundingRect() const;
    /// Takes the box that tells what the sheet is for.
    void setInfoBox(InfoItem *box);
    /// Page by page; pages beyond any that is printed have none.
    QList<FooterItem *> getFooters() const;

    /// Loss first, Loss Of Control second; null where there is none.
    QPair<Sticky *, Sticky *> getLossAndLoCNotes() const;
    QList<Sticky *> getAllCausalFactors() const;
    QList<Sticky *> getAllNotes() const;
    /// Page rows from the top, in each its pages, and on a page from left to right.
    QList<Sticky *> getNotesInReadingOrder() const;
    QList<Sticky *> getSelectedNotes() const;
    QList<Line *> getSelectedLines() const;
    QList<BoxItem *> getSelectedBoxes() const;
    QList<ProjectItem *> getProjectItems() const;
    QList<ProjectItem *> getSelectedProjectItems() const;
    /// All project items in no order, which takes a small part of the time.
    QList<ProjectItem *> getItemsUnsorted() const { return itemIndex.values(); }
    /// What came first lies below; selected items, which show above others meanwhile, keep their
    /// place.
    QList<ProjectItem *> sortBottomFirst(QList<ProjectItem *> items) const;

    void setPrintEnabled(bool enabled) { printEnabled = enabled; }
    /// At least one page and at most MaximumPages each way.
    void setPagesGrid(int rows, int columns);
    /// Scene units; lays the pages out anew.
    void setPageSize(QSize size);
    /// Off, the sheet is without grid, frames, footers, header and box.
    /// A header that the settings hide stays hidden.
    void setRenderBackground(bool render, bool showFooters, bool showHeader);
    /// As it goes on paper until setRenderBackground() is called again: without grid, frames and
    /// box. Only decorated it keeps its header and footers.
    void dressForPaper(bool decorated);
    /// As new. Deletes every item that the sheet ever made, also those that only its undo steps
    /// still knew.
    void clear();

    /// The user's act, with an undo step; nothing for a cancelled image.
    void createItemAt(QPointF scenePos, int tool);
    /// For files and seeded sheets: no undo step. Null for an unknown type.
    ProjectItem *loadCanvasItem(CanvasItemInfo &info);

    /// Refusals are told to the user and change nothing.
    bool setSelectedNotesRole(const QString &role);
    bool checkRoleChangePermission(const QString &role, const QList<Sticky *> &notes);
    /// Why these notes may not take the role, in the user's words; empty if they may.
    QString getRoleRefusal(const QString &role, const QList<Sticky *> &notes) const;
    /// Asks first when a sheet goes with a note.
    void deleteSelectedItems();
    void setSelectedNotesAlignment(Qt::Alignment alignment);
    void setSelectedNotesProperty(const QByteArray &property, const QVariant &value);
    void setSelectedLinesProperty(const QByteArray &property, const QVariant &value);
    void setSelectedLinesArrowStyle(Line::ArrowType style);
    void setSelectedLinesStyle(Qt::PenStyle style);
    /// The new font of all notes without one of their own.
    void setItemsFont(const QFont &font);
    void selectAll();
    /// Selects the note that comes next to the selected one in the reading, or before it, and
    /// shows it. False when there is none, and while a text is edited.
    bool walkNotes(bool forward);
    /// For what no undo step tells of: undoing others doesn't make the project look clean.
    void markDirty();
    void finishEditing();
    /// What is being typed becomes an undo step of its own, and the editing goes on.
    void commitEditing();
    /// What is being typed reaches twins and form, and the editing goes on.
    void shareEditedText();
    /// Whether the key must go to the note under edit rather than to a shortcut.
    bool handleEditingCommand(QKeyEvent *event) const;
    void hideHighlightItem();
    /// Whether the key would change the chart or its selection under a drag or a line that is
    /// being drawn, which then would take others along or miss a step.
    bool disturbsDrag(const QKeyEvent *event) const;
    /// The line being drawn goes; nothing when there is none.
    void giveUpLine();
    /// What the mouse drags goes back to where it was; nothing when it drags nothing.
    void giveUpDrag();
    /// Takes away what a line tool has marked on notes; the marks of selected lines stay.
    void clearEdgeMarks();

    SheetHost *getHost() const override { return host; }
    QString getOwnerGUID() const override { return ownerGUID; }
    int getViewZoom() const override;
    Sticky *getNoteAt(QPointF scenePos) const override;
    /// Of two with one GUID the one that came last.
    ProjectItem *getItemWithGUID(const QString &guid) const override;
    int getFirstUnusedCFNumber() const override;
    void setHighlightToNote(Sticky *note) override;
    void dragNewLine(const QPointF &scenePos) override;
    void setConnectedFormField(const QString &id, const QString &text) override;
    void itemEntered(ProjectItem *item) override;
    void itemLeft(ProjectItem *item) override;

public slots:
    ProjectItem *createCanvasItem(CanvasItemInfo &info, bool undo = true);
    /// As many pages as the items need.
    void checkCanvasSize();
    void updatePageNumberItems();
    void onItemMoveStarted();
    void onItemMoveFinished(BoxItem *item, const QRectF &oldGeometry);
    void onBoxesDragged(const BoxGeometries &before);
    void onRequestCausalFactorNumberChange(Sticky *note);
    void onLineEndDragged(Line *line, const LineEnds &before);
    void onStickyTextEdited(Sticky *source, QString from, QString to);
    void onEditingStarted(Sticky *note);
    void onSelectionChanged();
    void onFormValueChanged(QString id, QString value);

signals:
    void textEditingChanged(bool editing);
    void selectionChanged(QList<QGraphicsItem *> items);
    void causalFactorAdded(Sticky *note);
    void causalFactorRemoved(Sticky *note);
    /// Sent while the note's role and number still stand, though a step has perhaps taken
    /// it off the sheet already.
    void factorGoes(Sticky *note);
    /// An undo or a redo has ended.
    void stepTaken();
    void headerEditRequested();
    /// The user wants to see a factor's sheet, or the factor whose twin this is.
    void factorFollowed(Sticky *note);

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
    void focusOutEvent(QFocusEvent *event) override;
    void contextMenuEvent(QGraphicsSceneContextMenuEvent *event) override;

private slots:
    void onNoteBecameCausalFactor(Sticky *note);
    void onNoteFollowed(Sticky *note);
    void onNoteWasCausalFactor(Sticky *note);
    void onStepTaken(int index);

private:
    /// What footers show; with another look they are made anew.
    struct FooterLook {
        bool operator==(const FooterLook &other) const
        {
            return pageNumbers == other.pageNumbers && legend == other.legend &&
                   projectName == other.projectName && pageSize == other.pageSize;
        }

        bool pageNumbers = false;
        bool legend = false;
        QString projectName;
        QSize pageSize;
    };

    bool isSecondary() const { return parentNote != nullptr; }

    void createSingletonItems();
    void createHeader();
    void dress(bool background, bool footers, bool header);
    void deleteItems();
    void removeAndDelete(QGraphicsItem *item);
    void fitPages(const QRectF &bound);
    void checkCanvasAfterAdding();
    void extendBound(const ProjectItem *item);
    void forgetBound();
    void checkMovingItems();
    void splitMovingItems();
    void drawGrid(QPainter *painter, const QRectF &rect) const;
    void drawPageFrames(QPainter *painter) const;
    void resizeFooters(int rows, int columns);
    FooterItem *makeFooter(int row, int column);

    ProjectItem *makeItem(CanvasItemInfo &info);
    Sticky *makeNote(CanvasItemInfo &info);
    void connectDrag(BoxItem *box);
    Line *makeLine(CanvasItemInfo &info);
    ProjectItem *makeBarrier(const QString &resource, CanvasItemInfo &info);
    std::optional<QPixmap> chooseImage();
    bool askToReduce(const QPixmap &image);
    void moveHighlight(int tool, const QPointF &scenePos);

    QGraphicsItem *getItemUnder(const QGraphicsSceneContextMenuEvent *event) const;
    void startLine(int tool, const QPointF &scenePos);
    void finishLine(Sticky *noteUnderPointer);
    void finishLeftLine();
    void dropLine(Line *line);
    void moveSelectedBoxes(const QPointF &step);
    bool askToDropSheet(const QString &title, const QString &text);
    QString getFormText(const Sticky *note) const;
    void fillFormField(Sticky *note);
    void takeFormField(Sticky *note);
    Sticky *getCausalFactor(int number) const;
    void moveCausalFactor(Sticky *note, int number);
    void swapCausalFactors(Sticky *note, Sticky *other);
    void renumber(Sticky *note, int number);
    bool isAlive(ProjectItem *item) const { return ownedItems.contains(item); }
    void reportSelection();
    void tellSelection();

    bool printEnabled = true;
    SheetHost *host; // not owned, like the next two; all outlive the sheet
    ProjectFile *projectFile;
    FormView *formView;
    Line *newLine = nullptr;                    // being drawn with a line tool
    QGraphicsRectItem *highlightItem = nullptr; // shows where something will land
    QSize pageSize;
    QPointer<QUndoStack> undoStack;         // child of the group, which may go first
    int stepIndex = 0;                      // of the stack, as it was last told
    const QUndoCommand *nextStep = nullptr; // what a redo would have taken then; not owned
    bool renderBackground = true;
    QList<QList<FooterItem *>> footerItems; // a row of pages each
    FooterLook footerLook;                  // of those that stand
    Sticky *parentNote;                     // on the main sheet, never followed
    QString ownerGUID;
    Sticky *editingNote = nullptr;
    QTimer canvasCheckTimer;
    QTimer stepTimer;                   // for all steps of one turn of the event loop
    std::optional<QRectF> restingBound; // of what a drag leaves alone; known while one goes on
    QList<ProjectItem *> movingItems;   // the others; valid with the bound
    HeaderItem *headerItem = nullptr;   // main sheet only
    InfoItem *infoBox = nullptr;        // secondary sheets only
    QPointF lastContextMenuPos;

    QMultiHash<QString, ProjectItem *> itemIndex; // by GUID, of items on the sheet
    QSet<ProjectItem *> ownedItems;               // on the sheet, or known to undo steps only
    QHash<const ProjectItem *, int> entries;      // of items on the sheet, by when they came
    int lastEntry = 0;
    QSet<QGraphicsItem *> removedExtras; // deleted by the user, not project items
    std::optional<QRectF> itemsBound;    // known while items come in one after the other
    QTimer boundTimer;                   // forgets it at the end of the turn
    int selectionReports = 0;            // in this turn of the event loop
    QTimer selectionTimer;
    QList<QGraphicsItem *> toldSelection; // as last reported; its items may be gone
};
