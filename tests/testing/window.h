#pragma once

#include "editing/commands.h"
#include "form/formview.h"
#include "project/projectfile.h"
#include "shell/graphwidget.h"
#include "shell/mainwindow.h"
#include "shell/projecttabwidget.h"
#include "support/supportfiles.h"
#include "testing/fakes.h"
#include "testing/testmain.h"

#include <QAction>
#include <QSettings>
#include <QUndoStack>

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
    void waitForForm() const { QTRY_VERIFY_WITH_TIMEOUT(form->isReady(), 60000); }

    /// As a new project is with usual settings, without a question.
    void empty()
    {
        QSettings().clear();
        window.clearInterface();
        file->resetOpenFilename();
        window.setWindowTitle("untitled[*] - TRAC/Ex Examiner");
        tabs->setCurrentIndex(1);
        QCoreApplication::processEvents();
        waitForForm();
    }

    QAction *action(const QString &text) const
    {
        for (auto *action : window.findChildren<QAction *>(QString(), Qt::FindDirectChildrenOnly)) {
            if (action->text() == text)
                return action;
        }
        qFatal("There is no action %s", qPrintable(text));
    }

    ProjectScene *chart() const { return window.getMainScene(); }
    /// Of the causal factor with the lowest number; null when there is none.
    ProjectScene *factorSheet() const { return window.getFactorScenes().value(0); }
    GraphWidget *view(int tab = 1) const { return qobject_cast<GraphWidget *>(tabs->widget(tab)); }

    ProjectItem *add(int type, const QRectF &place, const QString &role = QString())
    {
        CanvasItemInfo info = noteInfo(QString(), place, role, role, type);
        return chart()->loadCanvasItem(info);
    }

    Sticky *addNote(const QString &role, const QPointF &position,
                    const QSizeF &size = QSizeF(120, 80))
    {
        return qobject_cast<Sticky *>(add(NoteItemType, QRectF(position, size), role));
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

    /// Of the causal factors.
    QStringList tabTexts() const
    {
        QStringList texts;
        for (int i = 2; i < tabs->count(); ++i)
            texts.append(tabs->tabText(i));
        return texts;
    }

    MainWindow window;
    ProjectFile *file;
    FormView *form;
    ProjectTabWidget *tabs;
};
