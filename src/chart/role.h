#pragma once

#include <QBrush>
#include <QCoreApplication>
#include <QIcon>
#include <QMap>
#include <QPen>
#include <QString>

class QPainter;

/// The types that rules name; the others stand in the table alone.
namespace RoleType
{
constexpr char Event[] = "Event";
constexpr char Loss[] = "Loss";
constexpr char LossOfControl[] = "Loss_Of_Control";
constexpr char Transfer[] = "Transfer";
constexpr char CausalFactor[] = "Causal_Factor";
} // namespace RoleType

/// One row of the role table. Built without arguments it is the row of an
/// unknown role: a plain white rectangle of type "Event" without an icon.
struct RoleInfo {
    enum Shape { Rectangle = 0, Oval = 1, Plate = 2, Ellipse = 3 };

    /// What the icon shows, from (0,0) to (16,16), in strokes that stay sharp on paper. Leaves pen,
    /// brush and smoothing changed.
    void drawIcon(QPainter *painter) const;
    /// The same in the painter's own pen, brush and smoothing.
    void drawShape(QPainter *painter) const;

    QPen pen = QPen(Qt::black);
    QBrush brush = QBrush(Qt::white);
    int shape = Rectangle;
    QString typeName = RoleType::Event; ///< key of the table, and what project files hold
    QString displayName = "Event";      ///< what lists, menus and the legend show
    QIcon icon;                         ///< 16 by 16, the shape in the role's colours
    QString circleDecoratorType;        ///< empty, "numerals", "letters" or a colour name
    bool parentItem = false;            ///< a note of this role owns a secondary sheet
};

/// What a note stands for: one row of the fixed table of eleven roles.
class Role
{
    Q_DECLARE_TR_FUNCTIONS(Role)

public:
    /// Filled by the first role that is built. Sorted by type name, which is
    /// the order of every list of roles.
    static QMap<QString, RoleInfo> rolesList;

    Role(const QString &type = RoleType::Event);

    /// An unknown type gives the default row.
    void setType(const QString &type);

    const RoleInfo &getInfo() const { return info; }
    const QString &getTypeName() const { return info.typeName; }
    bool isParentItem() const { return info.parentItem; }
    const QString &getCircleDecoratorType() const { return info.circleDecoratorType; }

    /// The type of a display name; "Event" when no row has it.
    static QString typeFromName(const QString &displayName);
    /// Words in any case: "dashed" or "solid", "rectangle", "oval" (a rounded rectangle),
    /// "plate" (a diamond) or "ellipse". Another word is a solid pen, a rectangle.
    static RoleInfo makeRoleInfo(const QString &type, const QString &name,
                                 const QString &brushColor, const QString &penColor,
                                 const QString &lineStyle, const QString &shape);
    /// Paints icons, so the application must stand.
    static void loadAllRoles();

private:
    RoleInfo info;
};
