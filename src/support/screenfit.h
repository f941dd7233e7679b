#pragma once

#include <QScreen>
#include <QWidget>

/// Makes a window smaller that is larger than its screen, less what a frame takes.
inline void fitToScreen(QWidget *window)
{
    window->resize(window->size().boundedTo(window->screen()->availableSize() - QSize(10, 40)));
}
