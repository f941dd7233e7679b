#pragma once

#include <QCoreApplication>
#include <QToolButton>

/// Where a toolbar's buttons find no room, the toolkit shows an arrow that has no name and is
/// black in a dark theme too. In each of the window's toolbars it becomes a sign that can be seen.
inline void showToolbarMore(const QWidget *window)
{
    for (auto *more : window->findChildren<QToolButton *>("qt_toolbar_ext_button")) {
        more->setText(QString(QChar(0xbb)));
        more->setToolButtonStyle(Qt::ToolButtonTextOnly);
        more->setAccessibleName(QCoreApplication::translate("ChartCommands", "More"));
    }
}
