#include "sheet/headeritem.h"

#include "support/log.h"

#include <QFile>
#include <QTimer>
#include <QWebElement>
#include <QWebFrame>
#include <QWebPage>

HeaderItem::HeaderItem()
{
    connect(this, &QGraphicsWebView::loadFinished, this, &HeaderItem::onLoadFinished);
    setFocusPolicy(Qt::NoFocus);
    setFlag(ItemIsFocusable, false);
    setAcceptHoverEvents(false);
    setAcceptedMouseButtons(Qt::LeftButton);
    resize(800, 300);
    // With scroll bars the table would lose their width with each edit.
    QWebFrame *frame = page()->mainFrame();
    frame->setScrollBarPolicy(Qt::Horizontal, Qt::ScrollBarAlwaysOff);
    frame->setScrollBarPolicy(Qt::Vertical, Qt::ScrollBarAlwaysOff);
}

void HeaderItem::loadTemplate(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qCDebug(sheetLog) << "Couldn't open the header template" << path;
        return;
    }
    setHtml(QString::fromUtf8(file.readAll()), QUrl());
}

void HeaderItem::setHeaderValue(const QString &id, const QString &value)
{
    QWebElement element = page()->mainFrame()->findFirstElement("#" + id);
    if (element.isNull())
        return;
    element.setPlainText(value);
    QTimer::singleShot(100, this, &HeaderItem::resizeToContent);
}

void HeaderItem::setHeaderValues(const FormValues &values)
{
    for (auto value = values.begin(); value != values.end(); ++value) {
        if (!value->value.isEmpty())
            setHeaderValue(value.key(), value->value);
    }
}

void HeaderItem::onLoadFinished(bool)
{
    QTimer::singleShot(0, this, &HeaderItem::resizeToContent);
}

void HeaderItem::resizeToContent()
{
    const QWebElement content = page()->mainFrame()->findFirstElement("#contentElement");
    if (!content.isNull())
        resize(content.geometry().size());
}
