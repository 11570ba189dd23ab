#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextManager.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Object/OrvObjectReferenceManager.h"
#include "OrvCore/Object/OrvSettings.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCoreModules/Widgets/OrvMoveWidgetToCursor.h"
#include "OrvCoreModules/Window/OrvAppearance.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvCoreModules/Window/OrvPaletteManager.h"
#include "OrvCoreModules/Window/OrvResourceInfo.h"
#include "OrvDdi/Files/OrvDataBlockManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderMaterialsView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderView.h"

#include <QtWidgets/QListWidget>

namespace {

const char File[] = "OrvLayerViewContextManager";
const QString SettingsFileName = QStringLiteral("LayerStackPalettes.conf");
const QString SettingsGroup = QStringLiteral("Palettes");
const QString NumberKey = QStringLiteral("Number");
const QString StateKey = QStringLiteral("State");
const QString PaletteSizeAttribute = QStringLiteral("_PaletteSize");

constexpr int MainViewFlags = 0;
constexpr int StackViewFlags = 2;
constexpr int DeletionDelay = 1; // ms
constexpr int RaiseDelay = 10; // ms
const QPoint BelowClickedRow(24, 36); // from the cursor: the row stays in sight
constexpr int WindowStateVersion = 0;

void report(int Line, const char* Message) { OrvDebug(File, Line, QString::fromLatin1(Message), false, false); }

OrvLayerView* layerViewOf(const OrvPalette* pPalette)
{
    return qobject_cast<OrvLayerView*>(pPalette->originalWidget());
}

/// Where the stack is in the document, with the groups and masks around it; empty for a stack that is gone.
QString stackPath(const OrvLayerStack* pLayerStack)
{
    if (!pLayerStack || !pLayerStack->node())
        return {};
    if (const auto* pChannel = qobject_cast<const OrvShaderInput*>(pLayerStack))
        return pChannel->path();
    const QVector<OrvSnMergeNode*> Owners
        = OrvChainTargets::owners({pLayerStack->node(), pLayerStack->targetInputName()});
    const OrvLayer* pLayer = Owners.isEmpty() ? nullptr : OrvLayerManager::instance().getLayer(Owners.first());
    if (!pLayer)
        return {};
    return pLayer->path(true)
        + (pLayerStack->isMaskStack()               ? QStringLiteral("/Mask Stack")
                : pLayerStack->isAdjustmentStack() ? QStringLiteral("/Adjustment Stack")
                                                   : QString());
}

QString storedName(const OrvLayerStack* pLayerStack)
{
    return pLayerStack->node()->uuidString() + QLatin1Char(':') + pLayerStack->targetInputName();
}

} // namespace

OrvLayerViewContextManager& OrvLayerViewContextManager::instance()
{
    static OrvLayerViewContextManager Instance;
    return Instance;
}

OrvLayerViewContextManager::OrvLayerViewContextManager()
{
    setObjectName(QStringLiteral("OrvLayerViewContextManager"));
    const QString IconDirectory = OrvResourceInfo::iconPath() + QLatin1Char('/');

    createShadersPalette(IconDirectory);
    OrvPalette* pChannelsPalette = createChannelsPalette(IconDirectory);
    createLayersPalette(IconDirectory);
    pChannelsPalette->addRelatedPalette(m_LayersPalette);
    m_LayersPalette->addRelatedPalette(pChannelsPalette);

    connectHost();
    m_DeletionTimer.setSingleShot(true);
    m_DeletionTimer.setInterval(DeletionDelay);
    connect(&m_DeletionTimer, SIGNAL(timeout()), this, SLOT(deletePalettesToBeDeleted()));
}

OrvLayerViewContextManager::~OrvLayerViewContextManager() = default;

void OrvLayerViewContextManager::createShadersPalette(const QString& IconDirectory)
{
    OrvPalette* pPalette = new OrvPalette(nullptr);
    m_ShaderMaterialsView = new OrvShaderMaterialsView(pPalette);
    m_ShaderView = m_ShaderMaterialsView->shaderView();
    pPalette->setBodyWidget(m_ShaderMaterialsView);
    pPalette->setObjectName(tr("Shaders"));
    pPalette->setWindowTitle(tr("Shaders"));
    pPalette->setContextHelpKey(QStringLiteral("shaders_palette"));
    OrvPaletteManager::instance().registerPalette(pPalette, false, IconDirectory + QStringLiteral("/Shader.png"));
}

OrvPalette* OrvLayerViewContextManager::createChannelsPalette(const QString& IconDirectory)
{
    OrvPalette* pPalette = new OrvPalette(nullptr);
    m_ShaderInputView = new OrvShaderInputView(pPalette);
    pPalette->setBodyWidget(m_ShaderInputView);
    pPalette->setObjectName(tr("Channels"));
    pPalette->setWindowTitle(tr("Channels"));
    pPalette->setContextHelpKey(QStringLiteral("channels_palette"));
    OrvPaletteManager::instance().registerPalette(pPalette, false, IconDirectory + QStringLiteral("/Channel.png"));
    return pPalette;
}

void OrvLayerViewContextManager::createLayersPalette(const QString& IconDirectory)
{
    m_LayersPalette = new OrvPalette(nullptr);
    m_MainLayerView = new OrvLayerView(m_LayersPalette, MainViewFlags);
    m_LayersPalette->setBodyWidget(m_MainLayerView);
    m_LayersPalette->setObjectName(tr("Layers"));
    m_LayersPalette->setWindowTitle(tr("Layers"));
    m_LayersPalette->setContextHelpKey(QStringLiteral("layers_palette"));
    OrvPaletteManager::instance().registerPalette(
        m_LayersPalette, false, IconDirectory + QStringLiteral("/Layers.png"));
}

void OrvLayerViewContextManager::connectHost()
{
    OrvProjectManager& ProjectManager = OrvProjectManager::instance();
    OrvShaderNetworkManager& NetworkManager = OrvShaderNetworkManager::instance();
    connect(&ProjectManager, SIGNAL(onProjectSaved(OrvProject*)), this, SLOT(saveProjectSettings()));
    connect(&ProjectManager, SIGNAL(onMakeProjectCurrent(OrvProject*)), this, SLOT(loadProjectSettings()));
    connect(&NetworkManager, SIGNAL(nodeReconnected(OrvShaderNetwork*, QString, OrvSnBaseNode*, OrvSnBaseNode*)),
        this, SLOT(onNodeReconnected(OrvShaderNetwork*, QString, OrvSnBaseNode*, OrvSnBaseNode*)));
    connect(&NetworkManager, SIGNAL(nodeDeregistered(OrvShaderNetwork*, OrvSnBaseNode*)), this,
        SLOT(onNodeDeregistered(OrvShaderNetwork*, OrvSnBaseNode*)));
    connect(&ProjectManager, SIGNAL(projectClosed()), this, SLOT(closeLayerViewPalettes()));
    ProjectManager.registerFileExcludedFromArchive(SettingsFileName);
    connect(&NetworkManager, SIGNAL(nodeNameChanged(OrvSnBaseNode*, QString)), this, SLOT(updatePaletteHeaders()));
    connect(&ProjectManager, SIGNAL(geoEntityNameChanged(OrvGeoEntity*, QString)), this,
        SLOT(updatePaletteHeaders()));
    connect(m_MainLayerView, SIGNAL(layerStackChanged(OrvLayerStack*)), this, SLOT(updateLayerPaletteHeader()));
    connect(&OrvAppearance::instance(), SIGNAL(sliderPrecisionChanged(int)), this, SLOT(refreshAllProperties()));
}

OrvLayerView* OrvLayerViewContextManager::layerView() const
{
    return m_ActiveLayerView ? m_ActiveLayerView : m_MainLayerView;
}

OrvLayerView* OrvLayerViewContextManager::mainLayerView() const { return m_MainLayerView; }

void OrvLayerViewContextManager::setActiveLayerView(OrvLayerView* pLayerView) { m_ActiveLayerView = pLayerView; }

OrvShaderInputView* OrvLayerViewContextManager::shaderInputView() const { return m_ShaderInputView; }

OrvShaderView* OrvLayerViewContextManager::shaderView() const { return m_ShaderView; }

void OrvLayerViewContextManager::openLayerStackPalette(OrvLayerStack* pLayerStack, bool Unpinned)
{
    if (!pLayerStack) {
        report(__LINE__, "pLayerStack is NULL");
        return;
    }
    if (!OrvProjectManager::instance().currentProject())
        return;

    OrvPalette* pPalette = m_StackPalettes.value(pLayerStack).pPalette;
    if (!pPalette) {
        pPalette = createLayerStackPalette(pLayerStack);
        if (!pPalette) {
            report(__LINE__, "Palette is NULL");
            return;
        }
        pPalette->setFloating(true);
        pPalette->fitToContents();
        enterPalette(pLayerStack, pPalette);
    }
    // A palette restored with the project becomes an ordinary one here.
    pPalette->setPinnable(true);
    connect(pPalette, SIGNAL(sizeChanged()), this, SLOT(onPaletteSizeChanged()), Qt::UniqueConnection);
    pPalette->setPinned(!Unpinned);

    const OrvSnBaseNode* pTopNode = pLayerStack->topNode();
    if (pTopNode && pTopNode->exists(PaletteSizeAttribute))
        pPalette->resize(pTopNode->userAttribute(PaletteSizeAttribute).value().toSize());

    const QWidget* pBody = pPalette->originalWidget();
    if (!pBody || !pBody->isVisible()) {
        pPalette->show();
        OrvMoveWidgetToCursor(pPalette, BelowClickedRow);
    }
    QTimer::singleShot(RaiseDelay, pPalette, SLOT(raise()));
}

OrvPalette* OrvLayerViewContextManager::createLayerStackPalette(OrvLayerStack* pLayerStack)
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
    OrvPalette* pPalette = new OrvPalette(paletteTitle(pLayerStack), pMainWindow, QStringLiteral("Layers"));
    pMainWindow->addDockWidget(Qt::LeftDockWidgetArea, pPalette);
    // Layers of one name have palettes of one title.
    pPalette->setHeaderToolTip([pStack = QPointer<OrvLayerStack>(pLayerStack)] { return stackPath(pStack); });

    OrvLayerView* pLayerView = new OrvLayerView(pPalette, StackViewFlags);
    pLayerView->setLayerStack(pLayerStack);
    pLayerView->requestRefresh();
    pPalette->setBodyWidget(pLayerView);
    connect(pPalette, SIGNAL(destroyed()), pLayerView, SLOT(deleteLater()));
    return pPalette;
}

void OrvLayerViewContextManager::enterPalette(OrvLayerStack* pLayerStack, OrvPalette* pPalette)
{
    m_StackPalettes.insert(pLayerStack, {pPalette, pLayerStack->node(), pLayerStack->targetInputName()});
    connect(pLayerStack, SIGNAL(destroyed(QObject*)), this, SLOT(onLayerStackDestroyed(QObject*)),
        Qt::UniqueConnection);
}

OrvLayerViewContextManager::StackPaletteTable::iterator OrvLayerViewContextManager::retirePalette(
    StackPaletteTable::iterator Entry)
{
    m_PalettesToBeDeleted.append(Entry->pPalette);
    m_DeletionTimer.start();
    return m_StackPalettes.erase(Entry);
}

QString OrvLayerViewContextManager::paletteTitle(const OrvLayerStack* pLayerStack)
{
    if (!pLayerStack) {
        report(__LINE__, "pLayerStack is NULL");
        return {};
    }
    const OrvShaderNetwork* pNetwork = pLayerStack->network();
    if (!pNetwork) {
        report(__LINE__, "Network is NULL");
        return {};
    }
    const OrvEntity* pEntity = pNetwork->geoEntity();
    if (!pEntity) {
        report(__LINE__, "Entity is NULL");
        return {};
    }
    const QString Title = QStringLiteral("%1/%2").arg(pEntity->name(), pLayerStack->name());
    if (pLayerStack->isAdjustmentStack())
        return Title + QStringLiteral("/Adjustment Stack");
    return pLayerStack->isMaskStack() ? Title + QStringLiteral("/Mask Stack") : Title;
}

void OrvLayerViewContextManager::storePaletteSize(const StackPalette& Entry)
{
    OrvSnBaseNode* pTopNode = Entry.pNode ? Entry.pNode->inputNode(Entry.InputName) : nullptr;
    if (!pTopNode || !Entry.pPalette)
        return;
    const QSize Size = Entry.pPalette->size();
    if (pTopNode->exists(PaletteSizeAttribute)) {
        pTopNode->setUserAttributeValue(PaletteSizeAttribute, Size);
        return;
    }
    OrvCustomAttribute Attribute(PaletteSizeAttribute, Size);
    Attribute.setNonVersionable();
    pTopNode->createUserAttribute(Attribute);
}

void OrvLayerViewContextManager::onPaletteSizeChanged()
{
    const OrvPalette* pPalette = qobject_cast<OrvPalette*>(sender());
    if (!pPalette)
        return;
    for (const StackPalette& Entry : qAsConst(m_StackPalettes)) {
        if (Entry.pPalette == pPalette) {
            storePaletteSize(Entry);
            return;
        }
    }
}

void OrvLayerViewContextManager::onNodeReconnected(
    OrvShaderNetwork*, QString InputName, OrvSnBaseNode* NewInputNode, OrvSnBaseNode* Node)
{
    if (m_StackPalettes.isEmpty())
        return;
    const auto Entry = m_StackPalettes.find(OrvLayerStack::getLayerStack(Node, InputName));
    if (Entry == m_StackPalettes.end())
        return;
    if (!Entry->pPalette) {
        m_StackPalettes.erase(Entry);
        return;
    }
    const bool MaskStackReplaced
        = InputName == OrvSnNames::Mask && qobject_cast<OrvSnChannelInputNode*>(NewInputNode);
    const bool AdjustmentStackReplaced = InputName == OrvSnNames::Over && NewInputNode
        && !NewInputNode->hasTag(OrvSnNames::AdjustmentStackTopTag);
    if (MaskStackReplaced || AdjustmentStackReplaced)
        retirePalette(Entry);
}

void OrvLayerViewContextManager::onNodeDeregistered(OrvShaderNetwork*, OrvSnBaseNode* Node)
{
    for (auto Entry = m_StackPalettes.begin(); Entry != m_StackPalettes.end();)
        Entry = Entry->pNode == Node ? retirePalette(Entry) : std::next(Entry);
}

void OrvLayerViewContextManager::onLayerStackDestroyed(QObject* LayerStack)
{
    if (!LayerStack)
        return;
    const auto Entry = m_StackPalettes.find(LayerStack);
    if (Entry == m_StackPalettes.end())
        return;
    storePaletteSize(*Entry);
    retirePalette(Entry);
}

void OrvLayerViewContextManager::deletePalettesToBeDeleted()
{
    for (const QPointer<OrvPalette>& pPalette : qAsConst(m_PalettesToBeDeleted)) {
        if (pPalette)
            pPalette->deleteLater();
    }
    m_PalettesToBeDeleted.clear();
}

void OrvLayerViewContextManager::closeLayerViewPalettes()
{
    StackPaletteTable StackPalettes;
    StackPalettes.swap(m_StackPalettes);
    for (const StackPalette& Entry : qAsConst(StackPalettes)) {
        if (!Entry.pPalette)
            continue;
        Entry.pPalette->close();
        if (Entry.pPalette)
            Entry.pPalette->deleteLater();
    }
}

void OrvLayerViewContextManager::updatePaletteHeaders()
{
    for (const StackPalette& Entry : qAsConst(m_StackPalettes)) {
        const OrvLayerView* pLayerView = Entry.pPalette ? layerViewOf(Entry.pPalette) : nullptr;
        if (pLayerView && pLayerView->layerStack())
            Entry.pPalette->setHeaderTitle(paletteTitle(pLayerView->layerStack()));
    }
    updateLayerPaletteHeader();
}

void OrvLayerViewContextManager::updateLayerPaletteHeader()
{
    if (!m_MainLayerView || !m_LayersPalette)
        return;
    const OrvLayerStack* pLayerStack = m_MainLayerView->layerStack();
    m_LayersPalette->setWindowTitle(
        pLayerStack ? QStringLiteral("Layers - %1").arg(pLayerStack->name()) : tr("Layers"));
}

void OrvLayerViewContextManager::refreshAllProperties()
{
    if (m_ShaderView)
        m_ShaderView->requestRefreshShaderProperties();
    if (m_MainLayerView)
        m_MainLayerView->redrawProperties();
}

void OrvLayerViewContextManager::makeSharerInfoItemCurrent(QListWidgetItem* Item)
{
    if (!Item) {
        report(__LINE__, "Item is NULL");
        return;
    }
    const QPointer<QWidget> pList = qobject_cast<QWidget*>(sender());
    OrvSnBaseNode* pNode = qobject_cast<OrvSnBaseNode*>(Item->data(Qt::UserRole).value<QObject*>());
    if (!pNode) {
        report(__LINE__, "Node is NULL");
        return;
    }
    showSharer(pNode);
    if (pList && pList->parentWidget())
        pList->parentWidget()->close();
}

void OrvLayerViewContextManager::showSharer(OrvSnBaseNode* pNode)
{
    OrvShaderInputManager& ChannelManager = OrvShaderInputManager::instance();
    if (pNode->hasTag(OrvSnNames::ShaderInputTag)) {
        ChannelManager.makeShaderInputCurrent(OrvShaderInputUtils::getShaderInput(pNode), true);
        return;
    }
    if (!OrvLayerStreamUtils::isMergeNode(pNode)) {
        const QByteArray Name = pNode->name().toLocal8Bit();
        OrvDebug(File, __LINE__,
            QString::asprintf("The given node that shares a layer is not identified : %s", Name.constData()), false,
            false);
        return;
    }

    OrvLayer* pLayer = OrvLayerManager::instance().getLayer(pNode, true);
    QSet<QPair<OrvSnBaseNode*, QString>> Targets;
    OrvLayerUtils::findLayerStackTargets(Targets, pNode);
    for (const QPair<OrvSnBaseNode*, QString>& Target : qAsConst(Targets)) {
        // The main palette shows the current channel already.
        if (Target.first->hasTag(OrvSnNames::ShaderInputTag)
            && Target.first == ChannelManager.currentShaderInputNode())
            continue;
        if (OrvLayerStack* pLayerStack = OrvLayerStack::getLayerStack(Target.first, Target.second))
            openLayerStackPalette(pLayerStack, false);
    }
    if (pLayer)
        pLayer->makeCurrent(false, true);
}

QString OrvLayerViewContextManager::projectSettingsFileName()
{
    const QStringList CacheRoots = OrvDataBlockManager::cacheRoots();
    if (CacheRoots.isEmpty())
        return {};
    const QString Separator = OrvSettings::separator();
    return CacheRoots.first() + Separator + OrvDataBlockManager::subCache() + Separator + SettingsFileName;
}

void OrvLayerViewContextManager::saveProjectSettings()
{
    const QString FileName = projectSettingsFileName();
    if (FileName.isEmpty())
        return;
    OrvSettings Settings(FileName, QSettings::IniFormat);
    Settings.beginGroup(SettingsGroup);
    Settings.clear();
    if (m_StackPalettes.isEmpty())
        return;

    OrvPaletteManager& PaletteManager = OrvPaletteManager::instance();
    int Index = 0;
    for (const StackPalette& Entry : qAsConst(m_StackPalettes)) {
        OrvPalette* pPalette = Entry.pPalette;
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

void OrvLayerViewContextManager::loadProjectSettings()
{
    // A project that closes leaves none current; its palettes must not come back.
    const QString FileName = OrvProjectManager::instance().currentProject() ? projectSettingsFileName() : QString();
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
        if (m_StackPalettes.value(pLayerStack).pPalette)
            continue;
        OrvPalette* pPalette = createLayerStackPalette(pLayerStack);
        if (!pPalette) {
            report(__LINE__, "Palette is NULL");
            return;
        }
        enterPalette(pLayerStack, pPalette);
        Palettes.append(pPalette);
    }

    OrvMainWindow::instance().restoreState(Settings.value(StateKey).toByteArray(), WindowStateVersion);
    OrvPaletteManager& PaletteManager = OrvPaletteManager::instance();
    PaletteManager.restorePaletteSettings(Settings);
    for (int Index = 0; Index < Palettes.size(); ++Index)
        PaletteManager.restorePaletteSettings(Settings, Index, Palettes.at(Index));
}

#include "moc_OrvLayerViewContextManager.cpp"
