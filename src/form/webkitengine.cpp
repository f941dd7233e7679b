#include "form/webkitengine.h"

#include "chart/formfields.h"
#include "form/formbridge.h"
#include "form/formmodel.h"
#include "form/formprinter.h"
#include "form/pagehold.h"
#include "form/webkitpage.h"
#include "support/log.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QShortcut>
#include <QUuid>
#include <QWebFrame>
#include <QWebView>

namespace
{

const char ReadChecked[] = "this.checked";
const char ReadText[] = "this.value";
const char ReadOption[] = "this.options[this.selectedIndex].text";
const char WriteChecked[] = "this.checked=%1";
const char WriteText[] = "this.value=window.formView.sharedString;";
const char ReadShared[] = "window.formView.sharedString;";
const char Enable[] = "this.disabled=false;";
const char WriteOption[] =
    "var options = this.options;var sIndex = 0;for(i = 0; i < options.length; i++) "
    "{if(options[i].text == '%1')sIndex = i;}this.selectedIndex=sIndex;";

bool isInput(const QWebElement &element, const QString &type)
{
    return element.tagName() == "INPUT" && element.attribute("type").toLower() == type;
}

void revealAncestors(const QWebElement &element)
{
    for (QWebElement e = element.parent(); !e.isNull(); e = e.parent()) {
        if (e.styleProperty("display", QWebElement::InlineStyle) == "none")
            e.setStyleProperty("display", "block");
    }
}

} // namespace

FormEngine *FormEngine::create(QHelpEngine *helpEngine, const QUrl &address, FormModel *,
                               FormBridge *bridge, QWidget *parent)
{
    return new WebKitEngine(helpEngine, address, bridge, parent);
}

WebKitEngine::WebKitEngine(QHelpEngine *helpEngine, const QUrl &address, FormBridge *bridge,
                           QWidget *parent)
    : FormEngine(parent), bridge(bridge), webView(new QWebView(parent))
{
    webView->setContextMenuPolicy(Qt::PreventContextMenu);
    webView->setFocusPolicy(Qt::StrongFocus); // the wheel leaves the focus where it is
    webView->setPage(new FormPage(helpEngine, address, webView));
    // Its own key for that is Ctrl+Shift+Z alone.
    auto *redo = new QShortcut(QKeySequence("Ctrl+Y"), webView);
    redo->setContext(Qt::WidgetShortcut);
    connect(redo, &QShortcut::activated, webView,
            [this] { webView->triggerPageAction(QWebPage::Redo); });
    connect(webView, &QWebView::loadFinished, this, &WebKitEngine::onLoadFinished);
    if (!address.isEmpty())
        webView->setUrl(address);
}

WebKitEngine::~WebKitEngine()
{
    delete webView;
}

QWidget *WebKitEngine::getWidget() const
{
    return webView;
}

void WebKitEngine::onLoadFinished(bool ok)
{
    mainFrame = webView->page()->mainFrame();
    mainFrame->addToJavaScriptWindowObject("formView", bridge);
    // A reload that a second one cut short leaves the fields of a page that is about to go.
    pageStands = ok && getAllFields(true).count() > 0;
    emit loaded(ok);
}

void WebKitEngine::reload()
{
    pageStands = false;
    webView->page()->mainFrame()->setScrollPosition(QPoint()); // a reload goes back to where it was
    webView->page()->QWebPage::triggerAction(QWebPage::Reload); // ours refuses to
}

void WebKitEngine::print(FormPrinter *printer, Quality)
{
    const PageHold hold(webView);
    if (mainFrame)
        mainFrame->print(printer);
}

bool WebKitEngine::isRadioButton(const QWebElement &element)
{
    return isInput(element, "radio");
}

bool WebKitEngine::isTextArea(const QWebElement &element)
{
    return element.tagName() == "TEXTAREA";
}

bool WebKitEngine::isTextEdit(const QWebElement &element)
{
    return isTextArea(element) || isInput(element, "text");
}

bool WebKitEngine::isHiddenInput(const QWebElement &element)
{
    return isInput(element, "hidden");
}

bool WebKitEngine::isFileInput(const QWebElement &element)
{
    return isInput(element, "file");
}

bool WebKitEngine::isComboBox(const QWebElement &element)
{
    return element.tagName() == "SELECT";
}

QWebElement WebKitEngine::findField(const QString &id) const
{
    // Anything but a plain id would be read as a selector of another kind.
    return mainFrame && FormModel::isFieldId(id) ? mainFrame->findFirstElement("#" + id)
                                                 : QWebElement();
}

QWebElementCollection WebKitEngine::getAllFields(bool includeHidden) const
{
    QWebElementCollection fields;
    if (!mainFrame)
        return fields;
    QStringList selectors = {"INPUT[type=radio]", "INPUT[type=text]", "INPUT[type=file]"};
    if (includeHidden)
        selectors << "INPUT[type=hidden]";
    selectors << "TEXTAREA"
              << "SELECT";
    for (const QString &selector : qAsConst(selectors))
        fields += mainFrame->findAllElements(selector);
    return fields;
}

QStringList WebKitEngine::getTextFields() const
{
    QStringList ids;
    if (!mainFrame)
        return ids;
    for (const QWebElement &field :
         mainFrame->findAllElements("INPUT[type=text], TEXTAREA, SELECT"))
        ids.append(field.attribute("id"));
    return ids;
}

FormValues WebKitEngine::readAll() const
{
    FormValues values;
    for (QWebElement element : getAllFields(true)) {
        FormValue field;
        field.value = read(element);
        values.insert(element.attribute("id"), field);
    }
    return values;
}

QString WebKitEngine::read(QWebElement &element) const
{
    if (element.isNull())
        return QString();
    if (isRadioButton(element))
        return element.evaluateJavaScript(ReadChecked).toString();
    if (isTextEdit(element) || isHiddenInput(element) || isFileInput(element))
        return element.evaluateJavaScript(ReadText).toString();
    if (isComboBox(element))
        return element.evaluateJavaScript(ReadOption).toString();
    qCDebug(formLog) << "ERROR: Found element not handled:" << element.toPlainText();
    return QString();
}

QString WebKitEngine::read(const QString &id) const
{
    QWebElement element = findField(id);
    return read(element);
}

bool WebKitEngine::write(QWebElement &element, const QString &value)
{
    if (element.isNull())
        return false;
    if (isRadioButton(element))
        setChecked(element, value);
    else if (isComboBox(element))
        setOption(element, value);
    else if (isTextEdit(element) || isHiddenInput(element) || isFileInput(element))
        setText(element, value);
    else
        qCDebug(formLog) << "Warning, encountered unhandled element" << element.attribute("id")
                         << value;
    return true;
}

bool WebKitEngine::write(const QString &id, const QString &value)
{
    QWebElement element = findField(id);
    return write(element, value);
}

void WebKitEngine::setChecked(QWebElement &radio, const QString &value)
{
    const QString checked = value.toLower() == "true" ? "true" : "false";
    radio.evaluateJavaScript(QString(WriteChecked).arg(checked));
}

void WebKitEngine::setOption(QWebElement &select, const QString &text)
{
    if (FormModel::canBeOption(text))
        select.evaluateJavaScript(QString(WriteOption).arg(text));
}

void WebKitEngine::setText(QWebElement &field, const QString &value)
{
    if (value.isEmpty())
        return;
    bridge->setSharedString(value);
    field.evaluateJavaScript(WriteText);
    qCDebug(formLog) << "Shared string:"
                     << field.evaluateJavaScript(ReadShared).toString().left(80);
    if (isTextArea(field))
        field.evaluateJavaScript(Enable);
    revealAncestors(field);
}

bool WebKitEngine::fill(const FormValues &values)
{
    if (!mainFrame)
        return false;
    for (const QString &id : FormModel::getRowIds(values))
        mainFrame->evaluateJavaScript(QString("window.createNecessaryFields(\"%1\")").arg(id));
    for (auto field = values.cbegin(); field != values.cend(); ++field)
        write(field.key(), field->value);
    const auto step = values.constFind(FormFields::LastStep);
    if (step != values.cend() && FormModel::isDigits(step->value))
        mainFrame->evaluateJavaScript(QString("showStepsUpTo(%1);").arg(step->value));
    return true;
}

void WebKitEngine::addRow(int number, const QString &guid)
{
    // Only a true GUID goes into a script; whatever else a file brings is written as a text.
    const QString splicedGuid = QUuid(guid).toString() == guid.toLower() ? guid : QString();
    if (mainFrame) {
        const QString script = QString("this.addDynamicContent('causalFactor', '%1', %2)");
        const QVariant added = mainFrame->evaluateJavaScript(script.arg(splicedGuid).arg(number));
        qCDebug(formLog) << "addCF" << added.toString().section('_', -1) << number;
    }
    if (splicedGuid.isEmpty())
        write(FormFields::getRowField(FormFields::CausalFactorGuid, number), guid);
}

void WebKitEngine::removeRow(int number)
{
    if (mainFrame)
        mainFrame->evaluateJavaScript(
            QString("this.removeDynamicContent('causalFactor', %1)").arg(number));
}

void WebKitEngine::showTitleImage(const QString &dataUrl)
{
    QWebElement preview = findField("titleImagePreview");
    if (preview.isNull())
        return;
    if (dataUrl.isEmpty())
        preview.removeAttribute("src");
    else
        preview.setAttribute("src", dataUrl);
}

void WebKitEngine::markFields(const QStringList &ids, const QString &current, bool lead)
{
    if (!mainFrame)
        return;
    QJsonArray plainIds; // nothing else goes into a script
    for (const QString &id : ids) {
        if (FormModel::isFieldId(id))
            plainIds.append(id);
    }
    const QString list = QJsonDocument(plainIds).toJson(QJsonDocument::Compact);
    mainFrame->evaluateJavaScript(QString("markFound(%1, '%2', %3)")
                                      .arg(list,
                                           FormModel::isFieldId(current) ? current : QString(),
                                           lead ? "true" : "false"));
}

void WebKitEngine::addOnChangeHandlers()
{
    for (QWebElement element : getAllFields(false)) {
        const QString attribute = isRadioButton(element) ? "onclick" : "onchange";
        if (!element.hasAttribute(attribute))
            element.setAttribute(attribute, "window.formView.onFieldChanged(this.id);");
    }
    addOnClickHandler("exportFormButton", "window.formView.onExportFormClicked();");
    addOnClickHandler("titleImageButton", "window.formView.onChooseImageClicked();");
}

void WebKitEngine::addOnClickHandler(const QString &id, const QString &script)
{
    QWebElement button = findField(id);
    if (!button.isNull() && !button.hasAttribute("onclick"))
        button.setAttribute("onclick", script);
}
