#pragma once

#include "OrvCore/OrvCoreExport.h"
#include "OrvCore/Shaders/OrvLayerShader.h"

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QPointer>

class OrvShaderNetwork;

/// All shaders of each object, which of them is current and which of the user's was chosen last. Shader
/// objects are made and dropped as their nodes come and go; of nodes, the manager makes those of the system
/// shaders alone. What is current or chosen is stored with the project, but is no edit of it.
class ORVCORE_EXPORT OrvLayerShaderManager : public QObject {
    Q_OBJECT

public:
    static OrvLayerShaderManager& instance();

    /// The current shader of a network; null: of the current network.
    OrvLayerShader* currentLayerShader(const OrvShaderNetwork* pNetwork = nullptr) const;
    OrvSnBaseNode* currentShaderNode() const;
    /// Makes the shader of a node its network's current one; null: none in the current network. A shader of
    /// the user's becomes the one chosen last, which is seen in its tag; the system shaders leave that one
    /// chosen.
    void setCurrentShader(OrvSnBaseNode* pNode);
    /// The user's shader that was chosen last, or null; of the current network where none is given.
    OrvSnBaseNode* selectedUserShaderNode(const OrvShaderNetwork* pNetwork = nullptr) const;
    void resetSelectedUserShaderNode();

    /// The shader of a node, or null.
    OrvLayerShader* getLayerShader(const OrvSnBaseNode* pNode) const { return m_Shaders.value(pNode); }
    /// System shaders first, then in the order of the network's nodes; those of layers too.
    QList<OrvSnBaseNode*> getShaderNodes(const OrvShaderNetwork* pNetwork, bool WithSystemShaders) const;
    /// Shaders that the user made and that stand alone: no system shaders, and none that only layers show.
    QList<OrvLayerShader*> getUserLayerShaders(const OrvShaderNetwork* pNetwork) const;
    bool isListed(const OrvLayerShader* pShader) const;
    /// A system shader follows what is current; it is recognised by its tag.
    bool isSystemShader(const OrvLayerShader* pShader) const;
    bool isSystemShaderNode(const OrvSnBaseNode* pNode, bool AcceptUnfinished = false) const;

    /// Null for a tag that no system shader has.
    OrvSnBaseNode* systemShaderOfKind(const OrvShaderNetwork* pNetwork, const QString& Tag) const;
    // The system shaders' nodes, of the current network where none is given; null without a network. A
    // network without shaders of the user's has no material to show.
    OrvSnBaseNode* getCurrentChannelShader(const OrvShaderNetwork* pNetwork = nullptr) const;
    OrvSnBaseNode* getCurrentLayerAndBelowShader(const OrvShaderNetwork* pNetwork = nullptr) const;
    OrvSnBaseNode* getCurrentCurrentLayerShader() const;
    OrvSnBaseNode* getCurrentCurrentComponentShader() const;
    OrvSnBaseNode* getCurrentMaterialProxyShader(const OrvShaderNetwork* pNetwork = nullptr) const;
    /// The shader whose lit picture "Material" shows: the user's chosen last, else the user's first; or null.
    OrvLayerShader* materialShader(const OrvShaderNetwork* pNetwork = nullptr) const;

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
    /// On the user's shader that was chosen last.
    static QString nodeTagUserSelectedShader() { return QStringLiteral("UserSelectedShader"); }

public Q_SLOTS:
    /// Other nodes take the place of the system shaders' in all networks; what was current stays current.
    void recreateSystemShaders();

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
    void onCurrentNetworkChanged();

private:
    friend class OrvCurrentShaderEdit;
    friend class OrvShaderNetwork;
    /// An object's network begins and ends with its system shaders.
    void makeSystemShaders(OrvShaderNetwork* pNetwork);
    void dropSystemShaders(OrvShaderNetwork* pNetwork);
    void forget(OrvShaderNetwork* pNetwork);
    void makeCurrent(const OrvShaderNetwork* pNetwork, OrvLayerShader* pShader);
    void select(const OrvShaderNetwork* pNetwork, OrvSnBaseNode* pNode);

    OrvLayerShaderManager();
    ~OrvLayerShaderManager() override;

    QHash<const OrvSnBaseNode*, OrvLayerShader*> m_Shaders;
    QHash<const OrvShaderNetwork*, QPointer<OrvLayerShader>> m_Current;
    QHash<const OrvShaderNetwork*, QPointer<OrvSnBaseNode>> m_Selected;
    QList<OrvShaderNetwork*> m_Networks; ///< those with system shaders
    bool m_LayerShaderCreating = false;
};
