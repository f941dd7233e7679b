#include "chart/chartsheet.h"
#include "chart/circlednumberitem.h"
#include "chart/formfields.h"
#include "chart/notetext.h"
#include "chart/sheethost.h"
#include "chart/sticky.h"
#include "support/log.h"

namespace
{

/// The copies on factor sheets that bear the role, for a note of the main sheet. They keep it
/// whatever the note becomes; the form's field they share only as long as the note has the role,
/// else it would carry words between the field and a note that has left it.
QList<Sticky *> getTwins(const Sticky *note, const QString &role)
{
    QList<Sticky *> twins;
    if (!note->getSheet()->getOwnerGUID().isEmpty())
        return twins;
    for (const QString &id : note->getSiblings()) {
        Sticky *twin = note->getSheet()->getHost()->getNoteWithGUID(id);
        if (twin && twin->getRoleType() == role && !twin->getSheet()->getOwnerGUID().isEmpty())
            twins.append(twin);
    }
    return twins;
}

} // namespace

void Sticky::setRoleType(const QString &role)
{
    const Role newRole(role);
    const bool wasParent = isParentItem();
    removeRoleSiblings(); // before the text changes: the form keeps its own
    squareForRole(role);

    circle->setBrush(QBrush(Qt::white));
    circle->setNumberingMode(CircledNumberItem::NoNumber);
    decorateCircle(newRole.getCircleDecoratorType());
    // A twin on a factor's own sheet has the factor's number, which that sheet can't know.
    if (circle->getNumberingMode() != CircledNumberItem::NoNumber &&
        sheet->getOwnerGUID().isEmpty())
        setCausalFactorNumber(sheet->getFirstUnusedCFNumber());

    if (newRole.isParentItem() && !wasParent)
        emit causalFactorAdded(this);
    else if (wasParent && !newRole.isParentItem())
        emit causalFactorRemoved(this);

    addRoleSiblings(role);
    prepareGeometryChange(); // bounds depend on the shape
    info.role.setType(role);
    circle->setVisible(!info.role.getCircleDecoratorType().isEmpty());
    relayout(false);
}

void Sticky::squareForRole(const QString &role)
{
    if (role != RoleType::Transfer && role != RoleType::Loss)
        return;
    setSize(QSizeF(rect.width(), rect.width()));
    if (role == RoleType::Loss)
        return;
    if (getText().isEmpty())
        setText("A");
    setTextAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
}

// False leaves the circle without a look of its own: there is nothing to show.
bool Sticky::decorateCircle(const QString &decorator)
{
    if (decorator == "numerals" || decorator == "letters") {
        circle->setNumberingMode(decorator == "numerals" ? CircledNumberItem::Numerals
                                                         : CircledNumberItem::Letters);
        return true;
    }
    const QColor color(decorator);
    if (!color.isValid())
        return false;
    circle->setNumberingMode(CircledNumberItem::NoNumber);
    circle->setBrush(color);
    return true;
}

void Sticky::removeRoleSiblings()
{
    const QString role = getRoleType();
    for (const QString &id : QStringList(info.siblings)) {
        if ((role == RoleType::Loss && id == FormFields::Loss) ||
            (role == RoleType::LossOfControl && id == FormFields::LossOfControl) ||
            (role == RoleType::CausalFactor && FormFields::isOfCausalFactor(id)))
            removeSibling(id);
    }
    for (Sticky *twin : getTwins(this, role))
        twin->removeRoleSiblings();
}

void Sticky::addRoleSiblings(const QString &role)
{
    if (role == RoleType::Loss)
        addSibling(FormFields::Loss);
    else if (role == RoleType::LossOfControl)
        addSibling(FormFields::LossOfControl);
    for (Sticky *twin : getTwins(this, role))
        twin->addRoleSiblings(role);
}

void Sticky::addSibling(Sticky *note)
{
    if (note && !info.siblings.contains(note->getGUID())) {
        info.siblings.append(note->getGUID());
        connect(note, &Sticky::deleted, this, &Sticky::onSiblingDeleted);
        connect(note, &Sticky::returned, this, &Sticky::onSiblingReturned);
    } else {
        qCDebug(chartLog) << "ERROR: NULL SIBLING??";
    }
    qCDebug(chartLog) << "Add Sticky sibling: " << info.siblings.join(", ");
}

void Sticky::addSibling(const QString &id)
{
    if (!info.siblings.contains(id))
        info.siblings.append(id);
}

void Sticky::removeSibling(const QString &id)
{
    // A note that was read from a file keeps the ids of deleted ones.
    if (!info.siblings.removeOne(id))
        qCDebug(chartLog) << "ERROR:  The sibling to delete is not in the list." << id;
    qCDebug(chartLog) << "Removed sibling: " << id;
    qCDebug(chartLog) << "Siblings remaining:" << info.siblings;
}

void Sticky::onSiblingDeleted(Sticky *deletedSticky)
{
    const QString guid = deletedSticky->getGUID();
    if (info.siblings.contains(guid))
        deletedSiblings.insert(guid, info.siblings.indexOf(guid));
    removeSibling(guid);
}

void Sticky::onSiblingReturned(Sticky *note)
{
    const QString guid = note->getGUID();
    if (deletedSiblings.contains(guid) && !info.siblings.contains(guid))
        info.siblings.insert(qMin(deletedSiblings.take(guid), info.siblings.size()), guid);
}

// What changed meanwhile reached only the notes that stood on a sheet.
void Sticky::catchUp()
{
    const QList<Sticky *> notes = getSiblingNotes();
    if (notes.isEmpty())
        return;
    const Sticky *twin = notes.first();
    setText(twin->noteText->toPlainText());
    if (twin->info.customFont)
        setCustomFont(twin->getFont());
    else
        setDefaultFont(twin->getFont());
    setTextColor(twin->info.textColor);
    setTextAlignment(twin->info.textAlignment);
    setCustomBackgroundColor(twin->info.backgroundColor);
    setCausalFactorNumber(twin->getCausalFactorNumber());
}

void Sticky::setSiblingText()
{
    const QString text = noteText->toPlainText();
    for (const QString &id : QStringList(info.siblings)) {
        if (Sticky *note = sheet->getHost()->getNoteWithGUID(id))
            note->setText(text);
        else
            sheet->setConnectedFormField(id, text);
    }
}

void Sticky::notifySceneAddition()
{
    emit returned(this);
    catchUp();
    if (isParentItem())
        emit causalFactorAdded(this);
}

void Sticky::notifySceneRemoval()
{
    emit deleted(this);
    if (isParentItem())
        emit causalFactorRemoved(this);
}
