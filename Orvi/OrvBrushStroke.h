#pragma once

#include "Orvi/OrvBrush.h"
#include "Orvi/OrvStrokeCoverage.h"

#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Image/OrvColor.h"
#include "OrvDdi/Image/OrvImageBuffer.h"

#include <QtCore/QPointer>

#include <memory>

class OrvSnChannelInputNode;

/// One stroke of the brush on a paint layer or a mask, from pressing to releasing. Pixels are painted as the
/// brush moves, each time from those before the stroke, in linear light; the whole stroke becomes one undo
/// step. Whoever starts it has made sure that the node may be changed.
class OrvBrushStroke {
public:
    /// Pixels that are shown as they are, of masks and the like: a colour stands for its brightness there.
    static bool paintsNumbers(const OrvSnChannelInputNode* pNode);
    static double numberFor(const QColor& Color);

    /// Paints the first dab; a selection of the node's plane limits the whole stroke.
    OrvBrushStroke(OrvSnChannelInputNode* pNode, const OrvBrush& Brush, const OrvSelectionCoverage& Selection,
        const QPointF& Start, double Pressure = 1.0);
    ~OrvBrushStroke();

    /// The brush follows a smooth curve through the points and stays half a step behind until the stroke
    /// ends. Its pressure changes as smoothly.
    void moveTo(const QPointF& Point, double Pressure = 1.0);
    /// Paints the last half step and records the undo step.
    void finish();
    /// Takes the stroke back.
    void cancel();
    /// Whether there is anything to undo.
    bool hasPainted() const { return !touched().isEmpty(); }

private:
    /// Where the pointer is, or the brush behind it.
    struct Station {
        QPointF Point;
        double Pressure = 1.0;
    };
    void drawCurve(const Station& Control, const Station& End);
    QRect addDabsTo(const Station& Next);
    QRect addDab(const Station& Where);
    void compose(const QRect& Region);
    void composeSquare(const QRect& Piece);
    QVector<QRect> touched() const;

    QPointer<OrvSnChannelInputNode> m_pNode;
    /// Open from press to release: nothing is undone under the brush.
    std::unique_ptr<OrvUndoManager::AutoMacro> m_pMacro;
    OrvBrush m_Brush;
    OrvColor m_Color; ///< in the buffer's linear values
    OrvImageBuffer m_Before; ///< null: the fill colour everywhere
    OrvStrokeCoverage m_Coverage;
    Station m_Last; ///< last one the pointer was at
    Station m_Brushed; ///< the brush has come so far
    double m_UntilNextDab = 0.0;
    bool m_Finished = false;
};
