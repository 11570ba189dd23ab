#pragma once

#include <QtCore/QPointer>
#include <QtCore/QVector>
#include <QtWidgets/QUndoCommand>

class OrvLayer;
class OrvShaderNetwork;
class OrvSnBaseNode;

/// Another component is painted on, as part of an edit. OrvLayerManager makes it.
class OrvCurrentComponentEdit : public QUndoCommand {
public:
    OrvCurrentComponentEdit(OrvSnBaseNode* pBefore, OrvSnBaseNode* pAfter);
    void undo() override;
    void redo() override;

private:
    QPointer<OrvSnBaseNode> m_pBefore, m_pAfter;
};

/// Another layer becomes current, as part of an edit: undo brings back the one before, and what was selected.
class OrvCurrentLayerEdit : public QUndoCommand {
public:
    OrvCurrentLayerEdit(OrvShaderNetwork* pNetwork, OrvLayer* pLayer);
    void undo() override;
    void redo() override;

private:
    /// The nodes, if the current layer is among them; else that one alone.
    void select(OrvLayer* pCurrent, const QVector<QPointer<OrvSnBaseNode>>& Nodes);

    QPointer<OrvShaderNetwork> m_pNetwork;
    QPointer<OrvLayer> m_pBefore, m_pAfter;
    QVector<QPointer<OrvSnBaseNode>> m_SelectedBefore;
    bool m_Redone = false;
};
