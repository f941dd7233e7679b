#include "chart/chartsheet.h"
#include "chart/circlednumberitem.h"
#include "chart/imagepreviewdialog.h"
#include "chart/notepicture.h"
#include "chart/notetext.h"
#include "chart/resizegrip.h"
#include "chart/sheethost.h"
#include "chart/sticky.h"

#include <QAbstractTextDocumentLayout>
#include <QGraphicsScene>
#include <QGraphicsSceneContextMenuEvent>
#include <QGraphicsSceneHoverEvent>
#include <QGraphicsSceneMouseEvent>
#include <QMenu>
#include <QTextCursor>
#include <QTextDocument>

#include <utility>

namespace
{

constexpr int LowerHandle = 6; // of a resize grip

} // namespace

void Sticky::mousePressEvent(QGraphicsSceneMouseEvent *event)
{
    if (editing && resizeGrip->contains(event->scenePos()) == 0) {
        event->accept();
        noteText->moveCursorTo(event->scenePos());
        return;
    }
    BoxItem::mousePressEvent(event);
    if (event->button() == Qt::LeftButton && resizeHandleInUse != 0)
        emit moveStarted();
}

void Sticky::mouseMoveEvent(QGraphicsSceneMouseEvent *event)
{
    if (noteText->hasFocus()) {
        event->accept();
        return;
    }
    if (!(event->buttons() & Qt::LeftButton))
        return;
    if (resizeHandleInUse != 0) {
        handleResizeEvent(event);
        emit moved(this);
        sheet->setHighlightToNote(this);
        relayout(true);
        return;
    }
    if (!moving) {
        moving = true;
        emit moveStarted();
        setGroupShadow(true);
    }
    BoxItem::mouseMoveEvent(event);
}

void Sticky::mouseReleaseEvent(QGraphicsSceneMouseEvent *event)
{
    if (noteText->hasFocus()) {
        event->accept();
        return;
    }
    if (event->button() == Qt::LeftButton) {
        if (resizeHandleInUse == 0)
            settleGroup();
        else
            snapResize();
        setGroupShadow(false);
        finishDrag();
    }
    BoxItem::mouseReleaseEvent(event);
    if (editing) // its handle took the focus from the text
        noteText->setFocus(Qt::MouseFocusReason);
}

void Sticky::snapResize()
{
    const QRectF box = getGeometry();
    setGeometry(QRectF(ChartSheet::getNearestGridPoint(box.topLeft()),
                       ChartSheet::getNearestGridPoint(box.bottomRight())));
    emit moved(this); // lines have followed the mouse, perhaps for no change in the end
    relayout(false);
}

void Sticky::mouseDoubleClickEvent(QGraphicsSceneMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    if (resizeGrip->contains(event->scenePos()) == LowerHandle) {
        growToText();
        letMouseGo();
    } else if (event->modifiers() & Qt::ControlModifier && isParentItem()) {
        emit followed(this);
    } else if (isPictureAt(event->pos())) {
        letMouseGo();
        ImagePreviewDialog dialog(nullptr, info.image);
        dialog.exec();
    } else if (isCircleAt(event->pos())) {
        letMouseGo();
        if (sheet->getOwnerGUID().isEmpty())
            emit requestCausalFactorNumberChange(this);
    } else if (editing) {
        noteText->moveCursorTo(event->scenePos());
    } else {
        beginEditing();
    }
}

bool Sticky::isPictureAt(const QPointF &p) const
{
    return imageItem && imageItem->boundingRect().contains(imageItem->mapFromParent(p));
}

bool Sticky::isCircleAt(const QPointF &p) const
{
    return circle->isVisible() && circle->shape().contains(circle->mapFromParent(p));
}

void Sticky::beginEditing()
{
    emit editingStarted(this);
    editing = true;
    textBeforeEdit = getText();
    setHandlesChildEvents(false);
    noteText->setEditable(true);
    // A correction, a paste from the menu or a drop comes without a key.
    connect(noteText->document()->documentLayout(),
            &QAbstractTextDocumentLayout::documentSizeChanged, this, &Sticky::onTextChanged,
            Qt::ConnectionType(Qt::QueuedConnection | Qt::UniqueConnection));
    if (noteText->toPlainText() == tr(INITIAL_TEXT)) {
        setText(QString());
        if (info.role.getInfo().shape == RoleInfo::Ellipse)
            noteText->setPos(rect.width() * 0.0625 + 2.5, (rect.height() - getTextHeight()) * 0.5);
    }
    QTextDocument *document = noteText->document();
    document->setModified(false);
    connect(document, &QTextDocument::modificationChanged, this, &Sticky::onTextModified,
            Qt::UniqueConnection);
    noteText->setFocus(Qt::MouseFocusReason);
    QTextCursor cursor = noteText->textCursor();
    cursor.movePosition(QTextCursor::End);
    noteText->setTextCursor(cursor);
}

void Sticky::onTextModified(bool modified)
{
    if (modified)
        emit textTouched(this);
}

void Sticky::finishEditing()
{
    editing = false;
    emit textEdited(this, textBeforeEdit, getText());
    setHandlesChildEvents(true);
    disconnect(noteText->document(), nullptr, this, nullptr);
    disconnect(noteText->document()->documentLayout(), nullptr, this, nullptr);
    noteText->setEditable(false);
    setSiblingText();
}

void Sticky::commitEditing()
{
    emit textEdited(this, std::exchange(textBeforeEdit, getText()), getText());
    setSiblingText();
    noteText->document()->setModified(false);
}

void Sticky::hoverMoveEvent(QGraphicsSceneHoverEvent *event)
{
    if (sheet->getHost()->isLineToolSelected()) {
        updateLineConnection(event->pos());
        sheet->dragNewLine(event->scenePos());
    }
    event->ignore();
    BoxItem::hoverMoveEvent(event);
}

void Sticky::hoverLeaveEvent(QGraphicsSceneHoverEvent *event)
{
    event->ignore();
    if (!sheet->getHost()->isLineToolSelected()) {
        BoxItem::hoverLeaveEvent(event);
        return;
    }
    setHighlightedEdge(NoSide);
}

void Sticky::contextMenuEvent(QGraphicsSceneContextMenuEvent *event)
{
    if (moving || resizeHandleInUse != 0)
        return;
    selectForMenu();
    if (QMenu *menu = sheet->getHost()->getNoteContextMenu())
        menu->exec(event->screenPos());
}
