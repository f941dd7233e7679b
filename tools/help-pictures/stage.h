#pragma once

#include "shell/mainwindow.h"

#include <QEvent>
#include <QImage>
#include <QPointF>
#include <QVector>

class GraphWidget;
class QDialog;
class QTabWidget;

/// The program's window with the sample project, and the hands that use it.
class Stage
{
public:
    /// The project is opened where it lies.
    explicit Stage(const QString &project);

    /// In pixels.
    void resize(int width, int height);
    /// 0 is the form, 1 the main chart.
    void showTab(int index);
    void showSheet(ProjectScene *sheet);
    void takeTool(int tool);
    /// Presses the left button at the first of these points of the sheet shown, and drags it
    /// through the others.
    void drag(const QVector<QPointF> &points);
    void drop();
    void select(const QString &text);
    /// And the line that begins at the note.
    void selectWithLine(const QString &text);
    /// Of the main chart; ends the program when there is none.
    Sticky *findNote(const QString &text) const;

    QImage grab();
    /// A part of the sheet shown, in its units, as the view draws it.
    QImage grabSheet(const QRectF &part);
    /// A part of the form's view, in pixels, with this element at the top.
    QImage grabForm(const QString &element, const QRect &part);
    /// Where the middle of a child widget is in the window.
    QPoint find(const QWidget *child) const;
    /// Where a point of the sheet is in the window.
    QPoint find(const QPointF &scenePos) const;
    /// What the action opens, which is then cancelled. The tab is the dialog's, from 0.
    QImage grabDialog(const QString &action, int tab = 0);

    GraphWidget *getView() const;
    template<typename Widget> Widget *child(const QString &name = QString()) const
    {
        return window.findChild<Widget *>(name);
    }

    MainWindow window;

private:
    void sendMouse(QEvent::Type type, const QPointF &scenePos, Qt::MouseButtons buttons);

    QTabWidget *tabs;
    QPointF pointer;
};

/// Runs the event loop until it has nothing more to do.
void settle();
