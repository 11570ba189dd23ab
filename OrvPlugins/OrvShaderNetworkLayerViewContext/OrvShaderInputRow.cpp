#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputRow.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Object/OrvCustomAttribute.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvSnShaderNode.h"
#include "OrvCoreModules/Menus/OrvMenu.h"
#include "OrvCoreModules/Widgets/OrvEditLabel.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragPayload.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputChannelButton.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputConnection.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputMenu.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputValueEditor.h"

#include <QtCore/QMimeData>
#include <QtGui/QContextMenuEvent>
#include <QtGui/QDropEvent>
#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QStackedLayout>
#include <QtWidgets/QToolButton>

namespace {

constexpr int RowHeight = 24;
constexpr int BoxWidth = 18;
constexpr int MenuButtonWidth = 18;
constexpr int SideMargin = 2;
constexpr int Spacing = 3;
constexpr int SmallestNameWidth = 36;
// The name has the larger share until it has all that it needs: its end may be what tells it from others.
constexpr int NameShare = 3, FeedShare = 2;
constexpr int DropTargetOpacity = 60; // of 255
constexpr qreal DropTargetRadius = 3.0;

QCheckBox* createBox(const QString& Name, QWidget* pParent)
{
    QCheckBox* pBox = new QCheckBox(pParent);
    pBox->setObjectName(Name);
    pBox->setFixedWidth(BoxWidth);
    return pBox;
}

} // namespace

OrvShaderInputRow::OrvShaderInputRow(OrvLayerShader* pShader, const QString& InputName, QWidget* pParent)
    : QWidget(pParent)
    , m_pShader(pShader)
    , m_InputName(InputName)
{
    setObjectName(InputName);
    setFixedHeight(RowHeight);
    setAcceptDrops(true);
    createParts();
    createValueEditor();
    describeParts();
    connect(pShader->node(), &OrvSerializableObject::userAttributeValueChanged, this,
        &OrvShaderInputRow::onAttributeChanged);
    connect(pShader->node(), &OrvSnBaseNode::inputNodeChanged, this, &OrvShaderInputRow::onInputNodeChanged);
    // Whoever reads the shader from the box must not find one that is gone.
    connect(pShader->node(), &QObject::destroyed, m_pInvert,
        [pInvert = m_pInvert] { pInvert->setProperty(ShaderNodeProperty, QVariant()); });
    connect(m_pChannelButton, &QToolButton::clicked, this, &OrvShaderInputRow::onChannelClicked);
    connect(m_pMenuButton, &QToolButton::clicked, this, &OrvShaderInputRow::popupMenu);
    refresh();
}

void OrvShaderInputRow::createParts()
{
    // In the order in which Tab visits them.
    m_pEnable = createBox(QStringLiteral("Enable"), this);
    m_pName = new OrvEditLabel(m_InputName, this);
    m_pName->setEditable(false);
    m_pName->setFocusPolicy(Qt::NoFocus);
    m_pChannelButton = new OrvShaderInputChannelButton(this);
    m_pMenuButton = new QToolButton(this);
    m_pMenuButton->setArrowType(Qt::DownArrow);
    m_pMenuButton->setAutoRaise(true);
    m_pMenuButton->setFocusPolicy(Qt::TabFocus);
    m_pMenuButton->setFixedWidth(MenuButtonWidth);
    m_pInvert = createBox(QStringLiteral("Invert"), this);
    m_pInvert->setProperty(InputNameProperty, m_InputName);
    m_pInvert->setProperty(ShaderNodeProperty, QVariant::fromValue(m_pShader->node()));
    m_pEnable->setProperty(InputNameProperty, m_InputName);
    QSizePolicy KeepsColumn = m_pInvert->sizePolicy();
    KeepsColumn.setRetainSizeWhenHidden(true);
    m_pInvert->setSizePolicy(KeepsColumn);

    m_pFeed = new QStackedLayout;
    m_pFeed->addWidget(m_pChannelButton);

    QHBoxLayout* pLayout = new QHBoxLayout(this);
    pLayout->setContentsMargins(SideMargin, 1, SideMargin, 1);
    pLayout->setSpacing(Spacing);
    pLayout->addWidget(m_pEnable);
    pLayout->addWidget(m_pName, NameShare);
    pLayout->addLayout(m_pFeed, FeedShare);
    pLayout->addWidget(m_pMenuButton);
    pLayout->addWidget(m_pInvert);
}

void OrvShaderInputRow::createValueEditor()
{
    m_pValueEditor = OrvShaderInputValueEditor::create(m_pShader, m_InputName, this);
    if (!m_pValueEditor)
        return;
    m_pFeed->addWidget(m_pValueEditor);
    setTabOrder(m_pEnable, m_pChannelButton);
    setTabOrder(m_pChannelButton, m_pValueEditor);
    setTabOrder(m_pValueEditor, m_pMenuButton);
}

void OrvShaderInputRow::describeParts()
{
    const bool Material = m_pShader->isInputForMaterialsStacks(m_InputName);
    m_pInvert->setVisible(!Material);
    m_pEnable->setToolTip(tr("Use '%1' in the shader").arg(m_InputName));
    m_pEnable->setAccessibleName(m_pEnable->toolTip());
    m_pInvert->setToolTip(tr("Invert '%1'").arg(m_InputName));
    m_pInvert->setAccessibleName(m_pInvert->toolTip());
    m_pMenuButton->setToolTip(Material
            ? tr("Choose, create or disconnect the material channel of '%1'").arg(m_InputName)
            : tr("Choose, create or disconnect the channel of '%1'").arg(m_InputName));
    m_pMenuButton->setAccessibleName(m_pMenuButton->toolTip());
    m_pName->setToolTip(Material
            ? tr("%1\nDrop a material channel here to connect it").arg(m_InputName)
            : tr("%1\nDrop a channel from the Channels palette here to connect it").arg(m_InputName));
}

OrvLayerShader* OrvShaderInputRow::shader() const
{
    return m_pShader;
}

QWidget* OrvShaderInputRow::valueEditor() const
{
    return m_pFeed->currentWidget() == m_pValueEditor ? m_pValueEditor : nullptr;
}

void OrvShaderInputRow::alignColumns(const QVector<OrvShaderInputRow*>& Rows)
{
    int NameWidth = SmallestNameWidth;
    for (const OrvShaderInputRow* pRow : Rows)
        NameWidth = qMax(NameWidth, pRow->m_pName->sizeHint().width());
    for (const OrvShaderInputRow* pRow : Rows) {
        pRow->m_pName->setMinimumWidth(SmallestNameWidth);
        pRow->m_pName->setMaximumWidth(NameWidth);
    }
}

void OrvShaderInputRow::refresh()
{
    if (!m_pShader)
        return;
    const bool Enabled = m_pShader->isInputEnabled(m_InputName);
    m_pEnable->setChecked(Enabled);
    m_pName->setEnabled(Enabled);
    m_pInvert->setChecked(m_pShader->isInputInverted(m_InputName));
    const OrvShaderInput* pChannel = m_pShader->inputShaderInput(m_InputName);
    if (!pChannel) {
        showWithoutChannel();
        return;
    }
    const bool Current = pChannel == OrvShaderInputManager::instance().currentShaderInput();
    m_pChannelButton->showChannel(pChannel, Current);
    m_pFeed->setCurrentWidget(m_pChannelButton);
}

void OrvShaderInputRow::showWithoutChannel()
{
    if (m_pValueEditor) {
        m_pFeed->setCurrentWidget(m_pValueEditor);
        return;
    }
    if (m_pShader->isInputForMaterialsStacks(m_InputName))
        m_pChannelButton->showNone(tr("No material"), tr("Click to choose or create a material channel"));
    else
        m_pChannelButton->showNone(tr("No channel"), tr("Click to choose or create a channel"));
}

void OrvShaderInputRow::onAttributeChanged(OrvCustomAttribute Attribute)
{
    if (Attribute.name() == OrvSnShaderNode::enabledAttribute(m_InputName)
        || Attribute.name() == OrvSnShaderNode::invertedAttribute(m_InputName))
        refresh();
}

void OrvShaderInputRow::onInputNodeChanged(QString InputName)
{
    if (InputName == m_InputName)
        refresh();
}

void OrvShaderInputRow::onChannelClicked()
{
    OrvShaderInput* pChannel = m_pShader ? m_pShader->inputShaderInput(m_InputName) : nullptr;
    if (!pChannel) {
        popupMenu();
        return;
    }
    OrvShaderInputManager::instance().makeShaderInputCurrent(pChannel, true);
    if (pChannel->isMaterialStack())
        Q_EMIT materialChosen(pChannel);
}

void OrvShaderInputRow::disconnectChannel()
{
    if (m_pShader)
        OrvShaderInputConnection::disconnectChannel(m_pShader, m_InputName);
}

void OrvShaderInputRow::popupMenu()
{
    popupMenuAt(m_pMenuButton->mapToGlobal(m_pMenuButton->rect().bottomLeft()));
}

void OrvShaderInputRow::popupMenuAt(const QPoint& GlobalPosition)
{
    if (!m_pShader)
        return;
    OrvShaderInputMenu::create(m_pShader, m_InputName, this)->popup(GlobalPosition);
}

void OrvShaderInputRow::contextMenuEvent(QContextMenuEvent* pEvent)
{
    popupMenuAt(pEvent->globalPos());
}

void OrvShaderInputRow::keyPressEvent(QKeyEvent* pEvent)
{
    const bool Connected = m_pShader && m_pShader->inputShaderInput(m_InputName);
    if (Connected && (pEvent->key() == Qt::Key_Delete || pEvent->key() == Qt::Key_Backspace))
        disconnectChannel();
    else
        QWidget::keyPressEvent(pEvent);
}

OrvShaderInput* OrvShaderInputRow::droppedChannel(const QMimeData* pMime) const
{
    // Of several the first; a dragged layer is none.
    const QVector<OrvSnBaseNode*> Nodes = OrvLayerDragPayload::read(pMime);
    OrvShaderInput* pChannel = Nodes.isEmpty() ? nullptr : OrvShaderInputUtils::getShaderInput(Nodes.first());
    return m_pShader && pChannel && m_pShader->canTakeShaderInput(m_InputName, pChannel) ? pChannel : nullptr;
}

void OrvShaderInputRow::setDropTarget(bool DropTarget)
{
    m_DropTarget = DropTarget;
    update();
}

void OrvShaderInputRow::dragEnterEvent(QDragEnterEvent* pEvent)
{
    if (!droppedChannel(pEvent->mimeData()))
        return;
    setDropTarget(true);
    // Connecting moves nothing: the list that it is dragged from keeps its row.
    pEvent->setDropAction(Qt::LinkAction);
    pEvent->accept();
}

void OrvShaderInputRow::dragLeaveEvent(QDragLeaveEvent*)
{
    setDropTarget(false);
}

void OrvShaderInputRow::dropEvent(QDropEvent* pEvent)
{
    setDropTarget(false);
    OrvShaderInput* pChannel = droppedChannel(pEvent->mimeData());
    if (!pChannel)
        return;
    pEvent->setDropAction(Qt::LinkAction);
    pEvent->accept();
    OrvShaderInputConnection::connectChannel(m_pShader, m_InputName, pChannel);
}

void OrvShaderInputRow::paintEvent(QPaintEvent*)
{
    if (!m_DropTarget)
        return;
    QPainter Painter(this);
    Painter.setRenderHint(QPainter::Antialiasing);
    Painter.setPen(palette().color(QPalette::Highlight));
    QColor Ground = palette().color(QPalette::Highlight);
    Ground.setAlpha(DropTargetOpacity);
    Painter.setBrush(Ground);
    // On the middle of the outermost pixels.
    const QRectF Frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    Painter.drawRoundedRect(Frame, DropTargetRadius, DropTargetRadius);
}

#include "moc_OrvShaderInputRow.cpp"
