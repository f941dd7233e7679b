#pragma once

#include "support/formvalue.h"

#include <QGraphicsWebView>

/// The table at the top of the main sheet that repeats the form's key facts.
class HeaderItem : public QGraphicsWebView
{
    Q_OBJECT

public:
    HeaderItem();

    /// A template that can't be opened leaves the header empty.
    void loadTemplate(const QString &path);

public slots:
    /// Ids that the template doesn't know are passed over.
    void setHeaderValue(const QString &id, const QString &value);
    /// Those that are not empty.
    void setHeaderValues(const FormValues &values);
    /// At once, where the size can't wait until the last value has settled.
    void resizeToContent();

signals:
    void editRequested();

protected:
    // The page inside takes no part in what the mouse does.
    void mousePressEvent(QGraphicsSceneMouseEvent *) override {}
    void mouseReleaseEvent(QGraphicsSceneMouseEvent *) override {}
    void mouseMoveEvent(QGraphicsSceneMouseEvent *) override {}
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent *) override { emit editRequested(); }
    void contextMenuEvent(QGraphicsSceneContextMenuEvent *) override {}

private slots:
    void onLoadFinished(bool ok);
};
