#include "form/webengineengine.h"

#include "chart/formfields.h"
#include "form/formbridge.h"
#include "form/formmodel.h"
#include "form/formprinter.h"
#include "form/formtext.h"
#include "form/paperpages.h"
#include "form/webenginepage.h"
#include "support/log.h"
#include "support/pdfpages.h"

#include <QApplication>
#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QKeyEvent>
#include <QMap>
#include <QPageLayout>
#include <QPageRanges>
#include <QPainter>
#include <QScopedValueRollback>
#include <QStackedWidget>
#include <QTemporaryDir>
#include <QWebEngineProfile>
#include <QWebEngineView>

#include <memory>

namespace
{

constexpr int PaintTime = 100; // milliseconds, like the next six
constexpr int AskTime = 100;
constexpr int LoadTime = 20000;
constexpr int FailedLoadTime = 2000; // a load that a second one cut short fails too
constexpr int SettleTime = 2000;
constexpr int PrintTime = 120000;
constexpr int DeathTime = 60000;
constexpr int MaximumDeaths = 3; // within that time
constexpr int AnswerKeys = 8;    // F13 to F20, in turn: a late answer is not taken for the next one

QJsonArray getPair(const QString &id, const QString &value)
{
    return {id, value};
}

FormField getField(const QJsonObject &told)
{
    FormField field;
    field.kind = FormField::Kind(qBound(0, told["kind"].toInt(), int(FormField::Choice)));
    field.value = told["value"].toString();
    field.group = told["group"].toString();
    field.options = told["options"].toVariant().toStringList();
    field.label = told["label"].toString();
    field.place = told["place"].toInt();
    return field;
}

} // namespace

FormEngine *FormEngine::create(QHelpEngine *helpEngine, const QUrl &address, FormModel *model,
                               FormBridge *bridge, QWidget *parent)
{
    return new WebEngineEngine(helpEngine, address, model, bridge, parent);
}

WebEngineEngine::WebEngineEngine(QHelpEngine *helpEngine, const QUrl &address, FormModel *model,
                                 FormBridge *bridge, QWidget *parent)
    : FormEngine(parent), helpEngine(helpEngine), address(address), model(model), bridge(bridge),
      stack(new QStackedWidget(parent)), text(new FormText(stack))
{
    stack->addWidget(new QWidget); // blank until there is a page
    stack->addWidget(text);
    loading.setSingleShot(true);
    connect(&loading, &QTimer::timeout, this, &WebEngineEngine::onLoadFailed);
    connect(text, &FormText::retryRequested, this, [this] {
        deaths.clear();
        startPage();
    });
    // The event loop turns for the first time when the window has been shown.
    QTimer::singleShot(0, this,
                       [this] { QTimer::singleShot(PaintTime, this, &WebEngineEngine::start); });
}

/// The engine needs a third of a second to begin with, for which no window should wait.
void WebEngineEngine::start()
{
    profile = makeOfflineProfile(this);
    profile->setUrlRequestInterceptor(new FormGuard(profile));
    profile->installUrlSchemeHandler(HelpSchemeHandler::Scheme,
                                     new HelpSchemeHandler(helpEngine, profile));
    view = new QWebEngineView(stack);
    view->setContextMenuPolicy(Qt::PreventContextMenu);
    stack->addWidget(view);
    stack->setFocusProxy(view);
    connect(qApp, &QApplication::focusChanged, this, &WebEngineEngine::onFocusChanged);
    startPage();
}

WebEngineEngine::~WebEngineEngine()
{
    pageIsUp = false;
    emit pageGone();
    delete stack;
    delete page;
}

QWidget *WebEngineEngine::getWidget() const
{
    return stack;
}

/// A page whose process has died doesn't come back as it was: there is a fresh one each time.
void WebEngineEngine::startPage()
{
    if (address.isEmpty()) {
        onLoadFailed();
        return;
    }
    if (page)
        page->deleteLater();
    pageIsUp = false;
    writesOnTheWay = 0;
    gaveUp = false;
    page = new WebEnginePage(profile, address, this);
    WebEnginePage *const sender = page;
    // Queued: the engine doesn't expect that whoever hears of an edit turns the event loop.
    connect(
        page, &WebEnginePage::told, this,
        [this, sender](const QString &message) {
            if (sender == page)
                hear(message);
        },
        Qt::QueuedConnection);
    connect(page, &QWebEnginePage::renderProcessTerminated, this, &WebEngineEngine::onPageDied,
            Qt::QueuedConnection);
    connect(page, &QWebEnginePage::loadFinished, this, [this](bool ok) {
        if (!ok && !pageIsUp)
            loading.start(FailedLoadTime);
    });
    connect(page, &QWebEnginePage::urlChanged, this, &WebEngineEngine::onUrlChanged,
            Qt::QueuedConnection);
    view->setPage(page);
    stack->setCurrentWidget(view);
    page->load(address);
    loading.start(LoadTime);
}

void WebEngineEngine::onPageDied()
{
    if (sender() == page)
        replacePage();
}

void WebEngineEngine::replacePage()
{
    qCWarning(formLog) << "The form's page is gone";
    const bool hadFocus = hasFocus();
    pageIsUp = false;
    emit pageGone();
    deaths.append(QElapsedTimer());
    deaths.last().start();
    while (deaths.first().hasExpired(DeathTime))
        deaths.removeFirst();
    if (deaths.size() < MaximumDeaths)
        startPage();
    else
        giveUp(tr("The form's page stopped three times within a minute."));
    if (hadFocus)
        stack->currentWidget()->setFocus();
}

/// What shows a page hides before anybody hears that the page has died, and the focus goes on to
/// what comes next in the window: the next keys would press it.
void WebEngineEngine::onFocusChanged(QWidget *old, QWidget *now)
{
    if (old && view->isAncestorOf(old))
        focusTaker = old->isVisible() ? nullptr : now;
}

bool WebEngineEngine::hasFocus() const
{
    const bool taken = focusTaker && focusTaker == QApplication::focusWidget();
    return view->isVisible() && (view->hasFocus() || taken);
}

/// An empty page is the one that the engine leaves for without asking.
void WebEngineEngine::onUrlChanged(const QUrl &url)
{
    if (sender() == page && !url.isEmpty() && !url.matches(address, QUrl::RemoveFragment))
        replacePage();
}

void WebEngineEngine::onLoadFailed()
{
    giveUp(tr("The form's page doesn't load."));
}

void WebEngineEngine::giveUp(const QString &reason)
{
    loading.stop();
    gaveUp = true;
    text->setReason(reason);
    text->setValues(*model);
    stack->setCurrentWidget(text);
    if (!model->hasFields())
        emit loaded(false);
}

void WebEngineEngine::showValues()
{
    if (!gaveUp || valuesDue)
        return;
    valuesDue = true;
    QTimer::singleShot(0, this, [this] {
        valuesDue = false;
        text->setValues(*model);
    });
}

bool WebEngineEngine::isReady() const
{
    return model->hasFields();
}

bool WebEngineEngine::hasField(const QString &id) const
{
    return model->hasField(id) || otherElements.contains(id);
}

QString WebEngineEngine::read(const QString &id) const
{
    return model->getValue(id);
}

QStringList WebEngineEngine::getTextFields() const
{
    return model->getTextFields();
}

FormValues WebEngineEngine::readAll() const
{
    return model->getValues();
}

void WebEngineEngine::send(const QJsonArray &action)
{
    QJsonArray actions;
    actions.append(action); // in braces it would be copied and not put inside
    send(writeNumber, actions);
}

void WebEngineEngine::send(int number, const QJsonArray &actions)
{
    showValues();
    if (!pageIsUp)
        return; // a page that comes up takes all at once
    const QByteArray words = QJsonDocument(actions).toJson(QJsonDocument::Compact);
    WebEnginePage *const receiver = page;
    ++writesOnTheWay;
    page->runJavaScript(
        QString("takeFromProgram(%1, %2)").arg(QString::number(number), QString::fromUtf8(words)),
        [this, receiver](const QVariant &taken) {
            if (receiver != page || !pageIsUp)
                return;
            --writesOnTheWay;
            emit answered(0);
            if (!taken.toBool())
                replacePage(); // a script has put another document in its place
        });
}

bool WebEngineEngine::write(const QString &id, const QString &value)
{
    if (otherElements.contains(id)) {
        qCDebug(formLog) << "Warning, encountered unhandled element" << id << value;
        return true;
    }
    if (!model->hasField(id))
        return false;
    const QString before = model->getValue(id);
    if (id == editedId) {
        if (model->write(id, value))
            send({"echo", id, before, model->getValue(id)});
    } else if (model->write(id, value, writeNumber + 1)) {
        ++writeNumber;
        send({"write", id, model->getValue(id)});
    }
    return true;
}

bool WebEngineEngine::fill(const FormValues &values)
{
    if (!model->hasFields()) {
        showValues();
        return gaveUp;
    }
    model->fill(values, ++writeNumber);
    QJsonArray pairs;
    for (auto field = values.cbegin(); field != values.cend(); ++field) {
        if (model->hasField(field.key()) && !field->value.isEmpty())
            pairs.append(getPair(field.key(), model->getValue(field.key())));
    }
    const QStringList rows = FormModel::getRowIds(values);
    QJsonArray actions = {QJsonArray{"rows", QJsonArray::fromStringList(rows)},
                          QJsonArray{"writes", pairs}};
    const auto step = values.constFind(FormFields::LastStep);
    if (step != values.cend() && FormModel::isDigits(step->value))
        actions.append(QJsonArray{"steps", step->value});
    send(writeNumber, actions);
    return true;
}

/// The page is as it was loaded, and the model holds what stood in the one before.
void WebEngineEngine::restore()
{
    QJsonArray pairs;
    FormValues values = model->getValues();
    for (auto field = values.cbegin(); field != values.cend(); ++field)
        pairs.append(getPair(field.key(), field->value));
    const QStringList rows = FormModel::getRowIds(values);
    send(++writeNumber,
         {QJsonArray{"rows", QJsonArray::fromStringList(rows)}, QJsonArray{"writes", pairs},
          QJsonArray{"steps", model->getValue(FormFields::LastStep)},
          QJsonArray{"picture", picture}, QJsonArray{"wire"}, QJsonArray{"focus", lastEdited}});
}

void WebEngineEngine::addRow(int number, const QString &guid)
{
    if (!model->hasFields())
        return;
    model->addRow(number, guid, ++writeNumber);
    send({"addRow", guid, number});
}

void WebEngineEngine::removeRow(int number)
{
    if (!model->hasFields())
        return;
    model->removeRow(number, ++writeNumber);
    send({"removeRow", number});
}

void WebEngineEngine::showTitleImage(const QString &dataUrl)
{
    picture = dataUrl;
    send({"picture", dataUrl});
}

void WebEngineEngine::markFields(const QStringList &ids, const QString &current, bool lead)
{
    send({"found", QJsonArray::fromStringList(ids), current, lead});
}

void WebEngineEngine::share(const QString &text)
{
    if (text == shared)
        return;
    shared = text;
    send({"share", text});
}

void WebEngineEngine::addOnChangeHandlers()
{
    send({"wire"});
}

void WebEngineEngine::reload()
{
    picture.clear();
    if (!view || loading.isActive())
        return; // the one on its way is empty as well
    const bool hadFocus = hasFocus();
    startPage();
    if (hadFocus)
        view->setFocus();
}

void WebEngineEngine::hear(const QString &message)
{
    const QJsonArray words = QJsonDocument::fromJson(message.toUtf8()).array();
    const QString name = words.at(0).toString();
    const int seenWrite = words.at(1).toInt();
    if (name == "ready")
        hearReady(words.at(2).toArray(), words.at(3));
    else if (!pageIsUp)
        return;
    else if (name == "edited")
        hearEdit(words.at(2).toString(), words.at(3).toArray(), seenWrite);
    else if (name == "fields")
        hearFields(words.at(2).toArray(), words.at(3).toArray(), words.at(4).toArray(), seenWrite);
    else if (name == "settled")
        emit answered(Qt::Key_F13 + words.at(2).toString().mid(1).toInt() - 13);
    else if (name == "share")
        bridge->setSharedString(shared = words.at(2).toString());
    else if (name == "remove")
        bridge->removeCausalFactor(words.at(2).toInt());
    else if (name == "print")
        bridge->onPrintRequested();
    else if (name == "export")
        bridge->onExportFormClicked();
    else if (name == "image")
        chooseImage();
}

void WebEngineEngine::hearReady(const QJsonArray &fields, const QJsonValue &others)
{
    if (fields.isEmpty())
        return; // not the form's page
    otherElements = others.toVariant().toStringList();
    loading.stop();
    pageIsUp = true;
    gaveUp = false;
    stack->setCurrentWidget(view);
    send({"share", shared});
    if (model->hasFields()) {
        restore();
        return;
    }
    QHash<QString, FormField> told;
    for (const QJsonValue &field : fields)
        told.insert(field["id"].toString(), getField(field.toObject()));
    model->setFields(told);
    emit loaded(true);
}

void WebEngineEngine::hearEdit(const QString &id, const QJsonArray &values, int seenWrite)
{
    hearValues(values, seenWrite);
    lastEdited = id;
    const QScopedValueRollback<QString> edit(editedId, id);
    bridge->onFieldChanged(id);
}

void WebEngineEngine::hearValues(const QJsonArray &values, int seenWrite)
{
    for (const QJsonValue &pair : values)
        model->take(pair[0].toString(), pair[1].toString(), seenWrite);
}

void WebEngineEngine::hearFields(const QJsonArray &come, const QJsonArray &gone,
                                 const QJsonArray &values, int seenWrite)
{
    for (const QJsonValue &field : come)
        model->takeField(field["id"].toString(), getField(field.toObject()), seenWrite);
    for (const QJsonValue &id : gone)
        model->loseField(id.toString(), seenWrite);
    hearValues(values, seenWrite);
}

void WebEngineEngine::chooseImage()
{
    bridge->onChooseImageClicked();
    send({"chosen"});
}

bool WebEngineEngine::settle()
{
    if (!pageIsUp)
        return true;
    const int key = Qt::Key_F13 + keysSent++ % AnswerKeys;
    QEventLoop waiting;
    bool keyAnswered = false;
    // Keys may overtake what the program has written.
    connect(this, &WebEngineEngine::answered, &waiting,
            [this, &waiting, &keyAnswered, key](int answer) {
                keyAnswered = keyAnswered || answer == key;
                if (keyAnswered && writesOnTheWay == 0)
                    waiting.exit(0);
            });
    connect(this, &WebEngineEngine::pageGone, &waiting, [&waiting] { waiting.exit(1); });
    QTimer::singleShot(SettleTime, &waiting, [&waiting] { waiting.exit(1); });
    sendKey(key);
    // Keys and clicks that come meanwhile belong to what follows.
    return waiting.exec(QEventLoop::ExcludeUserInputEvents) == 0;
}

void WebEngineEngine::sendKey(int key)
{
    QWidget *target = view->focusProxy() ? view->focusProxy() : view;
    for (QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, Qt::NoModifier);
        QApplication::sendEvent(target, &event);
    }
}

void WebEngineEngine::print(FormPrinter *printer, Quality quality)
{
    if (!pageIsUp)
        return;
    if (quality == Final && printer->outputFormat() == QPrinter::PdfFormat) {
        printToFile(printer);
        return;
    }
    QEventLoop waiting;
    connect(view, &QWebEngineView::printFinished, &waiting, &QEventLoop::quit);
    connect(this, &WebEngineEngine::pageGone, &waiting, &QEventLoop::quit);
    QTimer::singleShot(PrintTime, &waiting, &QEventLoop::quit);
    QTimer asking; // a printer that is stopped ends with its page; until then it is in use
    connect(&asking, &QTimer::timeout, [printer] { printer->askOn(); });
    asking.start(AskTime);
    static const QMap<Quality, int> resolutions = {{Draft, 36}, {Preview, 120}, {Final, 300}};
    printer->setResolution(resolutions[quality]);
    view->print(printer);
    waiting.exec(QEventLoop::ExcludeUserInputEvents);
}

/// Empty if the page didn't answer or the printer was stopped.
QByteArray WebEngineEngine::makePdf(FormPrinter *printer)
{
    QEventLoop waiting;
    connect(this, &WebEngineEngine::pageGone, &waiting, &QEventLoop::quit);
    QTimer::singleShot(PrintTime, &waiting, &QEventLoop::quit);
    QTimer asking;
    connect(&asking, &QTimer::timeout, [printer, &waiting] {
        if (!printer->askOn())
            waiting.quit();
    });
    asking.start(AskTime);
    const auto document = std::make_shared<QByteArray>(); // the answer may come when nobody waits
    page->printToPdf(
        [document, waiter = QPointer<QEventLoop>(&waiting)](const QByteArray &pdf) {
            *document = pdf;
            if (waiter)
                waiter->quit();
        },
        printer->pageLayout(), printer->pageRanges());
    waiting.exec(QEventLoop::ExcludeUserInputEvents);
    return printer->isStopped() ? QByteArray() : *document;
}

/// The engine paints dots, but it writes letters and lines; the printer adds the heads. No file
/// tells of a failure.
void WebEngineEngine::printToFile(FormPrinter *printer)
{
    const QString target = printer->outputFileName();
    const QByteArray document = makePdf(printer);
    const QTemporaryDir folder;
    printer->setOutputFileName(folder.filePath("heads.pdf"));
    QPainter painter(printer);
    for (int pages = countPdfPages(document); pages > 1; --pages)
        printer->newPage();
    painter.end();
    QFile heads(printer->outputFileName());
    printer->setOutputFileName(target);
    if (!heads.open(QIODevice::ReadOnly))
        return;
    QFile file(target);
    if (file.open(QIODevice::WriteOnly))
        file.write(layOver(document, heads.readAll()));
}
