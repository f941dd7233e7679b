#pragma once

#include <QTabWidget>

/// Movable tabs. A single tab shows no bar.
class ProjectTabWidget : public QTabWidget
{
    Q_OBJECT

public:
    explicit ProjectTabWidget(QWidget *parent = nullptr);

    /// Shows the bar, when it is visible, between the tabs and what they show. It becomes a child.
    void setBar(QWidget *newBar);
    /// Pixels; 0 while it is hidden.
    int getBarHeight() const;

    bool eventFilter(QObject *object, QEvent *event) override;

signals:
    /// The tool tip of a tab is about to be shown.
    void toolTipNeeded(int index);

protected:
    bool event(QEvent *event) override;
    void tabInserted(int index) override;
    void tabRemoved(int index) override;

private:
    void adaptToCount();
    void placeBar();

    QWidget *bar = nullptr; // child
};
