#include "shell/accessiblesheet.h"

#include "chart/sheethost.h"
#include "chart/sticky.h"
#include "sheet/footeritem.h"
#include "sheet/projectscene.h"
#include "shell/graphwidget.h"

namespace
{

constexpr int ListLifetime = 1000; // ms that a reader may hear of an older state

QVector<QPointer<QGraphicsObject>> sortItems(const ProjectScene *scene)
{
    QVector<QPointer<QGraphicsObject>> items;
    for (Sticky *note : scene->getNotesInReadingOrder())
        items.append(note);
    for (FooterItem *footer : scene->getFooters()) {
        if (!footer->getText().isEmpty())
            items.append(footer);
    }
    return items;
}

/// As on the sheet's tab.
QString getSheetName(const ProjectScene *scene)
{
    if (!scene->getParentNote())
        return AccessibleSheet::tr("ECS Chart");
    const Sticky *owner = scene->getHost()->getNoteWithGUID(scene->getOwnerGUID());
    return owner ? AccessibleSheet::tr("Causal Factor %1").arg(owner->getCausalFactorNumber())
                 : AccessibleSheet::tr("Causal Factor");
}

/// Null unless exactly one note is selected.
Sticky *getOnlySelectedNote(const ProjectScene *scene)
{
    const QList<Sticky *> selected = scene->getSelectedNotes();
    return selected.size() == 1 ? selected.first() : nullptr;
}

void announceSelection(const ProjectScene *scene)
{
    // The selection grows item by item, and a look at all of it for each takes long.
    Sticky *note = QAccessible::isActive() ? getOnlySelectedNote(scene) : nullptr;
    if (!note)
        return;
    QAccessibleEvent event(note, QAccessible::Focus);
    QAccessible::updateAccessibility(&event);
}

QAccessibleInterface *makeAccessible(const QString &, QObject *object)
{
    if (auto *view = qobject_cast<GraphWidget *>(object))
        return new AccessibleSheet(view);
    if (auto *note = qobject_cast<Sticky *>(object))
        return new AccessibleNote(note);
    if (auto *footer = qobject_cast<FooterItem *>(object))
        return new AccessibleFooter(footer);
    return nullptr;
}

} // namespace

void installAccessibleSheets()
{
    QAccessible::installFactory(makeAccessible);
}

AccessibleSheet::AccessibleSheet(GraphWidget *view) : QAccessibleWidget(view, QAccessible::List)
{
    const ProjectScene *scene = view->getProjectScene();
    QObject::connect(scene, &QGraphicsScene::selectionChanged, view,
                     [scene] { announceSelection(scene); });
}

GraphWidget *AccessibleSheet::getView() const
{
    return static_cast<GraphWidget *>(widget());
}

const QVector<QPointer<QGraphicsObject>> &AccessibleSheet::getItems() const
{
    // A reader asks for one child after the other: a walk for each is too slow.
    if (!age.isValid() || age.hasExpired(ListLifetime)) {
        items = sortItems(getView()->getProjectScene());
        age.start();
    }
    return items;
}

QString AccessibleSheet::text(QAccessible::Text kind) const
{
    const QString own = QAccessibleWidget::text(kind);
    if (!own.isEmpty())
        return own;
    if (kind == QAccessible::Name)
        return getSheetName(getView()->getProjectScene());
    if (kind == QAccessible::Description)
        return tr("%1 notes").arg(getView()->getProjectScene()->getAllNotes().size());
    return QString();
}

int AccessibleSheet::childCount() const
{
    return getItems().size();
}

QAccessibleInterface *AccessibleSheet::child(int index) const
{
    QGraphicsObject *item = getItems().value(index);
    return item && item->scene() ? QAccessible::queryAccessibleInterface(item) : nullptr;
}

QAccessibleInterface *AccessibleSheet::childAt(int x, int y) const
{
    const QPoint pos = getView()->viewport()->mapFromGlobal(QPoint(x, y));
    if (!getView()->viewport()->rect().contains(pos))
        return nullptr;
    Sticky *note = getView()->getProjectScene()->getNoteAt(getView()->mapToScene(pos));
    return note ? QAccessible::queryAccessibleInterface(note) : nullptr;
}

int AccessibleSheet::indexOfChild(const QAccessibleInterface *child) const
{
    const auto *item = qobject_cast<QGraphicsObject *>(child->object());
    return item ? getItems().indexOf(const_cast<QGraphicsObject *>(item)) : -1;
}

QAccessibleInterface *AccessibleSheet::focusChild() const
{
    Sticky *note = getOnlySelectedNote(getView()->getProjectScene());
    return note ? QAccessible::queryAccessibleInterface(note) : nullptr;
}

AccessibleItem::AccessibleItem(QGraphicsObject *item) : QAccessibleObject(item) {}

GraphWidget *AccessibleItem::getView() const
{
    const QGraphicsScene *scene = static_cast<QGraphicsObject *>(object())->scene();
    const QList<QGraphicsView *> views = scene ? scene->views() : QList<QGraphicsView *>();
    return views.isEmpty() ? nullptr : qobject_cast<GraphWidget *>(views.first());
}

QRect AccessibleItem::getPlace(const GraphWidget *view) const
{
    const auto *item = static_cast<QGraphicsObject *>(object());
    return view->mapFromScene(item->sceneBoundingRect()).boundingRect();
}

QAccessibleInterface *AccessibleItem::parent() const
{
    GraphWidget *view = getView();
    return view ? QAccessible::queryAccessibleInterface(view) : nullptr;
}

QAccessible::State AccessibleItem::state() const
{
    QAccessible::State state;
    const GraphWidget *view = getView();
    state.invisible = !view;
    state.offscreen = !view || !view->viewport()->rect().intersects(getPlace(view));
    return state;
}

QRect AccessibleItem::rect() const
{
    const GraphWidget *view = getView();
    if (!view)
        return QRect();
    const QRect shown = getPlace(view);
    return QRect(view->viewport()->mapToGlobal(shown.topLeft()), shown.size());
}

AccessibleFooter::AccessibleFooter(FooterItem *footer) : AccessibleItem(footer) {}

QString AccessibleFooter::text(QAccessible::Text kind) const
{
    return kind == QAccessible::Name ? static_cast<FooterItem *>(object())->getText() : QString();
}

AccessibleNote::AccessibleNote(Sticky *note) : AccessibleItem(note) {}

Sticky *AccessibleNote::getNote() const
{
    return static_cast<Sticky *>(object());
}

/// Without the note's shadow and handles.
QRect AccessibleNote::getPlace(const GraphWidget *view) const
{
    return view->mapFromScene(getNote()->getGeometry()).boundingRect();
}

QAccessible::State AccessibleNote::state() const
{
    QAccessible::State state = AccessibleItem::state();
    const GraphWidget *view = getView();
    state.selectable = true;
    state.focusable = true;
    state.selected = getNote()->isSelected();
    state.focused = view && state.selected && view->hasFocus();
    return state;
}

QString AccessibleNote::getName() const
{
    const Sticky *note = getNote();
    const RoleInfo &role = note->getRecord().role.getInfo();
    QString name = role.displayName;
    if (role.circleDecoratorType == "numerals" && note->getCausalFactorNumber() > 0)
        name += " " + QString::number(note->getCausalFactorNumber());
    if (note->isNotRelevant())
        name = AccessibleSheet::tr("%1, not relevant").arg(name);
    return note->getText().isEmpty() ? name : name + ": " + note->getText();
}

/// As on the footers: a letter for the row, a number for the column.
QString AccessibleNote::getPageName() const
{
    const auto *scene = qobject_cast<ProjectScene *>(getNote()->scene());
    if (!scene)
        return QString();
    const QSize page = scene->getPageSize();
    const int row = int(getNote()->y() / page.height());
    const int column = int(getNote()->x() / page.width());
    return AccessibleSheet::tr("Page %1").arg(QChar(ushort('A' + row)) +
                                              QString::number(column + 1));
}

QString AccessibleNote::text(QAccessible::Text kind) const
{
    switch (kind) {
    case QAccessible::Name:
        return getName();
    case QAccessible::Description:
        return getPageName();
    case QAccessible::Value:
        return getNote()->getText();
    default:
        return QString();
    }
}

void *AccessibleNote::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::ActionInterface)
        return static_cast<QAccessibleActionInterface *>(this);
    return QAccessibleObject::interface_cast(type);
}

QStringList AccessibleNote::actionNames() const
{
    return {setFocusAction()};
}

void AccessibleNote::doAction(const QString &name)
{
    GraphWidget *view = getView();
    if (!view || name != setFocusAction())
        return;
    view->getProjectScene()->clearSelection();
    getNote()->setSelected(true);
    view->ensureVisible(getNote());
    view->setFocus(Qt::OtherFocusReason);
}
