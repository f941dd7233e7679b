#include "chart/line.h"
#include "form/formview.h"
#include "project/projectfile.h"
#include "sheet/infoitem.h"
#include "shell/graphwidget.h"
#include "shell/mainwindow.h"
#include "shell/projecttabwidget.h"
#include "shell/zoomwidget.h"
#include "support/pageinfo.h"

#include <QDebug>
#include <QUndoGroup>

namespace
{

const QPointF SeedPosition(240, 200); // of the factor on its own sheet
const QPointF InfoPosition(100, 20);
constexpr int SeedGap = 80;

void addInfoItem(ProjectScene *scene)
{
    auto *box = new InfoItem;
    box->setPos(InfoPosition);
    scene->addItem(box);
}

void makeSiblings(Sticky *note, Sticky *other)
{
    note->addSibling(other);
    other->addSibling(note);
}

} // namespace

void MainWindow::onCanvasItemLoaded(CanvasItemInfo &info)
{
    if (!info.parent.isEmpty()) {
        getSceneForParent(info.parent)->loadCanvasItem(info);
        return;
    }
    auto *note = qobject_cast<Sticky *>(mainScene->loadCanvasItem(info));
    if (!note || !info.role.isParentItem())
        return;
    const Sheet sheet = createSheet(note, info.causalFactorNumber);
    addInfoItem(sheet.second);
}

void MainWindow::onCausalFactorAdded(Sticky *note)
{
    ProjectScene *scene = createSheet(note, note->getCausalFactorNumber()).second;
    seedSheet(scene, note);
    const QString field =
        formView->addCausalFactor(note->getGUID(), note->getCausalFactorNumber(), note->getText());
    qDebug() << "Setting the sibling:" << field;
    note->addSibling(field);
    addInfoItem(scene);
}

void MainWindow::onCausalFactorRemoved(Sticky *note)
{
    if (!sheets.contains(note))
        return;
    sheets.value(note).second->finishEditing(); // a text under edit reaches its twins
    const Sheet sheet = sheets.take(note);
    undoGroup->removeStack(sheet.second->getUndoStack());
    tabWidget->removeTab(tabWidget->indexOf(sheet.first));
    if (currentScene == sheet.second) {
        currentScene = mainScene;
        undoGroup->setActiveStack(mainScene->getUndoStack());
    }
    formView->removeCausalFactor(note->getCausalFactorNumber());
    delete sheet.first; // and its scene
}

void MainWindow::onCausalFactorChanged(Sticky *note)
{
    unaskedChanges = true; // a new number is no undo step, so nobody would ask about it
    GraphWidget *view = sheets.value(note).first;
    if (view)
        tabWidget->setTabText(tabWidget->indexOf(view),
                              "Causal Factor " + QString::number(note->getCausalFactorNumber()));
}

MainWindow::Sheet MainWindow::createSheet(Sticky *note, int number)
{
    const QSize pageSize = PageInfo().getPrintableArea().size();
    auto *scene = new ProjectScene(this, undoGroup, projectFile, formView, pageSize, note);
    auto *view = new GraphWidget(scene, this);
    scene->setParent(view);
    connect(view, &GraphWidget::doZoom, zoomWidget, &ZoomWidget::stepZoom);
    connect(scene, &ProjectScene::selectionChanged, this, &MainWindow::onSelectionChanged);
    connect(scene, &ProjectScene::textEditingChanged, this, &MainWindow::onTextEditingChanged);
    tabWidget->addTab(view, "Causal Factor " + QString::number(number));
    sheets.insert(note, Sheet(view, scene));
    return Sheet(view, scene);
}

void MainWindow::seedSheet(ProjectScene *scene, Sticky *note)
{
    auto *factor = seedClone(scene, note, SeedPosition);
    const QPair<Sticky *, Sticky *> ends = mainScene->getLossAndLoCNotes();
    if (!ends.first || !ends.second)
        return;
    const qreal controlX = SeedPosition.x() - factor->getRect().width() - SeedGap;
    Sticky *control = seedClone(scene, ends.second, QPointF(controlX, SeedPosition.y()));
    seedConnector(scene, control, Sticky::RightSide, factor, Sticky::LeftSide);

    const QRectF place = control->getGeometry();
    const qreal difference = place.width() - ends.first->getRect().width();
    const qreal lossX = place.x() + (difference == 40 ? 20 : 0);
    Sticky *loss = seedClone(scene, ends.first, QPointF(lossX, place.bottom() + SeedGap));
    seedConnector(scene, control, Sticky::BottomSide, loss, Sticky::TopSide);
}

Sticky *MainWindow::seedClone(ProjectScene *scene, Sticky *note, const QPointF &position)
{
    CanvasItemInfo info = note->getCanvasItemInfo();
    info.guid.clear();
    info.startPoint = position;
    auto *clone = qobject_cast<Sticky *>(scene->loadCanvasItem(info));
    makeSiblings(clone, note);
    return clone;
}

void MainWindow::seedConnector(ProjectScene *scene, Sticky *from, Sticky::Side fromSide, Sticky *to,
                               Sticky::Side toSide)
{
    CanvasItemInfo info;
    info.type = ConnectorTool;
    info.startPoint = from->mapToScene(from->getEdgeMidPoint(fromSide));
    info.endPoint = to->mapToScene(to->getEdgeMidPoint(toSide));
    auto *line = qobject_cast<Line *>(scene->loadCanvasItem(info));
    line->connectStartPoint(from, fromSide);
    line->connectEndPoint(to, toSide);
}
