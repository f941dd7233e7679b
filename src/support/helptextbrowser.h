#pragma once

#include <QPointer>
#include <QStringList>
#include <QTextBrowser>

class QHelpEngine;

/// Shows the pages of a help collection, in the toolkit's own subset of HTML.
class HelpTextBrowser : public QTextBrowser
{
    Q_OBJECT

public:
    /// The engine is borrowed and may die first; its pages are then empty.
    HelpTextBrowser(QHelpEngine *helpEngine, QWidget *parent);

    /// Shows a page with these words marked, from the first of them on.
    void showWords(const QUrl &url, const QStringList &words);

    /// Nothing but what lies in the collection.
    QVariant loadResource(int type, const QUrl &url) override;

signals:
    /// A page stands, whoever asked for it.
    void pageShown(const QUrl &url);

public slots:
    void loadUrl(QUrl url);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void openLink(const QUrl &url);
    void markWords(const QStringList &words);

    QPointer<QHelpEngine> helpEngine; // a window may delete it before its view
};
