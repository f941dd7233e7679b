#include "form/pagehold.h"

#include <QApplication>
#include <QResizeEvent>
#include <QWidget>

PageHold::PageHold(QWidget *view) : view(view), size(view->size())
{
    view->setUpdatesEnabled(false);
    qApp->installEventFilter(this);
}

PageHold::~PageHold()
{
    qApp->removeEventFilter(this);
    view->setUpdatesEnabled(true);
    QResizeEvent event(view->size(), size);
    if (view->size() != size)
        QApplication::sendEvent(view, &event);
}

bool PageHold::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Timer || event->type() == QEvent::SockAct) {
        const auto *widget = qobject_cast<QWidget *>(watched);
        return !widget || widget->window() == view->window();
    }
    return watched == view;
}
