#pragma once

#include "OrvCore/Network/OrvShaderNetworkUtils.h"

#include <QtCore/QList>
#include <QtCore/QString>

#include <functional>

class OrvLayer;
class OrvLayerShader;
class OrvLayerStack;
class OrvShaderInput;
class OrvShadingModel;
class OrvSnMultiChannelMergeNode;

/// Layers that stand in several channels of a shader: how they come into being and what becomes of them when
/// a channel leaves its shader. Every operation is one undo step.
namespace OrvMultiChannelLayerUtils {

/// Collects the shader nodes downstream of a node.
class ORVCORE_EXPORT DownstreamShaders : public OrvShaderNetworkUtils::OrvNodeWalker::Visitor {
public:
    OrvShaderNetworkUtils::OrvNodeWalker::Direction direction() const override
    {
        return OrvShaderNetworkUtils::OrvNodeWalker::Downstream;
    }
    bool visit(OrvSnBaseNode* pNode) override;

    const QVector<OrvSnBaseNode*>& shaderNodes() const { return m_ShaderNodes; }

private:
    QVector<OrvSnBaseNode*> m_ShaderNodes;
};

/// The user's shaders that a channel around the stack feeds: those for which a layer of several channels can
/// be made there.
ORVCORE_EXPORT QList<OrvLayerShader*> shadersForMultiChannelLayers(const OrvLayerStack* pStack);
/// Who asks the user for one of several shaders; null for none. An empty function for nobody: the first is
/// taken.
using ShaderChooser = std::function<OrvLayerShader*(const QList<OrvLayerShader*>& Shaders)>;
ORVCORE_EXPORT void setShaderChooser(const ShaderChooser& Chooser);
/// The shader of a new layer of several channels in the stack (null: the current one). There is no question
/// when only one is possible; null when none is, or the user wants none.
ORVCORE_EXPORT OrvLayerShader* shaderForMultiChannelLayerCreationWithUserInput(
    const OrvLayerStack* pStack = nullptr);

/// A new layer in all channels of the shader for which the material has a stream. It stands above the target
/// in its channel, and in the others at the like place where there is one: above the same layer, in the same
/// group; else on top. Without a target it goes above the current layer. Null, with a reason, when the file
/// is no material, when none of its streams finds a channel, or when a place is locked or cached.
ORVCORE_EXPORT OrvLayer* createMaterialLayer(
    const QString& Path, const OrvLayerShader* pShader, OrvSnBaseNode* pTarget, QString& Error);
/// The same with an empty group in every channel of the shader.
ORVCORE_EXPORT OrvLayer* createMultiChannelGroupLayer(
    const OrvLayerShader* pShader, OrvSnBaseNode* pTarget, QString& Error);

/// The layer becomes one ordinary layer in each of these channels, and no longer stands in them otherwise: a
/// material a paintable one, a group a group; a mask becomes a painted mask of each of them. Those made, in
/// the order of the given ones; empty, with nothing changed, when rendering was cancelled.
ORVCORE_EXPORT QList<OrvLayer*> convertToStandardLayers(const QList<OrvLayer*>& Layers);
/// All layers in these channels that stand in several channels of shaders of the model are converted so,
/// whatever locks say. Null for layers of any model.
ORVCORE_EXPORT bool convertToStandardLayers(
    const QList<OrvShaderInput*>& Channels, const OrvShadingModel* pModel);
/// They leave these channels, with the layers that they hold there.
ORVCORE_EXPORT void removeFromChannels(const QList<OrvShaderInput*>& Channels, const OrvShadingModel* pModel);

/// In debug output: a layer of several channels that is not to be handled as others are.
ORVCORE_EXPORT void assertOnMultiChannelLayer(const OrvLayer* pLayer);

} // namespace OrvMultiChannelLayerUtils
