#pragma once

#include "OrvCore/Layers/OrvLayerStack.h"

#include "OrvDdi/Color/OrvColorSpaceConfig.h"
#include "OrvDdi/Image/OrvPixelFormat.h"
#include "OrvDdi/Image/OrvUdimLayout.h"

class OrvShadingModel;
class OrvSnShaderInputNode;

/// A channel: the stack of a node tagged "_shaderInput". It knows size, depth and colour space of its images,
/// which the node stores. One object per channel node, for as long as that lives.
class ORVCORE_EXPORT OrvShaderInput : public OrvLayerStack {
    Q_OBJECT

public:
    ~OrvShaderInput() override;

    OrvSnShaderInputNode* channelNode() const;
    QString path() const;
    /// Holds shading results instead of colour; never listed among the channels.
    bool isMaterialStack() const;
    OrvLayer* currentLayer() const;

    bool isLocked() const;
    void setLocked(bool Locked);
    bool isModifiable() const;
    /// The channel is content of layers; their merge nodes.
    bool isSharedLayers() const;
    bool isShared(QList<OrvSnBaseNode*>& Nodes) const;

    OrvUdimLayout layout() const;
    QSize imageSetSize() const { return layout().tileSize(); }
    GLenum imageSetDepth() const;
    QString imageSetDepthAsString() const;
    QStringList imageSetDepthList() const;
    bool isScalar() const;
    /// How paint layers of this channel are stored.
    OrvPixelFormat paintFormat() const;
    OrvPixelFormat maskFormat() const;

    /// Settings of the editors are changed through the reference; the stored configuration by
    /// setColorSpaceConfig().
    OrvColorSpaceConfig& colorSpaceConfig() { return m_ColorSpaceConfig; }
    OrvColorSpaceConfig scalarColorSpaceConfig() const { return m_ScalarColorSpaceConfig; }
    void setColorSpaceConfig(const OrvColorSpaceConfig& Config, bool Undoable);
    void setScalarColorSpaceConfig(const OrvColorSpaceConfig& Config, bool Undoable);

    /// On any level; null: of any model.
    bool containsMultiChannelLayerOfShaderModel(const OrvShadingModel* pShaderModel) const;

    /// Which images a conversion takes; the channel itself follows in any case.
    enum ConversionOption {
        FreeImages = 0, ///< all but those that are locked, or seen in other channels too
        AllImages = 1
    };
    // Each is one undo step. False, with nothing changed, when it was cancelled, or refused: then the reason
    // is told (OrvLayerManager::refused). See OrvChannelConversion.
    bool convertDepthTo(GLenum Depth, int Option);
    /// The stored values of colour, and of masks and other data, go to another space. The configuration names
    /// it afterwards.
    bool convertColorSpaceTo(const QString& Space, int Option);
    bool convertScalarColorSpaceTo(const QString& Space, int Option);
    /// The edge length of every tile. The other arguments only choose among resizing operations.
    bool resizeLayers(int Size, void* = nullptr, bool = true, bool = true);
    /// Asks (see OrvChannelFlattening) before it takes hidden or locked layers away. One paint layer is left.
    Q_INVOKABLE bool flattenUI();

Q_SIGNALS:
    void imageSetDepthChanged(GLenum Depth);
    void colorSpaceConfigChanged(const OrvColorSpaceConfig& Config);
    /// The channel's current layer changed, or the stack became empty or no longer empty.
    void layerMadeCurrent();
    void lockedChanged(bool Locked);

private:
    friend class OrvShaderInputManager;
    explicit OrvShaderInput(OrvSnShaderInputNode* pNode);
    void readNode(const QString& AttributeName);

    OrvColorSpaceConfig m_ColorSpaceConfig, m_ScalarColorSpaceConfig;
};
