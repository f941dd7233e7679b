#include "sheet/projectscene.h"

#include "chart/sheethost.h"
#include "chart/svgpicture.h"
#include "editing/commands.h"
#include "support/images.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QStandardPaths>
#include <QUndoStack>
#include <QUuid>

namespace
{

constexpr qint64 LargeImage = 1000000; // pixels
constexpr QSize ReducedImage(1024, 768);

QString getImageFolder()
{
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    return QSettings().value("lastImagePath", pictures).toString() + "/";
}

} // namespace

void ProjectScene::createItemAt(QPointF scenePos, int tool)
{
    CanvasItemInfo info;
    info.size = getStandardItemSize(tool);
    info.type = tool;
    if (tool == SequenceMarkerTool) {
        info.type = NoteItemType;
        info.role = Role("Sequence_Marker");
        info.text = tr("Date/Time");
        info.textAlignment = Qt::AlignHCenter;
    } else if (tool == ImageTool) {
        const std::optional<QPixmap> image = chooseImage();
        info.type = image ? tool : 0;
        info.image = image.value_or(QPixmap());
    } else if (tool == ArrowTool) {
        info.arrowStyle = Line::ArrowAtEnd;
    } else if (tool == ConditionTool) {
        info.role = Role("Condition");
    }
    if (info.type == 0)
        return;

    const QPointF centre(info.size.width() / 2, info.size.height() / 2);
    info.startPoint = getNearestGridPoint(scenePos - centre);
    info.endPoint = getNearestGridPoint(info.startPoint +
                                        QPointF(int(info.size.width()), int(info.size.height())));
    clearSelection();
    if (ProjectItem *item = createCanvasItem(info, true))
        item->setSelected(true);
}

ProjectItem *ProjectScene::loadCanvasItem(CanvasItemInfo &info)
{
    return createCanvasItem(info, false);
}

ProjectItem *ProjectScene::createCanvasItem(CanvasItemInfo &info, bool undo)
{
    if (info.guid.isEmpty())
        info.guid = QUuid::createUuid().toString();
    ProjectItem *item = makeItem(info);
    if (!item)
        return nullptr;
    auto *note = qobject_cast<Sticky *>(item);
    if (undo && note && note->getRoleType() == RoleType::CausalFactor)
        emit causalFactorAdded(note);
    if (undo)
        undoStack->push(new AddCommand(item, this));
    else
        addItem(item);
    checkCanvasAfterAdding();
    return item;
}

ProjectItem *ProjectScene::makeItem(CanvasItemInfo &info)
{
    switch (info.type) {
    case EventTool:
    case ConditionTool:
    case NoteItemType:
    case ImageTool:
        return makeNote(info);
    case StraightLineTool:
        info.type = ArrowTool;
        return makeLine(info);
    case ConnectorTool:
    case ArrowTool:
        return makeLine(info);
    case NewBarrierTool:
        return makeBarrier(":/images/newBarrier.svg", info);
    case FailedBarrierTool:
        return makeBarrier(":/images/failedBarrier.svg", info);
    case ImprovedBarrierTool:
        return makeBarrier(":/images/improvedBarrier.svg", info);
    case BarrierWorkedTool:
        return makeBarrier(":/images/barrierWorked.svg", info);
    default:
        return nullptr;
    }
}

Sticky *ProjectScene::makeNote(CanvasItemInfo &info)
{
    auto *note = new Sticky(this, info);
    connect(note, &Sticky::selectionChanged, this, &ProjectScene::onSelectionChanged);
    connect(note, &Sticky::moveStarted, this, &ProjectScene::onItemMoveStarted,
            Qt::QueuedConnection);
    connect(note, &Sticky::moved, this, [this] { itemsBound.reset(); });
    connectDrag(note);
    connect(note, &Sticky::causalFactorAdded, this, &ProjectScene::onNoteBecameCausalFactor,
            Qt::QueuedConnection);
    connect(note, &Sticky::causalFactorRemoved, this, &ProjectScene::onNoteWasCausalFactor,
            Qt::QueuedConnection);
    connect(note, &Sticky::causalFactorRemoved, this, &ProjectScene::factorGoes);
    connect(note, &Sticky::followed, this, &ProjectScene::onNoteFollowed);
    connect(note, &Sticky::requestCausalFactorNumberChange, this,
            &ProjectScene::onRequestCausalFactorNumberChange);
    connect(note, &Sticky::editingStarted, this, &ProjectScene::onEditingStarted);
    connect(note, &Sticky::textEdited, this, &ProjectScene::onStickyTextEdited);
    connect(note, &Sticky::textTouched, this, &ProjectScene::markDirty);
    connect(note, &Sticky::returned, this, &ProjectScene::takeFormField);
    return note;
}

Line *ProjectScene::makeLine(CanvasItemInfo &info)
{
    auto *line = new Line(this, info);
    // A line tells of its selection before the sheet knows.
    connect(line, &Line::selectionChanged, this, &ProjectScene::onSelectionChanged,
            Qt::QueuedConnection);
    connect(line, &Line::endDragged, this, &ProjectScene::onLineEndDragged);
    return line;
}

ProjectItem *ProjectScene::makeBarrier(const QString &resource, CanvasItemInfo &info)
{
    auto *barrier = new SVGPicture(resource, this, info);
    connectDrag(barrier);
    connect(barrier, &SVGPicture::selectionChanged, this, &ProjectScene::onSelectionChanged);
    return barrier;
}

void ProjectScene::connectDrag(BoxItem *box)
{
    connect(box, &BoxItem::dragged, this, &ProjectScene::onBoxesDragged, Qt::QueuedConnection);
    connect(box, &BoxItem::moveFinished, this, &ProjectScene::onItemMoveFinished,
            Qt::QueuedConnection);
}

/// Nothing when the user chose no file, a null picture when it can't be read.
std::optional<QPixmap> ProjectScene::chooseImage()
{
    const QString path =
        QFileDialog::getOpenFileName(host->getDialogParent(), tr("Open image..."), getImageFolder(),
                                     tr("Images (*.png *.jpg *.jpeg *.bmp *.gif)"));
    if (path.isEmpty())
        return std::nullopt;
    QSettings().setValue("lastImagePath", QFileInfo(path).absolutePath());
    const QPixmap image = QPixmap::fromImage(readImageFile(path));
    if (qint64(image.width()) * image.height() > LargeImage && askToReduce(image))
        return image.scaled(ReducedImage, Qt::KeepAspectRatio, Qt::FastTransformation);
    return image;
}

bool ProjectScene::askToReduce(const QPixmap &image)
{
    QMessageBox box(
        QMessageBox::Question, tr("Reduce image size"),
        tr("The selected image is very large.\nThis can make the project file very large "
           "and it is recomended that the image be scaled down before adding it to the "
           "canvas."),
        QMessageBox::NoButton, host->getDialogParent());
    QPushButton *reduce = box.addButton(tr("Reduce size (1024x768)"), QMessageBox::AcceptRole);
    QPushButton *keep = box.addButton(
        tr("Keep size (%1x%2)").arg(image.width()).arg(image.height()), QMessageBox::RejectRole);
    box.setDefaultButton(reduce);
    box.setEscapeButton(keep);
    box.exec();
    return box.clickedButton() == reduce;
}

void ProjectScene::moveHighlight(int tool, const QPointF &scenePos)
{
    const QSizeF size = getStandardItemSize(tool);
    const QPointF centre(size.width() / 2, size.height() / 2);
    highlightItem->setRect(QRectF(getNearestGridPoint(scenePos - centre), size));
}

void ProjectScene::onItemMoveStarted()
{
    if (canvasCheckTimer.isActive())
        return;
    restingBound.reset();
    canvasCheckTimer.start();
}

void ProjectScene::onLineEndDragged(Line *line, const LineEnds &before)
{
    undoStack->push(new LineEndCommand(line, before));
}

void ProjectScene::onItemMoveFinished(BoxItem *, const QRectF &)
{
    canvasCheckTimer.stop();
}

void ProjectScene::onBoxesDragged(const BoxGeometries &before)
{
    BoxGeometries standing; // the news waited in the queue, perhaps while the sheet was cleared
    for (const auto &[box, geometry] : before) {
        if (isAlive(box))
            standing.append({box, geometry});
    }
    if (!standing.isEmpty())
        undoStack->push(new GeometryChangeCommand(standing));
}
