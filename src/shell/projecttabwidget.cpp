#include "shell/projecttabwidget.h"

#include <QHelpEvent>
#include <QProxyStyle>
#include <QStyleOptionTabWidgetFrame>
#include <QTabBar>

namespace
{

/// Keeps the bar's place free.
class BarStyle : public QProxyStyle
{
public:
    QRect subElementRect(SubElement element, const QStyleOption *option,
                         const QWidget *widget) const override
    {
        QRect rect = QProxyStyle::subElementRect(element, option, widget);
        const auto *tabs = qobject_cast<const ProjectTabWidget *>(widget);
        if (tabs && element == SE_TabWidgetTabContents)
            rect.setTop(rect.top() + tabs->getBarHeight());
        return rect;
    }
};

} // namespace

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

void ProjectTabWidget::setBar(QWidget *newBar)
{
    bar = newBar;
    bar->setParent(this);
    auto *barStyle = new BarStyle;
    barStyle->setParent(this);
    setStyle(barStyle);
}

int ProjectTabWidget::getBarHeight() const
{
    return bar && !bar->isHidden() ? bar->sizeHint().height() : 0;
}

bool ProjectTabWidget::event(QEvent *event)
{
    const bool result = QTabWidget::event(event);
    if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::Resize)
        placeBar();
    return result;
}

void ProjectTabWidget::placeBar()
{
    if (!bar)
        return;
    QStyleOptionTabWidgetFrame option;
    initStyleOption(&option);
    const QRect page = style()->subElementRect(QStyle::SE_TabWidgetTabContents, &option, this);
    bar->setGeometry(page.left(), page.top() - getBarHeight(), page.width(), getBarHeight());
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
