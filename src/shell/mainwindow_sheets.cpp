#include "shell/graphwidget.h"
#include "shell/mainwindow.h"
#include "shell/projecttabwidget.h"

#include <QUndoGroup>

namespace
{

QString getTabText(const Sticky *factor)
{
    return "Causal Factor " + QString::number(factor->getCausalFactorNumber());
}

GraphWidget *getView(const ProjectScene *sheet)
{
    return sheet ? qobject_cast<GraphWidget *>(sheet->views().value(0)) : nullptr;
}

} // namespace

void MainWindow::onSheetCame(ProjectScene *sheet)
{
    auto *view = new GraphWidget(sheet, this);
    connectSheet(sheet, view);
    tabWidget->addTab(view, getTabText(sheet->getParentNote()));
}

void MainWindow::onSheetGoes(ProjectScene *sheet)
{
    tabWidget->removeTab(tabWidget->indexOf(getView(sheet)));
    if (currentScene != sheet)
        return;
    currentScene = getMainScene();
    undoGroup->setActiveStack(currentScene->getUndoStack());
}

void MainWindow::onCausalFactorChanged(Sticky *note)
{
    unaskedChanges = true; // a new number is no undo step, so nobody would ask about it
    if (GraphWidget *view = getView(book->getSheetOf(note)))
        tabWidget->setTabText(tabWidget->indexOf(view), getTabText(note));
}
