#include "Orvi/OrvBrushTool.h"

#include "Orvi/OrvBrushStroke.h"
#include "Orvi/OrvCanvasSelection.h"

#include "OrvCore/Channels/OrvImageSettings.h"
#include "OrvCore/Layers/OrvEditObstacle.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Object/OrvSettings.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"

#include "OrvDdi/Image/OrvImageSet.h"

#include <cmath>

namespace {

const QString SettingsGroup = QStringLiteral("Brush");
constexpr int MessageDuration = 5000; // ms

} // namespace

OrvBrushTool::OrvBrushTool(const OrvCanvasSelection* pSelection, QObject* pParent)
    : QObject(pParent)
    , m_pSelection(pSelection)
{
    load();
}

OrvBrushTool::~OrvBrushTool()
{
    store();
}

void OrvBrushTool::load()
{
    OrvSettings Settings;
    Settings.beginGroup(SettingsGroup);
    m_Brush.setSize(Settings.value(QStringLiteral("Size"), m_Brush.size()).toDouble());
    m_Brush.setHardness(Settings.value(QStringLiteral("Hardness"), m_Brush.hardness()).toDouble());
    m_Brush.setOpacity(Settings.value(QStringLiteral("Opacity"), m_Brush.opacity()).toDouble());
    m_Brush.setPressureSetsSize(
        Settings.value(QStringLiteral("PressureSetsSize"), m_Brush.pressureSetsSize()).toBool());
    m_Brush.setPressureSetsOpacity(
        Settings.value(QStringLiteral("PressureSetsOpacity"), m_Brush.pressureSetsOpacity()).toBool());
    m_Brush.setColor(QColor(Settings.value(QStringLiteral("Color"), m_Brush.color().name()).toString()));
}

void OrvBrushTool::store() const
{
    OrvSettings Settings;
    Settings.beginGroup(SettingsGroup);
    Settings.setValue(QStringLiteral("Size"), m_Brush.size());
    Settings.setValue(QStringLiteral("Hardness"), m_Brush.hardness());
    Settings.setValue(QStringLiteral("Opacity"), m_Brush.opacity());
    Settings.setValue(QStringLiteral("PressureSetsSize"), m_Brush.pressureSetsSize());
    Settings.setValue(QStringLiteral("PressureSetsOpacity"), m_Brush.pressureSetsOpacity());
    Settings.setValue(QStringLiteral("Color"), m_Brush.color().name());
}

void OrvBrushTool::setBrush(const OrvBrush& Brush)
{
    if (m_Brush == Brush)
        return;
    m_Brush = Brush;
    Q_EMIT brushChanged();
}

void OrvBrushTool::growBrush()
{
    OrvBrush Brush = m_Brush;
    Brush.grow();
    setBrush(Brush);
}

void OrvBrushTool::shrinkBrush()
{
    OrvBrush Brush = m_Brush;
    Brush.shrink();
    setBrush(Brush);
}

void OrvBrushTool::toggleEraser()
{
    OrvBrush Brush = m_Brush;
    Brush.setErases(!Brush.erases());
    setBrush(Brush);
}

OrvSnChannelInputNode* OrvBrushTool::target(QString& Reason)
{
    const OrvLayerManager& Layers = OrvLayerManager::instance();
    const OrvLayer* pLayer = Layers.currentLayer();
    auto* pNode = qobject_cast<OrvSnChannelInputNode*>(Layers.currentComponent());
    if (!pNode || !pNode->imageSet() || !pNode->network()) {
        Reason = pLayer
            ? tr("\"%1\" holds no pixels of its own: choose a paint layer or a mask").arg(pLayer->name())
            : tr("Choose a paint layer or a mask to paint on");
        return nullptr;
    }
    if (!OrvLayerUtils::isModificationAllowedAt(pNode)) {
        const QString Obstacle = OrvEditObstacle::of(pLayer);
        Reason = tr("Nothing can be painted here: %1")
                     .arg(Obstacle.isEmpty() ? OrvEditObstacle::at(pNode) : Obstacle);
        return nullptr;
    }
    return pNode;
}

bool OrvBrushTool::begin(
    const QPointF& Point, bool FromLastEnd, const OrvUdimLayout& Picture, double Pressure)
{
    // A macro that somebody holds open would swallow the stroke's undo step.
    if (m_pStroke || OrvUndoManager::instance().isInMacro())
        return false;
    QString Reason;
    OrvSnChannelInputNode* pNode = target(Reason);
    if (!pNode) {
        OrvStatusManager::instance().showMessage(Reason, MessageDuration);
        return false;
    }
    const OrvUdimLayout OfChannel = OrvImageSettings::ofLayer(pNode).Layout;
    if (Picture.isValid() && Picture.tiles() != OfChannel.tiles()) {
        OrvStatusManager::instance().showMessage(
            tr("What you want to paint on has other tiles than the picture: show its channel to paint"),
            MessageDuration);
        return false;
    }
    const OrvLayer* pLayer = OrvLayerManager::instance().currentLayer();
    if (pLayer && !pLayer->isVisible()) {
        OrvStatusManager::instance().showMessage(
            tr("\"%1\" is hidden: what you paint will show with the layer").arg(pLayer->name()),
            MessageDuration);
    }
    const OrvUdimLayout Layout = pNode->imageSet()->layout();
    const QSize Seen = Picture.isValid() ? Picture.tileSize() : OfChannel.tileSize();
    const bool Line = FromLastEnd && m_HasLastEnd && m_LastTileSize == Seen;
    m_LastTileSize = Seen;
    m_ScaleX = double(Layout.tileSize().width()) / Seen.width();
    m_ScaleY = double(Layout.tileSize().height()) / Seen.height();
    OrvBrush Brush = m_Brush;
    Brush.setSize(m_Brush.size() * std::sqrt(m_ScaleX * m_ScaleY));
    // A pen that only just touches says nothing about how broad a line is meant to be.
    m_pStroke = std::make_unique<OrvBrushStroke>(pNode, Brush, m_pSelection->coverage(Layout),
        onImage(Line ? m_LastEnd : Point), Line ? 1.0 : Pressure);
    m_LastEnd = Point;
    if (Line)
        m_pStroke->moveTo(onImage(Point));
    return true;
}

void OrvBrushTool::moveTo(const QPointF& Point, double Pressure)
{
    if (!m_pStroke)
        return;
    m_pStroke->moveTo(onImage(Point), Pressure);
    m_LastEnd = Point;
}

void OrvBrushTool::end()
{
    if (!m_pStroke)
        return;
    m_pStroke->finish();
    if (!m_pStroke->hasPainted() && !m_pSelection->area().isEmpty()) {
        OrvStatusManager::instance().showMessage(
            tr("Only what is selected is painted on: Select > None lifts that"), MessageDuration);
    }
    m_pStroke.reset();
    m_HasLastEnd = true;
}

void OrvBrushTool::cancel()
{
    if (!m_pStroke)
        return;
    m_pStroke->cancel();
    m_pStroke.reset();
}

#include "moc_OrvBrushTool.cpp"
