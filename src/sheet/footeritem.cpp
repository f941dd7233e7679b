#include "sheet/footeritem.h"

#include "chart/role.h"

#include <QFontMetrics>
#include <QGraphicsGridLayout>
#include <QPainter>

namespace
{

constexpr qreal IconSize = 16;
constexpr qreal TextSpacing = 2; // on both sides of a role's name

QFont getFooterFont()
{
    return QFont("Arial", 8, QFont::Normal);
}

} // namespace

/// A role of the legend, or a page's name, which has no icon. Drawn by the footer, so that strokes
/// are strokes and text is text on paper.
class FooterEntry : public QGraphicsLayoutItem
{
public:
    explicit FooterEntry(const QString &text, const RoleInfo *role = nullptr)
        : text(text), role(role)
    {
        setOwnedByLayout(true);
        const QSize space = QFontMetrics(getFooterFont()).size(Qt::TextSingleLine, text);
        size = role ? QSizeF(IconSize + space.width() + 2 * TextSpacing,
                             qMax<qreal>(IconSize, space.height()))
                    : QSizeF(space);
    }

    const QString &getText() const { return text; }

    /// Leaves the painter as it was.
    void draw(QPainter *painter) const
    {
        painter->fillRect(geometry(), Qt::white);
        painter->drawText(geometry().adjusted(role ? IconSize + TextSpacing : 0, 0, 0, 0),
                          Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text);
        if (!role)
            return;
        painter->save();
        painter->translate(geometry().topLeft());
        role->drawIcon(painter);
        painter->restore();
    }

protected:
    QSizeF sizeHint(Qt::SizeHint which, const QSizeF &) const override
    {
        return which == Qt::MinimumSize || which == Qt::PreferredSize ? size : QSizeF();
    }

private:
    QString text;
    const RoleInfo *role; // a row of the role table, which stays
    QSizeF size;
};

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

QString FooterItem::getText() const
{
    QStringList texts;
    for (int i = 0; i < layout->count(); ++i)
        texts.append(getEntry(i)->getText());
    return texts.join(", ");
}

void FooterItem::paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget)
{
    painter->setPen(Qt::black); // on white, whatever the theme
    if (layout->columnCount() > 1) {
        painter->setRenderHint(QPainter::Antialiasing, false);
        painter->setBrush(Qt::white);
        painter->drawRect(rect());
    }
    painter->setFont(font());
    for (int i = 0; i < layout->count(); ++i)
        getEntry(i)->draw(painter);
    QGraphicsWidget::paint(painter, option, widget);
}

void FooterItem::addLegend()
{
    Role(); // fills the table if no note has done so yet
    int i = 0;
    for (const RoleInfo &role : qAsConst(Role::rolesList)) {
        layout->addItem(new FooterEntry(role.displayName, &role), i % 2, i / 2);
        ++i;
    }
}

void FooterItem::addPageName(const QString &projectName)
{
    // Plain character arithmetic: the row behind Z is "[".
    const QChar letter(ushort('A' + row));
    auto *name = new FooterEntry(projectName + " - " + letter + QString::number(column + 1));
    layout->addItem(name, 1, layout->columnCount(), Qt::AlignRight | Qt::AlignBottom);
}

const FooterEntry *FooterItem::getEntry(int index) const
{
    return static_cast<const FooterEntry *>(layout->itemAt(index));
}
