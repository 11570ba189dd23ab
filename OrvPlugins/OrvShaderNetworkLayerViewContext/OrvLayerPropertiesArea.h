#pragma once

#include "OrvCoreModules/Widgets/OrvVerticalScrollArea.h"

#include <QtCore/QPointer>
#include <QtCore/QVector>

class OrvLayer;
class OrvLayerView;
class OrvSnBaseNode;
class QVBoxLayout;

/// The lower pane of a Layers palette, which owns it: one property editor per node that the current layer
/// consists of, and the inputs of a shader layer's shader. The editors follow and change the nodes
/// themselves, so they stay for as long as the nodes and their titles do.
class OrvLayerPropertiesArea : public OrvVerticalScrollArea {
    Q_OBJECT

public:
    enum class BlendNode { Shown, LeftOut };

    OrvLayerPropertiesArea(OrvLayerView* pLayerView, BlendNode Blending);

    /// The layer's editors as children of any widget; the caller places and enables them.
    QList<QPointer<QWidget>> createEditors(const OrvLayer* pLayer, QWidget* pParent) const;

    /// Makes the layer's editors anew.
    void showLayer(const OrvLayer* pLayer);
    /// Makes them anew only where the layer consists of other nodes than those shown.
    void refresh(const OrvLayer* pLayer);
    void clear();

private:
    struct Part {
        QPointer<OrvSnBaseNode> pNode;
        QString Title;
        bool operator==(const Part& Other) const;
    };
    QVector<Part> parts(const OrvLayer* pLayer) const;

    BlendNode m_Blending;
    OrvLayerView* m_LayerView;
    QVBoxLayout* m_Layout;
    QVector<Part> m_Parts;
    QList<QPointer<QWidget>> m_Editors;
};
