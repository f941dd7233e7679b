#pragma once

#include <QList>
#include <QStringList>
#include <QUrl>
#include <QWidget>

class QHelpEngine;
class QLabel;
class QLineEdit;
class QListWidget;
class QListWidgetItem;

/// A field for words and the pages of a help collection that hold all of them, the best first.
class HelpSearch : public QWidget
{
    Q_OBJECT

public:
    /// Reads the pages once; the engine is not needed afterwards.
    HelpSearch(QHelpEngine *helpEngine, QWidget *parent);

    void takeFocus();

signals:
    void pageChosen(const QUrl &url, const QStringList &words);

private slots:
    void search();
    void choose(QListWidgetItem *entry);

private:
    struct Page {
        QUrl url;
        QString title;
        QString text;
    };

    void readPages(QHelpEngine *helpEngine);
    /// 0 if one of the words is missing; a word of the title counts as many of the text.
    int getWorth(const Page &page) const;

    QList<Page> pages;
    QStringList words;
    QLineEdit *field;
    QLabel *answer;
    QListWidget *found;
};
