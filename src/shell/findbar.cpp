#include "shell/findbar.h"

#include "chart/sticky.h"
#include "form/formview.h"
#include "sheet/projectscene.h"
#include "shell/graphwidget.h"
#include "shell/projecttabwidget.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

#include <algorithm>

namespace
{

constexpr int Pause = 300; // milliseconds after a change elsewhere
constexpr int EditWidth = 320;

QString fold(const QString &text)
{
    return text.simplified().toCaseFolded();
}

} // namespace

FindBar::FindBar(ProjectTabWidget *tabs, FormView *form)
    : QWidget(tabs), tabs(tabs), form(form), edit(new QLineEdit), count(new QLabel)
{
    setObjectName("findBar");
    edit->setObjectName("findEdit");
    edit->setPlaceholderText(tr("Find in the notes and the form"));
    edit->setAccessibleName(tr("Find"));
    edit->setClearButtonEnabled(true);
    edit->findChild<QToolButton *>()->setAccessibleName(tr("Clear"));
    edit->setFixedWidth(EditWidth);
    edit->installEventFilter(this);
    count->setObjectName("findCount");

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 3, 6, 3);
    layout->addWidget(edit);
    connect(addButton(tr("Previous"), tr("Find previous (Shift+F3)")), &QToolButton::clicked, this,
            &FindBar::goToPrevious);
    connect(addButton(tr("Next"), tr("Find next (F3)")), &QToolButton::clicked, this,
            &FindBar::goToNext);
    layout->addWidget(count, 1);
    QToolButton *close = addButton(QChar(0xd7), tr("Close (Esc)")); // a cross in any theme's colour
    close->setAccessibleName(tr("Close"));
    connect(close, &QToolButton::clicked, this, &FindBar::dismiss);

    connect(edit, &QLineEdit::textChanged, this, &FindBar::onTyped);
    pause.setSingleShot(true);
    pause.setInterval(Pause);
    connect(&pause, &QTimer::timeout, this, &FindBar::lookAgain);
    hide();
}

QToolButton *FindBar::addButton(const QString &text, const QString &toolTip)
{
    auto *button = new QToolButton;
    button->setText(text);
    button->setToolTip(toolTip);
    button->setAutoRaise(true);
    button->installEventFilter(this);
    layout()->addWidget(button);
    return button;
}

void FindBar::open()
{
    QWidget *focus = window()->focusWidget();
    if (!isAncestorOf(focus))
        focusBefore = focus;
    readTexts();
    show();
    edit->setFocus(Qt::ShortcutFocusReason);
    edit->selectAll();
    onTyped();
}

void FindBar::dismiss()
{
    if (isHidden())
        return;
    QWidget *page = tabs->currentWidget();
    const bool isShown = focusBefore && page && page->isAncestorOf(focusBefore);
    QWidget *target = isShown ? focusBefore.data() : page;
    pause.stop();
    texts.clear();
    found.clear();
    current = -1;
    showMarks(false);
    if (target && isAncestorOf(window()->focusWidget()))
        target->setFocus(Qt::OtherFocusReason);
    hide();
}

// The window's own shortcuts for these keys would come first.
bool FindBar::eventFilter(QObject *object, QEvent *event)
{
    const bool isKey = event->type() == QEvent::KeyPress;
    if (!isKey && event->type() != QEvent::ShortcutOverride)
        return QWidget::eventFilter(object, event);
    const auto *keyEvent = static_cast<QKeyEvent *>(event);
    const int key = keyEvent->key();
    if (key != Qt::Key_Escape && key != Qt::Key_Return && key != Qt::Key_Enter)
        return QWidget::eventFilter(object, event);
    event->accept();
    if (!isKey)
        return true;
    if (key == Qt::Key_Escape)
        dismiss();
    else
        go(keyEvent->modifiers() & Qt::ShiftModifier ? -1 : 1);
    return true;
}

void FindBar::readTexts()
{
    texts.clear();
    for (int i = 0; i < tabs->count(); ++i) {
        QWidget *tab = tabs->widget(i);
        if (auto *view = qobject_cast<GraphWidget *>(tab))
            readSheet(tab, view->getProjectScene());
        else if (tab == form)
            readForm();
    }
}

void FindBar::readSheet(QWidget *tab, const ProjectScene *sheet)
{
    for (Sticky *note : sheet->getNotesInReadingOrder())
        texts.append({fold(note->getText()), tab, note, QString()});
}

void FindBar::readForm()
{
    const FormValues values = form->getAllFieldValues();
    for (const QString &id : form->getTextFields())
        texts.append({fold(values.value(id).value), form, nullptr, id});
}

void FindBar::search()
{
    const QString words = fold(edit->text());
    found.clear();
    for (int i = 0; i < texts.size() && !words.isEmpty(); ++i) {
        if (texts.at(i).text.contains(words))
            found.append(i);
    }
    current = getStart();
    showCount();
}

bool FindBar::isCurrent(const Text &text) const
{
    return text.tab == form ? text.field == currentField : text.note && text.note == currentNote;
}

/// Where the last search led to if that is still found, else the first place on the tab shown.
int FindBar::getStart() const
{
    const auto find = [this](auto fits) {
        const auto place =
            std::find_if(found.cbegin(), found.cend(), [&](int i) { return fits(texts.at(i)); });
        return place == found.cend() ? -1 : int(place - found.cbegin());
    };
    const int same = find([this](const Text &text) { return isCurrent(text); });
    if (same >= 0 && texts.at(found.at(same)).tab == tabs->currentWidget())
        return same;
    const int near = find([this](const Text &text) { return text.tab == tabs->currentWidget(); });
    return near < 0 && !found.isEmpty() ? 0 : near;
}

void FindBar::onTyped()
{
    search();
    showMarks(true);
    leadToCurrent();
}

void FindBar::lookAgainSoon()
{
    if (!isHidden())
        pause.start();
}

void FindBar::lookAgain()
{
    readTexts();
    search();
    showMarks(false); // whoever types in the form stays where they are
}

void FindBar::go(int step)
{
    if (isHidden()) {
        open();
        return;
    }
    if (pause.isActive()) {
        pause.stop();
        lookAgain();
    }
    if (found.isEmpty())
        return;
    current = (current + step + found.size()) % found.size();
    showMarks(true);
    showCount();
    leadToCurrent();
}

void FindBar::showMarks(bool lead)
{
    QHash<QWidget *, QVector<QPointer<Sticky>>> notes;
    QStringList fields;
    for (int i : qAsConst(found)) {
        const Text &text = texts.at(i);
        if (text.tab == form)
            fields.append(text.field);
        else
            notes[text.tab].append(text.note);
    }
    const Text now = current < 0 ? Text() : texts.at(found.at(current));
    for (int i = 0; i < tabs->count(); ++i) {
        if (auto *view = qobject_cast<GraphWidget *>(tabs->widget(i)))
            view->setMarks(notes.value(view), now.note);
    }
    form->markFields(fields, now.field, lead);
}

void FindBar::showCount()
{
    if (!found.isEmpty())
        count->setText(tr("%1 of %2").arg(current + 1).arg(found.size()));
    else
        count->setText(edit->text().trimmed().isEmpty() ? QString() : tr("Nothing found"));
}

void FindBar::leadToCurrent()
{
    if (current < 0)
        return;
    const Text &place = texts.at(found.at(current));
    currentNote = place.note;
    currentField = place.field;
    if (place.tab == form)
        tabs->setCurrentWidget(form);
    else if (place.tab && place.note)
        emit noteWanted(static_cast<GraphWidget *>(place.tab.data())->getProjectScene(),
                        place.note);
}
