#include "shell/settings.h"

#include "support/fonts.h"
#include "support/pageinfo.h"
#include "support/projectsettings.h"
#include "ui_settings.h"

#include <QStyle>

namespace
{

struct PaperSize {
    const char *name;
    int number; // as files number papers
};

constexpr PaperSize PaperSizes[] = {
    {QT_TRANSLATE_NOOP("Settings", "U.S. Tabloid"), 29},
    {QT_TRANSLATE_NOOP("Settings", "U.S. Letter"), 2},
    {QT_TRANSLATE_NOOP("Settings", "U.S. Legal"), 3},
    {"A0", 5},
    {"A1", 6},
    {"A2", 7},
    {"A3", 8},
    {"A4", 0},
    {"A5", 9},
    {"A6", 10},
    {"A7", 11},
    {"A8", 12},
    {"A9", 13},
    {"B0", 14},
    {"B1", 15},
    {"B2", 17},
    {"B3", 18},
    {"B4", 19},
    {"B5", 1},
    {"B6", 20},
    {"B7", 21},
    {"B8", 22},
    {"B9", 23},
    {"B10", 16},
    {"C5E", 24},
    {QT_TRANSLATE_NOOP("Settings", "U.S. Common 10 Envelope"), 25},
    {QT_TRANSLATE_NOOP("Settings", "U.S. DLE"), 26},
    {QT_TRANSLATE_NOOP("Settings", "U.S. Executive"), 4},
    {QT_TRANSLATE_NOOP("Settings", "U.S. Folio"), 27},
    {QT_TRANSLATE_NOOP("Settings", "U.S. Ledger"), 28},
};

QString describeFont(const QFont &font)
{
    QString text = Settings::tr("%1 %2pt").arg(font.family(), QString::number(font.pointSize()));
    if (font.weight() > QFont::Normal)
        text += ' ' + Settings::tr("Bold");
    if (font.style() != QFont::StyleNormal)
        text += ' ' + Settings::tr("Italic");
    return text;
}

} // namespace

Settings::Settings(QWidget *parent) : QDialog(parent), ui(new Ui_Settings)
{
    ui->setupUi(this);
    showButtonIcons();
    fillPaperSizes();
    readSettings();
    connect(ui->fontButton, &QPushButton::clicked, this, &Settings::chooseFont);
    connect(ui->paperSizeCombo, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &Settings::checkMargins);
    for (const QDoubleSpinBox *margin : getMargins())
        connect(margin, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this,
                &Settings::checkMargins);
    checkMargins();
}

Settings::~Settings() = default;

/// As a box of standard buttons has them.
void Settings::showButtonIcons()
{
    if (!style()->styleHint(QStyle::SH_DialogButtonBox_ButtonsHaveIcons, nullptr, this))
        return;
    ui->okButton->setIcon(style()->standardIcon(QStyle::SP_DialogOkButton, nullptr, this));
    ui->cancelButton->setIcon(style()->standardIcon(QStyle::SP_DialogCancelButton, nullptr, this));
}

void Settings::fillPaperSizes()
{
    for (const PaperSize &size : PaperSizes)
        ui->paperSizeCombo->addItem(tr(size.name), size.number);
}

void Settings::readSettings()
{
    font = getStandardFont();
    showFont();
    const PageInfo page;
    ui->leftMargin->setValue(page.leftMargin);
    ui->rightMargin->setValue(page.rightMargin);
    ui->topMargin->setValue(page.topMargin);
    ui->bottomMargin->setValue(page.bottomMargin);
    const ProjectSettings settings;
    // A size outside the table selects nothing.
    ui->paperSizeCombo->setCurrentIndex(ui->paperSizeCombo->findData(settings.getPageSize()));
    ui->showPageNumbers->setChecked(settings.shows(ProjectSettings::PageNumbers));
    ui->showLegend->setChecked(settings.shows(ProjectSettings::Legend));
    ui->showHeader->setChecked(settings.shows(ProjectSettings::Header));
}

QList<QDoubleSpinBox *> Settings::getMargins() const
{
    return {ui->leftMargin, ui->rightMargin, ui->topMargin, ui->bottomMargin};
}

void Settings::checkMargins()
{
    PageInfo page;
    page.leftMargin = ui->leftMargin->value();
    page.rightMargin = ui->rightMargin->value();
    page.topMargin = ui->topMargin->value();
    page.bottomMargin = ui->bottomMargin->value();
    ui->marginsNote->setVisible(!page.leavesPageOn(ui->paperSizeCombo->currentData().toInt()));
}

void Settings::showFont()
{
    ui->fontPreviewLabel->setText(describeFont(font));
    ui->fontPreviewLabel->setFont(font);
}

void Settings::chooseFont()
{
    if (askForFont(font, this))
        showFont();
}

void Settings::accept()
{
    QStringList margins;
    for (const QDoubleSpinBox *margin : getMargins())
        margins.append(QString::number(margin->value(), 'g', 6));

    ProjectSettings settings;
    settings.setFont(encodeFont(font));
    settings.setPageSize(ui->paperSizeCombo->currentData());
    settings.setMargins(margins);
    settings.setShown(ProjectSettings::PageNumbers, ui->showPageNumbers->isChecked());
    settings.setShown(ProjectSettings::Legend, ui->showLegend->isChecked());
    settings.setShown(ProjectSettings::Header, ui->showHeader->isChecked());
    QDialog::accept();
}
