#pragma once

#include <QMainWindow>

class HelpSearch;
class HelpTextBrowser;
class QDockWidget;
class QHelpEngine;
class QUrl;

/// The help window: a tree of contents beside one view. Deletes itself on closing.
class HelpBrowser : public QMainWindow
{
    Q_OBJECT

public:
    explicit HelpBrowser(QWidget *parent);

private slots:
    void showInIndex(const QUrl &url);
    void openSearch();

private:
    void openCollection();
    void createIndexDock();
    void createMenu();
    void connectIndex();
    void createSearchDock();
    void showIndexPage();

    QHelpEngine *helpEngine = nullptr;
    HelpTextBrowser *browser = nullptr;
    QDockWidget *indexDock = nullptr;
    QDockWidget *searchDock = nullptr; // null until somebody searches
    HelpSearch *search = nullptr;      // in the dock
};
