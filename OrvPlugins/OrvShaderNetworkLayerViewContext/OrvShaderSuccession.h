#pragma once

#include <QtCore/QObject>
#include <QtCore/QPointer>

class OrvShaderModel;
class OrvSnBaseNode;

/// Which shader becomes the current one when the current one is removed: its neighbour in the list. The
/// Shaders palette's view owns it and tells it what is current and what went; undo, redo and shaders that
/// follow what is current are left to the host.
class OrvShaderSuccession : public QObject {
    Q_OBJECT

public:
    OrvShaderSuccession(const OrvShaderModel* pModel, QObject* pParent);

    /// Null while none is current.
    OrvSnBaseNode* current() const { return m_Current; }
    void setCurrent(OrvSnBaseNode* pNode);
    /// To be called while the removed shader still has its row.
    void succeed(const OrvSnBaseNode* pRemoved) const;

private:
    /// Nothing but the host's default has taken the place of the removed shader.
    bool leavesGap(const OrvSnBaseNode* pRemoved) const;

    const OrvShaderModel* m_Model;
    QPointer<OrvSnBaseNode> m_Current;
    QPointer<OrvSnBaseNode> m_Former; ///< until the event loop is reached again
};
