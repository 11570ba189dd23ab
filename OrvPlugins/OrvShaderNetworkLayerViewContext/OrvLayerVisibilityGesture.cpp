#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerVisibilityGesture.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerEditScope.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerTreeView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewItemRowWidget.h"

#include <QtGui/QMouseEvent>
#include <QtWidgets/QApplication>

namespace {

constexpr int SweepStep = OrvLayerViewItemRowWidget::RowHeight / 2; // leaves out no row

QString macroText(const QVector<QPointer<OrvLayer>>& Layers, bool Visible)
{
    using Row = OrvLayerViewItemRowWidget;
    if (Layers.size() == 1 && Layers.first())
        return (Visible ? Row::tr("Show Layer '%1'") : Row::tr("Hide Layer '%1'"))
            .arg(Layers.first()->name());
    return Visible ? Row::tr("Show Layers") : Row::tr("Hide Layers");
}

} // namespace

OrvLayerVisibilityGesture::OrvLayerVisibilityGesture(OrvLayerView* pLayerView)
    : QObject(pLayerView)
    , m_LayerView(pLayerView)
{
}

OrvLayerVisibilityGesture::~OrvLayerVisibilityGesture()
{
    finish();
}

void OrvLayerVisibilityGesture::press(OrvLayer* pLayer, const QPoint& GlobalPosition)
{
    begin(pLayer);
    m_Position = m_LayerView->treeView()->viewport()->mapFromGlobal(GlobalPosition);
    // The pressed eye gets all of the mouse, but it may go before the mouse is released.
    qApp->installEventFilter(this);
}

void OrvLayerVisibilityGesture::toggle(OrvLayer* pLayer)
{
    begin(pLayer);
    finish();
}

void OrvLayerVisibilityGesture::toggleAlone(OrvLayer* pLayer)
{
    finish();
    m_Solo.toggle(pLayer, m_LayerView->layerStack());
}

void OrvLayerVisibilityGesture::begin(OrvLayer* pLayer)
{
    finish();
    m_Active = true;
    m_Visible = !pLayer->isVisible();
    for (OrvLayer* pInScope : OrvLayerEditScope::of(pLayer, m_LayerView->layerStack()))
        applyTo(pInScope);
}

void OrvLayerVisibilityGesture::applyTo(OrvLayer* pLayer)
{
    if (pLayer->isVisible() == m_Visible || !pLayer->isVisibilityChangeable())
        return;
    m_Changed.append(pLayer);
    // Shown at once; the one step that is recorded comes at the end.
    const OrvUndoManager::NoRecording Unrecorded;
    pLayer->setVisible(m_Visible);
}

void OrvLayerVisibilityGesture::finish()
{
    if (!m_Active)
        return;
    m_Active = false;
    qApp->removeEventFilter(this);
    m_Changed.removeAll(nullptr);
    const QVector<QPointer<OrvLayer>> Changed = std::move(m_Changed);
    m_Changed.clear();
    const OrvUndoManager::AutoMacro Macro(macroText(Changed, m_Visible));
    {
        const OrvUndoManager::NoRecording Unrecorded;
        for (const QPointer<OrvLayer>& pLayer : Changed)
            pLayer->setVisible(!m_Visible);
    }
    for (const QPointer<OrvLayer>& pLayer : Changed)
        pLayer->setVisible(m_Visible);
}

bool OrvLayerVisibilityGesture::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    switch (pEvent->type()) {
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease:
        if (pWatched->isWidgetType()) {
            const auto* pMouseEvent = static_cast<const QMouseEvent*>(pEvent);
            if (pEvent->type() == QEvent::MouseMove && pMouseEvent->buttons() & Qt::LeftButton) {
                sweepTo(m_LayerView->treeView()->viewport()->mapFromGlobal(pMouseEvent->globalPos()));
                // Nobody else is to make anything of it: neither the eye that is entered again nor the tree.
                return true;
            }
            finish();
        }
        break;
    case QEvent::ShortcutOverride:
    case QEvent::ApplicationDeactivate:
        // A command must find the document whole.
        finish();
        break;
    default:
        break;
    }
    return QObject::eventFilter(pWatched, pEvent);
}

void OrvLayerVisibilityGesture::sweepTo(const QPoint& Position)
{
    const QPoint From = m_Position;
    m_Position = Position;
    const QPoint Way = Position - From;
    const int Steps = qMax(1, (qAbs(Way.y()) + SweepStep - 1) / SweepStep);
    for (int Step = 1; Step <= Steps; ++Step) {
        OrvLayerViewItemRowWidget* pRow = rowWithEyeAt(From + Way * Step / Steps);
        if (pRow && pRow->layer())
            applyTo(pRow->layer());
    }
}

OrvLayerViewItemRowWidget* OrvLayerVisibilityGesture::rowWithEyeAt(const QPoint& Position) const
{
    OrvLayerViewItemRowWidget* pRow = m_LayerView->rowWidget(m_LayerView->treeView()->indexAt(Position));
    // Rows of different depth have their eyes in different columns: to the left of an eye nothing else is to
    // be met.
    return pRow && Position.x() <= pRow->x() + pRow->eyeGeometry().right() ? pRow : nullptr;
}

#include "moc_OrvLayerVisibilityGesture.cpp"
