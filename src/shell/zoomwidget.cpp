#include "shell/zoomwidget.h"

#include "shell/pmiconloader.h"
#include "shell/shortcuttip.h"

#include <QAction>
#include <QHBoxLayout>
#include <QLabel>
#include <QSlider>
#include <QToolButton>

#include <algorithm>

ZoomWidget::ZoomWidget(QWidget *parent)
    : QWidget(parent), actualSizeButton(new QToolButton(this)),
      slider(new QSlider(Qt::Horizontal, this)), percentLabel(new QLabel(this))
{
    QAction *actualSize = createAction(tr("Actual Size"), "zoom-original", QKeySequence("Alt+1"),
                                       tr("Zoom to the original size (1:1)"));
    zoomInAction = createAction(tr("Zoom In"), "zoom-in", QKeySequence::ZoomIn,
                                tr("Zoom in on the view of the project"));
    zoomOutAction = createAction(tr("Zoom Out"), "zoom-out", QKeySequence::ZoomOut,
                                 tr("Zoom out on the view of the project"));
    actualSizeButton->setDefaultAction(actualSize);
    actualSizeButton->setAutoRaise(true);

    slider->setFixedWidth(150);
    slider->setRange(steps.first(), steps.last());
    slider->setSingleStep(10);
    slider->setValue(100);
    slider->setAccessibleName(tr("Zoom"));
    percentLabel->setMinimumWidth(40);
    showValue(slider->value());
    zoomInAction->setShortcuts(zoomInAction->shortcuts() << QKeySequence("Ctrl+="));
    createLayout();

    connect(slider, &QSlider::valueChanged, this, &ZoomWidget::onSliderChanged);
    connect(actualSize, &QAction::triggered, this, &ZoomWidget::onZoomActualTriggered);
    connect(zoomInAction, &QAction::triggered, this, &ZoomWidget::onZoomInTriggered);
    connect(zoomOutAction, &QAction::triggered, this, &ZoomWidget::onZoomOutTriggered);
}

int ZoomWidget::getZoom() const
{
    return slider->value();
}

QAction *ZoomWidget::getActualSizeAction() const
{
    return actualSizeButton->defaultAction();
}

void ZoomWidget::setZoom(int zoom)
{
    slider->setValue(qBound(steps.first(), zoom, steps.last()));
}

void ZoomWidget::stepZoom(bool zoomIn)
{
    setZoom(slider->value() + (zoomIn ? 10 : -10));
}

void ZoomWidget::onSliderChanged(int newValue)
{
    showValue(newValue);
    emit zoomChanged(newValue);
}

void ZoomWidget::onZoomActualTriggered()
{
    slider->setValue(100);
}

void ZoomWidget::onZoomInTriggered()
{
    const auto next = std::upper_bound(steps.cbegin(), steps.cend(), slider->value());
    slider->setValue(next == steps.cend() ? steps.last() : *next);
}

void ZoomWidget::onZoomOutTriggered()
{
    const auto next = std::lower_bound(steps.cbegin(), steps.cend(), slider->value());
    slider->setValue(next == steps.cbegin() ? steps.first() : *std::prev(next));
}

QAction *ZoomWidget::createAction(const QString &text, const QString &iconName,
                                  const QKeySequence &shortcut, const QString &statusTip)
{
    auto *action = new QAction(PMIconLoader::loadIcon(iconName), text, this);
    action->setShortcut(shortcut);
    action->setStatusTip(statusTip);
    nameShortcutInTip(action);
    return action;
}

void ZoomWidget::createLayout()
{
    auto *layout = new QHBoxLayout(this);
    layout->addWidget(percentLabel);
    layout->addWidget(slider);
    layout->addWidget(actualSizeButton);
    QMargins margins = layout->contentsMargins();
    margins.setTop(2);
    margins.setBottom(2);
    layout->setContentsMargins(margins);
    setFixedSize(layout->minimumSize());
}

void ZoomWidget::showValue(int value)
{
    percentLabel->setText(QString("%1%").arg(value, 3, 10, QChar(' ')));
}
