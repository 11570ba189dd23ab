#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextManager.h"

#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCoreModules/Window/OrvAppearance.h"
#include "OrvCoreModules/Window/OrvPalette.h"
#include "OrvCoreModules/Window/OrvPaletteManager.h"
#include "OrvCoreModules/Window/OrvResourceInfo.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvPaletteHelp.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderMaterialsView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderView.h"

#include <QtWidgets/QListWidget>

namespace {

const char File[] = "OrvLayerViewContextManager";
constexpr int MainViewFlags = 0;

void report(int Line, const char* pMessage)
{
    OrvDebug(File, Line, QString::fromLatin1(pMessage), false, false);
}

/// Its title is its name until it shows more.
void enrol(
    OrvPalette* pPalette, QWidget* pBody, const QString& Title, const char* pHelpKey, const char* pIconFile)
{
    pPalette->setBodyWidget(pBody);
    pPalette->setObjectName(Title);
    pPalette->setWindowTitle(Title);
    pPalette->setContextHelpKey(QLatin1String(pHelpKey));
    const QString IconPath = OrvResourceInfo::iconPath() + QStringLiteral("//") + QLatin1String(pIconFile);
    OrvPaletteManager::instance().registerPalette(pPalette, false, IconPath);
}

} // namespace

OrvLayerViewContextManager& OrvLayerViewContextManager::instance()
{
    static OrvLayerViewContextManager Instance;
    return Instance;
}

OrvLayerViewContextManager::OrvLayerViewContextManager()
    : m_StackPalettes(this)
{
    setObjectName(QStringLiteral("OrvLayerViewContextManager"));
    OrvPaletteHelp::registerTexts();
    createShadersPalette();
    OrvPalette* pChannelsPalette = createChannelsPalette();
    createLayersPalette();
    pChannelsPalette->addRelatedPalette(m_LayersPalette);
    m_LayersPalette->addRelatedPalette(pChannelsPalette);
    connectHost();
    OrvProjectManager::instance().registerFileExcludedFromArchive(
        OrvLayerStackPalettes::shortSettingsFileName());
}

OrvLayerViewContextManager::~OrvLayerViewContextManager() = default;

void OrvLayerViewContextManager::createShadersPalette()
{
    OrvPalette* pPalette = new OrvPalette(nullptr);
    m_ShaderMaterialsView = new OrvShaderMaterialsView(pPalette);
    m_ShaderView = m_ShaderMaterialsView->shaderView();
    enrol(pPalette, m_ShaderMaterialsView, tr("Shaders"), "shaders_palette", "Shader.png");
}

OrvPalette* OrvLayerViewContextManager::createChannelsPalette()
{
    OrvPalette* pPalette = new OrvPalette(nullptr);
    m_ShaderInputView = new OrvShaderInputView(pPalette);
    enrol(pPalette, m_ShaderInputView, tr("Channels"), "channels_palette", "Channel.png");
    return pPalette;
}

void OrvLayerViewContextManager::createLayersPalette()
{
    m_LayersPalette = new OrvPalette(nullptr);
    m_MainLayerView = new OrvLayerView(m_LayersPalette, MainViewFlags);
    enrol(m_LayersPalette, m_MainLayerView, tr("Layers"), "layers_palette", "Layers.png");
}

void OrvLayerViewContextManager::connectHost()
{
    OrvProjectManager& ProjectManager = OrvProjectManager::instance();
    OrvShaderNetworkManager& NetworkManager = OrvShaderNetworkManager::instance();
    connect(&ProjectManager, SIGNAL(onProjectSaved(OrvProject*)), this, SLOT(saveProjectSettings()));
    connect(&ProjectManager, SIGNAL(onMakeProjectCurrent(OrvProject*)), this, SLOT(loadProjectSettings()));
    connect(&NetworkManager,
        SIGNAL(nodeReconnected(OrvShaderNetwork*, QString, OrvSnBaseNode*, OrvSnBaseNode*)), this,
        SLOT(onNodeReconnected(OrvShaderNetwork*, QString, OrvSnBaseNode*, OrvSnBaseNode*)));
    connect(&NetworkManager, SIGNAL(nodeDeregistered(OrvShaderNetwork*, OrvSnBaseNode*)), this,
        SLOT(onNodeDeregistered(OrvShaderNetwork*, OrvSnBaseNode*)));
    connect(&ProjectManager, SIGNAL(projectClosed()), this, SLOT(closeLayerViewPalettes()));
    connect(&NetworkManager, SIGNAL(nodeNameChanged(OrvSnBaseNode*, QString)), this,
        SLOT(updatePaletteHeaders()));
    connect(&ProjectManager, SIGNAL(geoEntityNameChanged(OrvGeoEntity*, QString)), this,
        SLOT(updatePaletteHeaders()));
    connect(
        m_MainLayerView, SIGNAL(layerStackChanged(OrvLayerStack*)), this, SLOT(updateLayerPaletteHeader()));
    connect(
        &OrvAppearance::instance(), SIGNAL(sliderPrecisionChanged(int)), this, SLOT(refreshAllProperties()));
}

OrvLayerView* OrvLayerViewContextManager::layerView() const
{
    return m_ActiveLayerView ? m_ActiveLayerView : m_MainLayerView;
}

OrvLayerView* OrvLayerViewContextManager::mainLayerView() const
{
    return m_MainLayerView;
}

void OrvLayerViewContextManager::setActiveLayerView(OrvLayerView* pLayerView)
{
    m_ActiveLayerView = pLayerView;
}

OrvShaderInputView* OrvLayerViewContextManager::shaderInputView() const
{
    return m_ShaderInputView;
}

OrvShaderView* OrvLayerViewContextManager::shaderView() const
{
    return m_ShaderView;
}

void OrvLayerViewContextManager::openLayerStackPalette(OrvLayerStack* pLayerStack, bool Unpinned)
{
    m_StackPalettes.open(pLayerStack, Unpinned);
}

void OrvLayerViewContextManager::onPaletteSizeChanged()
{
    m_StackPalettes.storeSize(qobject_cast<OrvPalette*>(sender()));
}

void OrvLayerViewContextManager::onNodeReconnected(
    OrvShaderNetwork*, QString InputName, OrvSnBaseNode* NewInputNode, OrvSnBaseNode* Node)
{
    m_StackPalettes.noteReconnection(Node, InputName, NewInputNode);
}

void OrvLayerViewContextManager::onNodeDeregistered(OrvShaderNetwork*, OrvSnBaseNode* Node)
{
    m_StackPalettes.retireThoseOf(Node);
}

void OrvLayerViewContextManager::onLayerStackDestroyed(QObject* LayerStack)
{
    m_StackPalettes.retireThatOf(LayerStack);
}

void OrvLayerViewContextManager::deletePalettesToBeDeleted()
{
    m_StackPalettes.deleteRetired();
}

void OrvLayerViewContextManager::closeLayerViewPalettes()
{
    m_StackPalettes.close();
}

QString OrvLayerViewContextManager::projectSettingsFileName()
{
    return OrvLayerStackPalettes::settingsFileName();
}

void OrvLayerViewContextManager::saveProjectSettings()
{
    m_StackPalettes.save();
}

void OrvLayerViewContextManager::loadProjectSettings()
{
    m_StackPalettes.load();
}

void OrvLayerViewContextManager::updatePaletteHeaders()
{
    m_StackPalettes.updateTitles();
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
            QString::asprintf("The given node that shares a layer is not identified : %s", Name.constData()),
            false, false);
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

#include "moc_OrvLayerViewContextManager.cpp"
