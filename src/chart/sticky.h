#pragma once

#include "chart/boxitem.h"

class CircledNumberItem;
class CrossLines;
class NotePicture;
class NoteText;
class WorkingDropShadow;

/// A note of the chart: a shape by its role, a text, perhaps a picture and a
/// numbered circle. Points given to its edge operations are item coordinates.
class Sticky : public BoxItem
{
    Q_OBJECT
    Q_PROPERTY(QFont customFont READ getFont WRITE setCustomFont)
    Q_PROPERTY(QColor textColor READ getTextColor WRITE setTextColor)
    Q_PROPERTY(bool notRelevant READ isNotRelevant WRITE setNotRelevant)

public:
    enum { Type = StickyType }; ///< without it qgraphicsitem_cast takes any item for a note

    /// Connection sides; the numbers stand in project files.
    enum Side {
        NoSide = 0,
        LeftSide = 1,
        TopSide = 2,
        RightSide = 3,
        BottomSide = 4,
        AutoSide = 5, ///< the whole note: settled from the line's other end
    };

    static const QByteArray PROPERTY_CUSTOM_FONT;
    static const QByteArray PROPERTY_TEXT_COLOR;
    static const QByteArray PROPERTY_NOT_RELEVANT;

    Sticky(ChartSheet *sheet, CanvasItemInfo &info);
    ~Sticky() override;

    /// Empty while the placeholder shows.
    QString getText() const;
    QFont getFont() const;
    QColor getTextColor() const { return info.textColor; }
    bool isNotRelevant() const { return info.notRelevant; }
    const QString &getRoleType() const { return info.role.getTypeName(); }
    bool isParentItem() const { return info.role.isParentItem(); }
    const QStringList &getSiblings() const { return info.siblings; }
    int getCausalFactorNumber() const;
    bool isEditing() const { return editing; }
    /// Whether lines of the text stand outside the note.
    bool isTextCut() const { return textCut; }

    // What is new goes on to the siblings, except for the mark and the shadow.
    void setText(const QString &text);
    /// The note follows the standard font from now on.
    void setDefaultFont(const QFont &font);
    /// The note keeps this font of its own.
    void setCustomFont(const QFont &font);
    /// An invalid color shows black.
    void setTextColor(const QColor &color);
    void setTextAlignment(Qt::Alignment alignment);
    void setNotRelevant(bool notRelevant);
    void setShadow(bool enabled) override;
    void setCausalFactorNumber(int number);

    /// Takes the role without asking; the sheet's rules come before.
    void setRoleType(const QString &role);
    /// Ties a Loss or a Loss Of Control to its form field; other roles have none.
    void addRoleSiblings(const QString &role);
    /// Cuts the present role's tie to the form.
    void removeRoleSiblings();
    /// Forgets the note while it is deleted. Null and a repeat change nothing.
    void addSibling(Sticky *note);
    /// A GUID or a form field id; nothing tells of its end.
    void addSibling(const QString &id);
    void removeSibling(const QString &id);
    /// Hands the text to every sibling note and form field.
    void setSiblingText();
    void finishEditing();
    /// Tells of what has been typed so far as finishEditing() does, and the editing goes on.
    void commitEditing();

    /// The delete command tells the note that it came back to or left its sheet.
    void notifySceneAddition();
    void notifySceneRemoval();
    /// Takes over what its siblings share, after a time away from them.
    void catchUp();

    /// (0,0) for NoSide and AutoSide.
    QPointF getEdgeMidPoint(Side side) const;
    /// A band of 10 along each edge; AutoSide further in.
    Side getClosestEdge(const QPointF &p) const;
    /// The side whose middle is closest to the point.
    Side resolveAutoSide(const QPointF &p) const;
    /// Where a line that comes from the point meets the side.
    QPointF getConnectionPoint(Side side, const QPointF &p) const;
    /// Marks the edge closest to the point and returns it.
    Side updateLineConnection(const QPointF &p);
    void setHighlightedEdge(Side side);

    using ProjectItem::relayout;
    CanvasItemInfo getCanvasItemInfo() override;
    void setCustomBackgroundColor(const QColor &color) override;
    void setSize(QSizeF size) override;
    int type() const override { return StickyType; }
    QRectF boundingRect() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

public slots:
    void relayout(bool doItFast) override;
    void onTextChanged();
    void onSiblingDeleted(Sticky *deletedSticky);
    void onSiblingReturned(Sticky *note);

signals:
    /// It left its sheet or is being destroyed.
    void deleted(Sticky *note);
    /// It stands on its sheet again.
    void returned(Sticky *note);
    /// Sent while the old role is still in force: to be received queued, like the next.
    void causalFactorAdded(Sticky *note);
    void causalFactorRemoved(Sticky *note);
    void requestCausalFactorNumberChange(Sticky *note);
    /// A double click with the control key, on a factor or its twin.
    void followed(Sticky *note);
    void editingStarted(Sticky *note);
    /// The text under edit is no longer as it was when editing began.
    void textTouched(Sticky *note);
    /// Editing has ended, also without a change.
    void textEdited(Sticky *source, QString from, QString to);

protected:
    QVariant itemChange(GraphicsItemChange change, const QVariant &value) override;
    void hoverMoveEvent(QGraphicsSceneHoverEvent *event) override;
    void hoverLeaveEvent(QGraphicsSceneHoverEvent *event) override;
    void contextMenuEvent(QGraphicsSceneContextMenuEvent *event) override;
    void mousePressEvent(QGraphicsSceneMouseEvent *event) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent *event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent *event) override;
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent *event) override;

private:
    static const char INITIAL_TEXT[]; // what a note without text shows, translated

    void makePicture();
    void makeCircle();
    void makeText();
    bool decorateCircle(const QString &decorator);
    void onTextModified(bool modified);
    void squareForRole(const QString &role);
    QList<Sticky *> getSiblingNotes() const;
    bool changeFont(const QFont &font, bool custom);

    void drawShape(QPainter *painter) const;
    void drawHighlightEdge(QPainter *painter, Side side) const;
    void drawCutMark(QPainter *painter) const;
    QSizeF getTextInset() const;
    qreal getTextHeight() const;
    void placeText(const QSizeF &inset);
    void checkText();
    qreal getHeightForText() const;
    void growToText();
    void placePicture(const QSizeF &inset, bool doItFast);

    bool isCircleAt(const QPointF &p) const;
    bool isPictureAt(const QPointF &p) const;
    void beginEditing();
    void snapResize();

    NoteText *noteText = nullptr;     // child
    NotePicture *imageItem = nullptr; // child; null without a picture
    bool editing = false;
    bool textCut = false;
    Side highlightedEdge = NoSide;
    CircledNumberItem *circle = nullptr; // child
    QString textBeforeEdit;
    std::unique_ptr<CrossLines> crossLines;
    WorkingDropShadow *dropShadow = nullptr; // the item's effect, made with the first shadow
    QHash<QString, int> deletedSiblings;     // the places that they had
};
