#include "OrvCoreModules/Graph/OrvNodeItem.h"

#include "OrvCoreModules/Graph/OrvWireItem.h"
#include "OrvCoreModules/Window/OrvCustomFusionStyle.h"
#include "OrvCoreModules/Window/OrvIcon.h"

#include <QtGui/QPainter>
#include <QtWidgets/QStyleOptionGraphicsItem>

namespace {

constexpr qreal NearScale = 0.45; // below this scale text is no more than dirt
constexpr qreal FarTextScale = 0.25,
                FarTextPixels = 9.0; // between the two the title alone, at a size of its own
constexpr qreal Corner = 4.0;
constexpr qreal ConnectorRadius = 4.5;
constexpr qreal ConnectorReach = 10.0; // how far beside it the mouse may be
constexpr qreal IconEdge = 14.0;
constexpr qreal TagWidth = 4.0;
constexpr qreal DisabledOpacity = 0.45;

const QColor Body(0x3a, 0x3a, 0x3a), BodyEdge(0x1c, 0x1c, 0x1c);
const QColor TitleText(0xf0, 0xf0, 0xf0), RowText(0xc4, 0xc4, 0xc4), DetailText(0x90, 0x90, 0x90);
const QColor ConnectorFree(0x6a, 0x6a, 0x6a), ConnectorFed(0xd0, 0xd0, 0xd0);
const QColor Possible(0x6f, 0xc2, 0x6f), Refused(0xd8, 0x5a, 0x52);

QFont sceneFont(int PixelSize)
{
    QFont Font;
    Font.setPixelSize(PixelSize);
    return Font;
}

const QFont& titleFont()
{
    static const QFont Font = sceneFont(12);
    return Font;
}

const QFont& rowFont()
{
    static const QFont Font = sceneFont(11);
    return Font;
}

void drawElided(QPainter* pPainter, const QRectF& Area, Qt::Alignment Alignment, const QString& Text)
{
    pPainter->drawText(Area, int(Alignment | Qt::AlignVCenter),
        pPainter->fontMetrics().elidedText(Text, Qt::ElideRight, int(Area.width())));
}

} // namespace

OrvNodeItem::OrvNodeItem(OrvSnBaseNode* pNode)
    : m_pNode(pNode)
    , m_Look(OrvNodeLook::of(pNode))
{
    setFlags(ItemIsSelectable | ItemSendsScenePositionChanges | ItemSendsGeometryChanges);
    setZValue(1.0);
    setToolTip(m_Look.TypeLabel == m_Look.Title ? m_Look.Title
                                                : m_Look.Title + QLatin1Char('\n') + m_Look.TypeLabel);
}

OrvNodeItem::~OrvNodeItem()
{
    for (OrvWireItem* pWire : QVector<OrvWireItem*>(m_Wires))
        delete pWire;
}

void OrvNodeItem::refresh()
{
    if (!m_pNode)
        return;
    const OrvNodeLook Before = std::exchange(m_Look, OrvNodeLook::of(m_pNode));
    setToolTip(m_Look.TypeLabel == m_Look.Title ? m_Look.Title
                                                : m_Look.Title + QLatin1Char('\n') + m_Look.TypeLabel);
    if (Before.size() != m_Look.size())
        prepareGeometryChange();
    if (Before.Inputs != m_Look.Inputs || Before.Outputs != m_Look.Outputs) {
        for (OrvWireItem* pWire : qAsConst(m_Wires))
            pWire->follow();
    }
    update();
}

QRectF OrvNodeItem::boundingRect() const
{
    const qreal Margin = ConnectorRadius + 2.0;
    return body().adjusted(-Margin, -2.0, Margin, 2.0);
}

QPainterPath OrvNodeItem::shape() const
{
    QPainterPath Path;
    Path.addRect(body());
    return Path;
}

QPointF OrvNodeItem::inputPoint(const QString& InputName) const
{
    return mapToScene(m_Look.inputPoint(qMax(0, m_Look.Inputs.indexOf(InputName))));
}

QPointF OrvNodeItem::outputPoint(const QString& OutputName) const
{
    return mapToScene(m_Look.outputPoint(qMax(0, m_Look.Outputs.indexOf(OutputName))));
}

int OrvNodeItem::inputAt(const QPointF& Place) const
{
    for (int Row = 0; Row < m_Look.Inputs.size(); ++Row) {
        const QPointF Offset = Place - m_Look.inputPoint(Row);
        if (qAbs(Offset.x()) <= ConnectorReach && qAbs(Offset.y()) <= OrvNodeLook::RowHeight / 2.0)
            return Row;
    }
    return -1;
}

int OrvNodeItem::outputAt(const QPointF& Place) const
{
    for (int Row = 0; Row < m_Look.Outputs.size(); ++Row) {
        const QPointF Offset = Place - m_Look.outputPoint(Row);
        if (qAbs(Offset.x()) <= ConnectorReach && qAbs(Offset.y()) <= OrvNodeLook::RowHeight / 2.0)
            return Row;
    }
    return -1;
}

OrvWireItem* OrvNodeItem::wireInto(const QString& InputName) const
{
    for (OrvWireItem* pWire : m_Wires) {
        if (pWire->target() == this && pWire->inputName() == InputName)
            return pWire;
    }
    return nullptr;
}

void OrvNodeItem::setDropMark(DropMark Mark)
{
    if (std::exchange(m_DropMark, Mark) != Mark)
        update();
}

QVariant OrvNodeItem::itemChange(GraphicsItemChange Change, const QVariant& Value)
{
    if (Change == ItemPositionHasChanged) {
        for (OrvWireItem* pWire : qAsConst(m_Wires))
            pWire->follow();
    } else if (Change == ItemSelectedHasChanged) {
        for (OrvWireItem* pWire : qAsConst(m_Wires))
            pWire->update();
    }
    return QGraphicsItem::itemChange(Change, Value);
}

void OrvNodeItem::paint(QPainter* pPainter, const QStyleOptionGraphicsItem*, QWidget*)
{
    const qreal Scale = QStyleOptionGraphicsItem::levelOfDetailFromTransform(pPainter->worldTransform());
    if (!m_Look.Enabled)
        pPainter->setOpacity(DisabledOpacity);
    if (Scale < NearScale)
        paintFar(pPainter, Scale);
    else
        paintNear(pPainter);
}

QPen OrvNodeItem::outline() const
{
    if (m_DropMark != DropMark::None)
        return {m_DropMark == DropMark::Possible ? Possible : Refused, 2.0};
    return isSelected() ? QPen(OrvCustomFusionStyle::accentColor().lighter(130), 2.0) : QPen(BodyEdge, 1.0);
}

void OrvNodeItem::paintFar(QPainter* pPainter, qreal Scale) const
{
    pPainter->fillRect(body(), m_Look.Color);
    if (m_Look.Tag.isValid())
        pPainter->fillRect(QRectF(0.0, 0.0, 3.0 * TagWidth, body().height()), m_Look.Tag);
    if (Scale >= FarTextScale) {
        pPainter->setFont(sceneFont(qRound(FarTextPixels / Scale)));
        pPainter->setPen(TitleText);
        drawElided(pPainter, body().adjusted(16.0, 0.0, -8.0, 0.0), Qt::AlignLeft, m_Look.Title);
    }
    if (!isSelected() && m_DropMark == DropMark::None)
        return;
    QPen Pen = outline();
    Pen.setCosmetic(true);
    pPainter->setPen(Pen);
    pPainter->drawRect(body());
}

void OrvNodeItem::paintNear(QPainter* pPainter) const
{
    pPainter->setRenderHint(QPainter::Antialiasing);
    pPainter->setPen(Qt::NoPen);
    pPainter->setBrush(Body);
    pPainter->drawRoundedRect(body(), Corner, Corner);
    paintTitle(pPainter);
    paintRows(pPainter);
    pPainter->setPen(outline());
    pPainter->setBrush(Qt::NoBrush);
    pPainter->drawRoundedRect(body(), Corner, Corner);
    paintConnectors(pPainter);
}

QVector<QIcon> OrvNodeItem::markIcons() const
{
    static const QIcon Lock = OrvIcon::createIconFromFilename(QStringLiteral("Lock.png"));
    static const QIcon Hidden = OrvIcon::createIconFromFilename(QStringLiteral("Hide.png"));
    static const QIcon Cached = OrvIcon::createIconFromFilename(QStringLiteral("Bake.png"));
    QVector<QIcon> Icons;
    if (m_Look.Cached)
        Icons.append(Cached);
    if (m_Look.Locked)
        Icons.append(Lock);
    if (!m_Look.Enabled)
        Icons.append(Hidden);
    return Icons;
}

void OrvNodeItem::paintTitle(QPainter* pPainter) const
{
    QPainterPath Bar;
    Bar.addRoundedRect(titleBar().adjusted(0.0, 0.0, 0.0, Corner), Corner, Corner);
    pPainter->save();
    pPainter->setClipRect(titleBar(), Qt::IntersectClip);
    pPainter->fillPath(Bar, isSelected() ? m_Look.Color.lighter(120) : m_Look.Color);
    if (m_Look.Tag.isValid()) {
        pPainter->setClipRect(QRectF(0.0, 0.0, TagWidth, OrvNodeLook::TitleHeight), Qt::IntersectClip);
        pPainter->fillPath(Bar, m_Look.Tag);
    }
    pPainter->restore();

    const qreal IconTop = (OrvNodeLook::TitleHeight - IconEdge) / 2.0;
    QRectF Text = titleBar().adjusted(7.0, 0.0, -6.0, 0.0);
    pPainter->setRenderHint(QPainter::SmoothPixmapTransform);
    const auto drawIcon = [&](const QIcon& Icon, qreal Left) {
        Icon.paint(pPainter, QRectF(Left, IconTop, IconEdge, IconEdge).toRect());
    };
    if (!m_Look.Icon.isNull()) {
        drawIcon(m_Look.Icon, Text.left());
        Text.setLeft(Text.left() + IconEdge + 5.0);
    }
    for (const QIcon& Mark : markIcons()) {
        Text.setRight(Text.right() - IconEdge - 1.0);
        drawIcon(Mark, Text.right() + 1.0);
    }
    pPainter->setFont(titleFont());
    pPainter->setPen(TitleText);
    drawElided(pPainter, Text, Qt::AlignLeft, m_Look.Title);
}

void OrvNodeItem::paintRows(QPainter* pPainter) const
{
    const auto row = [](int Number) {
        return QRectF(9.0, OrvNodeLook::TitleHeight + OrvNodeLook::Padding + Number * OrvNodeLook::RowHeight,
            OrvNodeLook::Width - 18.0, OrvNodeLook::RowHeight);
    };
    pPainter->setFont(rowFont());
    pPainter->setPen(RowText);
    for (int Row = 0; Row < m_Look.Inputs.size(); ++Row)
        drawElided(pPainter, row(Row), Qt::AlignLeft, m_Look.Inputs[Row]);
    for (int Row = 0; Row < m_Look.Outputs.size(); ++Row)
        drawElided(pPainter, row(Row).adjusted(OrvNodeLook::Width / 2.0, 0.0, 0.0, 0.0), Qt::AlignRight,
            m_Look.Outputs[Row]);
    pPainter->setPen(DetailText);
    const bool Beside = m_Look.detailsBesideInputs();
    for (int Number = 0; Number < m_Look.Details.size(); ++Number) {
        const QRectF Area = row(m_Look.firstDetailRow() + Number);
        drawElided(pPainter, Beside ? Area.adjusted(44.0, 0.0, 0.0, 0.0) : Area,
            Beside ? Qt::AlignRight : Qt::AlignLeft, m_Look.Details[Number]);
    }
}

void OrvNodeItem::paintConnectors(QPainter* pPainter) const
{
    pPainter->setPen(QPen(BodyEdge, 1.0));
    const auto draw = [pPainter](const QPointF& Middle, bool Fed) {
        pPainter->setBrush(Fed ? ConnectorFed : ConnectorFree);
        pPainter->drawEllipse(Middle, ConnectorRadius, ConnectorRadius);
    };
    for (int Row = 0; Row < m_Look.Inputs.size(); ++Row)
        draw(m_Look.inputPoint(Row), wireInto(m_Look.Inputs[Row]) != nullptr);
    const bool Read = std::any_of(
        m_Wires.begin(), m_Wires.end(), [this](const OrvWireItem* pWire) { return pWire->source() == this; });
    for (int Row = 0; Row < m_Look.Outputs.size(); ++Row)
        draw(m_Look.outputPoint(Row), Read);
}
