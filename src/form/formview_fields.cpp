#include "form/formview.h"

#include "chart/formfields.h"
#include "support/images.h"
#include "support/log.h"

#include <QDateTime>
#include <QFileInfo>
#include <QRegularExpression>
#include <QWebElement>
#include <QWebFrame>

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

/// A quote or a line break would end the literal that an option's text is spliced into.
bool canBeSpliced(const QString &text)
{
    static const QRegularExpression ending("['\\n\\r\\x{2028}\\x{2029}]");
    return !text.contains(ending);
}

void revealAncestors(const QWebElement &element)
{
    for (QWebElement e = element.parent(); !e.isNull(); e = e.parent()) {
        if (e.styleProperty("display", QWebElement::InlineStyle) == "none")
            e.setStyleProperty("display", "block");
    }
}

} // namespace

bool FormView::isFieldId(const QString &id)
{
    static const QRegularExpression shape("\\A[A-Za-z0-9_-]+\\z");
    return shape.match(id).hasMatch();
}

bool FormView::isRadioButton(const QWebElement &element)
{
    return isInput(element, "radio");
}

bool FormView::isTextArea(const QWebElement &element)
{
    return element.tagName() == "TEXTAREA";
}

bool FormView::isTextEdit(const QWebElement &element)
{
    return isTextArea(element) || isInput(element, "text");
}

bool FormView::isHiddenInput(const QWebElement &element)
{
    return isInput(element, "hidden");
}

bool FormView::isFileInput(const QWebElement &element)
{
    return isInput(element, "file");
}

bool FormView::isComboBox(const QWebElement &element)
{
    return element.tagName() == "SELECT";
}

QWebElement FormView::findField(const QString &id) const
{
    // Anything but a plain id would be read as a selector of another kind.
    return mainFrame && isFieldId(id) ? mainFrame->findFirstElement("#" + id) : QWebElement();
}

QWebElementCollection FormView::getAllFields(bool includeHidden) const
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

FormValues FormView::getAllFieldValues() const
{
    return pageStands ? readPage() : formData;
}

FormValues FormView::readPage() const
{
    FormValues values;
    for (QWebElement element : getAllFields(true)) {
        const QString id = element.attribute("id");
        FormValue field;
        field.value = getFieldValue(element);
        if (id == FormFields::TitleImage)
            field.image = readTitleImage(field.value);
        values.insert(id, field);
    }
    return values;
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

QString FormView::getFieldValue(QWebElement &element) const
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

QString FormView::getFieldValue(const QString &id) const
{
    if (!pageStands)
        return formData.value(id).value;
    QWebElement element = findField(id);
    return getFieldValue(element);
}

bool FormView::setFieldValue(QWebElement &element, const QString &value)
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

bool FormView::setFieldValue(const QString &id, const QString &value)
{
    if (!pageStands && !value.isEmpty())
        formData[id].value = value;
    QWebElement element = findField(id);
    return setFieldValue(element, value);
}

void FormView::setChecked(QWebElement &radio, const QString &value)
{
    const QString checked = value.toLower() == "true" ? "true" : "false";
    radio.evaluateJavaScript(QString(WriteChecked).arg(checked));
}

void FormView::setOption(QWebElement &select, const QString &text)
{
    if (canBeSpliced(text))
        select.evaluateJavaScript(QString(WriteOption).arg(text));
}

void FormView::setText(QWebElement &field, const QString &value)
{
    if (value.isEmpty())
        return;
    sharedString = value;
    field.evaluateJavaScript(WriteText);
    qCDebug(formLog) << "Shared string:"
                     << field.evaluateJavaScript(ReadShared).toString().left(80);
    if (isTextArea(field))
        field.evaluateJavaScript(Enable);
    revealAncestors(field);
}
