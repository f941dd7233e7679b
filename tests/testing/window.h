#pragma once

#include "chart/line.h"
#include "chart/sticky.h"
#include "chart/svgpicture.h"
#include "editing/commands.h"
#include "form/formview.h"
#include "project/projectfile.h"
#include "shell/graphwidget.h"
#include "shell/mainwindow.h"
#include "shell/projecttabwidget.h"
#include "support/supportfiles.h"
#include "testing/testmain.h"

#include <QAction>
#include <QSettings>
#include <QStatusBar>
#include <QTabBar>
#include <QUndoStack>
#include <QWebElement>

/// The real window with all of its interface, and what a test reaches for in it.
struct TestWindow {
    TestWindow() : window(nullptr)
    {
        copySupportFiles();
        window.loadFullInterface();
        file = window.findChild<ProjectFile *>();
        form = window.findChild<FormView *>();
        tabs = window.findChild<ProjectTabWidget *>();
        waitForForm();
    }

    /// Rows and fields can only be written once the page stands.
    void waitForForm() const
    {
        QTRY_VERIFY_WITH_TIMEOUT(form->getAllFields(true).count() > 0, 60000);
    }

    /// As a new project is, without a question.
    void empty()
    {
        window.clearInterface();
        file->resetOpenFilename();
        window.setWindowTitle("untitled[*] - TRAC/Ex Examiner");
        tabs->setCurrentIndex(1);
        QCoreApplication::processEvents();
        waitForForm();
    }

    QAction *action(const QString &text) const
    {
        const QList<QAction *> actions =
            window.findChildren<QAction *>(QString(), Qt::FindDirectChildrenOnly);
        for (QAction *candidate : actions) {
            if (candidate->text() == text)
                return candidate;
        }
        qFatal("There is no action %s", qPrintable(text));
    }

    ProjectScene *chart() const { return window.getMainScene(); }
    GraphWidget *view() const { return qobject_cast<GraphWidget *>(tabs->widget(1)); }

    Sticky *addNote(const QString &role, const QPointF &position,
                    const QSizeF &size = QSizeF(120, 80))
    {
        CanvasItemInfo info;
        info.type = NoteItemType;
        info.role = Role(role);
        info.startPoint = position;
        info.size = size;
        info.text = role;
        return qobject_cast<Sticky *>(chart()->loadCanvasItem(info));
    }

    Line *addLine(const QPointF &from, const QPointF &to)
    {
        CanvasItemInfo info;
        info.type = ConnectorTool;
        info.startPoint = from;
        info.endPoint = to;
        return qobject_cast<Line *>(chart()->loadCanvasItem(info));
    }

    SVGPicture *addBarrier(const QPointF &position)
    {
        CanvasItemInfo info;
        info.type = NewBarrierTool;
        info.startPoint = position;
        info.size = QSizeF(17, 82);
        return qobject_cast<SVGPicture *>(chart()->loadCanvasItem(info));
    }

    /// A change of the user's, with its undo step.
    void makeDirty() { chart()->createItemAt(QPointF(400, 300), EventTool); }

    /// Turns the note into a causal factor, whatever else stands on the chart, and lets its
    /// sheet come.
    void makeFactor(Sticky *note)
    {
        chart()->getUndoStack()->push(new RoleChangeCommand({note}, "Causal_Factor"));
        QCoreApplication::processEvents();
    }

    QStringList tabTexts() const
    {
        QStringList texts;
        for (int i = 0; i < tabs->count(); ++i)
            texts.append(tabs->tabText(i));
        return texts;
    }

    MainWindow window;
    ProjectFile *file;
    FormView *form;
    ProjectTabWidget *tabs;
};
