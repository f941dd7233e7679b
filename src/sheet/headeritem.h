#pragma once

#include "support/formvalue.h"

#include <QGraphicsWidget>
#include <QHash>
#include <QVector>

/// The table at the top of the main sheet that repeats the form's key facts.
class HeaderItem : public QGraphicsWidget
{
    Q_OBJECT

public:
    HeaderItem();

    /// Empty for an id that the template doesn't know.
    QString getHeaderValue(const QString &id) const { return shown.value(id); }

    /// Takes rows, labels and ids from a page with one table; its look is the item's own. A
    /// template that can't be opened leaves the header empty.
    void loadTemplate(const QString &path);

    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

public slots:
    /// Shows the text as it stands. Ids that the template doesn't know are passed over.
    void setHeaderValue(const QString &id, const QString &value);
    /// Those that are not empty.
    void setHeaderValues(const FormValues &values);

signals:
    void editRequested();

protected:
    // The table takes no part in what the mouse does.
    void mousePressEvent(QGraphicsSceneMouseEvent *) override {}
    void mouseReleaseEvent(QGraphicsSceneMouseEvent *) override {}
    void mouseMoveEvent(QGraphicsSceneMouseEvent *) override {}
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent *) override { emit editRequested(); }
    void contextMenuEvent(QGraphicsSceneContextMenuEvent *) override {}

private:
    struct Fact {
        QString label;
        QString id;
    };
    struct Text {
        QPointF place; // of its top left corner, scene units
        QStringList lines;
    };

    void layOut();
    int layOutRow(const QVector<Fact> &facts, int top);

    QVector<QVector<Fact>> rows;   // of one fact that takes the whole width, or of two
    QHash<QString, QString> shown; // values by the template's ids
    QVector<Text> texts;
    QVector<QRectF> rules;
};
