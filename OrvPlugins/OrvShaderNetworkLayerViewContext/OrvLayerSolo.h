#pragma once

#include <QtCore/QHash>
#include <QtCore/QString>

class OrvLayer;
class OrvLayerStack;

/// Shows one layer of a stack alone and gives back what was visible before, each as one undo step. The
/// palette owns it; it remembers for each stack what it hid and showed, by identity, for as long as that is
/// how the layers still stand. Layers that came or went meanwhile do not matter to it.
class OrvLayerSolo {
public:
    /// A second time for the same layer gives back what was. Of a layer that is alone for other reasons, the
    /// others are shown.
    void toggle(OrvLayer* pLayer, const OrvLayerStack* pLayerStack);

private:
    struct Memory {
        QString Alone;
        QHash<QString, bool> VisibleBefore; ///< of what was changed
    };
    void showAlone(OrvLayer* pLayer, const OrvLayerStack* pLayerStack, Memory& Kept);

    QHash<const OrvLayerStack*, Memory> m_Memories;
};
