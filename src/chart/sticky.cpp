#include "chart/sticky.h"

#include "chart/chartsheet.h"
#include "chart/circlednumberitem.h"
#include "chart/crosslines.h"
#include "chart/notepicture.h"
#include "chart/notetext.h"
#include "chart/resizegrip.h"
#include "chart/sheethost.h"
#include "chart/workingdropshadow.h"
#include "support/fonts.h"

#include <QTextDocument>
#include <QTextOption>

const char Sticky::INITIAL_TEXT[] = QT_TR_NOOP("Double click to edit text");
const QByteArray Sticky::PROPERTY_CUSTOM_FONT = "customFont";
const QByteArray Sticky::PROPERTY_TEXT_COLOR = "textColor";
const QByteArray Sticky::PROPERTY_NOT_RELEVANT = "notRelevant";

namespace
{

constexpr qreal RestingZ = 2;
constexpr qreal SelectedZ = 6;

QHash<QByteArray, QString> makeLabels(QHash<QByteArray, QString> labels)
{
    labels.insert(Sticky::PROPERTY_CUSTOM_FONT, Sticky::tr("change font"));
    labels.insert(Sticky::PROPERTY_TEXT_COLOR, Sticky::tr("change text color"));
    labels.insert(Sticky::PROPERTY_NOT_RELEVANT, Sticky::tr("change relevancy"));
    return labels;
}

// Notes don't follow a dark theme: their paper is light.
QColor getVisibleColor(const QColor &color)
{
    return color.isValid() ? color : QColor(Qt::black);
}

} // namespace

Sticky::Sticky(ChartSheet *sheet, CanvasItemInfo &info) : BoxItem(sheet, info)
{
    static const QHash<QByteArray, QString> labels = makeLabels(propertyLabels);
    propertyLabels = labels;

    setFlags(ItemIsMovable | ItemIsSelectable | ItemSendsGeometryChanges);
    setHandlesChildEvents(true);
    setZValue(RestingZ);
    rect = QRectF(0, 0, 80, 60);
    resizeGrip = std::make_unique<ResizeGrip>(this);
    makePicture();
    makeCircle();
    makeText();

    setPos(info.startPoint);
    setSize(info.size);
    setTextAlignment(info.textAlignment);
    noteText->setPlainText(info.text.isEmpty() ? tr(INITIAL_TEXT) : info.text);
    setNotRelevant(info.notRelevant);
    setAcceptHoverEvents(true);
    QMetaObject::invokeMethod(
        this, [this] { relayout(false); }, Qt::QueuedConnection);
}

Sticky::~Sticky()
{
    emit deleted(this);
}

void Sticky::makePicture()
{
    info.type = NoteItemType;
    if (info.image.isNull())
        return;
    info.type = ImageTool;
    imageItem = new NotePicture(info.image, this);
    imageItem->setPos(2.5, 2.5);
    imageItem->setToolTip(tr("Double click to show large image"));
}

void Sticky::makeCircle()
{
    circle = new CircledNumberItem(this);
    circle->setNumber(info.causalFactorNumber);
    circle->setVisible(decorateCircle(info.role.getCircleDecoratorType()));
}

void Sticky::makeText()
{
    noteText = new NoteText(this);
    connect(noteText, &NoteText::textChanged, this, &Sticky::onTextChanged, Qt::QueuedConnection);
    noteText->setFont(info.customFont ? info.font : getStandardFont());
    noteText->setDefaultTextColor(getVisibleColor(info.textColor));
}

QString Sticky::getText() const
{
    const QString text = noteText->toPlainText();
    return text == tr(INITIAL_TEXT) ? QString() : text;
}

QFont Sticky::getFont() const
{
    return noteText->font();
}

int Sticky::getCausalFactorNumber() const
{
    return circle->getNumber();
}

CanvasItemInfo Sticky::getCanvasItemInfo()
{
    info.startPoint = pos();
    info.size = rect.size();
    info.endPoint = getGeometry().bottomRight();
    info.text = getText();
    info.font = getFont();
    info.causalFactorNumber = getCausalFactorNumber();
    info.parent = sheet->getOwnerGUID();
    return info;
}

// Values go from note to note: each passes on only what was new to it, so
// notes that name each other come to rest.

QList<Sticky *> Sticky::getSiblingNotes() const
{
    QList<Sticky *> notes;
    for (const QString &id : info.siblings) {
        if (Sticky *note = sheet->getHost()->getNoteWithGUID(id))
            notes.append(note);
    }
    return notes;
}

void Sticky::setText(const QString &text)
{
    const bool changed = text != noteText->toPlainText();
    if (changed) // else the cursor of an edit stays where it is
        noteText->setPlainText(text);
    relayout(false);
    if (changed)
        setSiblingText();
}

void Sticky::setDefaultFont(const QFont &font)
{
    if (changeFont(font, false)) {
        for (Sticky *note : getSiblingNotes())
            note->setDefaultFont(font);
    }
}

void Sticky::setCustomFont(const QFont &font)
{
    if (changeFont(font, true)) {
        for (Sticky *note : getSiblingNotes())
            note->setCustomFont(font);
    }
}

bool Sticky::changeFont(const QFont &font, bool custom)
{
    info.customFont = custom;
    if (font == noteText->font())
        return false;
    noteText->setFont(font);
    relayout(false);
    return true;
}

void Sticky::setTextColor(const QColor &color)
{
    const bool changed = color != info.textColor;
    info.textColor = color;
    noteText->setDefaultTextColor(getVisibleColor(color));
    if (!changed)
        return;
    for (Sticky *note : getSiblingNotes())
        note->setTextColor(color);
}

void Sticky::setTextAlignment(Qt::Alignment alignment)
{
    const bool changed = alignment != info.textAlignment;
    info.textAlignment = alignment;
    noteText->document()->setDefaultTextOption(QTextOption(alignment));
    if (changed) {
        for (Sticky *note : getSiblingNotes())
            note->setTextAlignment(alignment);
    }
    relayout(false);
}

void Sticky::setCustomBackgroundColor(const QColor &color)
{
    const bool changed = color != info.backgroundColor;
    info.backgroundColor = color;
    update();
    if (!changed)
        return;
    for (Sticky *note : getSiblingNotes())
        note->setCustomBackgroundColor(color);
}

void Sticky::setCausalFactorNumber(int number)
{
    const bool changed = number != circle->getNumber();
    circle->setNumber(number);
    if (!changed)
        return;
    for (Sticky *note : getSiblingNotes())
        note->setCausalFactorNumber(number);
}

void Sticky::setNotRelevant(bool notRelevant)
{
    info.notRelevant = notRelevant;
    if (!crossLines)
        crossLines = std::make_unique<CrossLines>(this);
    crossLines->updateSize();
    crossLines->setVisible(notRelevant);
}

void Sticky::setSize(QSizeF size)
{
    prepareGeometryChange();
    rect.setSize(size);
    emit moved(this);
    relayout(false);
}

void Sticky::setShadow(bool enabled)
{
    if (!enabled && !dropShadow)
        return;
    prepareGeometryChange(); // the effect itself tells of its bounds when they have changed
    if (!dropShadow) {
        dropShadow = new WorkingDropShadow(this);
        setGraphicsEffect(dropShadow);
    }
    const int zoom = enabled && scene() ? sheet->getViewZoom() : 0;
    if (zoom > 0)
        dropShadow->setOffset(zoom * 6 / 100.0);
    dropShadow->setEnabled(enabled);
}

void Sticky::onTextChanged()
{
    relayout(false);
}

QVariant Sticky::itemChange(GraphicsItemChange change, const QVariant &value)
{
    if (change == ItemSelectedHasChanged) {
        const bool selected = value.toBool();
        setZValue(selected ? SelectedZ : RestingZ);
        resizeGrip->setVisible(selected);
        emit selectionChanged();
    } else if (change == ItemSceneChange) {
        setShadow(false); // off the sheet, its children would be looked for without it
    } else if (change == ItemPositionHasChanged) {
        emit moved(this);
    }
    return BoxItem::itemChange(change, value);
}
