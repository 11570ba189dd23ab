#include "OrvCoreModules/DragAndDrop/OrvDragAndDropManager.h"

#include "OrvCore/Object/OrvDebug.h"

#include <QtCore/QMimeData>

#include <algorithm>

namespace {

const QString LayerPayloadType = QStringLiteral("application/x-orvi-layer");

bool hasAnyFormat(const QMimeData& Data, const QStringList& MimeTypes)
{
    return std::any_of(
        MimeTypes.begin(), MimeTypes.end(), [&Data](const QString& Type) { return Data.hasFormat(Type); });
}

} // namespace

OrvDragAndDropManager& OrvDragAndDropManager::instance()
{
    static auto* pInstance = new OrvDragAndDropManager;
    return *pInstance;
}

int OrvDragAndDropManager::registerHandler(int Target, const Handler& NewHandler)
{
    m_Handlers.prepend({++m_LastNumber, Target, NewHandler});
    return m_LastNumber;
}

void OrvDragAndDropManager::unregisterHandler(int Number)
{
    const auto IsMeant = [Number](const Entry& Candidate) { return Candidate.Number == Number; };
    m_Handlers.erase(std::remove_if(m_Handlers.begin(), m_Handlers.end(), IsMeant), m_Handlers.end());
}

QStringList OrvDragAndDropManager::mimeTypes(int Target) const
{
    QStringList Types;
    for (const Entry& Candidate : m_Handlers) {
        if (Candidate.Target == Target)
            Types.append(Candidate.Work.MimeTypes);
    }
    Types.removeDuplicates();
    return Types;
}

const OrvDragAndDropManager::Entry* OrvDragAndDropManager::taker(const QMimeData* pData, int Target) const
{
    if (!pData || pData->hasFormat(LayerPayloadType))
        return nullptr;
    for (const Entry& Candidate : m_Handlers) {
        if (Candidate.Target == Target && hasAnyFormat(*pData, Candidate.Work.MimeTypes)
            && (!Candidate.Work.Accepts || Candidate.Work.Accepts(*pData)))
            return &Candidate;
    }
    return nullptr;
}

bool OrvDragAndDropManager::acceptDragEnter(const QMimeData* pData, int Target) const
{
    return taker(pData, Target) != nullptr;
}

bool OrvDragAndDropManager::drop(const QMimeData* pData, int Target, const QVariantMap& Parameters)
{
    if (!pData) {
        OrvDebug("OrvDragAndDropManager", __LINE__, QStringLiteral("pData is NULL"), false, false);
        return false;
    }
    const Entry* pTaker = taker(pData, Target);
    // The work may register or take away handlers.
    const auto Work = pTaker ? pTaker->Work.Drop : nullptr;
    return Work && Work(*pData, Parameters);
}
