// help_pictures PROJECT OUT: opens the sample project in the program's window, uses it as the
// manual tells, and writes the manual's pictures into OUT.

#include "chart/role.h"
#include "chart/sticky.h"
#include "chart/toolid.h"
#include "output/sheetprinter.h"
#include "picture.h"
#include "shell/application.h"
#include "shell/graphwidget.h"
#include "shell/introscreen.h"
#include "shell/toolstoolbar.h"
#include "shell/zoomwidget.h"
#include "stage.h"
#include "support/supportfiles.h"

#include <QComboBox>
#include <QFile>
#include <QFileInfo>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QStandardPaths>
#include <QStyleFactory>
#include <QTabBar>
#include <QTableWidget>
#include <QToolBar>
#include <QToolButton>

namespace
{

QString folder;

QString at(const QString &name)
{
    return folder + "/" + name + ".png";
}

QList<QPoint> shrink(QList<QPoint> points, int from, int to)
{
    for (QPoint &point : points)
        point = point * (double(to) / from);
    return points;
}

/// As the user meets it after a crash.
void takeStartScreen()
{
    const QString data = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    QFile left(data + "/Crane at berth 3.autosave");
    if (!left.open(QIODevice::WriteOnly))
        qFatal("%s can't be written", qPrintable(left.fileName()));
    left.close();
    {
        IntroScreen screen(nullptr);
        screen.setAttribute(Qt::WA_DeleteOnClose, false);
        screen.resize(900, 560);
        screen.show();
        auto *list = screen.findChild<QTableWidget *>("autoSaveTable");
        list->item(0, 1)->setText("Friday, 20 September 2024 16:40:12");
        settle();
        Picture(screen.grab().toImage()).fit().frame().write(at("start"));
    }
    left.remove();
}

/// All of the window, with the whole first page in it.
void takeWindow(Stage &stage)
{
    stage.resize(900, 720);
    stage.showTab(1);
    stage.child<ZoomWidget>()->setZoom(50);
    stage.select("The mast strikes");
    const QImage image = stage.grab();
    const auto *tabBar = stage.child<QTabBar>();
    const auto right = [](const QWidget *widget) {
        return widget->mapTo(widget->window(), QPoint(widget->width(), widget->height() / 2));
    };
    const QList<QPoint> marks = {
        stage.window.menuBar()->mapTo(&stage.window, QPoint(180, 11)),
        right(stage.child<QComboBox>()) + QPoint(210, 0),
        right(stage.child<ToolsToolBar>()) - QPoint(30, 0),
        right(tabBar) + QPoint(24, 0),
        stage.find(QPointF(1020, 50)),
        stage.find(QPointF(740, 440)),
        stage.find(QPointF(1180, 900)),
        stage.find(QPointF(930, 1004)),
        stage.find(stage.child<ZoomWidget>()) - QPoint(300, 0),
    };
    Picture(image)
        .fit()
        .number(shrink(marks, image.width(), Picture::Width))
        .frame()
        .write(at("window"));
    stage.child<ZoomWidget>()->setZoom(100);
}

void takeTools(Stage &stage)
{
    QWidget *palette = stage.child<ToolsToolBar>();
    const QImage bar = palette->grab().toImage();
    Picture(bar.copy(0, 0, qMin(bar.width(), 760), bar.height()))
        .fit()
        .frame()
        .write(at("palette"));
    for (const QAction *action : palette->findChildren<QAction *>()) {
        if (!action->data().isValid())
            continue;
        QImage icon(32, 32, QImage::Format_RGB32);
        icon.fill(Qt::white);
        QPainter painter(&icon);
        action->icon().paint(&painter, icon.rect());
        painter.end();
        Picture(icon).write(at("tool-" + QString::number(action->data().toInt())));
    }
}

void takeRoles(Stage &stage)
{
    const QMap<QString, QString> examples = {
        {"Event", "The driver takes the truck to bay 4"},
        {"Assumed_Event", "A call on the radio hurries the driver"},
        {"Condition", "Two of the four lamps are out"},
        {"Assumed_Condition", "The driver is in the eleventh hour"},
        {"Starting_Event", "Night shift begins one loader short"},
        {"Terminating_Event", "Bay 4 is unloaded and shored up"},
        {"Loss_Of_Control", "The upright buckles"},
        {"Loss", "A loader's foot is crushed"},
        {"Causal_Factor", "The mast is still raised"},
        {"Sequence_Marker", "02:10"},
        {"Transfer", "A"},
    };
    ProjectScene sheet(&stage.window, nullptr, nullptr, nullptr, QSize(1600, 1000));
    sheet.setRenderBackground(false, false, false);
    for (auto role = examples.cbegin(); role != examples.cend(); ++role) {
        CanvasItemInfo info;
        info.type = NoteItemType;
        info.role.setType(role.key());
        info.text = role.value();
        const bool small = role.key() == "Sequence_Marker";
        const QSizeF size =
            role.key() == "Transfer" ? QSizeF(60, 60) : QSizeF(120, small ? 20 : 60);
        info.startPoint = QPointF(400, 400);
        info.size = size;
        info.textAlignment = Qt::AlignCenter;
        auto *note = static_cast<Sticky *>(sheet.loadCanvasItem(info));
        if (note->isParentItem())
            note->setCausalFactorNumber(1);
        settle();
        const QRectF part(392, 388, 140, small ? 44 : 84);
        QImage image(part.size().toSize(), QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        sheet.render(&painter, QRectF(), part);
        painter.end();
        Picture(image).write(at("role-" + QString(role.key()).toLower().replace('_', '-')));
        note->setVisible(false);
    }
}

void takeChart(Stage &stage)
{
    stage.resize(1020, 760);
    stage.showTab(1);
    stage.window.getMainScene()->clearSelection();
    Picture(stage.grabSheet(QRectF(530, 360, 740, 380))).fit().frame().write(at("chart"));

    stage.select("The mast strikes");
    Picture(stage.grabSheet(QRectF(700, 400, 380, 160))).frame().write(at("note"));
    stage.window.getMainScene()->clearSelection();

    const QRectF part(880, 260, 380, 280);
    stage.getView()->centerOn(part.center());
    stage.takeTool(ConnectorTool);
    stage.drag({{1160, 355}, {1150, 380}, {1050, 400}, {1000, 440}, {985, 446}});
    Picture(stage.grabSheet(part)).frame().write(at("connect"));
    stage.window.onEscapePressed();
    stage.drop();
}

void takeBarriers(Stage &stage)
{
    Picture(stage.grabSheet(QRectF(660, 400, 400, 160))).frame().write(at("barriers"));
    for (const QToolButton *button : stage.child<ToolsToolBar>()->findChildren<QToolButton *>()) {
        if (button->menu() && button->menu()->actions().size() == 4)
            Picture(button->menu()->grab().toImage()).frame().write(at("barrier-menu"));
    }
}

void takeFactor(Stage &stage)
{
    Picture(stage.grabSheet(QRectF(540, 410, 320, 330))).frame().write(at("factor-chart"));
    stage.window.resize(1180, 760);
    stage.showSheet(stage.window.getFactorScenes().at(1));
    Picture(stage.grabSheet(QRectF(10, 10, 900, 490))).fit().frame().write(at("factor-sheet"));
}

void takeMenus(Stage &stage)
{
    stage.showTab(1);
    stage.select("The mast strikes");
    QMenu *menu = stage.window.getNoteContextMenu();
    Picture(menu->grab().toImage()).frame().write(at("menu-note"));
    for (QMenu *part : menu->findChildren<QMenu *>()) {
        if (part->title() == "Change Role")
            Picture(part->grab().toImage()).frame().write(at("menu-role"));
    }
    Picture(stage.window.getLineContextMenu()->grab().toImage()).frame().write(at("menu-line"));
}

void takeForm(Stage &stage)
{
    stage.resize(780, 760);
    stage.showTab(0);
    Picture(stage.grabForm("steps", QRect(0, 0, 760, 530))).fit().frame().write(at("form"));
    Picture(stage.grabForm("causalFactor-1", QRect(0, 0, 760, 600)))
        .fit()
        .frame()
        .write(at("form-factor"));
}

void takeDialogs(Stage &stage)
{
    stage.showTab(1);
    stage.selectWithLine("The mast strikes");
    Picture(stage.grabDialog("Item Properties", 1)).fit().frame().write(at("properties-notes"));
    Picture(stage.grabDialog("Item Properties", 0)).fit().frame().write(at("properties-lines"));
    Picture(stage.grabDialog("Print Setup")).fit().frame().write(at("print-setup"));
    Picture(stage.grabDialog("Export...")).fit().frame().write(at("export"));
    Picture(stage.grabDialog("Project Settings")).fit().frame().write(at("project-settings"));
    Picture(stage.grabDialog("Program Settings")).fit().frame().write(at("program-settings"));
}

/// Two pages of the report, which somebody else has put beside the project as pictures.
void takeReport(const QString &project)
{
    const QString beside = QFileInfo(project).path() + "/report-%1.png";
    const QImage cover(beside.arg(1)), inside(beside.arg(3));
    if (cover.isNull() || inside.isNull())
        return;
    constexpr int Gap = 20; // pixels around each page
    QImage both(cover.width() * 2 + 3 * Gap, cover.height() + 2 * Gap, QImage::Format_RGB32);
    both.fill(Qt::gray);
    QPainter painter(&both);
    painter.drawImage(Gap, Gap, cover);
    painter.drawImage(cover.width() + 2 * Gap, Gap, inside);
    painter.end();
    Picture(both).fit().write(at("report"));
}

/// The first sheets of paper, side by side.
void takePrint(Stage &stage)
{
    QPrinter printer(QPrinter::ScreenResolution);
    SheetPrinter::setUpPage(printer);
    QPrintPreviewWidget preview(&printer);
    QObject::connect(&preview, &QPrintPreviewWidget::paintRequested, &stage.window,
                     [&stage](QPrinter *paper) { stage.window.paintPrinter(*paper); });
    preview.resize(900, 620);
    preview.show();
    preview.updatePreview();
    preview.setAllPagesViewMode();
    settle();
    Picture(preview.grab().toImage()).fit().frame().write(at("print"));
}

} // namespace

int main(int argc, char **argv)
{
    Application application(argc, argv);
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    QApplication::setPalette(QApplication::style()->standardPalette());
    QApplication::setFont(QFont("Liberation Sans", 9));
    if (argc != 3)
        qFatal("help_pictures PROJECT OUT");
    folder = QString::fromLocal8Bit(argv[2]);
    copySupportFiles();
    takeStartScreen();
    const QString project = QString::fromLocal8Bit(argv[1]);
    Stage stage(project);
    takeWindow(stage);
    takeTools(stage);
    takeRoles(stage);
    takeChart(stage);
    takeBarriers(stage);
    takeFactor(stage);
    takeMenus(stage);
    takeForm(stage);
    takeDialogs(stage);
    takePrint(stage);
    takeReport(project);
    std::_Exit(0); // nothing is saved
}
