#include "Orvi/OrvCanvasSource.h"

#include "OrvCore/Channels/OrvChannelSpace.h"
#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Network/OrvNodeEvaluation.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Project/OrvProject.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCore/Shaders/OrvFlatShading.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Shaders/OrvShadingModel.h"
#include "OrvCore/Shaders/OrvSnShaderNode.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Color/OrvColorManager.h"
#include "OrvDdi/Image/OrvImageSet.h"

namespace {

/// The light makes a difference to its picture.
bool isLitShader(const OrvLayerShader* pShader)
{
    const auto* pNode = pShader ? qobject_cast<const OrvSnShaderNode*>(pShader->node()) : nullptr;
    return pNode && pNode->model() && pNode->model()->evaluation() != OrvShadingParameters::Unlit;
}

} // namespace

OrvCanvasSource::OrvCanvasSource(QObject* pParent)
    : QObject(pParent)
{
    m_Update.setSingleShot(true);
    m_Update.setInterval(0);
    connect(&m_Update, &QTimer::timeout, this, &OrvCanvasSource::update);

    const auto request = [this] { requestUpdate(); };
    connect(
        &OrvShaderInputManager::instance(), &OrvShaderInputManager::currentShaderInputChanged, this, request);
    connect(&OrvShaderInputManager::instance(), &OrvShaderInputManager::shaderInputRenamed, this,
        &OrvCanvasSource::descriptionChanged);
    connect(&OrvLayerManager::instance(), &OrvLayerManager::currentLayerChanged, this, request);
    connect(&OrvLayerManager::instance(), &OrvLayerManager::currentComponentChanged, this, request);
    const OrvLayerShaderManager* pShaders = &OrvLayerShaderManager::instance();
    connect(pShaders, &OrvLayerShaderManager::currentLayerShaderChanged, this, request);
    // Which shader is chosen is told by a tag, and is no edit.
    connect(pShaders, &OrvLayerShaderManager::layerShaderTagsChanged, this, request);
    connect(&OrvProjectManager::instance(), &OrvProjectManager::onMakeProjectCurrent, this, request);
    // Where nothing is shown before and after, the words still differ.
    connect(&OrvProjectManager::instance(), &OrvProjectManager::onMakeProjectCurrent, this,
        &OrvCanvasSource::descriptionChanged);
    connect(&OrvUndoManager::instance(), &OrvUndoManager::editFinished, this, request);
    connect(&OrvShaderNetworkManager::instance(), &OrvShaderNetworkManager::nodeNameChanged, this,
        [this](const OrvSnBaseNode* pNode) {
            if (pNode == m_pNode)
                Q_EMIT descriptionChanged();
        });
    // What is shown goes with its node, before anything is said about what comes instead.
    connect(&OrvShaderNetworkManager::instance(), &OrvShaderNetworkManager::nodeDeregistered, this,
        [this](const OrvShaderNetwork*, const OrvSnBaseNode* pNode) {
            m_ResultGone |= pNode == m_pNode;
            requestUpdate();
        });
    update();
}

OrvShaderInput* OrvCanvasSource::channel() const
{
    return OrvShaderInputManager::instance().currentShaderInput();
}

void OrvCanvasSource::requestUpdate()
{
    if (!m_Update.isActive())
        m_Update.start();
}

OrvLayerShader* OrvCanvasSource::shownShader() const
{
    OrvLayerShader* pShader = OrvLayerShaderManager::instance().currentLayerShader();
    OrvSnBaseNode* pNode = OrvFlatShading::litNode(pShader);
    return pNode ? OrvLayerShaderManager::instance().getLayerShader(pNode) : nullptr;
}

QString OrvCanvasSource::title() const
{
    if (m_IsShader && m_pNode)
        return m_pNode->name();
    return channel() ? channel()->name() : QString();
}

QString OrvCanvasSource::paintedMask()
{
    const OrvLayer* pLayer = OrvLayerManager::instance().currentLayer();
    const OrvSnBaseNode* pTarget = OrvLayerManager::instance().currentComponent();
    const bool IsPainted = pLayer && pTarget && pTarget == pLayer->maskNode() && pLayer->maskImageSet();
    return IsPainted ? tr("painting the mask of \"%1\"").arg(pLayer->name()) : QString();
}

OrvSnBaseNode* OrvCanvasSource::shownNode(QString& PartName) const
{
    const OrvShaderInput* pChannel = channel();
    if (!pChannel)
        return nullptr;
    const QString Mask = paintedMask();
    if (const OrvLayerShader* pShown = shownShader()) {
        QStringList Parts;
        if (isLitShader(pShown))
            Parts.append(tr("lit"));
        if (!Mask.isEmpty())
            Parts.append(Mask);
        else if (!pChannel->isMaterialStack())
            Parts.append(tr("painting \"%1\"").arg(pChannel->name()));
        PartName = Parts.join(QStringLiteral(", "));
        return pShown->node();
    }
    const OrvSnBaseNode* pShader = OrvLayerShaderManager::instance().currentShaderNode();
    const OrvLayer* pLayer = OrvLayerManager::instance().currentLayer();
    if (pShader && pLayer) {
        const auto part = [&Mask](const QString& Shown) {
            return Mask.isEmpty() ? Shown : tr("%1, %2").arg(Shown, Mask);
        };
        if (pShader->hasTag(OrvLayerShaderManager::nodeTagCurrentLayerAndBelowShader())) {
            PartName = part(tr("up to \"%1\"").arg(pLayer->name()));
            return pLayer->blendNode();
        }
        if (pShader->hasTag(OrvLayerShaderManager::nodeTagCurrentLayerShader())) {
            PartName = part(tr("only \"%1\"").arg(pLayer->name()));
            return pLayer->overNode();
        }
        OrvSnBaseNode* pComponent = OrvLayerManager::instance().currentComponent();
        if (pComponent && pShader->hasTag(OrvLayerShaderManager::nodeTagCurrentComponentShader())) {
            PartName = pComponent == pLayer->maskNode() ? tr("mask of \"%1\"").arg(pLayer->name())
                                                        : tr("paint of \"%1\"").arg(pLayer->name());
            return pComponent;
        }
    }
    PartName = Mask;
    return pChannel->node();
}

void OrvCanvasSource::watch(OrvImageSet* pImages)
{
    if (m_pWatched == pImages)
        return;
    if (m_pWatched)
        m_pWatched->disconnect(this);
    m_pWatched = pImages;
    if (pImages) {
        // The engine's node of an image is made anew with its buffer.
        connect(pImages, &OrvImageSet::replaced, this, [this] {
            m_ResultGone = true;
            requestUpdate();
        });
    }
}

void OrvCanvasSource::update()
{
    m_Update.stop();
    const OrvShaderInput* pChannel = channel();
    QString PartName;
    OrvSnBaseNode* pNode = shownNode(PartName);
    const OrvLayerShader* pShader = pChannel ? shownShader() : nullptr;
    OrvEngineNode* pResult = nullptr;
    if (pNode)
        pResult = pShader ? OrvFlatShading::result(pShader) : OrvNodeEvaluation::result(pNode);
    const OrvUdimLayout Layout = pShader ? OrvFlatShading::layout(pShader)
        : pChannel                       ? pChannel->layout()
                                         : OrvUdimLayout();
    const auto* pImageNode = qobject_cast<const OrvSnChannelInputNode*>(pNode);
    const bool ScalarImage = pImageNode && pImageNode->imageSet()
        && pImageNode->imageSet()->format().Kind == OrvPixelFormat::Scalar;
    const bool Numbers = pChannel && !pShader
        && (ScalarImage || pChannel->isScalar()
            || const_cast<OrvShaderInput*>(pChannel)->colorSpaceConfig().colorSpace()
                == OrvColorManager::raw());
    const auto Meaning = Numbers ? OrvDisplayTransform::Numbers : OrvDisplayTransform::Light;
    const QString ColorSpace = OrvChannelSpace::ofNode(pNode);

    OrvInputStep Fit;
    if (pImageNode && pImageNode->imageSet()) {
        Fit.From = pImageNode->imageSet()->layout();
        Fit.To = Layout;
    }

    const bool Same = !m_ResultGone && pNode == m_pNode && pResult == m_pResult && Layout == m_Layout
        && Fit.doesTheSameAs(m_Fit) && Meaning == m_Meaning && ColorSpace == m_ColorSpace
        && m_IsShader == (pShader != nullptr);
    const bool SameWords = PartName == m_PartName;
    m_ResultGone = false;
    m_pNode = pNode;
    m_pResult = pResult;
    m_IsShader = pShader != nullptr;
    m_IsLit = isLitShader(pShader);
    m_Layout = Layout;
    m_Meaning = Meaning;
    m_ColorSpace = ColorSpace;
    m_PartName = PartName;
    const OrvLayer* pLayer = OrvLayerManager::instance().currentLayer();
    watch(pImageNode                                                        ? pImageNode->imageSet()
            : (pChannel && !pShader && pNode != pChannel->node() && pLayer) ? pLayer->paintImageSet()
                                                                            : nullptr);
    if (!Same) {
        // The former step stays until nobody shows it any more.
        std::swap(Fit, m_Fit);
        if (pResult && m_Fit.scales()) {
            m_Fit.createEngineNodes();
            m_Fit.pEngineNode->connectInput(OrvEngineNode::Base, pResult);
        }
        Q_EMIT changed();
    } else if (!SameWords) {
        Q_EMIT descriptionChanged();
    }
}

#include "moc_OrvCanvasSource.cpp"
