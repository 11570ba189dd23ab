#include "OrvCoreModules/Graph/OrvNodeGraphGesture.h"

#include "OrvCoreModules/Graph/OrvNodeItem.h"
#include "OrvCoreModules/Graph/OrvWireItem.h"
#include "OrvCoreModules/Window/OrvCustomFusionStyle.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QPainter>

namespace {

const QColor LooseWire(0xe6, 0xc8, 0x60), GoodWire(0x6f, 0xc2, 0x6f), RefusedWire(0xd8, 0x5a, 0x52);
constexpr qreal WireMargin = 8.0;

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvNodeGraphGesture", pText);
}

} // namespace

OrvNodeGraphGesture::~OrvNodeGraphGesture() = default;

OrvNodeMoveGesture::OrvNodeMoveGesture(OrvNodeGraphScene* pScene, const QPointF& Start)
    : OrvNodeGraphGesture(pScene)
    , m_Start(Start)
{
    for (OrvSnBaseNode* pNode : pScene->selectedNodes())
        m_Before.insert(pNode, pScene->item(pNode)->pos());
    pScene->setItemsHeld(true);
}

void OrvNodeMoveGesture::moveTo(const QPointF& Place)
{
    const QPointF Offset = (Place - m_Start).toPoint();
    for (auto Before = m_Before.begin(); Before != m_Before.end(); ++Before) {
        if (OrvNodeItem* pItem = scene()->item(Before.key()))
            pItem->setPos(Before.value() + Offset);
    }
}

void OrvNodeMoveGesture::finish()
{
    OrvNodeGraphCommands::Places Places;
    for (auto Before = m_Before.begin(); Before != m_Before.end(); ++Before) {
        const OrvNodeItem* pItem = scene()->item(Before.key());
        if (pItem && pItem->pos() != Before.value())
            Places.insert(Before.key(), pItem->pos());
    }
    OrvNodeGraphCommands::move(Places);
    scene()->setItemsHeld(false);
}

void OrvNodeMoveGesture::cancel()
{
    scene()->setItemsHeld(false);
}

OrvAreaSelectGesture::OrvAreaSelectGesture(
    OrvNodeGraphScene* pScene, const QPointF& Start, const QVector<OrvSnBaseNode*>& Kept)
    : OrvNodeGraphGesture(pScene)
    , m_Start(Start)
    , m_Kept(Kept.begin(), Kept.end())
{
}

void OrvAreaSelectGesture::select(const QRectF& Area)
{
    const QHash<const OrvSnBaseNode*, OrvNodeItem*>& Items = scene()->nodeItems();
    for (auto Item = Items.begin(); Item != Items.end(); ++Item) {
        const bool Touched
            = Area.isValid() && Item.value()->body().translated(Item.value()->pos()).intersects(Area);
        Item.value()->setSelected(Touched || m_Kept.contains(Item.key()));
    }
}

void OrvAreaSelectGesture::moveTo(const QPointF& Place)
{
    m_Area = QRectF(m_Start, Place).normalized();
    select(m_Area);
}

void OrvAreaSelectGesture::cancel()
{
    select({});
}

void OrvAreaSelectGesture::paint(QPainter* pPainter) const
{
    QColor Fill = OrvCustomFusionStyle::accentColor();
    QPen Pen(Fill.lighter(130), 1.0);
    Pen.setCosmetic(true);
    Fill.setAlpha(40);
    pPainter->setPen(Pen);
    pPainter->setBrush(Fill);
    pPainter->drawRect(m_Area);
}

OrvWireGesture::OrvWireGesture(OrvNodeGraphScene* pScene, const OrvNodeGraphScene::Spot& From)
    : OrvNodeGraphGesture(pScene)
{
    OrvSnBaseNode* pNode = From.pNode->node();
    if (From.Output >= 0) {
        m_Fixed.pSource = pNode;
        m_Fixed.OutputName = From.pNode->look().Outputs.value(From.Output);
        m_End = From.pNode->outputPoint(m_Fixed.OutputName);
        return;
    }
    const QString InputName = From.pNode->look().Inputs.value(From.Input);
    m_End = From.pNode->inputPoint(InputName);
    if (OrvSnBaseNode* pSource = pNode->inputNode(InputName)) {
        m_Detached = {pNode, InputName};
        m_Fixed.pSource = pSource;
        m_Fixed.OutputName = pNode->inputOutputName(InputName);
        showDetached(false);
    } else {
        m_Fixed.pTarget = pNode;
        m_Fixed.InputName = InputName;
    }
}

OrvWireGesture::~OrvWireGesture()
{
    clearMark();
    showDetached(true);
}

void OrvWireGesture::showDetached(bool Shown)
{
    const OrvNodeItem* pItem = m_Detached.pNode ? scene()->item(m_Detached.pNode) : nullptr;
    if (OrvWireItem* pWire = pItem ? pItem->wireInto(m_Detached.InputName) : nullptr)
        pWire->setVisible(Shown);
}

OrvNodeItem* OrvWireGesture::fixedItem() const
{
    return scene()->item(m_Fixed.pSource ? m_Fixed.pSource : m_Fixed.pTarget);
}

QString OrvWireGesture::inputFor(const OrvNodeItem* pItem, int Row)
{
    if (Row >= 0)
        return pItem->look().Inputs.value(Row);
    // Dropped on the node as a whole: what is free comes first.
    const OrvSnBaseNode* pNode = pItem->node();
    const QString Preferred = pNode->preferredInput();
    if (Preferred.isEmpty() || !pNode->inputNode(Preferred))
        return Preferred;
    for (const OrvSnBaseNode::Input& Input : pNode->inputs()) {
        if (!Input.pNode)
            return Input.Name;
    }
    return Preferred;
}

OrvNodeGraphCommands::Link OrvWireGesture::linkTo(const OrvNodeGraphScene::Spot& Spot) const
{
    OrvNodeGraphCommands::Link Link = m_Fixed;
    if (!Spot.pNode || Spot.pNode == fixedItem() || !fixedItem())
        return {};
    if (m_Fixed.pSource) {
        Link.InputName = inputFor(Spot.pNode, Spot.Input);
        Link.pTarget = Link.InputName.isEmpty() ? nullptr : Spot.pNode->node();
    } else {
        Link.pSource = Spot.pNode->node();
        Link.OutputName = Spot.pNode->look().Outputs.value(qMax(0, Spot.Output));
    }
    return Link.pSource && Link.pTarget ? Link : OrvNodeGraphCommands::Link();
}

QString OrvWireGesture::whyNoLink(const OrvNodeGraphScene::Spot& Spot) const
{
    if (!Spot.pNode)
        return {};
    const QString Title = Spot.pNode->look().Title;
    if (Spot.pNode == fixedItem()) {
        const bool OnOtherSide = m_Fixed.pSource ? Spot.Input >= 0 : Spot.Output >= 0;
        return OnOtherSide ? tr("'%1' cannot feed itself").arg(Title) : QString();
    }
    return m_Fixed.pSource ? tr("'%1' has no input").arg(Title) : QString();
}

bool OrvWireGesture::isDetachedFrom(const OrvNodeGraphCommands::Link& Link) const
{
    return m_Detached.pNode && m_Detached == OrvSnBaseNode::Consumer{Link.pTarget, Link.InputName};
}

void OrvWireGesture::clearMark()
{
    if (OrvNodeItem* pItem = m_pMarked ? scene()->item(m_pMarked) : nullptr)
        pItem->setDropMark(OrvNodeItem::DropMark::None);
    m_pMarked = nullptr;
}

void OrvWireGesture::moveTo(const QPointF& Place)
{
    m_End = Place;
    const OrvNodeGraphScene::Spot Spot = scene()->spotAt(Place, true);
    const OrvNodeGraphCommands::Link Link = linkTo(Spot);
    const bool Same = Link.pSource == m_Wanted.pSource && Link.OutputName == m_Wanted.OutputName
        && Link.pTarget == m_Wanted.pTarget && Link.InputName == m_Wanted.InputName;
    m_Wanted = Link;
    if (!Link.pTarget) {
        clearMark();
        m_Refusal = whyNoLink(Spot);
        return;
    }
    // Looking for cycles walks the graph: once for each new target.
    if (!Same)
        m_Refusal = isDetachedFrom(Link) ? QString() : OrvNodeGraphCommands::refusal(Link);
    OrvNodeItem* pEnd = Spot.pNode;
    m_End = m_Fixed.pSource ? pEnd->inputPoint(Link.InputName) : pEnd->outputPoint(Link.OutputName);
    if (m_pMarked != pEnd->node())
        clearMark();
    m_pMarked = pEnd->node();
    pEnd->setDropMark(m_Refusal.isEmpty() ? OrvNodeItem::DropMark::Possible : OrvNodeItem::DropMark::Refused);
    if (!m_Refusal.isEmpty() && !Same)
        OrvNodeGraphCommands::refuse(m_Refusal);
}

void OrvWireGesture::finish()
{
    // Undone from under the mouse, one of the ends may be gone.
    const auto isThere = [this](const OrvSnBaseNode* pNode) { return !pNode || scene()->item(pNode); };
    if (!fixedItem() || !isThere(m_Wanted.pSource) || !isThere(m_Wanted.pTarget)
        || !isThere(m_Detached.pNode))
        return;
    if (m_Detached.pNode && m_Wanted.pTarget)
        OrvNodeGraphCommands::reconnect(m_Detached, m_Wanted);
    else if (m_Detached.pNode)
        OrvNodeGraphCommands::disconnect({m_Detached});
    else if (m_Wanted.pTarget)
        OrvNodeGraphCommands::connect(m_Wanted);
    else if (!m_Refusal.isEmpty())
        OrvNodeGraphCommands::refuse(m_Refusal);
}

QPainterPath OrvWireGesture::curve() const
{
    const OrvNodeItem* pItem = fixedItem();
    if (!pItem)
        return {};
    return m_Fixed.pSource ? OrvWireItem::curve(pItem->outputPoint(m_Fixed.OutputName), m_End)
                           : OrvWireItem::curve(m_End, pItem->inputPoint(m_Fixed.InputName));
}

QRectF OrvWireGesture::extent() const
{
    return curve().controlPointRect().adjusted(-WireMargin, -WireMargin, WireMargin, WireMargin);
}

void OrvWireGesture::paint(QPainter* pPainter) const
{
    const QColor Color = !m_Wanted.pTarget ? LooseWire : m_Refusal.isEmpty() ? GoodWire : RefusedWire;
    pPainter->setRenderHint(QPainter::Antialiasing);
    pPainter->setPen(QPen(Color, 2.2));
    pPainter->setBrush(Qt::NoBrush);
    pPainter->drawPath(curve());
    pPainter->setBrush(Color);
    pPainter->drawEllipse(m_End, 3.0, 3.0);
}
