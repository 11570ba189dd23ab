#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputViewItemRowWidget.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvCoreModules/Menus/OrvToggleAction.h"
#include "OrvCoreModules/Widgets/OrvEditLabel.h"
#include "OrvCoreModules/Window/OrvIcon.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvCoreModules/Window/OrvPixmap.h"
#include "OrvCoreModules/Window/OrvResourceInfo.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerStackPopupButton.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvSharerListPopup.h"

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QToolButton>

namespace {

constexpr int MarkWidth = 16;
constexpr int ButtonSize = 20;
constexpr int IconSize = 16;

QPixmap markPixmap(const QString& FileName)
{
    return FileName.isEmpty() ? QPixmap()
                              : OrvPixmap::createQPixmapFromPath(OrvResourceInfo::iconPath() + FileName);
}

QString depthIconName(GLenum Depth)
{
    switch (Depth) {
    case GL_UNSIGNED_BYTE:
        return QStringLiteral("/Depth8Bit.12x12.png");
    case GL_HALF_FLOAT:
        return QStringLiteral("/Depth16Bit.12x12.png");
    case GL_FLOAT:
        return QStringLiteral("/Depth32Bit.12x12.png");
    default:
        return {};
    }
}

} // namespace

OrvShaderInputViewItemRowWidget::OrvShaderInputViewItemRowWidget(
    OrvShaderInputView* pView, OrvShaderInput* pShaderInput)
    : QWidget(pView)
    , m_View(pView)
    , m_ShaderInput(pShaderInput)
{
    setFixedHeight(RowHeight);
    setToolTip(
        tr("Use Shift (or Ctrl+Shift) and left-mouse drag&drop to share a channel into a layer stack.\n"
           "Use Alt (or Ctrl+Alt) and left-mouse drag&drop to copy a channel within Channels palette."));
}

void OrvShaderInputViewItemRowWidget::showEvent(QShowEvent* pEvent)
{
    // Of thousands of rows only some are ever seen.
    if (!m_NameLabel && m_ShaderInput) {
        createLayout();
        connectShaderInput();
        setDepthLabelIcon();
        setColorspaceLabelIcon();
        setPopupLayerStackButtonIcon();
        refresh();
    }
    QWidget::showEvent(pEvent);
}

void OrvShaderInputViewItemRowWidget::createLayout()
{
    m_NameLabel = new OrvEditLabel(QString(), this);
    m_DepthLabel = createMark();
    m_ColorspaceLabel = createMark();
    m_LayerStackButton = createButton(QString());
    m_LayerStackButton->setStyleSheet(
        QStringLiteral("QToolButton, QToolButton:hover, QToolButton:pressed { border: none; }"));
    m_SharedButton = createButton(tr("Show the layers that share the channel"));
    m_SharedButton->setIcon(OrvIcon::createIconFromFilename(QStringLiteral("linked.16x16.png")));
    QSizePolicy KeepsColumn = m_SharedButton->sizePolicy();
    KeepsColumn.setRetainSizeWhenHidden(true);
    m_SharedButton->setSizePolicy(KeepsColumn);
    m_SharedButton->hide();
    m_LockAction = new OrvToggleAction(OrvIcon::createIconFromFilename(QStringLiteral("Lock.png")),
        OrvIcon::createIconFromFilename(QStringLiteral("UnLock.png")), this);
    m_LockAction->setToolTip(tr("Lock the channel"));
    QToolButton* pLockButton = createButton(QString());
    pLockButton->setDefaultAction(m_LockAction);

    QHBoxLayout* pLayout = new QHBoxLayout(this);
    pLayout->setContentsMargins(4, 1, 4, 1);
    pLayout->setSpacing(2);
    pLayout->addWidget(m_NameLabel, 1);
    for (QWidget* pMark : std::initializer_list<QWidget*>{
             m_DepthLabel, m_ColorspaceLabel, m_LayerStackButton, m_SharedButton, pLockButton})
        pLayout->addWidget(pMark);
}

QToolButton* OrvShaderInputViewItemRowWidget::createButton(const QString& ToolTip)
{
    QToolButton* pButton = new QToolButton(this);
    pButton->setAutoRaise(true);
    pButton->setFocusPolicy(Qt::NoFocus);
    pButton->setFixedSize(ButtonSize, ButtonSize);
    pButton->setIconSize({IconSize, IconSize});
    pButton->setToolTip(ToolTip);
    return pButton;
}

QLabel* OrvShaderInputViewItemRowWidget::createMark()
{
    QLabel* pMark = new QLabel(this);
    pMark->setFixedWidth(MarkWidth);
    pMark->setAlignment(Qt::AlignCenter);
    return pMark;
}

void OrvShaderInputViewItemRowWidget::connectShaderInput()
{
    connect(m_NameLabel, SIGNAL(textChanged(QString)), this, SLOT(setNameUndo(QString)));
    connect(m_ShaderInput, SIGNAL(imageSetDepthChanged(GLenum)), this, SLOT(setDepthLabelIcon()));
    connect(m_ShaderInput, SIGNAL(colorSpaceConfigChanged(OrvColorSpaceConfig)), this,
        SLOT(setColorspaceLabelIcon()));
    connect(m_LayerStackButton, SIGNAL(pressed()), this, SLOT(popupLayerStack()));
    connect(m_ShaderInput, SIGNAL(layerMadeCurrent()), this, SLOT(setPopupLayerStackButtonIcon()));
    connect(m_SharedButton, SIGNAL(clicked()), this, SLOT(showSharedItemsList()));
    // Layers come to share the channel, and cease to, without a word of the channel.
    connect(&OrvLayerManager::instance(), SIGNAL(structureRefreshed()), this, SLOT(updateSharedMarker()));
    connect(m_LockAction, SIGNAL(checkedChanged(bool)), this, SLOT(toggleShaderInputLocked(bool)));
    connect(m_ShaderInput, SIGNAL(lockedChanged(bool)), m_LockAction, SLOT(setCheckedState(bool)));
}

OrvShaderInput* OrvShaderInputViewItemRowWidget::shaderInput() const
{
    return m_ShaderInput;
}

QRect OrvShaderInputViewItemRowWidget::dragTargetGeometry() const
{
    return m_LayerStackButton ? m_LayerStackButton->geometry() : QRect();
}

QSize OrvShaderInputViewItemRowWidget::sizeHint() const
{
    return minimumSizeHint();
}

void OrvShaderInputViewItemRowWidget::refresh()
{
    if (!m_ShaderInput || !m_NameLabel)
        return;
    m_NameLabel->setText(m_ShaderInput->name());
    updateSharedMarker();
    m_LockAction->setCheckedState(m_ShaderInput->isLocked());
}

void OrvShaderInputViewItemRowWidget::updateSharedMarker()
{
    if (m_ShaderInput && m_SharedButton)
        m_SharedButton->setVisible(m_ShaderInput->isSharedLayers());
}

void OrvShaderInputViewItemRowWidget::setNameUndo(QString Name)
{
    if (!m_ShaderInput || !m_ShaderInput->node())
        return;
    Name = Name.trimmed();
    if (!Name.isEmpty() && Name != m_ShaderInput->name() && m_ShaderInput->isModifiable()) {
        OrvUndoManager::AutoMacro Macro(tr("Rename Channel '%1' to '%2'").arg(m_ShaderInput->name(), Name));
        m_ShaderInput->node()->setName(Name);
    }
    refresh();
}

void OrvShaderInputViewItemRowWidget::editName()
{
    if (m_NameLabel && m_ShaderInput && m_ShaderInput->isModifiable())
        m_NameLabel->edit();
}

void OrvShaderInputViewItemRowWidget::setDepthLabelIcon()
{
    if (!m_ShaderInput || !m_NameLabel)
        return;
    m_DepthLabel->setPixmap(markPixmap(depthIconName(m_ShaderInput->imageSetDepth())));
    m_DepthLabel->setToolTip(m_ShaderInput->imageSetDepthAsString());
}

void OrvShaderInputViewItemRowWidget::setColorspaceLabelIcon()
{
    if (!m_ShaderInput || !m_NameLabel)
        return;
    const bool Scalar = m_ShaderInput->colorSpaceConfig().scalar();
    m_ColorspaceLabel->setPixmap(markPixmap(Scalar ? QStringLiteral("/ColorspaceModeScalar.12x12.png")
                                                   : QStringLiteral("/ColorspaceModeColor.12x12.png")));
    m_ColorspaceLabel->setToolTip(Scalar ? tr("Scalar data") : tr("Color data"));
}

void OrvShaderInputViewItemRowWidget::setPopupLayerStackButtonIcon()
{
    if (!m_ShaderInput || !m_NameLabel)
        return;
    const bool Empty = m_ShaderInput->layerList(OrvLayerStack::AllLayers).isEmpty();
    m_LayerStackButton->setIcon(OrvIcon::createIconFromFilename(
        Empty ? QStringLiteral("NodeGraph.16x16.png") : QStringLiteral("Channel.16x16.png")));
    m_LayerStackButton->setToolTip(
        Empty ? tr("Show the channel in the node graph") : tr("Open the channel's layer stack"));
}

void OrvShaderInputViewItemRowWidget::popupLayerStack()
{
    if (!m_ShaderInput)
        return;
    if (!m_ShaderInput->currentLayer()) {
        OrvShaderNetworkManager::instance().focusOnNode(m_ShaderInput->node());
        return;
    }
    OrvLayerStackPopupButton::popup(m_ShaderInput);
}

void OrvShaderInputViewItemRowWidget::showSharedItemsList()
{
    if (!m_ShaderInput)
        return;
    QList<OrvSnBaseNode*> Sharers;
    m_ShaderInput->isShared(Sharers);
    OrvSharerListPopup* pPopup = new OrvSharerListPopup(this);
    pPopup->addHeading(tr("Shared By :"));
    for (OrvSnBaseNode* pNode : qAsConst(Sharers)) {
        OrvLayer* pLayer
            = OrvLayerUtils::isLayer(pNode) ? OrvLayerManager::instance().getLayer(pNode, true) : nullptr;
        if (pLayer)
            pPopup->addSharer(pLayer->path(true), pNode);
    }
    pPopup->popup();
}

void OrvShaderInputViewItemRowWidget::toggleShaderInputLocked(bool Locked)
{
    if (!m_ShaderInput || m_ShaderInput->isLocked() == Locked)
        return;
    if (Locked) {
        m_ShaderInput->setLocked(true);
        return;
    }
    if (OrvLayerUtils::isModificationAllowedAt(m_ShaderInput->node())) {
        m_ShaderInput->setLocked(false);
        return;
    }
    const QPointer<OrvShaderInputViewItemRowWidget> pThis = this;
    const bool Allowed = allowUnlocking();
    if (!pThis || !m_ShaderInput)
        return;
    if (!Allowed) {
        refresh();
        m_View->requestRefresh();
        return;
    }
    OrvUndoManager::AutoMacro Macro(tr("Unlock Channel : %1").arg(m_ShaderInput->path()));
    OrvLayerUtils::unlockLockedAncestorLayers(m_ShaderInput->node());
    m_ShaderInput->node()->propagateDeleteCache(true);
    m_ShaderInput->setLocked(false);
}

bool OrvShaderInputViewItemRowWidget::allowUnlocking() const
{
    return QMessageBox::question(&OrvMainWindow::instance(), tr("Ancestor Locked"),
               tr("This channel is locked because this is shared into a layer whose ancestors are locked "
                  "and/or cached. Unlocking this channel will remove the lock and/or cache. Would you like "
                  "to unlock this channel"),
               QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel)
        == QMessageBox::Yes;
}

#include "moc_OrvShaderInputViewItemRowWidget.cpp"
