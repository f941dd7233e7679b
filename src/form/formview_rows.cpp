#include "form/formview.h"

#include "chart/formfields.h"
#include "support/log.h"

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
        qCDebug(formLog) << "addCF" << added.toString().section('_', -1) << number;
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

QStringList FormView::getCausalFactorRow(int number) const
{
    QStringList row;
    for (const char *pattern : FormFields::CausalFactorRow)
        row.append(getFieldValue(FormFields::getRowField(pattern, number)));
    return row;
}

QString FormView::restoreCausalFactor(const QString &guid, int number, const QStringList &row)
{
    const QString textId = addCausalFactor(guid, number, QString());
    int field = 0;
    for (const char *pattern : FormFields::CausalFactorRow)
        setFieldValue(FormFields::getRowField(pattern, number), row.value(field++));
    return textId;
}

QString FormView::changeCausalFactorNumber(const QString &guid, int oldNumber, int newNumber,
                                           const QString &otherGuid)
{
    const QStringList moved = getCausalFactorRow(oldNumber);
    const QStringList swapped = getCausalFactorRow(newNumber);
    removeCausalFactor(oldNumber);
    if (!otherGuid.isEmpty()) {
        removeCausalFactor(newNumber);
        restoreCausalFactor(otherGuid, oldNumber, swapped);
    }
    return restoreCausalFactor(guid, newNumber, moved);
}
