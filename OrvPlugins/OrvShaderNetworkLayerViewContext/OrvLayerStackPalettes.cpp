#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerStackPalettes.h"

#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Object/OrvObjectReferenceManager.h"
#include "OrvCore/Object/OrvSettings.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCoreModules/Widgets/OrvMoveWidgetToCursor.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvCoreModules/Window/OrvPaletteManager.h"
#include "OrvDdi/Files/OrvDataBlockManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerStackTitles.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextManager.h"

#include <QtCore/QFile>
#include <QtGui/QCursor>
#include <QtGui/QScreen>
#include <QtWidgets/QApplication>

namespace {

const QString SettingsFileName = QStringLiteral("LayerStackPalettes.conf");
const QString SettingsGroup = QStringLiteral("Palettes");
const QString NumberKey = QStringLiteral("Number");
const QString StateKey = QStringLiteral("State");
const QString PaletteSizeAttribute = QStringLiteral("_PaletteSize");

constexpr int DeletionDelay = 1; // ms
constexpr int RaiseDelay = 10; // ms
const QPoint BelowClickedRow(24, 36); // from the cursor: the row stays in sight
constexpr int PaletteGap = 4; // between the palette and the one that it was opened from
constexpr int WindowStateVersion = 0;

void report(int Line, const char* pMessage)
{
    OrvDebug("OrvLayerViewContextManager", Line, QString::fromLatin1(pMessage), false, false);
}

OrvLayerView* layerViewOf(const OrvPalette* pPalette)
{
    return qobject_cast<OrvLayerView*>(pPalette->originalWidget());
}

QString storedName(const OrvLayerStack* pLayerStack)
{
    return pLayerStack->node()->uuidString() + QLatin1Char(':') + pLayerStack->targetInputName();
}

/// From the cursor: where there is room the palette stands beside the one whose row was clicked, whose rows
/// stay in sight; else below the row.
QPoint placeBesidePaletteUnderCursor(const QSize& Size)
{
    const QPoint Cursor = QCursor::pos();
    const QWidget* pClicked = QApplication::widgetAt(Cursor);
    while (pClicked && !qobject_cast<const OrvPalette*>(pClicked))
        pClicked = pClicked->parentWidget();
    const QScreen* pScreen = QGuiApplication::screenAt(Cursor);
    if (!pClicked || !pScreen)
        return BelowClickedRow;
    const QRect Occupied(pClicked->mapToGlobal(QPoint()), pClicked->size());
    const QRect Available = pScreen->availableGeometry();
    const int Above = qMin(0, Available.bottom() - Cursor.y() - Size.height());
    if (Occupied.right() + PaletteGap + Size.width() <= Available.right())
        return {Occupied.right() + PaletteGap - Cursor.x(), Above};
    if (Occupied.left() - PaletteGap - Size.width() >= Available.left())
        return {Occupied.left() - PaletteGap - Size.width() - Cursor.x(), Above};
    return BelowClickedRow;
}

} // namespace

OrvLayerStackPalettes::OrvLayerStackPalettes(OrvLayerViewContextManager* pManager)
    : m_pManager(pManager)
{
    m_DeletionTimer.setSingleShot(true);
    m_DeletionTimer.setInterval(DeletionDelay);
    QObject::connect(&m_DeletionTimer, SIGNAL(timeout()), pManager, SLOT(deletePalettesToBeDeleted()));
}

void OrvLayerStackPalettes::open(OrvLayerStack* pLayerStack, bool Unpinned)
{
    if (!pLayerStack) {
        report(__LINE__, "pLayerStack is NULL");
        return;
    }
    if (!OrvProjectManager::instance().currentProject())
        return;

    OrvPalette* pPalette = m_Entries.value(pLayerStack).pPalette;
    if (!pPalette) {
        pPalette = create(pLayerStack);
        if (!pPalette) {
            report(__LINE__, "Palette is NULL");
            return;
        }
        pPalette->setFloating(true);
        pPalette->fitToContents();
        enter(pLayerStack, pPalette);
    }
    // A palette restored with the project becomes an ordinary one here.
    pPalette->setPinnable(true);
    QObject::connect(
        pPalette, SIGNAL(sizeChanged()), m_pManager, SLOT(onPaletteSizeChanged()), Qt::UniqueConnection);
    pPalette->setPinned(!Unpinned);

    const OrvSnBaseNode* pTopNode = pLayerStack->topNode();
    if (pTopNode && pTopNode->exists(PaletteSizeAttribute))
        pPalette->resize(pTopNode->userAttribute(PaletteSizeAttribute).value().toSize());

    const QWidget* pBody = pPalette->originalWidget();
    if (!pBody || !pBody->isVisible()) {
        pPalette->show();
        OrvMoveWidgetToCursor(pPalette, placeBesidePaletteUnderCursor(pPalette->size()));
    }
    QTimer::singleShot(RaiseDelay, pPalette, SLOT(raise()));
}

OrvPalette* OrvLayerStackPalettes::create(OrvLayerStack* pLayerStack)
{
    if (!pLayerStack) {
        report(__LINE__, "pLayerStack is NULL");
        return nullptr;
    }
    if (!OrvProjectManager::instance().currentProject()) {
        report(__LINE__, "CurrentProject is NULL");
        return nullptr;
    }
    OrvMainWindow* pMainWindow = &OrvMainWindow::instance();
    OrvPalette* pPalette
        = new OrvPalette(OrvLayerStackTitles::title(pLayerStack), pMainWindow, QStringLiteral("Layers"));
    pMainWindow->addDockWidget(Qt::LeftDockWidgetArea, pPalette);
    // Layers of one name have palettes of one title.
    pPalette->setHeaderToolTip(
        [pStack = QPointer<OrvLayerStack>(pLayerStack)] { return OrvLayerStackTitles::path(pStack); });

    OrvLayerView* pLayerView = new OrvLayerView(pPalette, OrvLayerView::DedicatedStack);
    pLayerView->setLayerStack(pLayerStack);
    pLayerView->requestRefresh();
    pPalette->setBodyWidget(pLayerView);
    QObject::connect(pPalette, SIGNAL(destroyed()), pLayerView, SLOT(deleteLater()));
    return pPalette;
}

void OrvLayerStackPalettes::enter(OrvLayerStack* pLayerStack, OrvPalette* pPalette)
{
    m_Entries.insert(pLayerStack,
        {pPalette, pLayerStack->node(), pLayerStack->targetInputName(), pLayerStack->isAdjustmentStack()});
    QObject::connect(pLayerStack, SIGNAL(destroyed(QObject*)), m_pManager,
        SLOT(onLayerStackDestroyed(QObject*)), Qt::UniqueConnection);
}

OrvLayerStackPalettes::Table::iterator OrvLayerStackPalettes::retire(Table::iterator Retired)
{
    m_Retired.append(Retired->pPalette);
    m_DeletionTimer.start();
    return m_Entries.erase(Retired);
}

void OrvLayerStackPalettes::storeSize(const Entry& Stored)
{
    OrvSnBaseNode* pTopNode = Stored.pNode ? Stored.pNode->inputNode(Stored.InputName) : nullptr;
    if (!pTopNode || !Stored.pPalette)
        return;
    const QSize Size = Stored.pPalette->size();
    if (pTopNode->exists(PaletteSizeAttribute)) {
        pTopNode->setUserAttributeValue(PaletteSizeAttribute, Size);
        return;
    }
    OrvCustomAttribute Attribute(PaletteSizeAttribute, Size);
    Attribute.setNonVersionable();
    pTopNode->createUserAttribute(Attribute);
}

void OrvLayerStackPalettes::storeSize(const OrvPalette* pPalette)
{
    for (const Entry& Open : qAsConst(m_Entries)) {
        if (pPalette && Open.pPalette == pPalette) {
            storeSize(Open);
            return;
        }
    }
}

void OrvLayerStackPalettes::noteReconnection(
    OrvSnBaseNode* pNode, const QString& InputName, const OrvSnBaseNode* pNewInputNode)
{
    if (m_Entries.isEmpty())
        return;
    const auto Found = m_Entries.find(OrvLayerStack::getLayerStack(pNode, InputName));
    if (Found == m_Entries.end())
        return;
    if (!Found->pPalette) {
        m_Entries.erase(Found);
        return;
    }
    const bool MaskStackReplaced
        = InputName == OrvSnNames::Mask && qobject_cast<const OrvSnChannelInputNode*>(pNewInputNode);
    // A group has another top after every change of its topmost layer.
    const bool IsTopOfGroup = !Found->IsAdjustmentStack
        && (OrvLayerStreamUtils::isMergeNode(pNewInputNode)
            || OrvLayerStreamUtils::isValidBottomTransparencyNode(pNewInputNode));
    const bool AdjustmentStackReplaced = InputName == OrvSnNames::Over && pNewInputNode
        && !pNewInputNode->hasTag(OrvSnNames::AdjustmentStackTopTag) && !IsTopOfGroup;
    if (MaskStackReplaced || AdjustmentStackReplaced)
        retire(Found);
}

void OrvLayerStackPalettes::retireThoseOf(const OrvSnBaseNode* pNode)
{
    for (auto At = m_Entries.begin(); At != m_Entries.end();)
        At = At->pNode == pNode ? retire(At) : std::next(At);
}

void OrvLayerStackPalettes::retireThatOf(const QObject* pLayerStack)
{
    const auto Found = m_Entries.find(pLayerStack);
    if (!pLayerStack || Found == m_Entries.end())
        return;
    storeSize(*Found);
    retire(Found);
}

void OrvLayerStackPalettes::deleteRetired()
{
    for (const QPointer<OrvPalette>& pPalette : qAsConst(m_Retired)) {
        if (pPalette)
            pPalette->deleteLater();
    }
    m_Retired.clear();
}

void OrvLayerStackPalettes::close()
{
    // A palette that closes may ask for the table.
    Table Closing;
    Closing.swap(m_Entries);
    for (const Entry& Open : qAsConst(Closing)) {
        if (!Open.pPalette)
            continue;
        Open.pPalette->close();
        if (Open.pPalette)
            Open.pPalette->deleteLater();
    }
}

void OrvLayerStackPalettes::updateTitles()
{
    for (const Entry& Open : qAsConst(m_Entries)) {
        const OrvLayerView* pLayerView = Open.pPalette ? layerViewOf(Open.pPalette) : nullptr;
        if (pLayerView && pLayerView->layerStack())
            Open.pPalette->setHeaderTitle(OrvLayerStackTitles::title(pLayerView->layerStack()));
    }
}

QString OrvLayerStackPalettes::shortSettingsFileName()
{
    return SettingsFileName;
}

QString OrvLayerStackPalettes::settingsFileName()
{
    const QStringList CacheRoots = OrvDataBlockManager::cacheRoots();
    if (CacheRoots.isEmpty())
        return {};
    const QString Separator = OrvSettings::separator();
    return CacheRoots.first() + Separator + OrvDataBlockManager::subCache() + Separator + SettingsFileName;
}

void OrvLayerStackPalettes::save() const
{
    const QString FileName = settingsFileName();
    if (FileName.isEmpty())
        return;
    OrvSettings Settings(FileName, QSettings::IniFormat);
    Settings.beginGroup(SettingsGroup);
    Settings.clear();
    if (m_Entries.isEmpty())
        return;

    OrvPaletteManager& PaletteManager = OrvPaletteManager::instance();
    int Index = 0;
    for (const Entry& Open : qAsConst(m_Entries)) {
        OrvPalette* pPalette = Open.pPalette;
        if (!pPalette || !pPalette->isPaletteActive() || !pPalette->isVisible())
            continue;
        const OrvLayerView* pLayerView = layerViewOf(pPalette);
        const OrvLayerStack* pLayerStack = pLayerView ? pLayerView->layerStack() : nullptr;
        if (!pLayerStack || !pLayerStack->node())
            continue;
        // Stored, the palette is known by its stack.
        const QString ObjectName = pPalette->objectName();
        pPalette->setObjectName(storedName(pLayerStack));
        PaletteManager.savePaletteSettings(Settings, Index, pPalette);
        pPalette->setObjectName(ObjectName);
        ++Index;
    }
    Settings.setValue(NumberKey, Index);
    if (Index > 0) {
        Settings.setValue(StateKey, OrvMainWindow::instance().saveState(WindowStateVersion));
        PaletteManager.savePaletteSettings(Settings);
    }
}

void OrvLayerStackPalettes::load()
{
    // A project that closes leaves none current; its palettes must not come back.
    const QString FileName = OrvProjectManager::instance().currentProject() ? settingsFileName() : QString();
    if (FileName.isEmpty() || !QFile::exists(FileName))
        return;
    OrvSettings Settings(FileName, QSettings::IniFormat);
    Settings.beginGroup(SettingsGroup);
    // A damaged file may claim any number, but not hold more entries than it has keys.
    const int Number = qMin(Settings.value(NumberKey, 0).toInt(), Settings.childKeys().size());
    if (Number <= 0)
        return;

    QList<OrvPalette*> Palettes;
    for (int Index = 0; Index < Number; ++Index) {
        const QStringList Parts
            = Settings.value(QString::asprintf("Name%u", unsigned(Index))).toString().split(QLatin1Char(':'));
        if (Parts.size() != 2)
            continue;
        OrvSnBaseNode* pNode
            = qobject_cast<OrvSnBaseNode*>(OrvObjectReferenceManager::instance().getPointer(Parts.first()));
        if (!pNode)
            continue;
        OrvLayerStack* pLayerStack = OrvLayerStack::getLayerStack(pNode, Parts.last());
        if (!pLayerStack) {
            report(__LINE__, "LayerStack is NULL");
            return;
        }
        if (m_Entries.value(pLayerStack).pPalette)
            continue;
        OrvPalette* pPalette = create(pLayerStack);
        if (!pPalette) {
            report(__LINE__, "Palette is NULL");
            return;
        }
        enter(pLayerStack, pPalette);
        Palettes.append(pPalette);
    }

    OrvMainWindow::instance().restoreState(Settings.value(StateKey).toByteArray(), WindowStateVersion);
    OrvPaletteManager& PaletteManager = OrvPaletteManager::instance();
    PaletteManager.restorePaletteSettings(Settings);
    for (int Index = 0; Index < Palettes.size(); ++Index)
        PaletteManager.restorePaletteSettings(Settings, Index, Palettes.at(Index));
}
