#pragma once

#include <QWebView>

class QHelpEngine;

/// A web view that shows the files of a help collection.
class HelpTextBrowser : public QWebView
{
    Q_OBJECT

public:
    /// The engine is borrowed and may die first; its pages are then empty.
    HelpTextBrowser(QHelpEngine *helpEngine, QWidget *parent);

public slots:
    void loadUrl(QUrl url);
};
