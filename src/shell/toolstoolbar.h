#pragma once

#include <QList>
#include <QToolBar>

class ToolButton;

/// The tools palette: pick a tool by a click, or drag it onto a sheet. On the
/// form tab it carries the form's actions instead.
class ToolsToolBar : public QToolBar
{
    Q_OBJECT

public:
    enum ActiveButtons { ToolButtons = 0, FormButtons = 1 };

    explicit ToolsToolBar(QWidget *parent);

    /// A ToolId.
    int getSelectedTool() const { return selectedTool; }

    void setFormActions(const QList<QAction *> &actions);
    void setActiveButtons(ActiveButtons buttons);

public slots:
    /// Back to the select tool.
    void cancelActiveTool();

signals:
    void toolSelectionChanged(int tool);

private slots:
    void onDragStarting(QAction *source);
    void onToolTriggered(QAction *action);

private:
    QAction *createAction(const QPixmap &picture, int id, const QString &text,
                          const QString &toolTip);
    ToolButton *addToolButton(const QList<QAction *> &actions);
    ToolButton *addToolButton(QAction *action);
    void selectTool(QAction *action);

    int selectedTool = 0;
    QList<QAction *> allActions;
    QList<ToolButton *> toolButtons;
    QList<QAction *> buttonPlaces; // what shows and hides each button in the bar
    QList<QAction *> formActions;
    ActiveButtons activeButtons = ToolButtons;
};
