#include "Orvi/OrvBrushStroke.h"

#include "Orvi/OrvPixelEdit.h"

#include "OrvCore/Channels/OrvChannelSpace.h"
#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"

#include "OrvDdi/Color/OrvColorManager.h"
#include "OrvDdi/Engine/OrvEngine.h"
#include "OrvDdi/Image/OrvImageSet.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QLineF>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr double CurveStep = 4.0; // pixels between points of a flattened curve

/// What the brush's colour means in the pixels of a node: light of that colour, or the number that the
/// display shows as it.
OrvColor paintedColor(const OrvSnChannelInputNode* pNode, const QColor& Color)
{
    OrvColor Painted = OrvColor::fromQColor(Color);
    if (OrvBrushStroke::paintsNumbers(pNode)) {
        const float Value = float(OrvBrushStroke::numberFor(Color));
        return OrvColor(Value, Value, Value, Painted.alpha());
    }
    OrvColorManager::transform(Painted, Painted, OrvColorManager::srgb(), OrvChannelSpace::ofNode(pNode));
    return Painted;
}

QString strokeText(const OrvBrush& Brush)
{
    return Brush.erases() ? QCoreApplication::translate("OrvBrushStroke", "Erase")
                          : QCoreApplication::translate("OrvBrushStroke", "Paint Stroke");
}

} // namespace

bool OrvBrushStroke::paintsNumbers(const OrvSnChannelInputNode* pNode)
{
    const OrvLayer* pLayer = OrvLayerManager::instance().currentLayer();
    const bool OfLayer = pLayer && pLayer->paintNode() == pNode;
    for (const OrvLayerStack* pStack : OfLayer ? pLayer->stacks() : QList<OrvLayerStack*>()) {
        if (pStack->isWithinMask())
            return true;
    }
    const QList<OrvShaderInput*> Channels = OrvShaderInputUtils::findParents(pNode, QString());
    return pNode->imageSet()->format().Kind == OrvPixelFormat::Scalar
        || (!Channels.isEmpty() && Channels.first()->isScalar());
}

double OrvBrushStroke::numberFor(const QColor& Color)
{
    return 0.2126 * Color.redF() + 0.7152 * Color.greenF() + 0.0722 * Color.blueF();
}

OrvBrushStroke::OrvBrushStroke(OrvSnChannelInputNode* pNode, const OrvBrush& Brush,
    const OrvSelectionCoverage& Selection, const QPointF& Start, double Pressure)
    : m_pNode(pNode)
    , m_pMacro(std::make_unique<OrvUndoManager::AutoMacro>(strokeText(Brush)))
    , m_Brush(Brush)
    , m_Color(paintedColor(pNode, Brush.color()))
    , m_Before(pNode->imageSet()->snapshot())
    , m_Coverage(Selection)
    , m_Last{Start, Pressure}
    , m_Brushed(m_Last)
    , m_UntilNextDab(Brush.pressed(Pressure).spacing())
{
    compose(addDab(m_Last));
}

OrvBrushStroke::~OrvBrushStroke()
{
    if (!m_Finished)
        finish();
}

void OrvBrushStroke::moveTo(const QPointF& Point, double Pressure)
{
    if (!m_pNode || m_Finished)
        return;
    const Station Next{Point, Pressure};
    if (Point != m_Last.Point)
        drawCurve(m_Last, {(m_Last.Point + Point) / 2.0, (m_Last.Pressure + Pressure) / 2.0});
    else if (Pressure > m_Last.Pressure)
        compose(addDab(Next)); // a pen that stays and presses more
    m_Last = Next;
}

void OrvBrushStroke::drawCurve(const Station& Control, const Station& End)
{
    const Station Start = m_Brushed;
    const double Length
        = QLineF(Start.Point, Control.Point).length() + QLineF(Control.Point, End.Point).length();
    const int Steps = std::max(1, int(std::ceil(Length / CurveStep)));
    QRect Touched;
    for (int Step = 1; Step <= Steps; ++Step) {
        const double T = double(Step) / Steps;
        const double First = (1.0 - T) * (1.0 - T), Middle = 2.0 * T * (1.0 - T), Last = T * T;
        Touched = Touched.united(addDabsTo({Start.Point * First + Control.Point * Middle + End.Point * Last,
            Start.Pressure * First + Control.Pressure * Middle + End.Pressure * Last}));
    }
    compose(Touched);
}

QRect OrvBrushStroke::addDabsTo(const Station& Next)
{
    QRect Touched;
    const QLineF Way(m_Brushed.Point, Next.Point);
    const double Length = Way.length();
    double Position = m_UntilNextDab;
    while (Position <= Length) {
        const double Part = Position / Length;
        const double Pressure = m_Brushed.Pressure + (Next.Pressure - m_Brushed.Pressure) * Part;
        Touched = Touched.united(addDab({Way.pointAt(Part), Pressure}));
        Position += m_Brush.pressed(Pressure).spacing();
    }
    m_UntilNextDab = Position - Length;
    m_Brushed = Next;
    return Touched;
}

QRect OrvBrushStroke::addDab(const Station& Where)
{
    return m_Coverage.addDab(m_Brush.pressed(Where.Pressure), Where.Point, m_pNode->imageSet()->extent());
}

void OrvBrushStroke::compose(const QRect& Region)
{
    if (!m_pNode)
        return;
    // All squares in one turn: each would wait for a part of the picture several times.
    const OrvEngine::Lock Lock;
    for (const QRect& Piece : OrvStrokeCoverage::cutToSquares(Region)) {
        if (m_Coverage.at(Piece.topLeft()))
            composeSquare(Piece);
    }
}

void OrvBrushStroke::composeSquare(const QRect& Piece)
{
    OrvImageSet* pImages = m_pNode->imageSet();
    const bool Scalar = pImages->format().Kind == OrvPixelFormat::Scalar;
    const OrvPixelFormat Format{GL_FLOAT, pImages->format().Kind, OrvPixelFormat::Linear};
    const int Components = Format.componentCount();
    std::vector<float> Pixels(
        std::size_t(Piece.width()) * std::size_t(Piece.height()) * std::size_t(Components));
    if (m_Before.isNull()) {
        const OrvColor Fill = pImages->fillColor();
        for (std::size_t Index = 0; Index < Pixels.size(); ++Index)
            Pixels[Index] = Fill.components()[Index % std::size_t(Components)];
    } else {
        m_Before.read(Piece, Format, Pixels.data());
    }

    float* pPixel = Pixels.data();
    for (int Y = Piece.top(); Y <= Piece.bottom(); ++Y) {
        const float* pCoverage = m_Coverage.at(QPoint(Piece.left(), Y));
        for (int X = Piece.left(); X <= Piece.right(); ++X, ++pCoverage, pPixel += Components) {
            const float Covered = *pCoverage * m_Color.alpha();
            if (Covered <= 0.0f)
                continue;
            if (Scalar) {
                const float Value = m_Brush.erases() ? 0.0f : m_Color.red();
                *pPixel += (Value - *pPixel) * Covered;
                continue;
            }
            const float Kept = pPixel[3] * (1.0f - Covered);
            if (m_Brush.erases()) {
                pPixel[3] = Kept;
                continue;
            }
            const float Alpha = Covered + Kept;
            for (int Component = 0; Component < 3; ++Component) {
                pPixel[Component]
                    = (m_Color.components()[Component] * Covered + pPixel[Component] * Kept) / Alpha;
            }
            pPixel[3] = Alpha;
        }
    }
    pImages->buffer().write(Piece, Format, Pixels.data());
    pImages->pixelsWritten(Piece);
}

QVector<QRect> OrvBrushStroke::touched() const
{
    QVector<QRect> Touched;
    if (!m_pNode)
        return Touched;
    for (const QRect& Square : m_Coverage.touchedSquares()) {
        const QRect Inside = Square.intersected(m_pNode->imageSet()->extent());
        if (!Inside.isEmpty())
            Touched.append(Inside);
    }
    return Touched;
}

void OrvBrushStroke::finish()
{
    if (std::exchange(m_Finished, true))
        return;
    if (m_pNode) {
        drawCurve(m_Last, m_Last);
        const QVector<QRect> Touched = touched();
        if (!Touched.isEmpty()) {
            OrvUndoManager::instance().addUndo(new OrvPixelEdit(
                m_pNode, m_Before, m_pNode->imageSet()->snapshot(), Touched, strokeText(m_Brush)));
        }
    }
    m_pMacro.reset();
}

void OrvBrushStroke::cancel()
{
    if (std::exchange(m_Finished, true))
        return;
    if (m_pNode)
        OrvPixelEdit(m_pNode, m_Before, OrvImageBuffer(), touched(), QString()).undo();
    m_pMacro.reset();
}
