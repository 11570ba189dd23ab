#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderMaterialsView.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputsPane.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderView.h"

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QTabBar>

namespace {

constexpr const char* FileName = "OrvShaderMaterialsView";
constexpr int ShadersTab = 0;

void traceConnection(int Line, const char* pWhat, const OrvSnBaseNode* pNode)
{
    OrvDebug(FileName, Line,
        QString::asprintf("[ -- ] %s inputNodeChanged -> onNodeInputChanged, on Shader %p, '%s'", pWhat,
            static_cast<const void*>(pNode), pNode->name().toLocal8Bit().constData()),
        false, false);
}

} // namespace

OrvShaderMaterialsView::OrvShaderMaterialsView(QWidget* pParent)
    : QWidget(pParent)
{
    QHBoxLayout* pLayout = new QHBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(0);
    createTabBar();
    m_ShaderView = new OrvShaderView(this);
    m_ShaderView->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    m_LayerView = new OrvLayerView(this, 0);
    m_LayerView->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    m_LayerView->hide();
    m_LayerView->setLayerStack(nullptr);
    m_LayerView->requestRefresh();
    m_TabBar->addTab(tr("Shaders"));
    m_TabBar->setTabData(ShadersTab, QVariant::fromValue(QPointer<QObject>(m_ShaderView)));
    pLayout->addWidget(m_TabBar, 0, Qt::AlignTop);
    pLayout->addWidget(m_ShaderView);
    pLayout->addWidget(m_LayerView);

    rebuildTabs();
    onTabChanged(m_TabBar->currentIndex());
    connectHost();
}

void OrvShaderMaterialsView::createTabBar()
{
    m_TabBar = new QTabBar(this);
    m_TabBar->show();
    m_TabBar->setShape(QTabBar::RoundedWest);
    m_TabBar->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Preferred);
    m_TabBar->setExpanding(false);
    // A layer reaches the list of shaders by way of its tab.
    m_TabBar->setAcceptDrops(true);
    m_TabBar->setChangeCurrentOnDrag(true);
}

void OrvShaderMaterialsView::connectHost()
{
    const OrvLayerShaderManager* pShaders = &OrvLayerShaderManager::instance();
    connect(&OrvProjectManager::instance(), SIGNAL(projectClosed()), this, SLOT(onProjectClosed()));
    connect(pShaders, SIGNAL(layerShaderAdded(OrvLayerShader*)), this, SLOT(onShaderAdded(OrvLayerShader*)));
    connect(
        pShaders, SIGNAL(layerShaderRemoved(OrvLayerShader*)), this, SLOT(onShaderRemoved(OrvLayerShader*)));
    connect(pShaders, SIGNAL(layerShaderTagsChanged(QString, OrvLayerShader*)), this,
        SLOT(onShaderTagsChanged(QString, OrvLayerShader*)));
    connect(pShaders, SIGNAL(currentLayerShaderChanged(OrvLayerShader*)), this,
        SLOT(onShaderChanged(OrvLayerShader*)));
    connect(&OrvShaderInputManager::instance(), SIGNAL(shaderInputRenamed(OrvShaderInput*)), this,
        SLOT(onShaderInputRenamed(OrvShaderInput*)));
    connect(m_TabBar, SIGNAL(currentChanged(int)), this, SLOT(onTabChanged(int)));
    connect(m_TabBar, &QTabBar::tabBarClicked, this, &OrvShaderMaterialsView::openTab);
    connect(m_ShaderView->inputsPane(), &OrvShaderInputsPane::materialChosen, this,
        [this](const OrvShaderInput* pChannel) { openTab(tabIndex(pChannel)); });
}

void OrvShaderMaterialsView::onShaderTagsChanged(QString, OrvLayerShader*)
{
    rebuildTabs();
}

void OrvShaderMaterialsView::onShaderAdded(OrvLayerShader* pShader)
{
    // Undo and redo announce the same shader again.
    connect(pShader, SIGNAL(layerShaderNameChanged(QString)), this, SLOT(onShaderRenamed()),
        Qt::UniqueConnection);
    rebuildTabs();
}

void OrvShaderMaterialsView::onShaderRemoved(OrvLayerShader*)
{
    rebuildTabs();
}

void OrvShaderMaterialsView::onShaderChanged(OrvLayerShader* pShader)
{
    if (pShader)
        rebuildTabs();
}

void OrvShaderMaterialsView::onNodeInputChanged()
{
    const OrvLayerShaderManager& Shaders = OrvLayerShaderManager::instance();
    const OrvLayerShader* pShader = Shaders.getLayerShader(qobject_cast<OrvSnBaseNode*>(sender()));
    if (pShader && !Shaders.isSystemShader(pShader))
        rebuildTabs();
}

void OrvShaderMaterialsView::rebuildTabs()
{
    m_MaterialChannels.clear();
    // A half-made shader is not looked at; the host tells when it is whole.
    const OrvLayerShaderManager& Shaders = OrvLayerShaderManager::instance();
    if (Shaders.layerShaderCreating())
        return;
    const OrvShaderNetwork* pNetwork = OrvShaderNetworkManager::instance().currentShaderNetwork();
    OrvLayerShader* pShader = pNetwork ? Shaders.currentLayerShader(pNetwork) : nullptr;
    followShader(pShader);

    for (const QString& InputName : pShader ? pShader->inputNames() : QStringList()) {
        OrvShaderInput* pChannel
            = pShader->isInputForMaterialsStacks(InputName) ? pShader->inputShaderInput(InputName) : nullptr;
        if (pChannel)
            m_MaterialChannels.insert(pChannel, InputName);
    }
    addMissingTabs();
    removeLeftOverTabs();
    for (OrvShaderInput* pChannel : m_MaterialChannels.keys())
        titleTab(pChannel);
}

void OrvShaderMaterialsView::followShader(OrvLayerShader* pShader)
{
    if (pShader == m_ConnectedShader)
        return;
    stopFollowingShader();
    if (!pShader || !pShader->node())
        return;
    connect(pShader->node(), SIGNAL(inputNodeChanged(QString, OrvSnBaseNode*, QString)), this,
        SLOT(onNodeInputChanged()));
    traceConnection(__LINE__, "Added shader connection", pShader->node());
    m_ConnectedShader = pShader;
}

void OrvShaderMaterialsView::stopFollowingShader()
{
    const OrvSnBaseNode* pNode = m_ConnectedShader ? m_ConnectedShader->node() : nullptr;
    m_ConnectedShader = nullptr;
    if (!pNode)
        return;
    disconnect(
        pNode, SIGNAL(inputNodeChanged(QString, OrvSnBaseNode*, QString)), this, SLOT(onNodeInputChanged()));
    traceConnection(__LINE__, "Removed old shader connection", pNode);
}

void OrvShaderMaterialsView::addMissingTabs()
{
    for (OrvShaderInput* pChannel : m_MaterialChannels.keys()) {
        if (tabIndex(pChannel) >= 0)
            continue;
        const int Index = m_TabBar->addTab(tr("Shader Layers"));
        // Guarded: a channel may go before its tab does.
        m_TabBar->setTabData(Index, QVariant::fromValue(QPointer<QObject>(pChannel)));
    }
}

void OrvShaderMaterialsView::removeLeftOverTabs()
{
    for (int Index = m_TabBar->count() - 1; Index > ShadersTab; --Index) {
        if (!m_MaterialChannels.contains(qobject_cast<OrvShaderInput*>(tabObject(Index))))
            m_TabBar->removeTab(Index);
    }
}

QObject* OrvShaderMaterialsView::tabObject(int TabIndex) const
{
    return m_TabBar->tabData(TabIndex).value<QObject*>();
}

int OrvShaderMaterialsView::tabIndex(const OrvShaderInput* pShaderInput) const
{
    for (int Index = 0; Index < m_TabBar->count(); ++Index) {
        if (tabObject(Index) == pShaderInput)
            return Index;
    }
    return -1;
}

void OrvShaderMaterialsView::openTab(int TabIndex)
{
    if (TabIndex < 0)
        return;
    m_TabBar->setCurrentIndex(TabIndex);
    // The user goes there to work: commands of the menus are for these layers.
    if (m_LayerView->layerStack())
        m_LayerView->makeActive();
}

void OrvShaderMaterialsView::showLayers(OrvShaderInput* pShaderInput)
{
    const bool GivesUp = m_LayerView->layerStack() && !pShaderInput;
    m_LayerView->setLayerStack(pShaderInput);
    if (!GivesUp)
        return;
    // Commands do not stay with a palette that has no layers.
    OrvLayerViewContextManager& Palettes = OrvLayerViewContextManager::instance();
    if (Palettes.layerView() == m_LayerView)
        Palettes.setActiveLayerView(Palettes.mainLayerView());
}

/// All read the same; where they stand and their tool tips tell them apart.
void OrvShaderMaterialsView::titleTab(OrvShaderInput* pShaderInput)
{
    const int Index = pShaderInput ? tabIndex(pShaderInput) : -1;
    if (Index < 0)
        return;
    m_TabBar->setTabText(Index, tr("Shader Layers"));
    const QString InputName = m_MaterialChannels.value(pShaderInput);
    m_TabBar->setTabToolTip(Index, tr("%1, which feeds %2").arg(pShaderInput->name(), InputName));
}

void OrvShaderMaterialsView::onShaderInputNameChanged(OrvShaderInput* pShaderInput, QString)
{
    titleTab(pShaderInput);
}

void OrvShaderMaterialsView::onShaderInputRenamed(OrvShaderInput* ShaderInput)
{
    titleTab(ShaderInput);
}

void OrvShaderMaterialsView::onShaderRenamed()
{
    if (!qobject_cast<OrvLayerShader*>(sender())) {
        OrvDebug(FileName, __LINE__, QStringLiteral("Shader is NULL"), false, false);
        return;
    }
    for (OrvShaderInput* pChannel : m_MaterialChannels.keys())
        titleTab(pChannel);
}

void OrvShaderMaterialsView::onTabChanged(int TabIndex)
{
    if (TabIndex < 0) {
        showLayers(nullptr);
        return;
    }
    QObject* pObject = tabObject(TabIndex);
    OrvShaderInput* pChannel = qobject_cast<OrvShaderInput*>(pObject);
    showLayers(pChannel);
    m_LayerView->setVisible(pChannel);
    m_ShaderView->setVisible(pObject == m_ShaderView);
}

void OrvShaderMaterialsView::onProjectClosed()
{
    stopFollowingShader();
}

#include "moc_OrvShaderMaterialsView.cpp"
