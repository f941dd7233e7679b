#include "shell/projecttabwidget.h"

#include <QHelpEvent>
#include <QTabBar>

ProjectTabWidget::ProjectTabWidget(QWidget *parent) : QTabWidget(parent)
{
    setMovable(true);
    setTabShape(QTabWidget::Triangular);
    tabBar()->installEventFilter(this);
}

bool ProjectTabWidget::eventFilter(QObject *object, QEvent *event)
{
    if (object == tabBar() && event->type() == QEvent::ToolTip) {
        const int index = tabBar()->tabAt(static_cast<QHelpEvent *>(event)->pos());
        if (index >= 0)
            emit toolTipNeeded(index);
    }
    return QTabWidget::eventFilter(object, event);
}

void ProjectTabWidget::tabInserted(int index)
{
    adaptToCount();
    QTabWidget::tabInserted(index);
}

void ProjectTabWidget::tabRemoved(int index)
{
    adaptToCount();
    QTabWidget::tabRemoved(index);
}

void ProjectTabWidget::adaptToCount()
{
    tabBar()->setVisible(count() != 1);
    setDocumentMode(count() == 1);
}
