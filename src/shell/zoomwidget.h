#pragma once

#include <QList>
#include <QWidget>

class QAction;
class QLabel;
class QSlider;
class QToolButton;

/// The zoom control of the status bar, shared by all sheets. Values are percent.
class ZoomWidget : public QWidget
{
    Q_OBJECT

public:
    explicit ZoomWidget(QWidget *parent = nullptr);

    int getZoom() const;
    QAction *getActualSizeAction() const;
    QAction *getZoomInAction() const { return zoomInAction; }
    QAction *getZoomOutAction() const { return zoomOutAction; }

    /// Clamped to the first and last step; doesn't snap to one.
    void setZoom(int zoom);

public slots:
    /// Ten up or down, as the wheel does.
    void stepZoom(bool zoomIn);

signals:
    void zoomChanged(int zoom);

private slots:
    void onSliderChanged(int newValue);
    void onZoomActualTriggered();
    void onZoomInTriggered();
    void onZoomOutTriggered();

private:
    QAction *createAction(const QString &text, const QString &iconName,
                          const QKeySequence &shortcut, const QString &statusTip);
    void createLayout();
    void showValue(int value);

    QToolButton *actualSizeButton;
    QAction *zoomInAction;
    QAction *zoomOutAction;
    QSlider *slider;
    QLabel *percentLabel;
    QList<int> steps = {10, 25, 50, 75, 100, 150, 200};
};
