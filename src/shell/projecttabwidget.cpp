#include "shell/projecttabwidget.h"

#include <QTabBar>

ProjectTabWidget::ProjectTabWidget(QWidget *parent) : QTabWidget(parent)
{
    setMovable(true);
    setTabShape(QTabWidget::Triangular);
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
