#pragma once

#include <QCoreApplication>
#include <QRegularExpression>
#include <QToolButton>

/// Where a toolbar's buttons or the menus find no room, the toolkit shows an arrow that has no name
/// and is black in a dark theme too. In each of the window's bars it becomes a sign that is seen.
inline void showToolbarMore(const QWidget *window)
{
    static const QRegularExpression name("^qt_(tool|menu)bar_ext_button$");
    for (auto *more : window->findChildren<QToolButton *>(name)) {
        more->setText(QString(QChar(0xbb)));
        more->setToolButtonStyle(Qt::ToolButtonTextOnly);
        more->setAccessibleName(QCoreApplication::translate("ChartCommands", "More"));
    }
}
