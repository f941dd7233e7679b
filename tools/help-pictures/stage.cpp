#include "stage.h"

#include "chart/sticky.h"
#include "form/formview.h"
#include "shell/graphwidget.h"
#include "shell/projecttabwidget.h"
#include "shell/toolbutton.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QMenu>
#include <QMouseEvent>
#include <QTimer>
#include <QWebElement>
#include <QWebFrame>
#include <QWebView>

namespace
{

constexpr int Patience = 30000; // milliseconds
constexpr int Rest = 150;       // milliseconds after which nothing more is drawn

} // namespace

void settle()
{
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < Rest)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
}

Stage::Stage(const QString &project) : window(nullptr)
{
    window.openProject(project, false);
    window.setWindowTitle("sample.epf[*] - TRAC/Ex Examiner");
    tabs = window.findChild<ProjectTabWidget *>();
    const auto *form = window.findChild<FormView *>();
    QElapsedTimer clock;
    clock.start();
    while (form->getFieldValue("incidentTitle").isEmpty()) {
        if (clock.elapsed() > Patience)
            qFatal("The form of %s does not come", qPrintable(project));
        settle();
    }
    window.showNormal();
}

void Stage::resize(int width, int height)
{
    window.resize(width, height);
    settle();
}

void Stage::showTab(int index)
{
    tabs->setCurrentIndex(index);
    settle();
}

void Stage::showSheet(ProjectScene *sheet)
{
    tabs->setCurrentWidget(sheet->views().first());
    settle();
}

GraphWidget *Stage::getView() const
{
    return qobject_cast<GraphWidget *>(tabs->currentWidget());
}

void Stage::takeTool(int tool)
{
    for (ToolButton *button : window.findChildren<ToolButton *>()) {
        for (QAction *action : button->actions() + (button->menu() ? button->menu()->actions()
                                                                   : QList<QAction *>())) {
            if (action->data().toInt() != tool)
                continue;
            action->setChecked(true);
            button->onActionTriggered(action);
            settle();
            return;
        }
    }
    qFatal("There is no tool %d", tool);
}

void Stage::sendMouse(QEvent::Type type, const QPointF &scenePos, Qt::MouseButtons buttons)
{
    GraphWidget *view = getView();
    const QPoint place = view->mapFromScene(scenePos);
    const bool moves = type == QEvent::MouseMove;
    QMouseEvent event(type, place, view->viewport()->mapToGlobal(place),
                      moves ? Qt::NoButton : Qt::LeftButton, buttons, Qt::NoModifier);
    QApplication::sendEvent(view->viewport(), &event);
    pointer = scenePos;
}

void Stage::drag(const QVector<QPointF> &points)
{
    sendMouse(QEvent::MouseButtonPress, points.first(), Qt::LeftButton);
    for (const QPointF &point : points.mid(1))
        sendMouse(QEvent::MouseMove, point, Qt::LeftButton);
    settle();
}

void Stage::drop()
{
    sendMouse(QEvent::MouseButtonRelease, pointer, Qt::NoButton);
    settle();
}

Sticky *Stage::findNote(const QString &text) const
{
    for (Sticky *note : window.getMainScene()->getAllNotes()) {
        if (note->getText().contains(text))
            return note;
    }
    qFatal("No note of the sample says %s", qPrintable(text));
}

void Stage::select(const QString &text)
{
    window.getMainScene()->clearSelection();
    findNote(text)->setSelected(true);
    settle();
}

void Stage::selectWithLine(const QString &text)
{
    select(text);
    for (ProjectItem *item : window.getMainScene()->getProjectItems()) {
        auto *line = qobject_cast<Line *>(item);
        if (line && line->getStartConnection().item == findNote(text))
            line->setSelected(true);
    }
    settle();
}

QImage Stage::grab()
{
    settle();
    return window.grab().toImage();
}

QImage Stage::grabSheet(const QRectF &part)
{
    GraphWidget *view = getView();
    view->centerOn(part.center());
    settle();
    const QRect area = view->mapFromScene(part).boundingRect();
    if (!view->viewport()->rect().contains(area))
        qFatal("The view is too small for %d by %d", area.width(), area.height());
    return view->viewport()->grab(area).toImage();
}

QImage Stage::grabForm(const QString &element, const QRect &part)
{
    auto *view = window.findChild<FormView *>()->findChild<QWebView *>();
    view->page()->mainFrame()->evaluateJavaScript(
        QString("window.scrollBy(0, document.getElementById('%1').getBoundingClientRect().top"
                " - document.getElementById('bar').offsetHeight - 12)")
            .arg(element));
    settle();
    return view->grab(part & view->rect()).toImage();
}

QPoint Stage::find(const QWidget *child) const
{
    return child->mapTo(&window, child->rect().center());
}

QPoint Stage::find(const QPointF &scenePos) const
{
    return getView()->viewport()->mapTo(&window, getView()->mapFromScene(scenePos));
}

QImage Stage::grabDialog(const QString &action, int tab)
{
    QImage image;
    QTimer::singleShot(0, &window, [&image, tab] {
        settle();
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            qFatal("There is no dialog");
        if (auto *pages = dialog->findChild<QTabWidget *>())
            pages->setCurrentIndex(tab);
        settle();
        image = dialog->grab().toImage();
        dialog->reject();
    });
    for (QAction *each : window.actions() + window.findChildren<QAction *>()) {
        if (each->text().remove('&') == action) {
            each->trigger();
            return image;
        }
    }
    qFatal("There is no action %s", qPrintable(action));
}
