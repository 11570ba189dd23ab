#include "OrvDdi/Engine/OrvGradualEvaluation.h"

#include "OrvDdi/Engine/OrvEngineRects.h"
#include "OrvDdi/Engine/OrvOutputOperation.h"
#include "OrvDdi/Engine/OrvOwnOperation.h"

#include <QtGui/QRegion>

#include <algorithm>
#include <chrono>
#include <unordered_map>
#include <vector>

using namespace OrvEngineRects;

namespace {

constexpr double SecondsPerPiece = 0.02; // an edit waits for one piece
constexpr int PieceEdge = 128; // the engine's tiles
constexpr int LeastStripe = 8; // rows or columns
/// A region of more rectangles costs more than computing the pixels between them.
constexpr int MostRectangles = 64;

/// What is known of the result that a step keeps; goes with the step.
class KeptResult {
public:
    static KeptResult& of(GeglNode* pNode);

    QRegion staleWithin(const QRect& Region) const { return m_Stale & Region; }
    /// What is computed next of a stale region, which is not empty.
    QRect nextPiece(GeglNode* pNode, const QRegion& Stale) const;
    void computed(const QRect& Piece, double Seconds);

private:
    void simplify();

    QRegion m_Stale{toQt(Plane)};
    double m_SecondsPerPixel = SecondsPerPiece / (PieceEdge * PieceEdge);
};

KeptResult& KeptResult::of(GeglNode* pNode)
{
    static const GQuark Key = g_quark_from_static_string("orv-kept-result");
    if (void* pKnown = g_object_get_qdata(G_OBJECT(pNode), Key))
        return *static_cast<KeptResult*>(pKnown);
    auto* pMade = new KeptResult;
    const auto letGo = [](gpointer pKept) { delete static_cast<KeptResult*>(pKept); };
    g_object_set_qdata_full(G_OBJECT(pNode), Key, pMade, letGo);
    const auto becameStale = [](GeglNode*, const GeglRectangle* pRegion, void* pKept) {
        static_cast<KeptResult*>(pKept)->m_Stale += toQt(*pRegion);
        static_cast<KeptResult*>(pKept)->simplify();
    };
    g_signal_connect(pNode, "invalidated",
        G_CALLBACK(static_cast<void (*)(GeglNode*, const GeglRectangle*, void*)>(becameStale)), pMade);
    return *pMade;
}

void KeptResult::simplify()
{
    if (m_Stale.rectCount() > MostRectangles)
        m_Stale = m_Stale.boundingRect();
}

void KeptResult::computed(const QRect& Piece, double Seconds)
{
    m_Stale -= Piece;
    simplify();
    // Parts differ in what they cost: after a slow one pieces grow again by and by.
    m_SecondsPerPixel = std::max(Seconds / (double(Piece.width()) * Piece.height()), m_SecondsPerPixel / 2.0);
}

/// What the step computes of its result when one pixel is asked for.
QRect computedForPixel(GeglNode* pNode, const QPoint& Pixel)
{
    const GeglRectangle Asked{Pixel.x(), Pixel.y(), 1, 1};
    return toQt(gegl_operation_get_cached_region(gegl_node_get_gegl_operation(pNode), &Asked));
}

QRect KeptResult::nextPiece(GeglNode* pNode, const QRegion& Stale) const
{
    QRect Piece = *Stale.begin();
    const QRect Whole = Stale.boundingRect(), Computed = computedForPixel(pNode, Piece.topLeft());
    const bool WholeRows = Computed.width() > 1, WholeColumns = Computed.height() > 1;
    if (WholeRows && WholeColumns)
        return Whole;
    const double Pixels = std::min(SecondsPerPiece / m_SecondsPerPixel, 1e8);
    const auto stripe = [Pixels](int Length) { return std::max(LeastStripe, int(Pixels / Length)); };
    if (WholeColumns) {
        Piece = QRect(Piece.left(), Whole.top(), Piece.width(), Whole.height());
        Piece.setWidth(std::min(Piece.width(), stripe(Piece.height())));
        return Piece;
    }
    if (WholeRows)
        Piece = QRect(Whole.left(), Piece.top(), Whole.width(), Piece.height());
    else if (Pixels < double(PieceEdge) * Piece.width())
        Piece.setWidth(std::min(Piece.width(), PieceEdge));
    Piece.setHeight(std::min(Piece.height(), stripe(Piece.width())));
    return Piece;
}

/// One step of the graph, and what is needed of its result.
struct Step {
    GeglNode* pNode;
    GeglRectangle Needed;
};

/// Operations made of others are entered where their result comes out.
GeglNode* entered(GeglNode* pNode)
{
    GSList* pChildren = gegl_node_get_children(pNode);
    const bool IsMadeOfOthers = pChildren != nullptr;
    g_slist_free(pChildren);
    return IsMadeOfOthers ? gegl_node_get_output_proxy(pNode, "output") : pNode;
}

/// Calls Input(pad, source) for all that is connected.
template <class Function>
void forInputs(GeglNode* pNode, const Function& Input)
{
    gchar** pPads = gegl_node_list_input_pads(pNode);
    for (gchar** pPad = pPads; pPad && *pPad; ++pPad) {
        if (GeglNode* pSource = gegl_node_get_producer(pNode, *pPad, nullptr))
            Input(*pPad, entered(pSource));
    }
    g_strfreev(pPads);
}

/// The steps that a result is made by, sources before whoever reads them.
std::vector<Step> stepsTo(GeglNode* pResult, std::unordered_map<GeglNode*, size_t>& Places)
{
    constexpr size_t Unsettled = size_t(-1);
    std::vector<Step> Steps;
    std::vector<GeglNode*> Pending{entered(pResult)};
    while (!Pending.empty()) {
        GeglNode* pNext = Pending.back();
        const auto Known = Places.emplace(pNext, Unsettled);
        if (Known.second) {
            forInputs(pNext, [&](const char*, GeglNode* pSource) {
                if (Places.count(pSource) == 0)
                    Pending.push_back(pSource);
            });
            continue;
        }
        Pending.pop_back();
        if (Known.first->second == Unsettled) {
            Known.first->second = Steps.size();
            Steps.push_back({pNext, {}});
        }
    }
    return Steps;
}

/// Whether the step keeps its result at full scale. One that computes more than it is asked for is made to.
bool keepsResult(GeglNode* pNode, const QPoint& Pixel)
{
    if (OrvOutputOperation::keepsFullScale(pNode))
        return true;
    if (computedForPixel(pNode, Pixel).size() == QSize(1, 1))
        return false;
    OrvOwnOperation::setKept(pNode, true);
    return true;
}

} // namespace

bool OrvGradualEvaluation::advance(GeglNode* pTarget, const GeglRectangle& Region)
{
    GeglRectangle Wanted = gegl_node_get_bounding_box(pTarget); // prepares all steps
    if (!gegl_rectangle_intersect(&Wanted, &Wanted, &Region))
        return false;
    std::unordered_map<GeglNode*, size_t> Places;
    std::vector<Step> Steps = stepsTo(pTarget, Places);
    Steps.back().Needed = Wanted;
    GeglNode* pLacking = nullptr;
    QRegion Lacking;
    for (auto One = Steps.rbegin(); One != Steps.rend(); ++One) {
        if (gegl_rectangle_is_empty(&One->Needed))
            continue;
        GeglRectangle Needed = One->Needed;
        if (keepsResult(One->pNode, toQt(Needed).topLeft())) {
            const QRegion Stale = KeptResult::of(One->pNode).staleWithin(toQt(Needed));
            if (Stale.isEmpty())
                continue;
            pLacking = One->pNode;
            Lacking = Stale;
            Needed = toEngine(Stale.boundingRect());
        }
        GeglOperation* pOperation = gegl_node_get_gegl_operation(One->pNode);
        const GeglRectangle Computed = gegl_operation_get_cached_region(pOperation, &Needed);
        forInputs(One->pNode, [&](const char* pPad, GeglNode* pSource) {
            GeglRectangle Required = gegl_operation_get_required_for_output(pOperation, pPad, &Computed);
            const GeglRectangle* pBox = gegl_operation_source_get_bounding_box(pOperation, pPad);
            GeglRectangle& NeededThere = Steps[Places[pSource]].Needed;
            if (pBox && gegl_rectangle_intersect(&Required, &Required, pBox))
                gegl_rectangle_bounding_box(&NeededThere, &NeededThere, &Required);
        });
    }
    if (!pLacking)
        return false;
    KeptResult& Kept = KeptResult::of(pLacking);
    const QRect Piece = Kept.nextPiece(pLacking, Lacking);
    const GeglRectangle Computed = toEngine(Piece);
    const auto Start = std::chrono::steady_clock::now();
    gegl_node_blit(pLacking, 1.0, &Computed, nullptr, nullptr, 0, GEGL_BLIT_DEFAULT);
    Kept.computed(Piece, std::chrono::duration<double>(std::chrono::steady_clock::now() - Start).count());
    return true;
}
