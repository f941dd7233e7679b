#include "form/formtext.h"

#include "chart/formfields.h"
#include "form/formmodel.h"
#include "form/pagefields.h"

#include <QCoreApplication>
#include <QLabel>
#include <QMap>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>

#include <limits>

namespace
{

constexpr int Margin = 24;

bool isRead(const QString &id, const FormField &field)
{
    return !field.value.isEmpty() && field.value != "false" && field.kind != FormField::Hidden &&
           id != FormFields::LastStep;
}

/// A text of the page in the user's language.
QString translate(const QString &text)
{
    return QCoreApplication::translate("FormPage", text.toUtf8());
}

QString getParagraph(const QString &label, const QString &value)
{
    return QString("<p><b>%1</b><br>%2</p>")
        .arg(label.toHtmlEscaped(), value.toHtmlEscaped().replace('\n', "<br>"));
}

/// What waits for a page that never came, put into the fields that its text tells. What is none of
/// them comes last, by its id.
QHash<QString, FormField> getFields(const FormValues &waiting)
{
    FormModel model;
    model.setFields(readPageFields());
    model.fill(waiting, 0);
    QHash<QString, FormField> fields = model.getFields();
    for (auto value = waiting.cbegin(); value != waiting.cend(); ++value) {
        if (model.hasField(value.key()))
            continue;
        FormField field;
        field.value = value->value;
        field.place = std::numeric_limits<int>::max();
        fields.insert(value.key(), field);
    }
    return fields;
}

} // namespace

FormText::FormText(QWidget *parent)
    : QWidget(parent), reasonLabel(new QLabel(this)), textField(new QTextBrowser(this))
{
    reasonLabel->setWordWrap(true);
    textField->setOpenLinks(false);
    setFocusProxy(textField);
    auto *button = new QPushButton(tr("Show the form again"), this);
    connect(button, &QPushButton::clicked, this, &FormText::retryRequested);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(Margin, Margin, Margin, Margin);
    layout->addWidget(reasonLabel);
    layout->addWidget(textField);
    layout->addWidget(button, 0, Qt::AlignLeft);
}

void FormText::setReason(const QString &reason)
{
    reasonLabel->setText(reason + ' ' +
                         tr("Nothing of it is lost: the program keeps its values, saves "
                            "them as always, and shows them here."));
}

void FormText::setValues(const FormModel &model)
{
    const QHash<QString, FormField> fields =
        model.hasFields() ? model.getFields() : getFields(model.getWaiting());
    QMap<QPair<int, QString>, FormField> sorted;
    for (auto field = fields.cbegin(); field != fields.cend(); ++field)
        sorted.insert({field->place, field.key()}, *field);
    QString html;
    for (auto field = sorted.cbegin(); field != sorted.cend(); ++field) {
        const QString id = field.key().second;
        const bool isChoice = field->kind == FormField::Choice;
        if (isRead(id, *field))
            html += getParagraph(field->label.isEmpty() ? id : translate(field->label),
                                 isChoice ? translate(field->value) : field->value);
    }
    textField->setHtml(html);
}
