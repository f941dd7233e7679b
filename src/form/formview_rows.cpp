#include "form/formview.h"

#include "chart/formfields.h"
#include "form/formengine.h"

QString FormView::addCausalFactor(const QString &guid, int number, const QString &text)
{
    if (!isReady())
        model.addRow(number, guid);
    engine->addRow(number, guid);
    const QString textId = FormFields::getRowField(FormFields::CausalFactorText, number);
    setFieldValue(textId, text);
    return textId;
}

void FormView::removeCausalFactor(int cfNumber)
{
    engine->removeRow(cfNumber);
    if (!isReady())
        model.removeRow(cfNumber);
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
