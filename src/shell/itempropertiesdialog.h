#pragma once

#include "chart/line.h"

#include <QColor>
#include <QDialog>
#include <QIcon>
#include <QPointer>
#include <memory>

class ProjectScene;
class QPushButton;
class Sticky;
class Ui_ItemProperties;

/// Edits the look of the selected lines and notes. It starts from one of each;
/// on OK what differs from these goes to the whole selection, a step of undo
/// for each change.
class ItemPropertiesDialog : public QDialog
{
    Q_OBJECT

public:
    /// The note or the line may be null. All three outlive the dialog.
    ItemPropertiesDialog(ProjectScene *scene, Sticky *note, Line *line, QWidget *parent);
    ~ItemPropertiesDialog() override;

    /// A rounded square of the colour, or of the fallback for an invalid one.
    static QIcon makeColorIcon(QColor color, QColor fallback);

    Qt::Alignment getTextAlignment() const;
    Qt::PenStyle getLineStyle() const;
    Line::ArrowType getArrowStyle() const;
    /// A type name of the role table.
    QString getRoleType() const;

public slots:
    void accept() override;

private slots:
    void onTextColorClicked();
    void onNoteColorClicked();
    void onLineColorClicked();

private:
    void fillRoles();
    void readNote();
    void readTextAlignment();
    void readRole();
    void readLine();
    void pickColor(QColor &color, QPushButton *button);
    void applyToLines();
    void applyToNotes();

    std::unique_ptr<Ui_ItemProperties> ui;
    ProjectScene *scene;
    QPointer<Sticky> note; // a project that the platform opens meanwhile takes both away
    QPointer<Line> line;
    QColor lineColor; // this and the next two are invalid until picked
    QColor textColor;
    QColor noteColor;
};
