#include "Orvi/OrvSelectionGroups.h"

#include "Orvi/OrvCanvasSelection.h"

#include "OrvCoreModules/Window/OrvCustomFusionStyle.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QIcon>
#include <QtGui/QPainter>

#include <algorithm>

namespace {

constexpr int IconEdge = 48; // pixels, enough for dense screens

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvSelectionGroups", pText);
}

OrvGeoEntity::SelectionGroups groups()
{
    const OrvGeoEntity* pEntity = OrvCanvasSelection::currentEntity();
    return pEntity ? pEntity->selectionGroups() : OrvGeoEntity::SelectionGroups();
}

} // namespace

QStringList OrvSelectionGroups::names()
{
    return groups().keys();
}

OrvSelectionArea OrvSelectionGroups::area(const QString& Name)
{
    return groups().value(Name);
}

QString OrvSelectionGroups::unusedName()
{
    const QStringList Taken = names();
    QString Name = tr("Selection");
    for (int Number = 2; Taken.contains(Name); ++Number)
        Name = tr("Selection %1").arg(Number);
    return Name;
}

bool OrvSelectionGroups::store(const QString& Name, const OrvSelectionArea& Area)
{
    OrvGeoEntity* pEntity = OrvCanvasSelection::currentEntity();
    if (!pEntity || Name.isEmpty() || Area.isEmpty())
        return false;
    OrvGeoEntity::SelectionGroups Groups = pEntity->selectionGroups();
    Groups.insert(Name, Area);
    pEntity->setSelectionGroups(Groups, tr("Save Selection : %1").arg(Name));
    return true;
}

bool OrvSelectionGroups::rename(const QString& Name, const QString& NewName)
{
    OrvGeoEntity* pEntity = OrvCanvasSelection::currentEntity();
    OrvGeoEntity::SelectionGroups Groups = groups();
    if (!pEntity || !Groups.contains(Name) || NewName.isEmpty() || Groups.contains(NewName))
        return false;
    Groups.insert(NewName, Groups.take(Name));
    pEntity->setSelectionGroups(Groups, tr("Rename Selection : %1").arg(NewName));
    return true;
}

void OrvSelectionGroups::remove(const QStringList& Names)
{
    OrvGeoEntity* pEntity = OrvCanvasSelection::currentEntity();
    if (!pEntity)
        return;
    OrvGeoEntity::SelectionGroups Groups = pEntity->selectionGroups();
    for (const QString& Name : Names)
        Groups.remove(Name);
    pEntity->setSelectionGroups(Groups, tr("Delete Selection : %1").arg(Names.join(QLatin1String(", "))));
}

QIcon OrvSelectionGroups::icon(const QString& Name)
{
    const OrvUdimLayout Layout = OrvCanvasSelection::currentLayout();
    const QRectF Plane(Layout.extent());
    if (Plane.isEmpty())
        return QIcon();
    QPixmap Picture(IconEdge, IconEdge);
    Picture.fill(Qt::transparent);
    QPainter Painter(&Picture);
    Painter.setRenderHint(QPainter::Antialiasing);
    Painter.translate(IconEdge / 2.0, IconEdge / 2.0);
    const double Scale = IconEdge / std::max(Plane.width(), Plane.height());
    Painter.scale(Scale, Scale);
    Painter.translate(-Plane.center());
    for (const int Tile : Layout.tiles())
        Painter.fillRect(Layout.tileRect(Tile), QColor(0, 0, 0, 90));
    Painter.fillPath(area(Name).toPlane(Layout), OrvCustomFusionStyle::accentColor());
    return QIcon(Picture);
}
