#include "shell/introscreen.h"

#include "shell/projectdesk.h"
#include "shell/projectdrop.h"
#include "support/images.h"
#include "ui_introscreen.h"

#include <QAction>
#include <QDateTime>
#include <QDirIterator>
#include <QKeyEvent>
#include <QLocale>
#include <QScreen>
#include <QSettings>
#include <QStandardPaths>
#include <QTimer>

namespace
{

constexpr int UpdateLoadingTime = 5000; // milliseconds
constexpr int TitleBarHeight = 40;      // at most
constexpr int WidestName = 280;         // pixels, leaves room for the date

/// Not every file system keeps the time of birth.
QDateTime getCreated(const QFileInfo &file)
{
    const QDateTime birth = file.birthTime();
    return birth.isValid() ? birth : file.metadataChangeTime();
}

QTableWidgetItem *makeNameItem(const QFileInfo &file)
{
    const QString fileName = file.fileName();
    auto *item = new QTableWidgetItem(fileName.left(fileName.lastIndexOf(".autosave")));
    item->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    item->setData(Qt::UserRole, file.absoluteFilePath());
    item->setData(Qt::ToolTipRole, IntroScreen::tr("Double click to open this auto-saved file."));
    return item;
}

QTableWidgetItem *makeDateItem(const QFileInfo &file)
{
    auto *item =
        new QTableWidgetItem(QLocale::system().toString(getCreated(file), QLocale::LongFormat));
    item->setFlags(Qt::ItemIsEnabled);
    return item;
}

QTableWidgetItem *makeHeaderItem(const QString &text)
{
    auto *item = new QTableWidgetItem(text);
    item->setData(Qt::TextAlignmentRole, int(Qt::AlignLeft));
    return item;
}

} // namespace

IntroScreen::IntroScreen(QWidget *parent) : QWidget(parent), ui(new Ui_IntroScreen)
{
    ui->setupUi(this);
    ui->updateButton->hide();
    connectButtons();
    setAttribute(Qt::WA_DeleteOnClose);
    listRecentFiles();
    const bool anyFiles = listAutoSavedFiles();
    connect(ui->autoSaveTable, &QTableWidget::itemActivated, this,
            &IntroScreen::onAutoSaveActivated);
    ui->autoSaveGroup->setVisible(anyFiles);
    fitLogo(screen()->availableGeometry().height());
    colorForDarkGround();
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet("IntroScreen { background: qradialgradient(cx:0.5, cy:0.5, radius: 0.4, fx:0.5, "
                  "fy:0.5, stop:0 #D82509, stop:1 #951900); }");
}

IntroScreen::~IntroScreen() = default;

void IntroScreen::connectButtons()
{
    connect(ui->updateButton, &QToolButton::clicked, this, &IntroScreen::onUpdateClicked);
    connect(ui->newProjectButton, &QToolButton::clicked, this, &IntroScreen::newProjectClicked);
    connect(ui->quickStartButton, &QToolButton::clicked, this, &IntroScreen::quickStartClicked);
    connect(ui->openProjectButton, &QToolButton::clicked, this, &IntroScreen::onOpenProjectClicked);
    connect(ui->openProjectButton, &QToolButton::triggered, this,
            &IntroScreen::onRecentFileTriggered);
    connect(new ProjectDrop(this), &ProjectDrop::dropped, this,
            [this](const QString &path) { emit openProjectClicked(path, true); });
}

void IntroScreen::keyPressEvent(QKeyEvent *event)
{
    auto *button = qobject_cast<QToolButton *>(focusWidget());
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (button && isEnter)
        button->click();
    else
        QWidget::keyPressEvent(event);
}

void IntroScreen::listRecentFiles()
{
    qDeleteAll(ui->openProjectButton->actions());
    const QStringList paths = QSettings().value("recentFiles").toStringList();
    ui->openProjectButton->setPopupMode(paths.isEmpty() ? QToolButton::DelayedPopup
                                                        : QToolButton::MenuButtonPopup);
    for (QString path : paths.mid(0, ProjectDesk::MaximumRecentFiles)) // a lone & marks a key
        ui->openProjectButton->addAction(new QAction(path.replace('&', "&&"), this));
}

void IntroScreen::fitLogo(int availableHeight)
{
    const QPixmap logo = loadPicture(":/images/tracexlogo2.png");
    ui->logoLabel->setPixmap(logo);
    // The files to restore matter more than the logo.
    if (availableHeight >= logo.height() / logo.devicePixelRatio() + 100 &&
        availableHeight >= layout()->minimumSize().height() + TitleBarHeight)
        return;
    ui->logoLabel->setPixmap(QPixmap());
    ui->logoLabel->setText("TRAC/Ex Examiner");
    ui->logoLabel->setFont(QFont("Arial", 25, QFont::Bold, false));
    ui->logoLabel->setAlignment(Qt::AlignHCenter);
}

bool IntroScreen::listAutoSavedFiles()
{
    QDirIterator files(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation),
                       {"*.autosave"}, QDir::NoFilter);
    while (files.hasNext())
        addAutoSavedFile(files.next());
    if (ui->autoSaveTable->rowCount() == 0)
        return false;
    ui->autoSaveTable->setHorizontalHeaderItem(0, makeHeaderItem(tr("Name")));
    ui->autoSaveTable->setHorizontalHeaderItem(1, makeHeaderItem(tr("Saved on")));
    const int usual = ui->autoSaveTable->columnWidth(0);
    ui->autoSaveTable->resizeColumnToContents(0);
    ui->autoSaveTable->setColumnWidth(0,
                                      qBound(usual, ui->autoSaveTable->columnWidth(0), WidestName));
    return true;
}

void IntroScreen::addAutoSavedFile(const QString &path)
{
    const QFileInfo file(path);
    const int row = ui->autoSaveTable->rowCount();
    ui->autoSaveTable->setRowCount(row + 1);
    ui->autoSaveTable->setColumnCount(2);
    ui->autoSaveTable->setItem(row, 0, makeNameItem(file));
    ui->autoSaveTable->setItem(row, 1, makeDateItem(file));
}

/// The ground is dark red on every desktop, so what stands on it is light.
void IntroScreen::colorForDarkGround()
{
    QPalette light;
    light.setColor(QPalette::WindowText, Qt::white);
    light.setColor(QPalette::ButtonText, Qt::white);
    light.setColor(QPalette::Button, QColor("#b32a12")); // under the mouse
    for (QWidget *widget :
         {static_cast<QWidget *>(ui->logoLabel), static_cast<QWidget *>(ui->newProjectButton),
          static_cast<QWidget *>(ui->quickStartButton),
          static_cast<QWidget *>(ui->openProjectButton), static_cast<QWidget *>(ui->autoSaveGroup),
          static_cast<QWidget *>(ui->updateButton)})
        widget->setPalette(light);
    ui->autoSaveTable->setPalette(QApplication::palette(ui->autoSaveTable));
}

void IntroScreen::showUpdateButton()
{
    ui->updateButton->show();
}

void IntroScreen::onUpdateClicked()
{
    ui->updateButton->setText(tr("Loading update site..."));
    QTimer::singleShot(UpdateLoadingTime, this, &IntroScreen::stopUpdateLoading);
    emit updateClicked();
}

void IntroScreen::stopUpdateLoading()
{
    ui->updateButton->setText(tr("Software Update Available\nClick to Download"));
}

void IntroScreen::onRecentFileTriggered(QAction *action)
{
    emit openProjectClicked(action->text().replace("&&", "&"), true);
}

void IntroScreen::onOpenProjectClicked()
{
    emit openProjectClicked(QString(), true);
}

void IntroScreen::onAutoSaveActivated(QTableWidgetItem *item)
{
    const QString path = item->data(Qt::UserRole).toString();
    if (!path.isEmpty())
        emit openProjectClicked(path, false);
}
