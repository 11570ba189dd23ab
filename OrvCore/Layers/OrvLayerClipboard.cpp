#include "OrvCore/Layers/OrvLayerClipboard.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QMimeData>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>

namespace {

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvLayerClipboard", pText);
}

/// Turns its layers into bytes only when somebody asks for them.
class LayerMimeData : public QMimeData {
public:
    LayerMimeData(const QString& Format, const OrvLayerSnapshot& Snapshot)
        : m_Format(Format)
        , m_Snapshot(Snapshot)
    {
    }
    const OrvLayerSnapshot& snapshot() const { return m_Snapshot; }
    QStringList formats() const override { return {m_Format}; }
    bool hasFormat(const QString& Format) const override { return Format == m_Format; }

protected:
    QVariant retrieveData(const QString& Format, QVariant::Type) const override
    {
        return hasFormat(Format) ? QVariant(m_Snapshot.toBytes()) : QVariant();
    }

private:
    QString m_Format;
    OrvLayerSnapshot m_Snapshot;
};

/// Null without a window system.
QClipboard* clipboard()
{
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) ? QGuiApplication::clipboard()
                                                                        : nullptr;
}

} // namespace

QString OrvLayerClipboard::mimeType(Contents What)
{
    return What == Layers ? QStringLiteral("application/x-orvi-layer-clipboard")
                          : QStringLiteral("application/x-orvi-mask-clipboard");
}

void OrvLayerClipboard::put(Contents What, const OrvLayerSnapshot& Snapshot)
{
    if (QClipboard* pClipboard = clipboard())
        pClipboard->setMimeData(new LayerMimeData(mimeType(What), Snapshot));
}

bool OrvLayerClipboard::holds(Contents What)
{
    const QMimeData* pData = clipboard() ? clipboard()->mimeData() : nullptr;
    return pData && pData->hasFormat(mimeType(What));
}

bool OrvLayerClipboard::get(Contents What, OrvLayerSnapshot& Snapshot, QString& Error)
{
    if (!holds(What)) {
        Error = What == Layers ? tr("There are no layers on the clipboard")
                               : tr("There is no mask on the clipboard");
        return false;
    }
    const QMimeData* pData = clipboard()->mimeData();
    if (const auto* pOwn = dynamic_cast<const LayerMimeData*>(pData)) {
        Snapshot = pOwn->snapshot();
        return true;
    }
    return OrvLayerSnapshot::fromBytes(pData->data(mimeType(What)), Snapshot, Error);
}
