#include "form/formtext.h"

#include "chart/formfields.h"
#include "form/formmodel.h"

#include <QLabel>
#include <QMap>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace
{

constexpr int Margin = 24;

bool isRead(const QString &id, const FormField &field)
{
    return !field.value.isEmpty() && field.value != "false" && field.kind != FormField::Hidden &&
           id != FormFields::LastStep;
}

QString getParagraph(const QString &label, const QString &value)
{
    return QString("<p><b>%1</b><br>%2</p>")
        .arg(label.toHtmlEscaped(), value.toHtmlEscaped().replace('\n', "<br>"));
}

/// What is not told by a page is called by its id.
FormField getField(const QString &value)
{
    FormField field;
    field.value = value;
    return field;
}

} // namespace

FormText::FormText(QWidget *parent)
    : QWidget(parent), reasonLabel(new QLabel(this)), textField(new QTextBrowser(this))
{
    reasonLabel->setWordWrap(true);
    textField->setOpenLinks(false);
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
    QMap<QPair<int, QString>, FormField> sorted;
    for (auto field = model.getFields().cbegin(); field != model.getFields().cend(); ++field)
        sorted.insert({field->place, field.key()}, *field);
    if (!model.hasFields()) {
        const FormValues &waiting = model.getWaiting();
        for (auto field = waiting.cbegin(); field != waiting.cend(); ++field)
            sorted.insert({0, field.key()}, getField(field->value));
    }
    QString html;
    for (auto field = sorted.cbegin(); field != sorted.cend(); ++field) {
        const QString id = field.key().second;
        if (isRead(id, *field))
            html += getParagraph(field->label.isEmpty() ? id : field->label, field->value);
    }
    textField->setHtml(html);
}
