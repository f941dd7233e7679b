#pragma once

#include "acceptance/xuser.h"
#include "form/formview.h"
#include "shell/graphwidget.h"
#include "shell/mainwindow.h"
#include "shell/toolbutton.h"

#include <QComboBox>
#include <QMenu>
#include <QMenuBar>
#include <QTabBar>
#include <QWebElement>
#include <QWebFrame>
#include <QWebView>

/// Works in a project's window with mouse and keys, and looks at what came of it.
class WindowUser
{
public:
    explicit WindowUser(MainWindow *window) : window(window) {}

    QTabWidget *tabs() const { return window->findChild<QTabWidget *>(); }
    ProjectScene *scene() const { return window->getCurrentScene(); }
    GraphWidget *view() const { return qobject_cast<GraphWidget *>(tabs()->currentWidget()); }
    QPoint at(const QPointF &scenePos) const
    {
        return view()->viewport()->mapToGlobal(view()->mapFromScene(scenePos));
    }
    Sticky *noteAt(const QPointF &scenePos) const { return scene()->getNoteAt(scenePos); }

    QStringList tabTitles() const
    {
        QStringList titles;
        for (int i = 0; i < tabs()->count(); ++i)
            titles.append(tabs()->tabText(i));
        return titles;
    }

    void openTab(const QString &title) const
    {
        const int index = tabTitles().indexOf(title);
        QVERIFY2(index >= 0, qPrintable(title));
        QTabBar *bar = tabs()->tabBar();
        XUser::click(bar->mapToGlobal(bar->tabRect(index).center()));
        QTRY_COMPARE(tabs()->currentIndex(), index);
        auto *sheet = qobject_cast<GraphWidget *>(tabs()->currentWidget());
        if (sheet)
            QTRY_COMPARE(window->getCurrentScene(), sheet->getProjectScene());
    }

    /// By the texts that the user reads, without the marks of the mnemonics. What the entry
    /// asks is to be answered before.
    void chooseFromMenu(const QString &menuText, const QString &entryText) const
    {
        QAction *menu = findAction(window->menuBar()->actions(), menuText);
        QVERIFY2(menu, qPrintable(menuText));
        QMenuBar *bar = window->menuBar();
        XUser::click(bar->mapToGlobal(bar->actionGeometry(menu).center()));
        QTRY_COMPARE(QApplication::activePopupWidget(), menu->menu());
        QAction *entry = findAction(menu->menu()->actions(), entryText);
        QVERIFY2(entry, qPrintable(entryText));
        XUser::click(menu->menu()->mapToGlobal(menu->menu()->actionGeometry(entry).center()));
    }

    ToolButton *buttonOf(const QString &tool) const
    {
        for (ToolButton *button : window->findChildren<ToolButton *>()) {
            if (button->defaultAction()->text() == tool)
                return button;
        }
        return nullptr;
    }

    void drop(const QString &tool, const QPointF &topLeft) const
    {
        ToolButton *button = buttonOf(tool);
        QVERIFY2(button, qPrintable(tool));
        const QSizeF size =
            ProjectScene::getStandardItemSize(button->defaultAction()->data().toInt());
        const int before = scene()->getProjectItems().size();
        XUser::drag(XUser::centreOf(button),
                    at(topLeft + QPointF(size.width() / 2, size.height() / 2)));
        QTRY_COMPARE(scene()->getProjectItems().size(), before + 1);
        QTRY_COMPARE(window->selectedTool(), int(SelectTool));
    }

    void drawLine(const QString &tool, const QPointF &from, const QPointF &to) const
    {
        XUser::click(XUser::centreOf(buttonOf(tool)));
        QTRY_VERIFY(window->isLineToolSelected());
        const int before = scene()->getProjectItems().size();
        XUser::drag(at(from), at(to));
        QTRY_COMPARE(scene()->getProjectItems().size(), before + 1);
        XUser::press("Escape");
        QTRY_COMPARE(window->selectedTool(), int(SelectTool));
    }

    void select(const QPointF &scenePos) const
    {
        XUser::click(at(scenePos));
        QTRY_VERIFY(noteAt(scenePos)->isSelected());
    }

    /// Leaves the note under edit, its text selected.
    void beginEditing(const QPointF &centre) const
    {
        XUser::doubleClick(at(centre));
        QTRY_VERIFY(noteAt(centre)->isEditing());
        XUser::press("ctrl+a");
    }

    void typeInto(const QPointF &centre, const QString &text) const
    {
        beginEditing(centre);
        XUser::type(text);
        XUser::press("Escape");
        QTRY_VERIFY(!noteAt(centre)->isEditing());
        QCOMPARE(noteAt(centre)->getText(), text);
    }

    void chooseRole(const QPointF &centre, const QString &role) const
    {
        select(centre);
        auto *combo = window->findChild<QComboBox *>();
        QTRY_VERIFY(combo->isEnabled());
        const int target = combo->findText(role);
        QVERIFY2(target >= 0, qPrintable(role));
        XUser::click(XUser::centreOf(combo));
        QTRY_VERIFY(QApplication::activePopupWidget());
        XUser::press(QStringList("Home") + QStringList(QVector<QString>(target, "Down").toList()) +
                     QStringList("Return"));
        QTRY_COMPARE(noteAt(centre)->getRoleType(), combo->itemData(target).toString());
    }

    FormView *form() const { return window->findChild<FormView *>(); }
    QString valueOf(const QString &field) const { return form()->getFieldValue(field); }

    /// A place inside the field's left edge, once it has been scrolled into view.
    QPoint fieldAt(const QString &field) const
    {
        auto *web = form()->findChild<QWebView *>();
        QWebFrame *frame = web->page()->mainFrame();
        QWebElement element = frame->findFirstElement("#" + field);
        element.evaluateJavaScript("window.scrollBy(0, this.getBoundingClientRect().top - 300)");
        const QRect place = element.geometry().translated(-frame->scrollPosition());
        return web->mapToGlobal(QPoint(place.left() + 8, place.center().y()));
    }

    void typeIntoField(const QString &field, const QString &text) const
    {
        QTRY_VERIFY(form()->getAllFields(true).count() > 0); // the page stands
        XUser::click(fieldAt(field));
        XUser::press("ctrl+a");
        XUser::type(text);
    }

    /// All that a project holds, a line for each item and each field that isn't empty, in an
    /// order that doesn't depend on the session.
    QStringList describeProject() const
    {
        QStringList lines = describeSheet(window->getMainScene());
        for (ProjectScene *sheet : window->getFactorScenes())
            lines += describeSheet(sheet);
        const FormValues values = form()->getAllFieldValues();
        for (auto field = values.cbegin(); field != values.cend(); ++field) {
            if (!field->value.isEmpty())
                lines.append("field " + field.key() + "=" + field->value);
        }
        lines.sort();
        return lines;
    }

    QStringList describeSheet(ProjectScene *sheet) const
    {
        QStringList lines;
        for (ProjectItem *item : sheet->getProjectItems())
            lines.append(sheet->getOwnerGUID() + describeItem(item));
        lines.sort();
        return lines;
    }

private:
    static QAction *findAction(const QList<QAction *> &actions, const QString &text)
    {
        for (QAction *action : actions) {
            if (action->text().remove('&') == text)
                return action;
        }
        return nullptr;
    }

    QString describeItem(ProjectItem *item) const
    {
        const CanvasItemInfo info = item->getCanvasItemInfo();
        QString line;
        QDebug out(&line);
        out << info.guid << info.type << info.role.getTypeName() << info.text << info.startPoint
            << info.size << info.font.toString() << info.customFont << info.textColor
            << info.backgroundColor << info.textAlignment << info.lineStyle << info.borderLineWidth
            << info.arrowStyle << info.notRelevant << describeSiblings(info);
        if (info.role.isParentItem())
            out << info.causalFactorNumber;
        if (auto *connector = qobject_cast<Line *>(item))
            out << info.endPoint << describeEnd(connector->getStartConnection())
                << describeEnd(connector->getEndConnection());
        return line;
    }

    /// A factor's sheet that is made anew has new twins of the same notes.
    QStringList describeSiblings(const CanvasItemInfo &info) const
    {
        QStringList siblings;
        for (const QString &id : info.siblings) {
            const Sticky *twin = window->getNoteWithGUID(id);
            siblings.append(twin ? "twin on " + twin->getSheet()->getOwnerGUID() : id);
        }
        siblings.sort();
        return siblings;
    }

    static QString describeEnd(ConnectionInfo end)
    {
        return end.item ? end.item->getGUID() + "/" + QString::number(end.side) : "free";
    }

    MainWindow *window;
};
