#include "chart/role.h"

#include "support/images.h"

#include <QPainter>

namespace
{

QColor colorFromName(const QString &name)
{
    QColor color;
    color.setNamedColor(name.toLower());
    return color;
}

int shapeFromWord(const QString &word)
{
    static const QStringList words = {"rectangle", "oval", "plate", "ellipse"};
    return qMax(0, words.indexOf(word.toLower()));
}

QIcon makeRoleIcon(const RoleInfo &info)
{
    QPixmap pixmap = makeIconGround(16);
    QPainter painter(&pixmap);
    painter.setPen(QPen(Qt::white, 3)); // or the outline would vanish on a dark ground
    info.drawShape(&painter);
    info.drawIcon(&painter);
    return QIcon(pixmap);
}

} // namespace

void RoleInfo::drawIcon(QPainter *painter) const
{
    painter->setPen(pen);
    painter->setBrush(brush);
    painter->setRenderHint(QPainter::Antialiasing, shape != Rectangle);
    drawShape(painter);
}

void RoleInfo::drawShape(QPainter *painter) const
{
    const QRectF box(1, 1, 13, 13);
    switch (shape) {
    case Oval:
        painter->drawRoundedRect(box, 75, 75, Qt::RelativeSize);
        break;
    case Plate:
        painter->drawPolygon(
            QPolygonF({QPointF(7, 0), QPointF(14, 7), QPointF(7, 14), QPointF(0, 7)}));
        break;
    case Ellipse:
        painter->drawEllipse(box);
        break;
    default:
        painter->drawRect(box);
    }
}

QMap<QString, RoleInfo> Role::rolesList;

Role::Role(const QString &type)
{
    setType(type);
}

void Role::setType(const QString &type)
{
    if (rolesList.isEmpty())
        loadAllRoles();
    info = rolesList.value(type);
}

QString Role::typeFromName(const QString &displayName)
{
    if (rolesList.isEmpty())
        loadAllRoles();
    for (const RoleInfo &row : qAsConst(rolesList)) {
        if (row.displayName == displayName)
            return row.typeName;
    }
    return RoleType::Event;
}

RoleInfo Role::makeRoleInfo(const QString &type, const QString &name, const QString &brushColor,
                            const QString &penColor, const QString &lineStyle, const QString &shape)
{
    RoleInfo info;
    info.displayName = name;
    info.brush = QBrush(colorFromName(brushColor));
    info.pen = QPen(colorFromName(penColor));
    if (lineStyle.toLower() == "dashed")
        info.pen.setStyle(Qt::DashLine);
    info.pen.setWidth(1);
    info.shape = shapeFromWord(shape);
    info.typeName = type;
    info.icon = makeRoleIcon(info);
    return info;
}

void Role::loadAllRoles()
{
    const auto add = [](const QString &type, const QString &name, const QString &brushColor,
                        const QString &lineStyle, const QString &shape) {
        rolesList.insert(type, makeRoleInfo(type, name, brushColor, "black", lineStyle, shape));
    };
    add(RoleType::Event, tr("Event"), "LightYellow", "solid", "rectangle");
    add("Assumed_Event", tr("Assumed Event"), "white", "dashed", "rectangle");
    add("Condition", tr("Condition"), "white", "solid", "oval");
    add("Assumed_Condition", tr("Assumed Condition"), "white", "dashed", "oval");
    add("Sequence_Marker", tr("Sequence Marker"), "#F6C47A", "solid", "oval");
    add(RoleType::Loss, tr("Loss"), "white", "solid", "ellipse");
    add(RoleType::LossOfControl, tr("Loss Of Control"), "#F6C47A", "solid", "rectangle");
    add("Starting_Event", tr("Starting Event"), "#9ACD9A", "solid", "rectangle");
    add("Terminating_Event", tr("Terminating Event"), "#F4B7A5", "solid", "rectangle");
    add(RoleType::Transfer, tr("Transfer"), "white", "solid", "plate");
    add(RoleType::CausalFactor, tr("Causal Factor"), "white", "solid", "oval");

    RoleInfo &causalFactor = rolesList[RoleType::CausalFactor];
    causalFactor.circleDecoratorType = "numerals";
    causalFactor.parentItem = true;
}
