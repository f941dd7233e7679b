#include "support/helptextbrowser.h"

#include "support/helpnetworkaccessmanager.h"

HelpTextBrowser::HelpTextBrowser(QHelpEngine *helpEngine, QWidget *parent) : QWebView(parent)
{
    page()->setNetworkAccessManager(new HelpNetworkAccessManager(helpEngine, this));
    setContextMenuPolicy(Qt::PreventContextMenu);
    connect(this, &QWebView::loadFinished, this, [this](bool ok) {
        if (!ok)
            return; // another page is on its way already
        markWords();
        emit pageShown(url());
    });
}

void HelpTextBrowser::showWords(const QUrl &url, const QStringList &words)
{
    wantedWords = words;
    loadUrl(url);
}

void HelpTextBrowser::loadUrl(QUrl url)
{
    setUrl(url);
}

void HelpTextBrowser::markWords()
{
    for (const QString &word : qAsConst(wantedWords))
        findText(word, QWebPage::HighlightAllOccurrences);
    if (!wantedWords.isEmpty())
        findText(wantedWords.takeFirst());
    wantedWords.clear();
}
