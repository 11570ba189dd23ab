#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewItemRowWidget.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Menus/OrvMenu.h"
#include "OrvCoreModules/Menus/OrvMenuManager.h"
#include "OrvCoreModules/Menus/OrvToggleAction.h"
#include "OrvCoreModules/Widgets/OrvEditLabel.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerComponentPushButton.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerEditScope.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerGroupFolding.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerPropertyDialog.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerRowClicks.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerRowComponents.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerRowContents.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerRowCost.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerRowIcons.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerRowLock.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerStackPopupButton.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerTreeView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewUtils.h"

#include <QtGui/QContextMenuEvent>
#include <QtWidgets/QLabel>
#include <QtWidgets/QToolButton>

using namespace OrvLayerViewContext;

namespace {

constexpr int UsualWidth = 240;

void report(int Line, const QString& Message)
{
    OrvDebug("OrvLayerViewItemRowWidget", Line, Message, false, false);
}

} // namespace

OrvLayerViewItemRowWidget::OrvLayerViewItemRowWidget(OrvLayer* pLayer, OrvLayerView* pLayerView)
    : QWidget(pLayerView->treeView()->viewport())
    , m_Layer(pLayer)
    , m_LayerView(pLayerView)
{
}

OrvLayerViewItemRowWidget::~OrvLayerViewItemRowWidget() = default;

OrvLayer* OrvLayerViewItemRowWidget::layer() const
{
    return m_Layer;
}

void OrvLayerViewItemRowWidget::setLayer(OrvLayer* pLayer)
{
    if (m_Layer)
        m_Layer->disconnect(this);
    m_Layer = pLayer;
    m_FilteredName = QString();
    m_ContentsShowLayer = false;
    // Rows out of view, maybe thousands, wait until they are seen.
    if (isVisible())
        fillContents();
}

bool OrvLayerViewItemRowWidget::checkLayer(int Line) const
{
    if (!m_Layer)
        report(Line, QStringLiteral("m_Layer is NULL"));
    return m_Layer;
}

QSize OrvLayerViewItemRowWidget::sizeHint() const
{
    return {UsualWidth, RowHeight};
}

QSize OrvLayerViewItemRowWidget::minimumSizeHint() const
{
    return {0, RowHeight};
}

void OrvLayerViewItemRowWidget::paintEvent(QPaintEvent*)
{
    // Children that are made and shown here are painted in this very pass.
    ensureContents();
}

void OrvLayerViewItemRowWidget::showEvent(QShowEvent* pEvent)
{
    fillContents();
    QWidget::showEvent(pEvent);
}

void OrvLayerViewItemRowWidget::resizeEvent(QResizeEvent* pEvent)
{
    fitContents();
    QWidget::resizeEvent(pEvent);
}

void OrvLayerViewItemRowWidget::fitContents()
{
    // Most marks are none that shader layers have: their names get the room at any width.
    const QWidget* pTree = m_Layer && m_Layer->isShaderLayer() ? nullptr : parentWidget();
    if (m_pContents)
        m_pContents->fitTo(pTree ? pTree->width() : 0);
}

void OrvLayerViewItemRowWidget::editName()
{
    ensureContents();
    if (m_pContents)
        m_pContents->pNameLabel->edit();
}

void OrvLayerViewItemRowWidget::ensureContents()
{
    if (m_pContents || !m_Layer) {
        fillContents();
        return;
    }
    m_pContents = std::make_unique<OrvLayerRowContents>(this);
    connectContents();
    fillContents();
    m_pContents->show();
}

void OrvLayerViewItemRowWidget::fillContents()
{
    if (!m_pContents || m_ContentsShowLayer || !m_Layer)
        return;
    m_ContentsShowLayer = true;
    connectLayer();
    updateContents();
    fitContents();
}

void OrvLayerViewItemRowWidget::connectContents()
{
    connect(m_pContents->pVisibilityButton, SIGNAL(pressed()), this, SLOT(onVisibilityButtonPressed()));
    connect(m_pContents->pNameLabel, SIGNAL(textChanged(QString)), this, SLOT(setName(QString)));
    connect(m_pContents->pBakePointButton, SIGNAL(clicked()), this, SLOT(makePaintComponentCurrent()));
    connect(m_pContents->pPaintButton, SIGNAL(clicked()), this, SLOT(makePaintComponentCurrent()));
    connect(m_pContents->pMaskStackButton, SIGNAL(clicked()), this, SLOT(onMaskStackClicked()));
    connect(m_pContents->pMaskButton, SIGNAL(clicked()), this, SLOT(onMaskComponentClicked()));
    connect(m_pContents->pAdjustmentStackButton, SIGNAL(clicked()), this, SLOT(onAdjustmentStackClicked()));
    connect(m_pContents->pSharedButton, SIGNAL(clicked()), this, SLOT(showSharerList()));
    connect(m_pContents->pSharedChannelButton, SIGNAL(clicked()), this, SLOT(showSharerList()));
    connect(m_pContents->pLockAction, SIGNAL(checkedChanged(bool)), this, SLOT(onLockedChanged(bool)));
    // Elsewhere in the row the tree gets the press.
    for (const QAbstractButton* pComponent :
        std::initializer_list<QAbstractButton*>{m_pContents->pBakePointButton, m_pContents->pPaintButton,
            m_pContents->pMaskStackButton, m_pContents->pMaskButton, m_pContents->pAdjustmentStackButton})
        connect(pComponent, &QAbstractButton::pressed, m_LayerView, &OrvLayerView::makeActive);
    connect(&OrvLayerManager::instance(), SIGNAL(currentComponentChanged(OrvSnBaseNode*, OrvSnBaseNode*)),
        this, SLOT(updateComponentButtons()));
}

void OrvLayerViewItemRowWidget::connectLayer()
{
    // The layer sends its managers' signals for itself alone: with thousands of rows at the managers, every
    // change would ask every row.
    connect(m_Layer, SIGNAL(enabledAsBoolChanged(bool)), this, SLOT(updateVisibilityIcon()));
    connect(m_Layer, SIGNAL(bakePointStateChanged()), this, SLOT(updateBakePointComponentButton()));
    connect(m_Layer, SIGNAL(nameChanged(QString)), this, SLOT(updateEditLabelText()));
    connect(m_Layer, SIGNAL(colorChanged(QColor)), this, SLOT(updateColorTagWidget()));
    connect(m_Layer, SIGNAL(missingGeoChannelsRefreshed(QString)), this, SLOT(updateCustomProceduralIcon()));
    connect(m_Layer, SIGNAL(missingGeoChannelsRefreshed(QString)), this, SLOT(updateMaterialButton()));
    connect(m_Layer, SIGNAL(proceduralTypeChanged(int)), this, SLOT(updateCustomProceduralIcon()));
    connect(m_Layer, SIGNAL(maskEnabledChanged(bool)), this, SLOT(updateMaskIcon()));
    connect(m_Layer, SIGNAL(adjustmentEnabledChanged(bool)), this, SLOT(updateAdjustmentIcon()));
    connect(m_Layer, SIGNAL(layerStateRefreshed(OrvLayer*)), this, SLOT(onLayerStateRefreshed()));
    connect(m_Layer, SIGNAL(layerStateRefreshed(OrvLayer*)), this, SLOT(updateCostWidget()));
    connect(m_Layer, SIGNAL(cacheStateChanged()), this, SLOT(updateCostWidget()));
    connect(m_Layer, SIGNAL(selectedChanged(bool, OrvLayer*)), this, SLOT(onSelectedChanged(bool)));
    connect(m_Layer, SIGNAL(nodeEnabledChanged(OrvSnBaseNode*, int)), this,
        SLOT(onNodeEnabledChanged(OrvSnBaseNode*)));
}

void OrvLayerViewItemRowWidget::updateContents()
{
    updateEditLabelText();
    updateColorTagWidget();
    updateMaskIcon();
    updateAdjustmentIcon();
    onLayerStateRefreshed();
    updateCostWidget();
    onSelectedChanged(m_Layer->isSelected());
}

void OrvLayerViewItemRowWidget::onLayerStateRefreshed()
{
    updateBakePointComponentButton();
    updatePaintButton();
    updateComponentButtons();
    OrvLayerRowComponents::showSharing(*m_pContents, m_Layer);
    updateLock();
    // A lock around it takes its visibility out of the user's hands too.
    updateVisibilityIcon();
}

void OrvLayerViewItemRowWidget::setName(QString Name)
{
    if (!checkLayer(__LINE__))
        return;
    Name = Name.trimmed();
    if (!Name.isEmpty() && Name != m_Layer->name()) {
        OrvUndoManager::AutoMacro Macro(tr("Rename Layer '%1' to '%2'").arg(m_Layer->name(), Name));
        m_Layer->setName(Name);
    }
    // The label shows what was typed, whether it was taken or not.
    updateEditLabelText();
}

void OrvLayerViewItemRowWidget::updateEditLabelText()
{
    if (!m_pContents || !checkLayer(__LINE__))
        return;
    const QString Name = m_Layer->name();
    m_pContents->pNameLabel->setText(Name);
    if (m_FilteredName.isNull())
        m_pContents->pNameLabel->clearDisplayText();
    else
        m_pContents->pNameLabel->setDisplayText(m_FilteredName, Name);
}

void OrvLayerViewItemRowWidget::showFilteredName(const QString& RichText, const QString& PlainName)
{
    m_FilteredName = RichText;
    if (m_pContents)
        m_pContents->pNameLabel->setDisplayText(RichText, PlainName);
}

void OrvLayerViewItemRowWidget::showPlainName()
{
    m_FilteredName = QString();
    if (m_pContents)
        m_pContents->pNameLabel->clearDisplayText();
}

bool OrvLayerViewItemRowWidget::showsGroup() const
{
    return OrvLayerStreamUtils::isLayerGroup(m_Layer, m_LayerView->layerStack());
}

bool OrvLayerViewItemRowWidget::isExpanded() const
{
    if (!checkLayer(__LINE__))
        return false;
    if (!showsGroup()) {
        report(__LINE__,
            QStringLiteral(
                "[ !! ] Assertion 'OrvLayerStreamUtils::isLayerGroup(m_Layer, m_LayerView->layerStack())' "
                "failed: This should not be called for non-layer group %1")
                .arg(m_Layer->name()));
        return false;
    }
    return OrvLayerGroupFolding::isUnfolded(m_Layer);
}

void OrvLayerViewItemRowWidget::setExpanded(bool Expanded)
{
    if (checkLayer(__LINE__) && showsGroup())
        OrvLayerGroupFolding::setUnfolded(m_Layer, Expanded);
}

void OrvLayerViewItemRowWidget::onVisibilityButtonPressed()
{
    if (!checkLayer(__LINE__))
        return;
    OrvLayerRowClicks::pressEye(this);
    updateVisibilityIcon();
}

QRect OrvLayerViewItemRowWidget::eyeGeometry() const
{
    return m_pContents ? m_pContents->pVisibilityButton->geometry() : QRect();
}

bool OrvLayerViewItemRowWidget::isEyeDown() const
{
    return m_pContents && m_pContents->pVisibilityButton->isDown();
}

void OrvLayerViewItemRowWidget::updateVisibilityIcon()
{
    if (!m_pContents || !checkLayer(__LINE__))
        return;
    const bool Visible = m_Layer->isVisible();
    QStringList Hints{
        Visible ? tr("Hide the layer") : tr("Show the layer"), tr("Alt + Click to show it alone")};
    if (Visible && OrvLayerStreamUtils::isMultiChannelMergeLayer(m_Layer))
        Hints.append(m_Layer->isVisibleHere() ? tr("Shift + Click to hide it in this channel")
                                              : tr("Shift + Click to show it in this channel"));
    m_pContents->pVisibilityButton->setIcon(OrvLayerRowIcons::visibility(m_Layer->isVisibleHere()));
    m_pContents->pVisibilityButton->setToolTip(Hints.join(QLatin1Char('\n')));
    m_pContents->pVisibilityButton->setEnabled(m_Layer->isVisibilityChangeable());
}

void OrvLayerViewItemRowWidget::onNodeEnabledChanged(OrvSnBaseNode* pNode)
{
    if (m_Layer && pNode == m_Layer->blendNode())
        updateVisibilityIcon();
}

void OrvLayerViewItemRowWidget::updateColorTagWidget()
{
    if (!checkLayer(__LINE__))
        return;
    if (!m_pContents) {
        report(__LINE__, QStringLiteral("Color Tag Is NULL"));
        return;
    }
    const QColor Color = m_Layer->color();
    OrvLayerViewUtils::setStyleSheet(m_pContents->pColorTag,
        Color.isValid()
            ? QStringLiteral("QLabel { border-radius : 3px; background-color : rgb(%1,%2,%3); }")
                  .arg(Color.red())
                  .arg(Color.green())
                  .arg(Color.blue())
            : QStringLiteral("QLabel { border-radius : 3px; background-color : rgba(0,0,0,0); }"));
}

void OrvLayerViewItemRowWidget::updateBakePointComponentButton()
{
    if (!m_pContents || !checkLayer(__LINE__))
        return;
    OrvLayerRowComponents::showBakePoint(*m_pContents, m_Layer);
}

void OrvLayerViewItemRowWidget::updatePaintButton()
{
    if (!m_pContents || !checkLayer(__LINE__))
        return;
    OrvLayerRowComponents::showPaint(*m_pContents, m_Layer, m_LayerView->layerStack());
}

void OrvLayerViewItemRowWidget::updateCustomProceduralIcon()
{
    updatePaintButton();
    updateMaskIcon();
}

void OrvLayerViewItemRowWidget::updateMaterialButton()
{
    updatePaintButton();
}

void OrvLayerViewItemRowWidget::updateComponentButtons()
{
    // The manager's signal reaches rows whose layers are gone.
    if (m_pContents && m_Layer)
        OrvLayerRowComponents::highlightCurrent(*m_pContents, m_Layer);
}

void OrvLayerViewItemRowWidget::updateMaskIcon()
{
    if (!m_pContents || !checkLayer(__LINE__))
        return;
    OrvLayerRowComponents::showMask(*m_pContents, m_Layer);
    updateComponentButtons();
}

void OrvLayerViewItemRowWidget::updateAdjustmentIcon()
{
    if (!m_pContents || !checkLayer(__LINE__))
        return;
    OrvLayerRowComponents::showAdjustmentStack(*m_pContents, m_Layer);
}

void OrvLayerViewItemRowWidget::updateCostWidget()
{
    if (!m_pContents || !checkLayer(__LINE__))
        return;
    OrvLayerViewUtils::setStyleSheet(m_pContents->pCost, OrvLayerRowCost::styleSheet(m_Layer));
    m_pContents->pCost->setToolTip(m_Layer->costDescription());
}

void OrvLayerViewItemRowWidget::onSelectedChanged(bool Selected)
{
    if (m_Selected == Selected)
        return;
    m_Selected = Selected;
    // Texts of a selected row take the colour that is readable on the selection.
    setBackgroundRole(Selected ? QPalette::Highlight : QPalette::NoRole);
    Q_EMIT selectedChanged(Selected, m_Layer);
}

void OrvLayerViewItemRowWidget::onLockedChanged(bool Locked)
{
    if (!checkLayer(__LINE__))
        return;
    if (OrvLayerRowLock::isShownLocked(m_Layer) == Locked)
        return;
    // The switch has changed by itself already; it goes with the layer, also while the user is asked.
    updateLock();
    // A refresh while the user is asked may take the row away.
    const QPointer<OrvLayerViewItemRowWidget> pThis = this;
    OrvLayerRowLock::setLocked(OrvLayerEditScope::of(m_Layer, m_LayerView->layerStack()), Locked);
    if (pThis)
        updateLock();
}

void OrvLayerViewItemRowWidget::updateLock()
{
    if (!m_pContents || !checkLayer(__LINE__))
        return;
    const bool Locked = OrvLayerRowLock::isShownLocked(m_Layer);
    m_pContents->pLockAction->setCheckedState(Locked);
    m_pContents->pLockAction->setToolTip(Locked ? tr("Unlock the layer") : tr("Lock the layer"));
    m_pContents->pNameLabel->setEditable(!Locked);
}

void OrvLayerViewItemRowWidget::makePaintComponentCurrent()
{
    if (checkLayer(__LINE__))
        OrvLayerRowClicks::choosePaint(this);
}

void OrvLayerViewItemRowWidget::onMaskComponentClicked()
{
    if (checkLayer(__LINE__))
        OrvLayerRowClicks::chooseMask(this);
}

void OrvLayerViewItemRowWidget::onMaskStackClicked()
{
    if (checkLayer(__LINE__))
        OrvLayerRowClicks::chooseMaskStack(this);
}

void OrvLayerViewItemRowWidget::onAdjustmentStackClicked()
{
    if (checkLayer(__LINE__))
        OrvLayerRowClicks::chooseAdjustmentStack(this);
}

void OrvLayerViewItemRowWidget::showSharerList()
{
    if (checkLayer(__LINE__))
        OrvLayerRowClicks::showSharers(this);
}

void OrvLayerViewItemRowWidget::showLayerProperties()
{
    if (!checkLayer(__LINE__))
        return;
    auto* pDialog = new OrvLayerPropertyDialog(m_Layer, m_LayerView);
    pDialog->setAttribute(Qt::WA_DeleteOnClose);
    pDialog->show();
}

void OrvLayerViewItemRowWidget::contextMenuEvent(QContextMenuEvent* pEvent)
{
    // Commands, and refreshing above all, may take the row away: the menu belongs to the view.
    OrvMenu* pMenu = OrvMenuManager::instance().makeMenu(
        QStringLiteral("MainWindow"), QStringLiteral("&Layers"), QString());
    pMenu->setParent(m_LayerView, pMenu->windowFlags());
    pMenu->setAttribute(Qt::WA_DeleteOnClose);
    pMenu->addSeparator();
    connect(pMenu->addAction(tr("Layer Properties")), SIGNAL(triggered()), this, SLOT(showLayerProperties()));
    if (QAction* pAddBakePoint
        = OrvActionTreeManager::instance().findAction(LayersPath + QStringLiteral("/Add Bake Point")))
        pMenu->addAction(pAddBakePoint);
    connect(pMenu->addAction(tr("Refresh Layer View")), SIGNAL(triggered()), m_LayerView,
        SLOT(clearAndRefresh()));
    pMenu->popup(pEvent->globalPos());
}

#include "moc_OrvLayerViewItemRowWidget.cpp"
