#include "form/formview.h"

#include "chart/formfields.h"
#include "form/formengine.h"
#include "support/images.h"
#if QT_VERSION_MAJOR < 6
#include "form/webkitengine.h"
#endif

#include <QBuffer>
#include <QDateTime>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHelpEngine>
#include <QHelpLink>
#include <QScopedValueRollback>
#include <QSettings>
#include <QStandardPaths>
#include <QUndoGroup>
#include <QUndoStack>

namespace
{

const QSize PreviewSize(480, 320);

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
    if (field != values.end())
        holdTitleImage(*field);
    return values;
}

void FormView::holdTitleImage(FormValue &field)
{
    if (!field.image.isNull())
        titleImage = field;
    else if (field.value == titleImage.value)
        field = titleImage;
}

void FormView::showTitleImage()
{
    FormValue field;
    field.value = getFieldValue(FormFields::TitleImage);
    field.image = readTitleImage(field.value);
    holdTitleImage(field);
    engine->showTitleImage(getDataUrl(field.image));
}
