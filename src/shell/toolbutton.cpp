#include "shell/toolbutton.h"

#include <QAction>
#include <QActionGroup>
#include <QMenu>
#include <QMouseEvent>

namespace
{

constexpr int DragThreshold = 4; // Manhattan length

} // namespace

ToolButton::ToolButton()
{
    setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    connect(this, &QToolButton::triggered, this, &ToolButton::onActionTriggered);
}

void ToolButton::setActions(const QList<QAction *> &actions)
{
    if (actions.isEmpty())
        return;
    if (actions.size() == 1) {
        actions.first()->setCheckable(true);
        setPopupMode(QToolButton::DelayedPopup);
    } else {
        auto *menu = new QMenu(this);
        auto *group = new QActionGroup(this);
        for (QAction *action : actions) {
            action->setCheckable(true);
            menu->addAction(action);
            group->addAction(action);
        }
        setMenu(menu);
        setPopupMode(QToolButton::MenuButtonPopup);
    }
    setDefaultAction(actions.first());
}

void ToolButton::onActionTriggered(QAction *action)
{
    if (!action->isChecked())
        return;
    if (menu())
        setDefaultAction(action);
    emit toolTriggered(action);
}

void ToolButton::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        pressPosition = event->pos();
}

void ToolButton::mouseMoveEvent(QMouseEvent *event)
{
    QAbstractButton::mouseMoveEvent(event);
    const int distance = (event->pos() - pressPosition).manhattanLength();
    if (!(event->buttons() & Qt::LeftButton) || distance <= DragThreshold)
        return;
    emit dragStarting(defaultAction());
}

void ToolButton::mouseReleaseEvent(QMouseEvent *event)
{
    QAction *face = defaultAction();
    const bool inUse = face && face->isChecked();
    QToolButton::mousePressEvent(event); // may open the menu, which may change the face
    QToolButton::mouseReleaseEvent(event);
    // A second click would otherwise uncheck the tool in use.
    if (inUse && defaultAction() == face)
        face->setChecked(true);
}
