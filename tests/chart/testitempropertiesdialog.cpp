#include "shell/itempropertiesdialog.h"
#include "testing/sheet.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QUndoStack>

class TestItemPropertiesDialog : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void texts_data();
    void texts();
    void tabsFollowTheSelection_data();
    void tabsFollowTheSelection();
    void rolesStandInTableOrder();
    void okWithoutChangesPushesNothing();
    void okAfterTheItemsAreGone();
    void eachChangeOfANoteIsOneStep();
    void changesGoToTheWholeSelection();
    void lineOpensSolidAndThin();
    void alignmentWithoutVerticalPartShowsTop();
    void refusedRoleLeavesTheOtherChanges();
    void colorIcon();
    void pickedColors();

private:
    template<typename Widget> Widget *find(const char *name) const
    {
        Widget *widget = dialog->findChild<Widget *>(name);
        Q_ASSERT(widget);
        return widget;
    }
    void open(Sticky *dialogNote, Line *dialogLine);
    void pickColor(const char *button, const QColor &color);
    QStringList getStepTexts() const;

    std::unique_ptr<Sheet> sheet;
    std::unique_ptr<ItemPropertiesDialog> dialog;
    Sticky *note = nullptr;
    Line *line = nullptr;
};

void TestItemPropertiesDialog::init()
{
    sheet.reset(new Sheet);
    CanvasItemInfo info;
    info.type = NoteItemType;
    info.startPoint = QPointF(100, 100);
    info.size = QSizeF(120, 80);
    note = qobject_cast<Sticky *>(sheet->scene.loadCanvasItem(info));
    line = sheet->addLine(QPointF(400, 400), QPointF(600, 500));
    note->setSelected(true);
    line->setSelected(true);
    open(note, line);
}

void TestItemPropertiesDialog::cleanup()
{
    dialog.reset();
    sheet.reset();
}

void TestItemPropertiesDialog::open(Sticky *dialogNote, Line *dialogLine)
{
    dialog.reset(new ItemPropertiesDialog(&sheet->scene, dialogNote, dialogLine, nullptr));
}

QStringList TestItemPropertiesDialog::getStepTexts() const
{
    QStringList steps;
    const QUndoStack *stack = sheet->scene.getUndoStack();
    for (int i = 0; i < stack->count(); ++i)
        steps.append(stack->text(i));
    return steps;
}

void TestItemPropertiesDialog::texts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("checked");

    QTest::newRow("noArrowsRadio") << "No Arrows" << false;
    QTest::newRow("endArrowRadio") << "Arrow at end" << true;
    QTest::newRow("lineColorButton") << "Line Color" << false;
    QTest::newRow("solidLineRadio") << "Solid Line" << true;
    QTest::newRow("dashedLineRadio") << "Dashed" << false;
    QTest::newRow("vTopRadio") << "Top" << true;
    QTest::newRow("vCenterRadio") << "Center" << false;
    QTest::newRow("hLeftRadio") << "Left" << true;
    QTest::newRow("hCenterRadio") << "Center" << false;
    QTest::newRow("hJustifiedRadio") << "Justified" << false;
    QTest::newRow("notRelevant") << "Mark not relevant" << false;
    QTest::newRow("bgColorButton") << "Custom Background Color" << false;
    QTest::newRow("textColorButton") << "Custom Text Color" << false;
}

void TestItemPropertiesDialog::texts()
{
    QFETCH(QString, text);
    QFETCH(bool, checked);
    open(nullptr, nullptr);
    const auto *button = find<QAbstractButton>(QTest::currentDataTag());
    QCOMPARE(button->text(), text);
    QCOMPARE(button->isChecked(), checked);
    if (qobject_cast<const QPushButton *>(button))
        QCOMPARE(button->styleSheet(), QString("text-align: left;"));
}

void TestItemPropertiesDialog::tabsFollowTheSelection_data()
{
    QTest::addColumn<bool>("withNote");
    QTest::addColumn<bool>("withLine");
    QTest::addColumn<QString>("shown");

    QTest::newRow("note") << true << false << "Notes";
    QTest::newRow("line") << false << true << "Lines";
    QTest::newRow("both") << true << true << "Lines";
}

void TestItemPropertiesDialog::tabsFollowTheSelection()
{
    QFETCH(bool, withNote);
    QFETCH(bool, withLine);
    QFETCH(QString, shown);
    open(withNote ? note : nullptr, withLine ? line : nullptr);
    const auto *tabs = find<QTabWidget>("tabWidget");
    QCOMPARE(dialog->windowTitle(), QString("Item Properties"));
    QCOMPARE(tabs->tabText(tabs->currentIndex()), shown);
    QCOMPARE(find<QWidget>("notesTab")->isEnabled(), withNote);
    QCOMPARE(find<QWidget>("linesTab")->isEnabled(), withLine);
}

void TestItemPropertiesDialog::rolesStandInTableOrder()
{
    const auto *roles = find<QListWidget>("rolesList");
    QCOMPARE(roles->count(), 11);
    QCOMPARE(roles->item(0)->text(), QString("Assumed Condition"));
    QCOMPARE(roles->item(10)->text(), QString("Transfer"));
    QVERIFY(!roles->item(0)->icon().isNull());
    QCOMPARE(roles->currentItem()->text(), QString("Event"));
}

void TestItemPropertiesDialog::okWithoutChangesPushesNothing()
{
    open(note, nullptr);
    QVERIFY(find<QRadioButton>("vCenterRadio")->isChecked());
    QVERIFY(find<QRadioButton>("hCenterRadio")->isChecked());
    dialog->accept();
    QCOMPARE(dialog->result(), int(QDialog::Accepted));
    QCOMPARE(getStepTexts(), QStringList());
}

void TestItemPropertiesDialog::okAfterTheItemsAreGone()
{
    sheet->scene.clear();
    dialog->accept();
    QCOMPARE(dialog->result(), int(QDialog::Accepted));
    QCOMPARE(getStepTexts(), QStringList());
}

void TestItemPropertiesDialog::eachChangeOfANoteIsOneStep()
{
    open(note, nullptr);
    auto *roles = find<QListWidget>("rolesList");
    roles->setCurrentItem(roles->findItems("Condition", Qt::MatchExactly).first());
    find<QRadioButton>("hJustifiedRadio")->setChecked(true);
    find<QCheckBox>("notRelevant")->setChecked(true);
    find<QSpinBox>("borderThickness")->setValue(4);
    find<QDialogButtonBox>("buttonBox")->button(QDialogButtonBox::Ok)->click();

    QCOMPARE(sheet->getSteps(), 4);
    QCOMPARE(note->getRoleType(), QString("Condition"));
    QCOMPARE(note->getRecord().textAlignment, Qt::AlignVCenter | Qt::AlignJustify);
    QVERIFY(note->isNotRelevant());
    QCOMPARE(note->getBorderLineWidth(), 4);
    while (sheet->scene.getUndoStack()->canUndo())
        sheet->scene.getUndoStack()->undo();
    QCOMPARE(note->getRoleType(), QString("Event"));
    QCOMPARE(note->getRecord().textAlignment, Qt::AlignVCenter | Qt::AlignHCenter);
    QCOMPARE(note->getBorderLineWidth(), 0);
}

void TestItemPropertiesDialog::changesGoToTheWholeSelection()
{
    Sticky *other = sheet->addNote(QRectF(300, 100, 120, 80), "Loss");
    other->setSelected(true);
    open(note, nullptr);
    find<QSpinBox>("borderThickness")->setValue(6);
    dialog->accept();
    QCOMPARE(other->getBorderLineWidth(), 6);
    QCOMPARE(other->getRoleType(), QString("Loss")); // the shown note's role did not change
    QCOMPARE(sheet->getSteps(), 1);
}

void TestItemPropertiesDialog::lineOpensSolidAndThin()
{
    line->setLineStyle(Qt::DashLine);
    line->setBorderLineWidth(8);
    line->setArrowStyle(Line::NoArrows);
    open(nullptr, line);
    const auto *thickness = find<QSpinBox>("lineThickness");
    QCOMPARE(thickness->minimum(), 2);
    QCOMPARE(thickness->maximum(), 10);
    QCOMPARE(thickness->singleStep(), 2);
    QCOMPARE(dialog->getArrowStyle(), Line::NoArrows);
    QCOMPARE(dialog->getLineStyle(), Qt::SolidLine);
    dialog->accept();
    QCOMPARE(line->getRecord().lineStyle, int(Qt::SolidLine));
    QCOMPARE(line->getBorderLineWidth(), 2);
    QCOMPARE(line->getRecord().arrowStyle, int(Line::NoArrows));
    QCOMPARE(sheet->getSteps(), 2);
}

void TestItemPropertiesDialog::alignmentWithoutVerticalPartShowsTop()
{
    note->setTextAlignment(Qt::AlignLeft);
    open(note, nullptr);
    QCOMPARE(dialog->getTextAlignment(), Qt::AlignTop | Qt::AlignLeft);
    dialog->accept();
    QCOMPARE(note->getRecord().textAlignment, Qt::AlignTop | Qt::AlignLeft);
}

void TestItemPropertiesDialog::refusedRoleLeavesTheOtherChanges()
{
    sheet->addNote(QRectF(300, 100, 120, 80), "Loss");
    open(note, nullptr);
    auto *roles = find<QListWidget>("rolesList");
    roles->setCurrentItem(roles->findItems("Loss", Qt::MatchExactly).first());
    QCOMPARE(dialog->getRoleType(), QString("Loss"));
    find<QSpinBox>("borderThickness")->setValue(2);

    BoxAnswer refusal(QMessageBox::Ok); // a chart has one Loss
    dialog->accept();
    QVERIFY(refusal.wasAsked());
    QCOMPARE(note->getRoleType(), QString("Event"));
    QCOMPARE(note->getBorderLineWidth(), 2);
    QCOMPARE(dialog->result(), int(QDialog::Accepted));
}

void TestItemPropertiesDialog::colorIcon()
{
    const auto getCentre = [](const QIcon &icon) {
        return icon.pixmap(16, 16).toImage().pixelColor(8, 8);
    };
    QCOMPARE(getCentre(ItemPropertiesDialog::makeColorIcon(Qt::green, Qt::red)), QColor(Qt::green));
    QCOMPARE(getCentre(ItemPropertiesDialog::makeColorIcon(QColor(), Qt::red)), QColor(Qt::red));
    const QIcon icon = ItemPropertiesDialog::makeColorIcon(Qt::green, Qt::red);
    QVERIFY(icon.pixmap(16, 16).toImage().pixelColor(0, 0).alpha() < 128);
}

void TestItemPropertiesDialog::pickColor(const char *button, const QColor &color)
{
    DialogAnswer answer([color](QWidget *widget) {
        auto *colors = qobject_cast<QColorDialog *>(widget);
        if (!colors || colors->currentColor() != QColor(Qt::black))
            return false;
        if (color.isValid()) {
            colors->setCurrentColor(color);
            colors->accept();
        } else {
            colors->reject();
        }
        return true;
    });
    find<QPushButton>(button)->click();
    QVERIFY2(answer.wasAsked(), button);
}

void TestItemPropertiesDialog::pickedColors()
{
    pickColor("textColorButton", Qt::red);
    dialog->reject();
    QCOMPARE(getStepTexts(), QStringList());

    open(note, line);
    pickColor("textColorButton", Qt::red);
    pickColor("bgColorButton", Qt::yellow);
    pickColor("bgColorButton", QColor()); // keeps yellow
    pickColor("lineColorButton", Qt::blue);
    dialog->accept();
    QCOMPARE(note->getTextColor(), QColor(Qt::red));
    QCOMPARE(note->getCustomBackgroundColor(), QColor(Qt::yellow));
    QCOMPARE(line->getCustomBackgroundColor(), QColor(Qt::blue));
}

EXAMINER_TEST_MAIN(TestItemPropertiesDialog)
#include "testitempropertiesdialog.moc"
