#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QHash>
#include <QtCore/QStringList>
#include <QtCore/QVariantMap>

#include <functional>

class QMimeData;

/// What the program's own content does when it is dropped somewhere. The places are numbered; whoever knows a
/// kind of content registers a handler for the places that take it. The layer palettes' own payload is never
/// taken: the palettes know better.
class ORVCOREMODULES_EXPORT OrvDragAndDropManager {
public:
    enum Target { NoTarget = 0, CanvasTarget = 1, NodeGraphTarget = 2, LayerTreeTarget = 3 };

    struct Handler {
        QStringList MimeTypes;
        /// Looks at the data only, opens no file: it is asked at each move of the mouse. An empty one accepts
        /// all data of the types.
        std::function<bool(const QMimeData& Data)> Accepts;
        /// The map says where: "LayerStack", "LayerBelow" and, for the layer tree, "TargetNode", which it was
        /// dropped above. True on success.
        std::function<bool(const QMimeData& Data, const QVariantMap& Parameters)> Drop;
    };

    static OrvDragAndDropManager& instance();

    /// Later handlers are asked first. The number takes the handler away again.
    int registerHandler(int Target, const Handler& NewHandler);
    void unregisterHandler(int Number);

    QStringList mimeTypes(int Target) const;
    bool acceptDragEnter(const QMimeData* pData, int Target) const;
    bool drop(const QMimeData* pData, int Target, const QVariantMap& Parameters);

private:
    struct Entry {
        int Number;
        int Target;
        Handler Work;
    };

    OrvDragAndDropManager() = default;
    const Entry* taker(const QMimeData* pData, int Target) const;

    QList<Entry> m_Handlers;
    int m_LastNumber = 0;
};
