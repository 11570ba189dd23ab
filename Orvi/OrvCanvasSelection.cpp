#include "Orvi/OrvCanvasSelection.h"

#include "Orvi/OrvSelectionCoverage.h"
#include "Orvi/OrvSelectionGroups.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Project/OrvProject.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCoreModules/Menus/OrvMenu.h"
#include "OrvCoreModules/Window/OrvApplication.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"

#include <QtGui/QCursor>

namespace {

const QSize UsualTileSize(2048, 2048);
constexpr int MessageDuration = 5000; // ms

} // namespace

OrvCanvasSelection::OrvCanvasSelection(QObject* pParent)
    : QObject(pParent)
{
    connect(&OrvProjectManager::instance(), &OrvProjectManager::objectMadeCurrent, this,
        &OrvCanvasSelection::changed);
    install(this);
}

OrvCanvasSelection::~OrvCanvasSelection() = default;

OrvGeoEntity* OrvCanvasSelection::currentEntity()
{
    const OrvProject* pProject = OrvProjectManager::instance().currentProject();
    return pProject ? pProject->currentGeoEntity() : nullptr;
}

OrvUdimLayout OrvCanvasSelection::currentLayout()
{
    if (const OrvShaderInput* pChannel = OrvShaderInputManager::instance().currentShaderInput())
        return pChannel->layout();
    const OrvGeoEntity* pEntity = currentEntity();
    return pEntity ? OrvUdimLayout(UsualTileSize, pEntity->udimTiles()) : OrvUdimLayout();
}

const OrvSelectionArea& OrvCanvasSelection::area() const
{
    static const OrvSelectionArea Nothing;
    const auto Found = m_Areas.constFind(currentEntity());
    return Found == m_Areas.constEnd() ? Nothing : *Found;
}

void OrvCanvasSelection::setArea(const OrvSelectionArea& Area)
{
    const OrvGeoEntity* pEntity = currentEntity();
    if (!pEntity || Area == area())
        return;
    if (!m_Areas.contains(pEntity)) {
        connect(pEntity, &QObject::destroyed, this, [this](const QObject* pGone) { m_Areas.remove(pGone); });
    }
    m_Areas.insert(pEntity, Area);
    Q_EMIT changed();
}

OrvSelectionCoverage OrvCanvasSelection::coverage(const OrvUdimLayout& Layout) const
{
    return area().isEmpty() ? OrvSelectionCoverage() : OrvSelectionCoverage(area(), Layout);
}

void OrvCanvasSelection::selectAll()
{
    setArea(OrvSelectionArea::ofAllTiles(currentLayout()));
}

void OrvCanvasSelection::selectNone()
{
    setArea(OrvSelectionArea());
}

void OrvCanvasSelection::invert()
{
    setArea(OrvSelectionArea::ofAllTiles(currentLayout()).combinedWith(area(), OrvSelectionArea::Subtract));
}

void OrvCanvasSelection::load(const QString& GroupName, OrvSelectionArea::Combination How)
{
    const OrvSelectionArea Group = OrvSelectionGroups::area(GroupName);
    if (!Group.isEmpty())
        setArea(area().combinedWith(Group, How));
}

OrvImageBuffer OrvCanvasSelection::selection(const OrvUdimLayout& Layout) const
{
    return area().isEmpty() ? OrvImageBuffer()
                            : OrvSelectionCoverage(area(), Layout).toBuffer(Layout.extent());
}

QStringList OrvCanvasSelection::selectionGroups() const
{
    return OrvSelectionGroups::names();
}

OrvImageBuffer OrvCanvasSelection::selectionGroup(const QString& Name, const OrvUdimLayout& Layout) const
{
    const OrvSelectionArea Group = OrvSelectionGroups::area(Name);
    return Group.isEmpty() ? OrvImageBuffer() : OrvSelectionCoverage(Group, Layout).toBuffer(Layout.extent());
}

QString OrvCanvasSelection::askForSelectionGroup()
{
    const QStringList Names = selectionGroups();
    if (Names.isEmpty()) {
        OrvStatusManager::instance().showMessage(
            tr("There is no selection group yet: Select > Save Selection As makes one"), MessageDuration);
        return QString();
    }
    if (!OrvApplication::popupsAllowed())
        return QString();
    OrvMenu Menu(&OrvMainWindow::instance());
    Menu.setObjectName(QStringLiteral("SelectionGroups"));
    for (const QString& Name : Names) {
        QString Text = Name;
        QAction* pAction = Menu.addAction(
            OrvSelectionGroups::icon(Name), Text.replace(QLatin1Char('&'), QLatin1String("&&")));
        pAction->setData(Name);
    }
    const QAction* pChosen = Menu.exec(QCursor::pos());
    return pChosen ? pChosen->data().toString() : QString();
}

#include "moc_OrvCanvasSelection.cpp"
