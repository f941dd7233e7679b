#include "shell/toolstoolbar.h"

#include "chart/toolid.h"
#include "shell/toolbutton.h"
#include "support/images.h"
#include "support/log.h"

#include <QAction>
#include <QDataStream>
#include <QDrag>
#include <QIODevice>
#include <QMimeData>
#include <QTimer>

ToolsToolBar::ToolsToolBar(QWidget *parent) : QToolBar(tr("Tools"), parent)
{
    setObjectName("ToolsToolbar");
    setIconSize(QSize(32, 32));
    setToolButtonStyle(Qt::ToolButtonTextUnderIcon);

    const auto add = [this](const char *picture, int id, const QString &text,
                            const QString &toolTip) {
        return createAction(loadPicture(picture), id, text, toolTip);
    };
    const auto addOwn = [&](const char *picture, int id, const QString &text,
                            const QString &toolTip) {
        toolButtons.append(addToolButton(add(picture, id, text, toolTip)));
    };
    addOwn(":/images/arrow.png", SelectTool, tr("Select"), tr("Select and move notes"));
    addOwn(":/images/32/hand.png", HandTool, tr("Hand"), tr("Move around the canvas"));
    addOwn(":/images/32/note.png", EventTool, tr("Event"), tr("Drag to insert an Event"));
    addOwn(":/images/32/note-small.png", ConditionTool, tr("Condition"),
           tr("Drag to insert a Condition"));
    addOwn(":/images/32/sequence.png", SequenceMarkerTool, tr("Sequence Marker"),
           tr("Drag to insert a Sequence Marker"));
    addOwn(":/images/32/image-png.png", ImageTool, tr("Image"), tr("Drag to insert an Image"));
    addOwn(":/images/line.png", ConnectorTool, tr("Connector"),
           tr("Connect two items with a connector line"));

    add(":/images/arrowtool.png", ArrowTool, tr("Arrow"), tr("Connect two items with an arrow"));
    add(":/images/straightline.png", StraightLineTool, tr("Straight Line"),
        tr("Connect two items with a straight line"));
    toolButtons.append(addToolButton(allActions.mid(allActions.size() - 2)));

    add(":/images/32/failedBarrier.png", FailedBarrierTool, tr("Failed Barrier"),
        tr("Insert a failed barrier"));
    add(":/images/32/newBarrier.png", NewBarrierTool, tr("New Barrier"),
        tr("Insert a new barrier"));
    add(":/images/32/improvedBarrier.png", ImprovedBarrierTool, tr("Improved Barrier"),
        tr("Insert an improved barrier"));
    add(":/images/32/barrierWorked.png", BarrierWorkedTool, tr("Barrier that worked"),
        tr("Insert a barrier that worked"));
    toolButtons.append(addToolButton(allActions.mid(allActions.size() - 4)));

    cancelActiveTool();
}

void ToolsToolBar::setFormActions(const QList<QAction *> &actions)
{
    formActions = actions;
    for (QAction *action : actions) {
        addAction(action);
        action->setVisible(false);
    }
}

void ToolsToolBar::setActiveButtons(ActiveButtons buttons)
{
    if (buttons == activeButtons)
        return;
    const bool showTools = buttons == ToolButtons;
    for (ToolButton *button : qAsConst(toolButtons)) {
        for (QAction *action : button->actions())
            action->setVisible(showTools);
    }
    // A button doesn't vanish with its actions, only with its place in the bar.
    for (QAction *place : qAsConst(buttonPlaces))
        place->setVisible(showTools);
    for (QAction *action : qAsConst(formActions))
        action->setVisible(buttons == FormButtons);
    activeButtons = buttons;
}

void ToolsToolBar::cancelActiveTool()
{
    for (QAction *action : qAsConst(allActions))
        action->setChecked(false);
    allActions.first()->setChecked(true);
    selectTool(allActions.first());
}

void ToolsToolBar::onDragStarting(QAction *source)
{
    const int id = source->data().toInt();
    if (isMetaTool(id))
        return;
    QByteArray payload;
    QDataStream(&payload, QIODevice::WriteOnly) << id;
    qCDebug(shellLog) << "drag starting" << id;

    auto *mimeData = new QMimeData;
    mimeData->setData(ToolMimeType, payload);
    auto *drag = new QDrag(this);
    drag->setMimeData(mimeData);
    drag->setPixmap(source->icon().pixmap(QSize(32, 32), QIcon::Normal, QIcon::Off));
    if (drag->exec(Qt::MoveAction) != Qt::MoveAction)
        return;
    qCDebug(shellLog) << "cancelling active tool";
    // The drag unwinds first.
    QTimer::singleShot(0, this, &ToolsToolBar::cancelActiveTool);
}

void ToolsToolBar::onToolTriggered(QAction *action)
{
    for (QAction *other : qAsConst(allActions)) {
        if (other != action && other->isChecked())
            other->setChecked(false);
    }
    selectTool(action);
}

QAction *ToolsToolBar::createAction(const QPixmap &picture, int id, const QString &text,
                                    const QString &toolTip)
{
    auto *action = new QAction(QIcon(picture), text, this);
    allActions.append(action);
    action->setData(id);
    action->setToolTip(toolTip);
    return action;
}

ToolButton *ToolsToolBar::addToolButton(const QList<QAction *> &actions)
{
    auto *button = new ToolButton;
    button->setActions(actions);
    connect(button, &ToolButton::dragStarting, this, &ToolsToolBar::onDragStarting);
    connect(button, &ToolButton::toolTriggered, this, &ToolsToolBar::onToolTriggered);
    buttonPlaces.append(addWidget(button));
    return button;
}

ToolButton *ToolsToolBar::addToolButton(QAction *action)
{
    return addToolButton(QList<QAction *>{action});
}

void ToolsToolBar::selectTool(QAction *action)
{
    selectedTool = action->data().toInt();
    emit toolSelectionChanged(selectedTool);
}
