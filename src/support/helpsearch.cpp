#include "support/helpsearch.h"

#include <QHelpEngine>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTextDocument>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace
{
constexpr int TitleWorth = 100; // occurrences in the text
}

HelpSearch::HelpSearch(QHelpEngine *helpEngine, QWidget *parent)
    : QWidget(parent), field(new QLineEdit), answer(new QLabel), found(new QListWidget)
{
    readPages(helpEngine);
    field->setPlaceholderText(tr("Words to look for"));
    field->setAccessibleName(tr("Words to look for"));
    field->setClearButtonEnabled(true);
    field->findChild<QToolButton *>()->setAccessibleName(tr("Clear"));
    answer->setWordWrap(true);
    answer->hide();
    found->setAccessibleName(tr("Pages found"));
    auto *layout = new QVBoxLayout(this);
    for (QWidget *widget : {static_cast<QWidget *>(field), static_cast<QWidget *>(answer),
                            static_cast<QWidget *>(found)})
        layout->addWidget(widget);
    connect(field, &QLineEdit::textChanged, this, &HelpSearch::search);
    connect(field, &QLineEdit::returnPressed, this, [this] { choose(found->item(0)); });
    connect(found, &QListWidget::itemClicked, this, &HelpSearch::choose);
    connect(found, &QListWidget::itemActivated, this, &HelpSearch::choose);
}

void HelpSearch::readPages(QHelpEngine *helpEngine)
{
    for (const QString &name : helpEngine->registeredDocumentations()) {
        for (const QUrl &url : helpEngine->files(name, QString(), "html")) {
            QTextDocument document;
            document.setHtml(QString::fromUtf8(helpEngine->fileData(url)));
            pages.append({url, document.metaInformation(QTextDocument::DocumentTitle),
                          document.toPlainText()});
        }
    }
}

void HelpSearch::takeFocus()
{
    field->setFocus();
    field->selectAll();
}

int HelpSearch::getWorth(const Page &page) const
{
    int worth = 0;
    for (const QString &word : words) {
        const int count = page.text.count(word, Qt::CaseInsensitive) +
                          TitleWorth * page.title.count(word, Qt::CaseInsensitive);
        if (count == 0)
            return 0;
        worth += count;
    }
    return worth;
}

void HelpSearch::search()
{
    words = field->text().simplified().split(' ', Qt::SkipEmptyParts);
    QList<std::pair<int, const Page *>> hits;
    for (const Page &page : qAsConst(pages)) {
        if (const int worth = getWorth(page))
            hits.append({worth, &page});
    }
    std::stable_sort(hits.begin(), hits.end(),
                     [](const auto &one, const auto &two) { return one.first > two.first; });
    found->clear();
    for (const auto &hit : qAsConst(hits)) {
        auto *entry = new QListWidgetItem(hit.second->title, found);
        entry->setData(Qt::UserRole, hit.second->url);
    }
    answer->setText(tr("No page holds all of these words."));
    answer->setVisible(!words.isEmpty() && hits.isEmpty());
}

void HelpSearch::choose(QListWidgetItem *entry)
{
    if (!entry)
        return;
    found->setCurrentItem(entry);
    emit pageChosen(entry->data(Qt::UserRole).toUrl(), words);
}
