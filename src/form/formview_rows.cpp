#include "form/formview.h"

#include "chart/formfields.h"

#include <QDebug>
#include <QUuid>
#include <QWebElement>
#include <QWebFrame>

QString FormView::addCausalFactor(const QString &guid, int number, const QString &text)
{
    // Only a true GUID goes into a script; whatever else a file brings is written as a text.
    const QString splicedGuid = QUuid(guid).toString() == guid.toLower() ? guid : QString();
    if (mainFrame) {
        const QString script = QString("this.addDynamicContent('causalFactor', '%1', %2)");
        const QVariant added = mainFrame->evaluateJavaScript(script.arg(splicedGuid).arg(number));
        qDebug() << "addCF" << added.toString().section('_', -1) << number;
    }
    if (splicedGuid.isEmpty() || !pageStands)
        setFieldValue(FormFields::getRowField(FormFields::CausalFactorGuid, number), guid);
    const QString textId = FormFields::getRowField(FormFields::CausalFactorText, number);
    setFieldValue(textId, text);
    return textId;
}

void FormView::removeCausalFactor(int cfNumber)
{
    if (mainFrame)
        mainFrame->evaluateJavaScript(
            QString("this.removeDynamicContent('causalFactor', %1)").arg(cfNumber));
    if (!pageStands) {
        for (const char *pattern : FormFields::CausalFactorRow)
            formData.remove(FormFields::getRowField(pattern, cfNumber));
    }
}

QString FormView::changeCausalFactorNumber(const QString &guid, int oldNumber, int newNumber,
                                           const QString &otherGuid)
{
    QHash<QString, QString> moved, swapped;
    for (const char *pattern : FormFields::CausalFactorRow) {
        const QString source = FormFields::getRowField(pattern, oldNumber);
        const QString destination = FormFields::getRowField(pattern, newNumber);
        moved[destination] = getFieldValue(source);
        if (!otherGuid.isEmpty())
            swapped[source] = getFieldValue(destination);
    }
    removeCausalFactor(oldNumber);
    if (!otherGuid.isEmpty())
        removeCausalFactor(newNumber);
    refillRow(guid, newNumber, moved);
    if (!otherGuid.isEmpty())
        refillRow(otherGuid, oldNumber, swapped);
    return FormFields::getRowField(FormFields::CausalFactorText, newNumber);
}

void FormView::refillRow(const QString &guid, int number, const QHash<QString, QString> &fields)
{
    addCausalFactor(guid, number, QString());
    for (auto field = fields.cbegin(); field != fields.cend(); ++field)
        setFieldValue(field.key(), field.value());
}
