#include "sheet/footeritem.h"

#include "chart/role.h"

#include <QGraphicsGridLayout>
#include <QGraphicsProxyWidget>
#include <QLabel>
#include <QPainter>
#include <QPushButton>

namespace
{

QFont getFooterFont()
{
    return QFont("Arial", 8, QFont::Normal);
}

/// Its widget's icons keep their shapes in a zoomed view.
class SmoothProxy : public QGraphicsProxyWidget
{
public:
    using QGraphicsProxyWidget::QGraphicsProxyWidget;

    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override
    {
        painter->setRenderHint(QPainter::SmoothPixmapTransform);
        QGraphicsProxyWidget::paint(painter, option, widget);
    }
};

} // namespace

FooterItem::FooterItem(int row, int column)
    : layout(new QGraphicsGridLayout), row(row), column(column)
{
    layout->setContentsMargins(5, 5, 5, 5);
    layout->setSpacing(5);
    setLayout(layout);
    setFont(getFooterFont());
    setAcceptedMouseButtons(Qt::NoButton);
}

void FooterItem::showFooter(bool showPageNumber, const QString &projectName, bool showLegend)
{
    if (showLegend)
        addLegend();
    if (showPageNumber)
        addPageName(projectName);
}

void FooterItem::paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget)
{
    if (layout->columnCount() > 1) {
        painter->setRenderHint(QPainter::Antialiasing, false);
        painter->setBrush(Qt::white);
        painter->drawRect(rect());
    }
    QGraphicsWidget::paint(painter, option, widget);
}

void FooterItem::addLegend()
{
    Role(); // fills the table if no note has done so yet
    int i = 0;
    for (const RoleInfo &role : qAsConst(Role::rolesList)) {
        auto *button = new QPushButton(role.icon, role.displayName);
        button->setStyleSheet("border-style: none; background-color: white;");
        button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed); // icon below icon
        layout->addItem(embed(button), i % 2, i / 2, Qt::AlignLeft | Qt::AlignVCenter);
        ++i;
    }
}

void FooterItem::addPageName(const QString &projectName)
{
    // Plain character arithmetic: the row behind Z is "[".
    const QChar letter(ushort('A' + row));
    auto *label = new QLabel(projectName + " - " + letter + QString::number(column + 1));
    label->setTextFormat(Qt::PlainText);
    label->setStyleSheet("background-color: white;");
    layout->addItem(embed(label), 1, layout->columnCount(), Qt::AlignRight | Qt::AlignBottom);
}

// Black on white whatever the theme, and deaf: a click goes to the sheet below.
QGraphicsProxyWidget *FooterItem::embed(QWidget *widget)
{
    widget->setFont(getFooterFont());
    widget->setPalette(QPalette(Qt::black, Qt::white, Qt::white, Qt::black, Qt::gray, Qt::black,
                                Qt::white, Qt::white, Qt::white));
    widget->setFocusPolicy(Qt::NoFocus);
    auto *proxy = new SmoothProxy(this);
    proxy->setWidget(widget);
    proxy->setAcceptedMouseButtons(Qt::NoButton);
    proxy->setAcceptHoverEvents(false);
    return proxy;
}
