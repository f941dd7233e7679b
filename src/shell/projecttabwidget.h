#pragma once

#include <QTabWidget>

/// The tabs of the window. A single tab needs no bar.
class ProjectTabWidget : public QTabWidget
{
    Q_OBJECT

public:
    explicit ProjectTabWidget(QWidget *parent = nullptr);

    /// The factors' tabs stand in the order of their numbers until the user moves one; from then
    /// on a new one comes last.
    void addFactor(QWidget *page, int number);
    /// Nothing for a page without a tab.
    void setFactorNumber(QWidget *page, int number);
    /// These come first and in this order; pages without a tab are passed over.
    void arrange(const QList<QWidget *> &pages);
    bool hasFactorsInOrder() const;

    /// Shows the bar, when it is visible, between the tabs and what they show. It becomes a child.
    void setBar(QWidget *newBar);
    /// Pixels; 0 while it is hidden.
    int getBarHeight() const;

    bool eventFilter(QObject *object, QEvent *event) override;

public slots:
    void showNext() { step(1); }
    void showPrevious() { step(-1); }

signals:
    /// The tool tip of a tab is about to be shown.
    void toolTipNeeded(int index);

protected:
    bool event(QEvent *event) override;
    void tabInserted(int index) override;
    void tabRemoved(int index) override;

private:
    /// 0 for other tabs.
    int getNumber(int index) const;
    int getPlaceFor(int number) const;
    void adaptToCount();
    void placeBar();
    void step(int by);

    QWidget *bar = nullptr; // child
};
