#pragma once

#include "chart/projectitem.h"

#include <QGraphicsWidget>

class FooterEntry;
class QGraphicsGridLayout;

/// What stands in the bottom right corner of a page: its name and, on the first
/// page, the legend of roles.
class FooterItem : public QGraphicsWidget
{
    Q_OBJECT

public:
    /// Both count from 0.
    FooterItem(int row, int column);

    /// Fills a new footer. The name of a page reads "Plant - B1" in the second
    /// row of pages, first column.
    void showFooter(bool showPageNumber, const QString &projectName, bool showLegend);
    /// All that is written there, the page's name last; empty when nothing is.
    QString getText() const;

    int type() const override { return ProjectItem::FooterType; }
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

private:
    void addLegend();
    void addPageName(const QString &projectName);
    const FooterEntry *getEntry(int index) const;

    QGraphicsGridLayout *layout; // the item's own
    int row;
    int column;
};
