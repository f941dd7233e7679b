#pragma once

#include <QTabWidget>

/// Movable tabs. A single tab shows no bar.
class ProjectTabWidget : public QTabWidget
{
    Q_OBJECT

public:
    explicit ProjectTabWidget(QWidget *parent = nullptr);

protected:
    void tabInserted(int index) override;
    void tabRemoved(int index) override;

private:
    void adaptToCount();
};
