#include "form/formview.h"

#include "chart/formfields.h"
#include "form/formengine.h"
#include "form/formprinter.h"
#include "support/images.h"
#include "support/toolbarmore.h"
#if QT_VERSION_MAJOR < 6
#include "form/webkitengine.h"
#endif

#include <QBuffer>
#include <QDateTime>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHelpEngine>
#include <QHelpLink>
#include <QPaintEngine>
#include <QPrintPreviewDialog>
#include <QScopeGuard>
#include <QScopedValueRollback>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryFile>
#include <QUndoGroup>
#include <QUndoStack>

namespace
{

const QSize PreviewSize(480, 320);
const QMarginsF PaperMargins(18, 15, 15, 15); // millimetres

QUrl getPageAddress(QHelpEngine *helpEngine)
{
    const QList<QHelpLink> links = helpEngine->documentsForIdentifier("index");
    return links.isEmpty() ? QUrl() : links.first().url;
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
    engine = FormEngine::create(helpEngine, getPageAddress(helpEngine), &model, bridge, this);
    layout->addWidget(engine->getWidget());
    setFocusProxy(engine->getWidget());
    connect(engine, &FormEngine::loaded, this, &FormView::onPageLoaded);
}

// The page runs no script any more once its bridge begins to go.
FormView::~FormView()
{
    delete engine;
}

bool FormView::isReady() const
{
    return engine->isReady();
}

bool FormView::settle()
{
    if (isSettling)
        return false;
    const QScopedValueRollback<bool> guard(isSettling, true);
    return engine->settle();
}

void FormView::setSharedString(const QString &text)
{
    sharedString = text;
    engine->share(text);
}

void FormView::clearForm()
{
    model.clear();
    titleImage = FormValue();
    engine->reload();
}

void FormView::onPageLoaded(bool)
{
    const QMutexLocker locker(&loadMutex);
    if (!model.getWaiting().isEmpty())
        loadData();
    addOnChangeHandlers();
}

void FormView::onFormDataLoaded(const QHash<QString, FormValue> &values)
{
    const QMutexLocker locker(&loadMutex);
    model.setWaiting(values);
    titleImage = values.value(FormFields::TitleImage);
    loadData();
}

void FormView::loadData()
{
    const FormValues values = model.getWaiting();
    if (!engine->fill(values))
        return;
    for (auto field = values.cbegin(); field != values.cend(); ++field) {
        if (!field->value.isEmpty())
            emit formValueLoaded(field.key(), field->value);
    }
    showTitleImage();
}

FormValues FormView::getAllFieldValues() const
{
    if (!isReady())
        return model.getWaiting();
    FormValues values = engine->readAll();
    const auto field = values.find(FormFields::TitleImage);
    if (field != values.end())
        field->image = readTitleImage(field->value);
    return values;
}

QStringList FormView::getTextFields() const
{
    return engine->getTextFields();
}

void FormView::markFields(const QStringList &ids, const QString &current, bool lead)
{
    if (isReady())
        engine->markFields(ids, current, lead);
}

QString FormView::getFieldValue(const QString &id) const
{
    return isReady() ? engine->read(id) : model.getValue(id);
}

bool FormView::setFieldValue(const QString &id, const QString &value)
{
    if (!isReady())
        model.write(id, value);
    return engine->write(id, value);
}

#if QT_VERSION_MAJOR < 6
QWebElementCollection FormView::getAllFields(bool includeHidden) const
{
    return static_cast<WebKitEngine *>(engine)->getAllFields(includeHidden);
}

QString FormView::getFieldValue(QWebElement &element) const
{
    return static_cast<WebKitEngine *>(engine)->read(element);
}

bool FormView::setFieldValue(QWebElement &element, const QString &value)
{
    return static_cast<WebKitEngine *>(engine)->write(element, value);
}
#endif

void FormView::addOnChangeHandlers()
{
    engine->addOnChangeHandlers();
}

void FormView::onFieldChanged(const QString &id)
{
    emit formChanged();
    if (!engine->hasField(id))
        return;
    emit formValueChanged(id, engine->read(id));
    if (id == FormFields::TitleImage)
        showTitleImage();
}

void FormView::onPrintRequested()
{
    if (!isReady())
        return;
    FormPrinter printer;
    printer.setDocName(getFieldValue("incidentTitle").simplified().replace('/', '-')); // and file's
    printer.setPageMargins(PaperMargins, QPageLayout::Millimeter);
    QPrintPreviewDialog dialog(&printer, this);
    dialog.resize(window()->size()); // a page can be read, and no button is left out
    showToolbarMore(&dialog);
    connect(&dialog, &QPrintPreviewDialog::paintRequested, this,
            [this, &printer] { paint(printer); });
    dialog.exec();
}

void FormView::paint(FormPrinter &printer) const
{
    // No box with Cancel: while the page lies on paper, no event may reach it.
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    const auto restore = qScopeGuard([] { QGuiApplication::restoreOverrideCursor(); });
    const bool isPreview = printer.paintEngine()->type() == QPaintEngine::Picture;
    printer.setHead(getPaperName(), countPages(printer));
    engine->print(&printer, isPreview ? FormEngine::Preview : FormEngine::Final);
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
    engine->print(&counter, FormEngine::Draft);
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
    const QString file = QFileDialog::getOpenFileName(
        this, tr("Open image..."), folder, tr("Images (*.png *.jpg *.jpeg *.bmp *.gif)"));
    if (file.isEmpty())
        return;
    settings.setValue("lastImagePath", QFileInfo(file).absolutePath());
    setFieldValue(FormFields::TitleImage, QFileInfo(file).absoluteFilePath());
    showTitleImage();
}

/// Saves ask often, and a photograph takes longer to decode than all else that they gather.
QImage FormView::readTitleImage(const QString &path) const
{
    const QFileInfo file(path);
    const QString state =
        QString("%1 %2 %3").arg(file.size()).arg(file.lastModified().toMSecsSinceEpoch()).arg(path);
    if (state != lastRead.value) {
        lastRead.value = state;
        lastRead.image = readImageFile(path);
    }
    return lastRead.image;
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
        field = titleImage;
}

void FormView::showTitleImage()
{
    FormValue field;
    field.value = getFieldValue(FormFields::TitleImage);
    field.image = readTitleImage(field.value);
    fillInTitleImage(field);
    engine->showTitleImage(getDataUrl(field.image));
}
