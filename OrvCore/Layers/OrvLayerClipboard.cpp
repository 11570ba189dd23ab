#include "OrvCore/Layers/OrvLayerClipboard.h"

#include "OrvCore/Layers/OrvSnapshotClipboard.h"

#include <QtCore/QCoreApplication>

namespace {

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvLayerClipboard", pText);
}

OrvSnapshotClipboard<OrvLayerSnapshot> clipboard(OrvLayerClipboard::Contents What)
{
    return OrvSnapshotClipboard<OrvLayerSnapshot>(OrvLayerClipboard::mimeType(What));
}

} // namespace

QString OrvLayerClipboard::mimeType(Contents What)
{
    return What == Layers ? QStringLiteral("application/x-orvi-layer-clipboard")
                          : QStringLiteral("application/x-orvi-mask-clipboard");
}

void OrvLayerClipboard::put(Contents What, const OrvLayerSnapshot& Snapshot)
{
    clipboard(What).put(Snapshot);
}

bool OrvLayerClipboard::holds(Contents What)
{
    return clipboard(What).holds();
}

bool OrvLayerClipboard::get(Contents What, OrvLayerSnapshot& Snapshot, QString& Error)
{
    if (holds(What))
        return clipboard(What).get(Snapshot, Error);
    Error = What == Layers ? tr("There are no layers on the clipboard")
                           : tr("There is no mask on the clipboard");
    return false;
}
