#pragma once

#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QVector>

class OrvLayer;
class OrvLayerStack;

/// Shows one layer of a stack alone and gives back what was visible before, each as one undo step. The
/// palette owns it; it remembers for each stack, by identity, what it hid and showed the last times, and
/// takes the memory that the layers agree with now, so that undo may go back and forth. Layers that came or
/// went meanwhile do not matter to it.
class OrvLayerSolo {
public:
    /// A second time for the same layer, or for a group that holds it, gives back what was. Of a layer that
    /// is alone for other reasons, the others are shown.
    void toggle(OrvLayer* pLayer, const OrvLayerStack* pLayerStack);

private:
    struct Memory {
        QString Alone;
        QHash<QString, bool> VisibleBefore; ///< of what was changed
    };
    static bool isInEffect(const Memory& Kept, const OrvLayerStack* pLayerStack);
    static void giveBack(const Memory& Kept, const OrvLayerStack* pLayerStack);
    void showAlone(OrvLayer* pLayer, const OrvLayerStack* pLayerStack, const Memory& Present);

    QHash<const OrvLayerStack*, QVector<Memory>> m_Memories; ///< the latest last
};
