#include "OrvCore/Layers/OrvLayerClipboard.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QMimeData>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>

const QString OrvLayerClipboard::MimeType = QStringLiteral("application/x-orvi-layer-clipboard");

namespace {

/// Turns its layers into bytes only when somebody asks for them.
class LayerMimeData : public QMimeData {
public:
    explicit LayerMimeData(const OrvLayerSnapshot& Snapshot)
        : m_Snapshot(Snapshot)
    {
    }
    const OrvLayerSnapshot& snapshot() const { return m_Snapshot; }
    QStringList formats() const override { return {OrvLayerClipboard::MimeType}; }
    bool hasFormat(const QString& Format) const override { return Format == OrvLayerClipboard::MimeType; }

protected:
    QVariant retrieveData(const QString& Format, QVariant::Type) const override
    {
        return hasFormat(Format) ? QVariant(m_Snapshot.toBytes()) : QVariant();
    }

private:
    OrvLayerSnapshot m_Snapshot;
};

/// Null without a window system.
QClipboard* clipboard()
{
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) ? QGuiApplication::clipboard()
                                                                        : nullptr;
}

} // namespace

void OrvLayerClipboard::put(const OrvLayerSnapshot& Snapshot)
{
    if (QClipboard* pClipboard = clipboard())
        pClipboard->setMimeData(new LayerMimeData(Snapshot));
}

bool OrvLayerClipboard::holdsLayers()
{
    const QMimeData* pData = clipboard() ? clipboard()->mimeData() : nullptr;
    return pData && pData->hasFormat(MimeType);
}

bool OrvLayerClipboard::get(OrvLayerSnapshot& Snapshot, QString& Error)
{
    if (!holdsLayers()) {
        Error = QCoreApplication::translate("OrvLayerClipboard", "There are no layers on the clipboard");
        return false;
    }
    const QMimeData* pData = clipboard()->mimeData();
    if (const auto* pOwn = dynamic_cast<const LayerMimeData*>(pData)) {
        Snapshot = pOwn->snapshot();
        return true;
    }
    return OrvLayerSnapshot::fromBytes(pData->data(MimeType), Snapshot, Error);
}
