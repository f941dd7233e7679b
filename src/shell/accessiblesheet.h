#pragma once

#include <QAccessibleObject>
#include <QAccessibleWidget>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QPointer>
#include <QVector>

class FooterItem;
class GraphWidget;
class QGraphicsObject;
class Sticky;

/// From now on sheet views tell screen readers about their notes and page labels.
void installAccessibleSheets();

/// What a screen reader hears of a sheet: a list of its notes, page by page and from left to
/// right, and then of what stands in the corners of its pages.
class AccessibleSheet : public QAccessibleWidget
{
    Q_DECLARE_TR_FUNCTIONS(AccessibleSheet)

public:
    explicit AccessibleSheet(GraphWidget *view);

    QString text(QAccessible::Text kind) const override;
    int childCount() const override;
    QAccessibleInterface *child(int index) const override;
    QAccessibleInterface *childAt(int x, int y) const override;
    int indexOfChild(const QAccessibleInterface *child) const override;
    QAccessibleInterface *focusChild() const override;

private:
    GraphWidget *getView() const;
    const QVector<QPointer<QGraphicsObject>> &getItems() const;

    mutable QVector<QPointer<QGraphicsObject>> items; // in reading order
    mutable QElapsedTimer age;                        // of the list
};

/// What notes and page labels have in common: a place in a view.
class AccessibleItem : public QAccessibleObject
{
public:
    explicit AccessibleItem(QGraphicsObject *item);

    QAccessibleInterface *parent() const override;
    int childCount() const override { return 0; }
    QAccessibleInterface *child(int) const override { return nullptr; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QAccessible::State state() const override;
    /// On the screen, as the view shows it.
    QRect rect() const override;

protected:
    /// Null while the item stands on no sheet.
    GraphWidget *getView() const;
    /// In the view's own pixels.
    virtual QRect getPlace(const GraphWidget *view) const;
};

/// The corner of a page: its name, and the legend where it stands.
class AccessibleFooter : public AccessibleItem
{
public:
    explicit AccessibleFooter(FooterItem *footer);

    QAccessible::Role role() const override { return QAccessible::StaticText; }
    QString text(QAccessible::Text kind) const override;
};

/// One note: its role and number, its text and its page.
class AccessibleNote : public AccessibleItem, public QAccessibleActionInterface
{
public:
    explicit AccessibleNote(Sticky *note);

    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QAccessible::State state() const override;
    QString text(QAccessible::Text kind) const override;
    void *interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    /// The focus action selects the note and brings it into view.
    void doAction(const QString &name) override;
    QStringList keyBindingsForAction(const QString &) const override { return QStringList(); }

protected:
    QRect getPlace(const GraphWidget *view) const override;

private:
    Sticky *getNote() const;
    QString getName() const;
    QString getPageName() const;
};
