#pragma once

#include <QAccessibleObject>
#include <QAccessibleWidget>
#include <QElapsedTimer>
#include <QPointer>
#include <QVector>

class GraphWidget;
class Sticky;

/// From now on sheet views tell screen readers about their notes.
void installAccessibleSheets();

/// What a screen reader hears of a sheet: a list of its notes, page by page
/// and from left to right.
class AccessibleSheet : public QAccessibleWidget
{
public:
    explicit AccessibleSheet(GraphWidget *view);

    /// -1 when the note stands on another sheet.
    int indexOfNote(const Sticky *note) const;

    QString text(QAccessible::Text kind) const override;
    int childCount() const override;
    QAccessibleInterface *child(int index) const override;
    QAccessibleInterface *childAt(int x, int y) const override;
    int indexOfChild(const QAccessibleInterface *child) const override;
    QAccessibleInterface *focusChild() const override;

private:
    GraphWidget *getView() const;
    const QVector<QPointer<Sticky>> &getNotes() const;

    mutable QVector<QPointer<Sticky>> notes; // in reading order
    mutable QElapsedTimer age;               // of the list
};

/// One note: its role and number, its text and its page.
class AccessibleNote : public QAccessibleObject, public QAccessibleActionInterface
{
public:
    explicit AccessibleNote(Sticky *note);

    QAccessibleInterface *parent() const override;
    int childCount() const override { return 0; }
    QAccessibleInterface *child(int) const override { return nullptr; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QAccessible::State state() const override;
    QString text(QAccessible::Text kind) const override;
    /// On the screen, as the view shows it.
    QRect rect() const override;
    void *interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    /// The focus action selects the note and brings it into view.
    void doAction(const QString &name) override;
    QStringList keyBindingsForAction(const QString &) const override { return QStringList(); }

private:
    Sticky *getNote() const;
    /// Null while the note stands on no sheet.
    GraphWidget *getView() const;
    QString getName() const;
    QString getPageName() const;
};
