#pragma once

#include <QSettings>
#include <QStringList>

/// The settings that a project brings along and that its pages and notes are made by. Each call
/// reads or writes the program's settings, so that all objects tell the same.
class ProjectSettings
{
public:
    static constexpr int Tabloid = 29; ///< as files number papers, see getPaperSize()
    static constexpr char BuiltInFont[] = "Arial,8,-1,5,50,0,0,0,0,0"; ///< encoded

    // What may be shown or hidden; also the names in a project file.
    static constexpr char PageNumbers[] = "showPageNumbers";
    static constexpr char Legend[] = "showLegend";
    static constexpr char Header[] = "showHeader";

    /// As stored: a file may have brought any number.
    int getPageSize() const { return settings.value(PageSize, Tabloid).toInt(); }
    /// An invalid number is forgotten.
    void setPageSize(const QVariant &number) { settings.setValue(PageSize, number); }
    /// Left, right, top, bottom in centimetres; of any other count when they are not set.
    QStringList getMargins() const { return settings.value(Margins).toStringList(); }
    /// A list of four. A text, as a file brings it, counts as not set.
    void setMargins(const QVariant &margins) { settings.setValue(Margins, margins); }
    /// Encoded.
    QString getFont() const { return settings.value(Font, BuiltInFont).toString(); }
    void setFont(const QString &font) { settings.setValue(Font, font); }
    bool shows(const QString &part) const { return settings.value(part, true).toBool(); }
    void setShown(const QString &part, bool shown) { settings.setValue(part, shown); }
    void sync() { settings.sync(); }

private:
    static constexpr char PageSize[] = "pageSize";
    static constexpr char Margins[] = "margins";
    static constexpr char Font[] = "font";

    QSettings settings;
};
