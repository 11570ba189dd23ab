#include "Orvi/OrvPixelEdit.h"

#include "OrvCore/Network/OrvSnChannelInputNode.h"

#include "OrvDdi/Image/OrvImageSet.h"

OrvPixelEdit::OrvPixelEdit(OrvSnChannelInputNode* pNode, const OrvImageBuffer& Before,
    const OrvImageBuffer& After, const QVector<QRect>& Touched, const QString& Text)
    : QUndoCommand(Text)
    , m_pNode(pNode)
    , m_Before(Before)
    , m_After(After)
    , m_Touched(Touched)
{
}

void OrvPixelEdit::undo()
{
    restore(m_Before);
}

void OrvPixelEdit::redo()
{
    restore(m_After);
}

void OrvPixelEdit::restore(const OrvImageBuffer& Snapshot) const
{
    if (!m_pNode || !m_pNode->imageSet())
        return;
    for (const QRect& Rect : m_Touched)
        m_pNode->imageSet()->restore(Snapshot, Rect);
}
