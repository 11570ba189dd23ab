#include "OrvCoreModules/Properties/OrvBakePointControls.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnBakePointNode.h"

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

namespace {

OrvLayer* layerOf(const OrvSnBakePointNode* pNode)
{
    if (!pNode)
        return nullptr;
    for (const OrvSnBaseNode::Consumer& Reader : pNode->consumers()) {
        if (OrvLayer* pLayer = OrvLayerManager::instance().getLayer(Reader.pNode, true))
            return pLayer;
    }
    return nullptr;
}

} // namespace

OrvBakePointControls::OrvBakePointControls(OrvSnBakePointNode* pNode, QWidget* pParent)
    : QWidget(pParent)
    , m_pNode(pNode)
    , m_pState(new QLabel)
    , m_pBake(new QPushButton(tr("Bake")))
    , m_pUnbake(new QPushButton(tr("Unbake")))
{
    auto* pRow = new QHBoxLayout(this);
    pRow->setContentsMargins(0, 0, 0, 0);
    pRow->addWidget(m_pState, 1);
    pRow->addWidget(m_pBake);
    pRow->addWidget(m_pUnbake);
    m_pBake->setToolTip(tr("Keeps the picture of what lies below as it is now"));
    m_pUnbake->setToolTip(tr("Shows what lies below live again"));
    connect(m_pBake, &QPushButton::clicked, this, &OrvBakePointControls::bake);
    connect(m_pUnbake, &QPushButton::clicked, this, &OrvBakePointControls::unbake);
    connect(&OrvShaderNetworkManager::instance(), &OrvShaderNetworkManager::nodeRefreshed, this,
        &OrvBakePointControls::onNodeRefreshed);
    update();
}

void OrvBakePointControls::bake()
{
    if (OrvLayer* pLayer = layerOf(m_pNode))
        pLayer->bake();
}

void OrvBakePointControls::unbake()
{
    if (OrvLayer* pLayer = layerOf(m_pNode))
        pLayer->unbake();
}

void OrvBakePointControls::onNodeRefreshed(OrvSnBaseNode* pNode)
{
    if (pNode == m_pNode)
        update();
}

void OrvBakePointControls::update()
{
    const bool Baked = m_pNode && m_pNode->hasBakedResult();
    m_pUnbake->setEnabled(Baked);
    m_pState->setText(!Baked                        ? tr("Not baked")
            : m_pNode->isBakedResultUpToDate(false) ? tr("Up to date")
                                                    : tr("Out of date"));
}

#include "moc_OrvBakePointControls.cpp"
