#pragma once

#include "OrvCore/Layers/OrvLayerCreateFlags.h"

#include <QtCore/QString>

class OrvLayer;
class OrvLayerStack;
class OrvLayerView;
class QColor;

/// The edits that a Layers palette offers: each finds what it applies to, calls the host, and tells the user
/// when that was refused. The palette owns them; its slots of the same names lead here.
class OrvLayerViewCommands {
public:
    enum ChannelKind { OrdinaryChannel, MaterialChannel };

    explicit OrvLayerViewCommands(OrvLayerView* pLayerView);

    void addNewLayer();
    void addLayerMask();
    void addMaskStack();
    void addGraphLayer();
    /// These open a menu at the cursor; its entries call the palette's slots.
    void chooseAdjustment();
    void chooseProcedural();
    /// Only for a current layer that may be changed.
    void chooseStackAdjustment();
    void addAdjustmentLayer(const QString& Key);
    void addProceduralLayer(const QString& Key);
    void addCustomProceduralLayer(const QString& Key);
    void addStackAdjustment(const QString& Key);
    void createChannel(ChannelKind Kind);
    void groupLayers();
    void groupLayers(OrvLayerCreateFlags Flags);
    void duplicateLayers();
    void mergeLayers();
    void removeLayers();
    void cut();
    void copy();
    void paste();
    void setPassThrough(OrvLayer* pGroup, bool PassThrough);
    void setSelectedColors(const QColor& Color);
    void pickTagColors();
    /// Lets the user find a node type by typing, and adds a layer of it.
    void quickFind();

    /// The stack to work on; null is reported.
    OrvLayerStack* layerStack(int Line) const;
    /// Where a new layer goes, and what becomes current.
    OrvLayerCreateFlags creationFlags() const;

private:
    /// The layer to work on; null, as a stack that is, is reported.
    OrvLayer* currentLayer(int Line) const;
    /// Inside the current row's group where that is unfolded.
    OrvLayerCreateFlags withGroup(int Flags) const;

    OrvLayerView* m_LayerView;
};
