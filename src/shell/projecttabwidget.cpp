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

void ProjectTabWidget::addFactor(QWidget *page, int number)
{
    const int place = hasFactorsInOrder() ? getPlaceFor(number) : count();
    insertTab(place, page, QString());
    tabBar()->setTabData(indexOf(page), number);
    setTabText(indexOf(page), tr("Causal Factor %1").arg(number));
}

void ProjectTabWidget::setFactorNumber(QWidget *page, int number)
{
    const int index = indexOf(page);
    if (index < 0)
        return;
    const bool inOrder = hasFactorsInOrder();
    tabBar()->setTabData(index, 0); // counts for no place
    const int place = getPlaceFor(number);
    tabBar()->setTabData(index, number);
    setTabText(index, tr("Causal Factor %1").arg(number));
    if (inOrder)
        tabBar()->moveTab(index, place > index ? place - 1 : place);
}

void ProjectTabWidget::arrange(const QList<QWidget *> &pages)
{
    int place = 0;
    for (QWidget *page : pages) {
        if (indexOf(page) >= place) // a second time it stands before
            tabBar()->moveTab(indexOf(page), place++);
    }
}

int ProjectTabWidget::getNumber(int index) const
{
    return tabBar()->tabData(index).toInt();
}

bool ProjectTabWidget::hasFactorsInOrder() const
{
    int last = 0;
    for (int i = 0; i < count(); ++i) {
        const int number = getNumber(i);
        if (number == 0)
            continue;
        if (number < last)
            return false;
        last = number;
    }
    return true;
}

/// Before the first factor with a greater number; else behind the last tab.
int ProjectTabWidget::getPlaceFor(int number) const
{
    int place = 0;
    while (place < count() && getNumber(place) <= number)
        ++place;
    return place;
}

void ProjectTabWidget::step(int by)
{
    if (count() > 0)
        setCurrentIndex((currentIndex() + by + count()) % count());
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
