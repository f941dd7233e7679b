#include "form/formview.h"

#include "chart/formfields.h"
#include "form/formprinter.h"
#include "form/formview_page.h"
#include "support/helptextbrowser.h"

#include <QBuffer>
#include <QDebug>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHelpEngine>
#include <QHelpLink>
#include <QPrintPreviewDialog>
#include <QRegularExpression>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryFile>
#include <QUndoGroup>
#include <QUndoStack>
#include <QWebElement>
#include <QWebFrame>

namespace
{

const QSize PreviewSize(480, 320);
const QMarginsF PaperMargins(18, 15, 15, 15); // millimetres

QUrl getPageAddress(QHelpEngine *helpEngine)
{
    const QList<QHelpLink> links = helpEngine->documentsForIdentifier("index");
    return links.isEmpty() ? QUrl() : links.first().url;
}

/// What scripts take as a number: digits, or nothing at all.
bool isDigits(const QString &text)
{
    static const QRegularExpression digits("\\A[0-9]{0,9}\\z");
    return digits.match(text).hasMatch();
}

/// A picture as an address that carries its bytes; empty for a null image.
QString getDataUrl(const QImage &image)
{
    if (image.isNull())
        return QString();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.scaled(image.size().boundedTo(PreviewSize), Qt::KeepAspectRatio, Qt::SmoothTransformation)
        .save(&buffer, "PNG");
    return "data:image/png;base64," + QString::fromLatin1(bytes.toBase64());
}

} // namespace

FormView::FormView(QUndoGroup *group, QWidget *parent)
    : QWidget(parent), bridge(new FormBridge(this, this)), undoStack(new QUndoStack(group))
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);

    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    helpEngine = new QHelpEngine(folder + "/formdata.qhc", this);
    webView = new HelpTextBrowser(helpEngine, this);
    const QUrl address = getPageAddress(helpEngine);
    webView->setPage(new FormPage(helpEngine, address, webView));
    layout->addWidget(webView);
    setFocusProxy(webView);

    connect(webView, &QWebView::loadFinished, this, &FormView::onPageLoaded);
    if (!address.isEmpty())
        webView->loadUrl(address);
}

// The page runs no script any more once its bridge begins to go.
FormView::~FormView()
{
    delete webView;
}

void FormView::clearForm()
{
    formData.clear();
    titleImage = FormValue();
    pageStands = false;
    webView->page()->mainFrame()->setScrollPosition(QPoint()); // a reload goes back to where it was
    webView->page()->QWebPage::triggerAction(QWebPage::Reload); // ours refuses to
}

void FormView::onPageLoaded(bool ok)
{
    const QMutexLocker locker(&loadMutex);
    mainFrame = webView->page()->mainFrame();
    mainFrame->addToJavaScriptWindowObject("formView", bridge);
    // A reload that a second one cut short leaves the fields of a page that is about to go.
    pageStands = ok && getAllFields(true).count() > 0;
    if (!formData.isEmpty())
        loadData();
    addOnChangeHandlers();
}

void FormView::onFormDataLoaded(const QHash<QString, FormValue> &values)
{
    const QMutexLocker locker(&loadMutex);
    formData = values;
    titleImage = values.value(FormFields::TitleImage);
    if (mainFrame)
        loadData();
}

void FormView::loadData()
{
    createRows();
    applyValues();
    restoreSteps();
    showTitleImage();
}

void FormView::createRows()
{
    QMap<QString, QString> rows;
    for (auto field = formData.cbegin(); field != formData.cend(); ++field) {
        const QStringList parts = field.key().split('_');
        if (parts.size() == 3 && isFieldId(field.key()))
            rows[parts.first() + parts.last().rightJustified(5, '0')] = field.key();
    }
    for (const QString &id : qAsConst(rows))
        mainFrame->evaluateJavaScript(QString("window.createNecessaryFields(\"%1\")").arg(id));
}

void FormView::applyValues()
{
    for (auto field = formData.cbegin(); field != formData.cend(); ++field) {
        QWebElement element = findField(field.key());
        setFieldValue(element, field->value);
        if (!field->value.isEmpty())
            emit formValueLoaded(field.key(), field->value);
    }
}

void FormView::restoreSteps()
{
    const auto step = formData.constFind(FormFields::LastStep);
    if (step != formData.cend() && isDigits(step->value))
        mainFrame->evaluateJavaScript(QString("showStepsUpTo(%1);").arg(step->value));
}

void FormView::addOnChangeHandlers()
{
    for (QWebElement element : getAllFields(false)) {
        const QString attribute = isRadioButton(element) ? "onclick" : "onchange";
        if (!element.hasAttribute(attribute))
            element.setAttribute(attribute, "window.formView.onFieldChanged(this.id);");
    }
    addOnClickHandler("exportFormButton", "window.formView.onExportFormClicked();");
    addOnClickHandler("titleImageButton", "window.formView.onChooseImageClicked();");
}

void FormView::addOnClickHandler(const QString &id, const QString &script)
{
    QWebElement button = findField(id);
    if (!button.isNull() && !button.hasAttribute("onclick"))
        button.setAttribute("onclick", script);
}

void FormView::onFieldChanged(const QString &id)
{
    emit formChanged();
    QWebElement element = findField(id);
    if (element.isNull())
        return;
    emit formValueChanged(id, getFieldValue(element));
    if (id == FormFields::TitleImage)
        showTitleImage();
}

void FormView::onPrintRequested()
{
    if (!mainFrame)
        return;
    FormPrinter printer;
    printer.setPageMargins(PaperMargins, QPageLayout::Millimeter);
    QPrintPreviewDialog dialog(&printer, this);
    connect(&dialog, &QPrintPreviewDialog::paintRequested, this,
            [this, &printer] { printer.setHead(getPaperName(), countPages(printer)); });
    connect(&dialog, &QPrintPreviewDialog::paintRequested, mainFrame, &QWebFrame::print);
    dialog.exec();
}

int FormView::countPages(const QPrinter &printer) const
{
    QTemporaryFile file;
    if (!file.open())
        return 0;
    FormPrinter counter;
    counter.setOutputFormat(QPrinter::PdfFormat);
    counter.setOutputFileName(file.fileName());
    counter.setPageLayout(printer.pageLayout());
    mainFrame->print(&counter);
    return counter.getPageCount();
}

QString FormView::getPaperName() const
{
    QStringList names = {getFieldValue("incidentTitle"), getFieldValue("fileNumber")};
    names.removeAll(QString());
    return names.join(QString::fromUtf8(" · "));
}

void FormView::onExportFormClicked()
{
    emit exportFormRequested();
}

void FormView::onChooseImageClicked()
{
    QSettings settings;
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    const QString folder = settings.value("lastImagePath", pictures).toString() + "/";
    const QString file = QFileDialog::getOpenFileName(this, "Open image...", folder,
                                                      "Images (*.png *.jpg *.jpeg *.bmp *.gif)");
    if (file.isEmpty())
        return;
    settings.setValue("lastImagePath", QFileInfo(file).absolutePath());
    setFieldValue(FormFields::TitleImage, QFileInfo(file).absoluteFilePath());
    showTitleImage();
}

FormValues FormView::collectForSave()
{
    FormValues values = getAllFieldValues();
    const auto field = values.find(FormFields::TitleImage);
    if (field != values.end()) {
        fillInTitleImage(*field);
        if (!field->image.isNull())
            titleImage = *field;
    }
    return values;
}

void FormView::fillInTitleImage(FormValue &field) const
{
    if (field.image.isNull() && field.value == titleImage.value)
        field.image = titleImage.image;
}

void FormView::showTitleImage()
{
    QWebElement preview = findField("titleImagePreview");
    if (preview.isNull())
        return;
    FormValue field;
    field.value = getFieldValue(FormFields::TitleImage);
    field.image = readTitleImage(field.value);
    fillInTitleImage(field);
    if (field.image.isNull())
        preview.removeAttribute("src");
    else
        preview.setAttribute("src", getDataUrl(field.image));
}
