#include "support/desktoprecents.h"

#include <QDateTime>
#include <QDomDocument>
#include <QFile>
#include <QSaveFile>
#include <QStandardPaths>
#include <QUrl>

namespace
{

constexpr qint64 LargestList = 16 * 1024 * 1024; // bytes
constexpr char Program[] = "TRAC/Ex Examiner";
constexpr char EmptyList[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<xbel version=\"1.0\""
    " xmlns:bookmark=\"http://www.freedesktop.org/standards/desktop-bookmarks\""
    " xmlns:mime=\"http://www.freedesktop.org/standards/shared-mime-info\"/>";

/// The first child of the name whose attribute has the value; made if there is none.
QDomElement needChild(QDomNode parent, const QString &name, const QString &attribute = QString(),
                      const QString &value = QString())
{
    for (QDomElement child = parent.firstChildElement(name); !child.isNull();
         child = child.nextSiblingElement(name)) {
        if (attribute.isEmpty() || child.attribute(attribute) == value)
            return child;
    }
    QDomElement made = parent.ownerDocument().createElement(name);
    if (!attribute.isEmpty())
        made.setAttribute(attribute, value);
    parent.appendChild(made);
    return made;
}

void enter(QDomElement list, const QString &url, const QString &now)
{
    QDomElement bookmark = needChild(list, "bookmark", "href", url);
    if (!bookmark.hasAttribute("added"))
        bookmark.setAttribute("added", now);
    bookmark.setAttribute("modified", now);
    bookmark.setAttribute("visited", now);
    QDomElement data =
        needChild(needChild(bookmark, "info"), "metadata", "owner", "http://freedesktop.org");
    needChild(data, "mime:mime-type").setAttribute("type", "application/x-examiner-project");
    QDomElement program = needChild(needChild(data, "bookmark:applications"),
                                    "bookmark:application", "name", Program);
    program.setAttribute("exec", "'examiner %f'");
    program.setAttribute("modified", now);
    program.setAttribute("count", program.attribute("count").toInt() + 1);
}

/// Null when the file holds something else.
QDomDocument readList(const QString &path)
{
    QDomDocument document;
    QFile file(path);
    const bool whole = !file.exists()
                           ? bool(document.setContent(QByteArray(EmptyList)))
                           : file.size() <= LargestList && file.open(QIODevice::ReadOnly) &&
                                 bool(document.setContent(&file));
    const bool isList = whole && document.documentElement().tagName() == "xbel";
    return isList ? document : QDomDocument();
}

} // namespace

void addToDesktopRecents(const QString &path)
{
#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
    const QString list = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                         "/recently-used.xbel";
    QDomDocument document = readList(list);
    if (document.isNull())
        return;
    enter(document.documentElement(), QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded()),
          QDateTime::currentDateTimeUtc().toString(Qt::ISODate));
    const bool isNew = !QFile::exists(list);
    QSaveFile file(list);
    if (!file.open(QIODevice::WriteOnly))
        return;
    if (isNew) // it tells what its owner works on
        file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    file.write(document.toByteArray(2));
    file.commit();
#else
    Q_UNUSED(path)
#endif
}
