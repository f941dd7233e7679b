#include "support/helptextbrowser.h"

#include <QDesktopServices>
#include <QHelpEngine>
#include <QTextBlock>
#include <QTextFrame>

namespace
{

// Pixels.
constexpr int ColumnWidth = 680;
constexpr int SideMargin = 22;
constexpr int TopMargin = 18;
constexpr int BottomMargin = 28;
constexpr int ListIndent = 24;

constexpr QRgb TitleRule = 0x9c1c00;
constexpr QRgb EndRule = 0xdfe5eb;

bool isRule(const QTextBlockFormat &format)
{
    return format.hasProperty(QTextFormat::BlockTrailingHorizontalRulerWidth);
}

/// The toolkit draws rules in the middle of an empty line and in a colour of its own. A line of
/// the smallest letters is as thin as a rule.
void drawRule(QTextBlockFormat &format, const QTextBlock &block)
{
    QTextCharFormat thin;
    thin.setProperty(QTextFormat::FontPixelSize, 1);
    QTextCursor(block).setBlockCharFormat(thin);
    const bool underTitle = block.previous().blockFormat().headingLevel() == 1;
    format.clearProperty(QTextFormat::BlockTrailingHorizontalRulerWidth);
    format.setBackground(QColor(underTitle ? TitleRule : EndRule));
    format.setLineHeight(1, QTextBlockFormat::FixedHeight);
}

/// Style sheets count lines in sizes of the font, the toolkit counts them in its line spacing.
void spaceLines(QTextBlockFormat &format, const QTextBlock &block)
{
    if (format.lineHeightType() != QTextBlockFormat::ProportionalHeight)
        return;
    const int size = block.begin().fragment().charFormat().font().pixelSize();
    format.setLineHeight(size * format.lineHeight() / 100, QTextBlockFormat::MinimumHeight);
}

/// Headings have the size that the style sheet says, and not some steps more.
void sizeHeading(const QTextBlock &block)
{
    QTextCursor cursor(block);
    cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    QTextCharFormat format = block.begin().fragment().charFormat();
    format.clearProperty(QTextFormat::FontSizeAdjustment);
    cursor.setCharFormat(format);
}

/// As in a style sheet the margins of table and text lie one upon the other.
void closeUp(QTextFrame *table)
{
    QTextBlock next = table->document()->findBlock(table->lastPosition() + 1);
    if (next.length() == 1)
        next = next.next();
    QTextFrameFormat format = table->frameFormat();
    format.setBottomMargin(qMax(0.0, format.bottomMargin() - next.blockFormat().topMargin()));
    table->setFrameFormat(format);
}

void dress(QTextDocument *document)
{
    document->setIndentWidth(ListIndent);
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        QTextBlockFormat format = block.blockFormat();
        if (format.headingLevel() > 0)
            sizeHeading(block);
        if (isRule(format))
            drawRule(format, block);
        else
            spaceLines(format, block);
        QTextCursor(block).setBlockFormat(format);
    }
    const QList<QTextFrame *> tables = document->rootFrame()->childFrames();
    for (QTextFrame *table : tables)
        closeUp(table);
    QTextFrameFormat page = document->rootFrame()->frameFormat();
    page.setMargin(SideMargin);
    page.setTopMargin(TopMargin);
    page.setBottomMargin(BottomMargin);
    document->rootFrame()->setFrameFormat(page);
}

} // namespace

HelpTextBrowser::HelpTextBrowser(QHelpEngine *helpEngine, QWidget *parent)
    : QTextBrowser(parent), helpEngine(helpEngine)
{
    setFrameShape(NoFrame);
    setContextMenuPolicy(Qt::PreventContextMenu);
    setOpenLinks(false);
    setLineWrapMode(FixedPixelWidth);
    QPalette light = palette(); // the pages tell the colour of texts alone
    light.setColor(QPalette::Base, Qt::white);
    setPalette(light);
    connect(this, &QTextBrowser::anchorClicked, this, &HelpTextBrowser::openLink);
}

void HelpTextBrowser::showWords(const QUrl &url, const QStringList &words)
{
    loadUrl(url);
    markWords(words);
}

QVariant HelpTextBrowser::loadResource(int type, const QUrl &url)
{
    const QByteArray bytes =
        helpEngine ? helpEngine->fileData(source().resolved(url)) : QByteArray();
    return type == QTextDocument::HtmlResource ? QVariant(QString::fromUtf8(bytes)) : bytes;
}

void HelpTextBrowser::loadUrl(QUrl url)
{
    // Links to a style sheet are read after the text that they are for.
    const QByteArray look = helpEngine ? helpEngine->fileData(url.resolved(QUrl("help.css"))) : "";
    document()->setDefaultStyleSheet(QString::fromUtf8(look));
    setSource(url);
    dress(document());
    setExtraSelections({});
    emit pageShown(url);
}

void HelpTextBrowser::resizeEvent(QResizeEvent *event)
{
    setLineWrapColumnOrWidth(qMin(ColumnWidth + 2 * SideMargin, viewport()->width()));
    QTextBrowser::resizeEvent(event);
}

void HelpTextBrowser::openLink(const QUrl &url)
{
    if (url.scheme() == "qthelp")
        loadUrl(url);
    else
        QDesktopServices::openUrl(url);
}

void HelpTextBrowser::markWords(const QStringList &words)
{
    QList<QTextEdit::ExtraSelection> marks;
    for (const QString &word : words) {
        QTextCursor found = document()->find(word);
        for (; !found.isNull(); found = document()->find(word, found)) {
            QTextEdit::ExtraSelection mark;
            mark.cursor = found;
            mark.format.setBackground(Qt::yellow);
            marks << mark;
        }
    }
    setExtraSelections(marks);
    find(words.value(0));
}
