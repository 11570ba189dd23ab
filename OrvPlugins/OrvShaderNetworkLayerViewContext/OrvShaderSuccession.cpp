#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderSuccession.h"

#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderModel.h"

#include <QtCore/QTimer>

OrvShaderSuccession::OrvShaderSuccession(const OrvShaderModel* pModel, QObject* pParent)
    : QObject(pParent)
    , m_Model(pModel)
{
}

void OrvShaderSuccession::setCurrent(OrvSnBaseNode* pNode)
{
    // A shader that is being removed stops being current first, within the same step.
    m_Former = m_Current;
    QTimer::singleShot(0, this, [this] { m_Former.clear(); });
    m_Current = pNode;
}

void OrvShaderSuccession::succeed(const OrvSnBaseNode* pRemoved) const
{
    const QModelIndex Removed = m_Model->indexFromNode(pRemoved);
    if (!Removed.isValid() || !leavesGap(pRemoved))
        return;
    const QModelIndex Next = Removed.siblingAtRow(Removed.row() + 1);
    OrvLayerShaderManager::instance().setCurrentShader(
        m_Model->nodeFromIndex(Next.isValid() ? Next : Removed.siblingAtRow(Removed.row() - 1)));
}

bool OrvShaderSuccession::leavesGap(const OrvSnBaseNode* pRemoved) const
{
    const OrvLayerShaderManager& Shaders = OrvLayerShaderManager::instance();
    // Undo and redo know themselves what was current, and whoever takes system shaders away makes new ones.
    if (OrvUndoManager::instance().isRestoring() || Shaders.isSystemShaderNode(pRemoved, true))
        return false;
    const OrvSnBaseNode* pCurrent = Shaders.currentShaderNode();
    const bool HasFallenBack
        = !pCurrent || pCurrent == pRemoved || pCurrent == Shaders.getCurrentChannelShader();
    return HasFallenBack && (pRemoved == m_Current || pRemoved == m_Former);
}

#include "moc_OrvShaderSuccession.cpp"
