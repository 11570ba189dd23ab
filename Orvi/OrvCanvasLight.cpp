#include "Orvi/OrvCanvasLight.h"

#include "Orvi/OrvCanvasView.h"

#include "OrvCore/Object/OrvSettings.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCoreModules/Window/OrvCustomFusionStyle.h"

#include <QtGui/QPainter>

#include <algorithm>
#include <cmath>

namespace {

const QString WantedKey = QStringLiteral("Light/HandleShown");
constexpr double Radius = 7.0; // pixels of the screen
constexpr double RayLength = 5.0;
constexpr int RayCount = 8;
constexpr double Reach = 15.0; // from its middle it can be taken hold of
constexpr double EdgeDistance = 20.0; // least, from the canvas's edge
constexpr double WheelFactor = 1.0 / 720.0; // powers of two a wheel unit: six notches double

QPointF inPicture(const OrvFlatShading::Light& Light, const OrvUdimLayout& Layout)
{
    const QSize Tile = Layout.tileSize();
    return {double(Light.U) * Tile.width(), Layout.extent().height() - double(Light.V) * Tile.height()};
}

} // namespace

OrvCanvasLight::OrvCanvasLight(QObject* pParent)
    : QObject(pParent)
    , m_IsWanted(OrvSettings().value(WantedKey, true).toBool())
{
    connect(&OrvFlatShading::instance(), &OrvFlatShading::changed, this, &OrvCanvasLight::changed);
    // The light is no part of a project, but what suited one would leave the next in the dark.
    connect(
        &OrvProjectManager::instance(), &OrvProjectManager::projectClosed, this, &OrvCanvasLight::resetLight);
}

void OrvCanvasLight::setPicture(const OrvUdimLayout& Layout)
{
    m_Layout = Layout;
    if (!m_Layout.isValid())
        endDrag();
}

QPointF OrvCanvasLight::place(const OrvCanvasView& View, double PixelRatio) const
{
    const QPointF Exact = View.toViewport(inPicture(OrvFlatShading::light(), m_Layout));
    const double Margin = EdgeDistance * PixelRatio;
    const QSizeF Size = View.viewport();
    return {std::max(Margin, std::min(Exact.x(), Size.width() - Margin)),
        std::max(Margin, std::min(Exact.y(), Size.height() - Margin))};
}

bool OrvCanvasLight::isAt(const QPointF& Point, const OrvCanvasView& View, double PixelRatio) const
{
    const QPointF Way = Point - place(View, PixelRatio);
    return isShown() && std::hypot(Way.x(), Way.y()) <= Reach * PixelRatio;
}

void OrvCanvasLight::beginDrag(const QPointF& Point, const OrvCanvasView& View, double PixelRatio)
{
    m_IsDragged = true;
    m_Before = OrvFlatShading::light();
    m_Grip = place(View, PixelRatio) - Point;
}

void OrvCanvasLight::dragTo(const QPointF& Point, const OrvCanvasView& View)
{
    if (!m_IsDragged)
        return;
    const QPointF Picture = View.toPicture(Point + m_Grip);
    const QSize Tile = m_Layout.tileSize();
    OrvFlatShading::Light Light = OrvFlatShading::light();
    Light.U = float(Picture.x() / Tile.width());
    Light.V = float((m_Layout.extent().height() - Picture.y()) / Tile.height());
    OrvFlatShading::instance().setLight(Light);
}

void OrvCanvasLight::cancelDrag()
{
    if (!m_IsDragged)
        return;
    m_IsDragged = false;
    OrvFlatShading::instance().setLight(m_Before);
}

void OrvCanvasLight::turnWheel(int Units, Qt::KeyboardModifiers Modifiers)
{
    OrvFlatShading::Light Light = OrvFlatShading::light();
    float& Turned = Modifiers & Qt::ControlModifier ? Light.Intensity : Light.Height;
    // From darkness no factor leads back.
    Turned = std::max(Turned, 0.02f) * float(std::exp2(Units * WheelFactor));
    OrvFlatShading::instance().setLight(Light);
}

void OrvCanvasLight::draw(
    QPainter& Painter, const OrvCanvasView& View, double PixelRatio, bool IsUnderPointer) const
{
    if (!isShown())
        return;
    const OrvFlatShading::Light Light = OrvFlatShading::light();
    const QPointF Centre = place(View, PixelRatio);
    const bool IsHeld = IsUnderPointer || m_IsDragged;
    Painter.save();
    Painter.setRenderHint(QPainter::Antialiasing);
    Painter.setOpacity(IsHeld ? 1.0 : 0.75);
    if (IsHeld) {
        // How far it stands above the picture, laid flat.
        const double Height = double(Light.Height) * m_Layout.tileSize().width() * View.zoom();
        Painter.setBrush(Qt::NoBrush);
        Painter.setPen(QPen(QColor(0, 0, 0, 110), 3.0 * PixelRatio));
        Painter.drawEllipse(Centre, Height, Height);
        Painter.setPen(QPen(QColor(255, 255, 255, 150), PixelRatio, Qt::DashLine));
        Painter.drawEllipse(Centre, Height, Height);
    }
    // A small sun; dark around light shows on every ground.
    const float Most = std::max({Light.Color[0], Light.Color[1], Light.Color[2], 1e-3f});
    const QColor Fill = QColor::fromRgbF(
        double(Light.Color[0] / Most), double(Light.Color[1] / Most), double(Light.Color[2] / Most));
    const QColor Line = IsHeld ? OrvCustomFusionStyle::accentColor() : QColor(255, 255, 255, 230);
    for (const bool IsShadow : {true, false}) {
        Painter.setPen(QPen(IsShadow ? QColor(0, 0, 0, 170) : Line, (IsShadow ? 4.5 : 2.0) * PixelRatio,
            Qt::SolidLine, Qt::RoundCap));
        Painter.setBrush(IsShadow ? Qt::NoBrush : QBrush(Fill));
        for (int Ray = 0; Ray < RayCount; ++Ray) {
            const double Angle = 2.0 * M_PI * Ray / RayCount;
            const QPointF Way(std::cos(Angle) * PixelRatio, std::sin(Angle) * PixelRatio);
            Painter.drawLine(Centre + Way * (Radius + 3.5), Centre + Way * (Radius + 3.5 + RayLength - 2.0));
        }
        Painter.drawEllipse(Centre, Radius * PixelRatio, Radius * PixelRatio);
    }
    Painter.restore();
}

QString OrvCanvasLight::toolTip() const
{
    const OrvFlatShading::Light Light = OrvFlatShading::light();
    return tr("Light: drag it to move it, turn the wheel to raise or lower it, with Ctrl to brighten or dim "
              "it, double-click to reset it\nHeight %1 tiles, brightness %2 %")
        .arg(double(Light.Height), 0, 'f', 2)
        .arg(std::lround(double(Light.Intensity) * 100.0));
}

void OrvCanvasLight::toggleHandle()
{
    m_IsWanted = !m_IsWanted;
    OrvSettings().setValue(WantedKey, m_IsWanted);
    Q_EMIT changed();
}

void OrvCanvasLight::resetLight()
{
    OrvFlatShading::instance().resetLight();
}

#include "moc_OrvCanvasLight.cpp"
