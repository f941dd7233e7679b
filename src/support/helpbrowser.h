#pragma once

#include <QMainWindow>

class HelpTextBrowser;
class QHelpEngine;

/// The help window: a tree of contents beside one view. Deletes itself on closing.
class HelpBrowser : public QMainWindow
{
    Q_OBJECT

public:
    explicit HelpBrowser(QWidget *parent);

private:
    void openCollection();
    void createIndexDock();
    void showIndexPage();

    QHelpEngine *helpEngine = nullptr;
    HelpTextBrowser *browser = nullptr;
};
