#pragma once

#include <QToolButton>

/// A palette button. A press becomes a click only on release, so that it can
/// become a drag before.
class ToolButton : public QToolButton
{
    Q_OBJECT

public:
    ToolButton();

    /// The first action is the button's face; more than one give it a menu.
    void setActions(const QList<QAction *> &actions);

public slots:
    void onActionTriggered(QAction *action);

signals:
    void dragStarting(QAction *action);
    void toolTriggered(QAction *action);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    QPoint pressPosition;
};
