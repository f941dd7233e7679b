#include "support/fonts.h"

#include "support/projectsettings.h"
#include "support/qtcompat.h"

#include <QFontDialog>
#include <QFontInfo>

#include <iterator>

namespace
{

constexpr int MostFields = 11; // with the name of a style
constexpr int WeightField = 4;
constexpr qreal LargestStandard = 500; // points; of a larger one no note shows a word

// Weights in files beside the toolkit's wide ones. A line between two rows is steep enough for
// every weight of a file to come back.
constexpr int Weights[][2] = {{0, 100},  {12, 200}, {25, 300}, {50, 400}, {57, 500},
                              {63, 600}, {75, 700}, {81, 800}, {87, 900}, {99, 1000}};

/// From one column of the table to the other.
int translateWeight(int weight, int from, int to)
{
    const auto *low = Weights;
    while (low + 2 != std::end(Weights) && low[1][from] < weight)
        ++low;
    const double part = double(weight - low[0][from]) / (low[1][from] - low[0][from]);
    return qRound(low[0][to] + qBound(0.0, part, 1.0) * (low[1][to] - low[0][to]));
}

int getWeight(const QFont &font)
{
    return QtCompat::HasWideFontWeights ? translateWeight(font.weight(), 1, 0) : font.weight();
}

} // namespace

QString encodeFont(const QFont &font)
{
    // The toolkit's own text has grown since.
    QStringList fields = {font.family(), QString::number(font.pointSizeF())};
    for (int number : {font.pixelSize(), int(font.styleHint()), getWeight(font), int(font.style()),
                       int(font.underline()), int(font.strikeOut()), int(font.fixedPitch()), 0})
        fields << QString::number(number);
    return fields.join(',');
}

bool decodeFont(const QString &text, QFont &font)
{
    const QStringList fields = text.split(',');
    QFont decoded;
    if (fields.size() > MostFields || !decoded.fromString(text))
        return false;
    if (QtCompat::HasWideFontWeights && fields.size() > WeightField)
        decoded.setWeight(QFont::Weight(translateWeight(fields.at(WeightField).toInt(), 0, 1)));
    font = decoded;
    return true;
}

QFont getBuiltInFont()
{
    return QFont("Arial", 8, QFont::Normal, false);
}

QFont getStandardFont()
{
    // Every note of a project asks, and making settings and fonts is the dear part.
    static const ProjectSettings settings;
    static QString text;
    static QFont font;
    const QString current = settings.getFont();
    if (text != current) {
        text = current;
        font = getBuiltInFont();
        if (!decodeFont(text, font) || font.pointSizeF() > LargestStandard)
            font = getBuiltInFont();
    }
    return font;
}

bool askForFont(QFont &font, QWidget *parent)
{
    // On a family that is not installed the dialog would silently pick any other.
    const QString substitute = QFontInfo(font).family();
    QFont shown = font;
    shown.setFamily(substitute);
    bool accepted = false;
    QFont chosen = QFontDialog::getFont(&accepted, shown, parent);
    if (!accepted)
        return false;
    chosen.setStyleName(QString());
    if (chosen.family() == substitute)
        chosen.setFamily(font.family());
    font = chosen;
    return true;
}
