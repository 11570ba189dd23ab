#pragma once

#include "OrvDdi/Image/OrvImageBuffer.h"

#include <QtCore/QPointer>
#include <QtCore/QVector>
#include <QtWidgets/QUndoCommand>

class OrvSnChannelInputNode;

/// The undo step of pixels that were painted. It holds copy-on-write snapshots and puts back the rectangles
/// that the painting touched, so that it costs the memory of those alone. Recording it runs nothing.
class OrvPixelEdit : public QUndoCommand {
public:
    /// A null snapshot stands for the image set's fill colour.
    OrvPixelEdit(OrvSnChannelInputNode* pNode, const OrvImageBuffer& Before, const OrvImageBuffer& After,
        const QVector<QRect>& Touched, const QString& Text);

    void undo() override;
    void redo() override;

private:
    void restore(const OrvImageBuffer& Snapshot) const;

    QPointer<OrvSnChannelInputNode> m_pNode;
    OrvImageBuffer m_Before, m_After;
    QVector<QRect> m_Touched;
};
