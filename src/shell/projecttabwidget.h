#pragma once

#include <QTabWidget>

/// Movable tabs. A single tab shows no bar.
class ProjectTabWidget : public QTabWidget
{
    Q_OBJECT

public:
    explicit ProjectTabWidget(QWidget *parent = nullptr);

    bool eventFilter(QObject *object, QEvent *event) override;

signals:
    /// The tool tip of a tab is about to be shown.
    void toolTipNeeded(int index);

protected:
    void tabInserted(int index) override;
    void tabRemoved(int index) override;

private:
    void adaptToCount();
};
