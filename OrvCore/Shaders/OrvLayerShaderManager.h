#pragma once

#include "OrvCore/OrvCoreExport.h"
#include "OrvCore/Shaders/OrvLayerShader.h"

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QPointer>

class OrvShaderNetwork;

/// All shaders and the current one of each object. Shader objects are made and dropped as their nodes come and go; the
/// manager makes no shader nodes itself.
class ORVCORE_EXPORT OrvLayerShaderManager : public QObject {
    Q_OBJECT

public:
    static OrvLayerShaderManager& instance();

    /// The current shader of a network; null: of the current network.
    OrvLayerShader* currentLayerShader(const OrvShaderNetwork* pNetwork = nullptr) const;
    OrvSnBaseNode* currentShaderNode() const;
    /// Makes the shader of a node its network's current one; null: none in the current network.
    void setCurrentShader(OrvSnBaseNode* pNode);

    /// The shader of a node, or null.
    OrvLayerShader* getLayerShader(const OrvSnBaseNode* pNode) const { return m_Shaders.value(pNode); }
    /// In the order of the network's nodes.
    QList<OrvSnBaseNode*> getShaderNodes(const OrvShaderNetwork* pNetwork, bool WithSystemShaders) const;
    /// Shaders that the user made, that is, no system shaders.
    QList<OrvLayerShader*> getUserLayerShaders(const OrvShaderNetwork* pNetwork) const;
    /// A system shader follows what is current; it is recognised by its tag.
    bool isSystemShader(const OrvLayerShader* pShader) const;
    bool isSystemShaderNode(const OrvSnBaseNode* pNode, bool AcceptUnfinished = false) const;

    /// While a shader is being made for a layer, palettes wait with rebuilding.
    bool layerShaderCreating() const { return m_LayerShaderCreating; }
    void setLayerShaderCreating(bool Creating) { m_LayerShaderCreating = Creating; }

    // Tags that mark the system shaders' nodes, by what each of them shows.
    static QString nodeTagCurrentChannelShader() { return QStringLiteral("Channel"); }
    static QString nodeTagCurrentLayerAndBelowShader() { return QStringLiteral("LayerAndBelow"); }
    static QString nodeTagCurrentLayerShader() { return QStringLiteral("Layer"); }
    static QString nodeTagCurrentComponentShader() { return QStringLiteral("Paint"); }
    static QString nodeTagCurrentMaterialProxyShader() { return QStringLiteral("Material"); }
    static QString nodeTagCurrentMaterialShader() { return QStringLiteral("CurrentMaterial"); }

Q_SIGNALS:
    void layerShaderCreated(OrvLayerShader* pShader);
    void layerShaderAdded(OrvLayerShader* pShader);
    void layerShaderRemoved(OrvLayerShader* pShader);
    void layerShaderTagsChanged(QString Tag, OrvLayerShader* pShader);
    void currentLayerShaderChanged(OrvLayerShader* pShader);
    void shaderAdded(OrvSnBaseNode* pNode);
    void shaderRemoved(OrvSnBaseNode* pNode);
    void shaderTagsChanged(QString Tag, OrvSnBaseNode* pNode);

private Q_SLOTS:
    void onNodeRegistered(OrvShaderNetwork* pNetwork, OrvSnBaseNode* pNode);
    void onNodeDeregistered(OrvShaderNetwork* pNetwork, OrvSnBaseNode* pNode);
    void onNodeTagsChanged(OrvSnBaseNode* pNode, QString Tag);
    void onNodeNameChanged(OrvSnBaseNode* pNode, QString Name);

private:
    OrvLayerShaderManager();
    ~OrvLayerShaderManager() override;

    QHash<const OrvSnBaseNode*, OrvLayerShader*> m_Shaders;
    QHash<const OrvShaderNetwork*, QPointer<OrvLayerShader>> m_Current;
    bool m_LayerShaderCreating = false;
};
