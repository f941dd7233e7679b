#pragma once

#include <QStringList>
#include <QWebView>

class QHelpEngine;

/// A web view that shows the files of a help collection.
class HelpTextBrowser : public QWebView
{
    Q_OBJECT

public:
    /// The engine is borrowed and may die first; its pages are then empty.
    HelpTextBrowser(QHelpEngine *helpEngine, QWidget *parent);

    /// Shows a page with these words marked, from the first of them on.
    void showWords(const QUrl &url, const QStringList &words);

signals:
    /// A page stands, whoever asked for it.
    void pageShown(const QUrl &url);

public slots:
    void loadUrl(QUrl url);

private:
    void markWords();

    QStringList wantedWords; // of the page that is on its way
};
