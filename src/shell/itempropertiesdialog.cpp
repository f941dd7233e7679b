#include "shell/itempropertiesdialog.h"

#include "chart/sticky.h"
#include "sheet/projectscene.h"
#include "support/images.h"
#include "ui_itempropertiesdialog.h"

#include <QColorDialog>
#include <QPainter>
#include <QScrollBar>

ItemPropertiesDialog::ItemPropertiesDialog(ProjectScene *scene, Sticky *note, Line *line,
                                           QWidget *parent)
    : QDialog(parent), ui(new Ui_ItemProperties), scene(scene), note(note), line(line)
{
    ui->setupUi(this);
    fillRoles();
    if (note) {
        readNote();
    } else {
        ui->tabWidget->setTabEnabled(ui->tabWidget->indexOf(ui->notesTab), false);
        ui->tabWidget->setCurrentWidget(ui->linesTab);
    }
    if (line) {
        readLine();
    } else {
        ui->tabWidget->setTabEnabled(ui->tabWidget->indexOf(ui->linesTab), false);
        ui->tabWidget->setCurrentWidget(ui->notesTab);
    }
}

ItemPropertiesDialog::~ItemPropertiesDialog() = default;

QIcon ItemPropertiesDialog::makeColorIcon(QColor color, QColor fallback)
{
    QPixmap pixmap = makeIconGround(16);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color.isValid() ? color : fallback);
    painter.drawRoundedRect(0, 0, 16, 16, 4, 4);
    return QIcon(pixmap);
}

void ItemPropertiesDialog::fillRoles()
{
    for (const RoleInfo &role : qAsConst(Role::rolesList))
        ui->rolesList->addItem(new QListWidgetItem(role.icon, role.displayName));
    QListWidget *list = ui->rolesList;
    const int frame = 2 * list->frameWidth() + list->verticalScrollBar()->sizeHint().width();
    list->setMinimumWidth(qMax(list->minimumWidth(), list->sizeHintForColumn(0) + frame));
}

void ItemPropertiesDialog::readNote()
{
    readTextAlignment();
    readRole();
    ui->textColorButton->setIcon(makeColorIcon(note->getTextColor(), Qt::black));
    ui->bgColorButton->setIcon(makeColorIcon(note->getCustomBackgroundColor(), Qt::lightGray));
    connect(ui->textColorButton, &QPushButton::clicked, this,
            &ItemPropertiesDialog::onTextColorClicked);
    connect(ui->bgColorButton, &QPushButton::clicked, this,
            &ItemPropertiesDialog::onNoteColorClicked);
    ui->notRelevant->setChecked(note->isNotRelevant());
    ui->borderThickness->setValue(note->getBorderLineWidth());
}

void ItemPropertiesDialog::readTextAlignment()
{
    const Qt::Alignment alignment = note->getRecord().textAlignment;
    if (alignment & Qt::AlignLeft)
        ui->hLeftRadio->setChecked(true);
    else if (alignment & Qt::AlignHCenter)
        ui->hCenterRadio->setChecked(true);
    else if (alignment & Qt::AlignJustify)
        ui->hJustifiedRadio->setChecked(true);
    if (alignment & Qt::AlignTop)
        ui->vTopRadio->setChecked(true);
    else if (alignment & Qt::AlignVCenter)
        ui->vCenterRadio->setChecked(true);
}

void ItemPropertiesDialog::readRole()
{
    const QList<QListWidgetItem *> rows =
        ui->rolesList->findItems(note->getRecord().role.getInfo().displayName, Qt::MatchExactly);
    if (rows.size() == 1)
        ui->rolesList->setCurrentItem(rows.first());
}

void ItemPropertiesDialog::readLine()
{
    // Style and thickness are not read: the form shows a solid line of 2 pixels.
    if (line->getRecord().arrowStyle == Line::NoArrows)
        ui->noArrowsRadio->setChecked(true);
    else if (line->getRecord().arrowStyle == Line::ArrowAtEnd)
        ui->endArrowRadio->setChecked(true);
    ui->lineColorButton->setIcon(makeColorIcon(line->getCustomBackgroundColor(), Qt::black));
    connect(ui->lineColorButton, &QPushButton::clicked, this,
            &ItemPropertiesDialog::onLineColorClicked);
}

Qt::Alignment ItemPropertiesDialog::getTextAlignment() const
{
    Qt::Alignment alignment;
    if (ui->vTopRadio->isChecked())
        alignment |= Qt::AlignTop;
    else if (ui->vCenterRadio->isChecked())
        alignment |= Qt::AlignVCenter;
    if (ui->hLeftRadio->isChecked())
        alignment |= Qt::AlignLeft;
    else if (ui->hCenterRadio->isChecked())
        alignment |= Qt::AlignHCenter;
    else if (ui->hJustifiedRadio->isChecked())
        alignment |= Qt::AlignJustify;
    return alignment;
}

Qt::PenStyle ItemPropertiesDialog::getLineStyle() const
{
    return ui->solidLineRadio->isChecked() ? Qt::SolidLine : Qt::DashLine;
}

Line::ArrowType ItemPropertiesDialog::getArrowStyle() const
{
    return ui->noArrowsRadio->isChecked() ? Line::NoArrows : Line::ArrowAtEnd;
}

QString ItemPropertiesDialog::getRoleType() const
{
    const QListWidgetItem *row = ui->rolesList->currentItem();
    return Role::typeFromName(row ? row->text() : QString());
}

void ItemPropertiesDialog::pickColor(QColor &color, QPushButton *button)
{
    const QColor picked = QColorDialog::getColor(Qt::black, this);
    if (!picked.isValid())
        return;
    color = picked;
    button->setIcon(makeColorIcon(color, Qt::black));
}

void ItemPropertiesDialog::onTextColorClicked()
{
    pickColor(textColor, ui->textColorButton);
}

void ItemPropertiesDialog::onNoteColorClicked()
{
    pickColor(noteColor, ui->bgColorButton);
}

void ItemPropertiesDialog::onLineColorClicked()
{
    pickColor(lineColor, ui->lineColorButton);
}

void ItemPropertiesDialog::accept()
{
    if (line)
        applyToLines();
    if (note)
        applyToNotes();
    QDialog::accept();
}

void ItemPropertiesDialog::applyToLines()
{
    if (lineColor.isValid())
        scene->setSelectedLinesProperty(ProjectItem::PROPERTY_BACKGROUND_COLOR, lineColor);
    if (getArrowStyle() != line->getRecord().arrowStyle)
        scene->setSelectedLinesArrowStyle(getArrowStyle());
    if (getLineStyle() != line->getRecord().lineStyle)
        scene->setSelectedLinesStyle(getLineStyle());
    if (ui->lineThickness->value() != line->getBorderLineWidth())
        scene->setSelectedLinesProperty(ProjectItem::PROPERTY_LINE_WIDTH,
                                        ui->lineThickness->value());
}

void ItemPropertiesDialog::applyToNotes()
{
    if (textColor.isValid())
        scene->setSelectedNotesProperty(Sticky::PROPERTY_TEXT_COLOR, textColor);
    if (noteColor.isValid())
        scene->setSelectedNotesProperty(ProjectItem::PROPERTY_BACKGROUND_COLOR, noteColor);
    if (getRoleType() != note->getRoleType())
        scene->setSelectedNotesRole(getRoleType()); // tells refusals itself
    if (getTextAlignment() != note->getRecord().textAlignment)
        scene->setSelectedNotesAlignment(getTextAlignment());
    if (ui->notRelevant->isChecked() != note->isNotRelevant())
        scene->setSelectedNotesProperty(Sticky::PROPERTY_NOT_RELEVANT,
                                        ui->notRelevant->isChecked());
    if (ui->borderThickness->value() != note->getBorderLineWidth())
        scene->setSelectedNotesProperty(ProjectItem::PROPERTY_LINE_WIDTH,
                                        ui->borderThickness->value());
}
