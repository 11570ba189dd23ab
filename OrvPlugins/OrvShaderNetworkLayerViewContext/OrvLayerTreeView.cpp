#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerTreeView.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Shelf/OrvMaterialPaintManager.h"
#include "OrvCoreModules/DragAndDrop/OrvDragAndDropManager.h"
#include "OrvCoreModules/Menus/OrvShortcutManager.h"
#include "OrvCoreModules/Window/OrvGui.h"
#include "OrvCoreModules/Window/OrvResourceInfo.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerCustomStyle.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragHover.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDragPayload.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDropContent.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewItemRowWidget.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewModel.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvRowWidgetDelegate.h"

#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QHeaderView>

#include <algorithm>

namespace {

const QSize SmallestSize(40, 50);
constexpr int EmptyTextMargin = 16;

/// A click or a key with these alone; with others the selection grows or shrinks.
bool choosesOneRow(Qt::KeyboardModifiers Modifiers)
{
    return !(Modifiers & (Qt::ShiftModifier | Qt::ControlModifier));
}

} // namespace

OrvLayerTreeView::OrvLayerTreeView(QWidget* pParent, OrvLayerView* pLayerView)
    : OrvRowWidgetTree(pParent)
    , m_LayerView(pLayerView)
    , m_DragHover(new OrvLayerDragHover(pLayerView, this))
{
    setHeaderHidden(true);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setItemsExpandable(true);
    setRootIsDecorated(true);
    setAlternatingRowColors(true);
    setMouseTracking(true);
    auto* pStyle = new OrvLayerCustomStyle;
    pStyle->setParent(this);
    setStyle(pStyle);
    setStyleSheet(styleSheet() + branchStyleSheet());
    header()->setStretchLastSection(false);
    setMinimumSize(SmallestSize);
    setUniformRowHeights(true);
    setItemDelegate(
        new OrvRowWidgetDelegate({SmallestSize.width(), OrvLayerViewItemRowWidget::RowHeight}, this));
}

QString OrvLayerTreeView::branchStyleSheet() const
{
    const QString IconDirectory = OrvResourceInfo::iconPath() + QLatin1Char('/');
    const auto image = [&](const char* pFileName) {
        return QStringLiteral("url(%1)").arg(IconDirectory + QLatin1String(pFileName));
    };
    return QStringLiteral("OrvLayerTreeView::branch:has-children:!has-siblings:closed,"
                          "OrvLayerTreeView::branch:closed:has-children:has-siblings "
                          "{border-image: none;image: %1;}\n")
               .arg(image("disclosureTriangleClosed.png"))
        + QStringLiteral("OrvLayerTreeView::branch:open:has-children:!has-siblings,"
                         "OrvLayerTreeView::branch:open:has-children:has-siblings "
                         "{border-image: none;image: %1;}\n")
              .arg(image("disclosureTriangleOpen.png"));
}

void OrvLayerTreeView::connectSelectionRelay()
{
    connect(selectionModel(), SIGNAL(selectionChanged(QItemSelection, QItemSelection)), this,
        SLOT(onSelectionChanged(QItemSelection, QItemSelection)), Qt::UniqueConnection);
}

void OrvLayerTreeView::disconnectSelectionRelay()
{
    disconnect(selectionModel(), SIGNAL(selectionChanged(QItemSelection, QItemSelection)), this,
        SLOT(onSelectionChanged(QItemSelection, QItemSelection)));
}

void OrvLayerTreeView::rowsAboutToBeRemoved(const QModelIndex& Parent, int First, int Last)
{
    // The base class takes the widgets off these rows, but not off those below them.
    for (int Row = First; Row <= Last; ++Row)
        removeRowWidgetsBelow(model()->index(Row, 0, Parent));
    OrvRowWidgetTree::rowsAboutToBeRemoved(Parent, First, Last);
}

void OrvLayerTreeView::removeRowWidgetsBelow(const QModelIndex& Parent)
{
    for (int Row = 0; Row < model()->rowCount(Parent); ++Row) {
        const QModelIndex Index = model()->index(Row, 0, Parent);
        removeRowWidgetsBelow(Index);
        setIndexWidget(Index, nullptr);
    }
}

void OrvLayerTreeView::setEmptyText(const QString& Text)
{
    if (m_EmptyText == Text)
        return;
    m_EmptyText = Text;
    viewport()->update();
}

void OrvLayerTreeView::onSelectionChanged(QItemSelection Selected, QItemSelection Deselected)
{
    if (!m_LayerView) {
        OrvDebug("OrvLayerTreeView", __LINE__, QStringLiteral("m_LayerView is NULL"), false, false);
        return;
    }
    QSet<OrvLayer*> DeselectedLayers;
    for (const QModelIndex& Index : Deselected.indexes()) {
        if (OrvLayer* pLayer = m_LayerView->layerFromIndex(Index))
            DeselectedLayers.insert(pLayer);
    }
    if (!m_PlainClick)
        selectSharingRows(DeselectedLayers);
    for (OrvLayer* pLayer : qAsConst(DeselectedLayers))
        pLayer->setSelected(false, true);

    const OrvLayerStack* pLayerStack = m_LayerView->layerStack();
    OrvShaderNetwork* pNetwork = pLayerStack ? pLayerStack->network() : nullptr;
    if (!pNetwork)
        return;
    if (!Selected.isEmpty()) {
        const OrvLayer* pCurrentLayer = OrvLayerManager::instance().currentLayer(pNetwork);
        bool AsksForCurrent = false;
        for (const QModelIndex& Index : Selected.indexes()) {
            OrvLayer* pLayer = m_LayerView->layerFromIndex(Index);
            if (!pLayer)
                continue;
            pLayer->setSelected(true, true);
            if (pCurrentLayer && pLayer != pCurrentLayer && Index == currentIndex())
                AsksForCurrent = true;
        }
        // The tree's current row can stay while the host's current layer went elsewhere: the row asks for it
        // back.
        if (AsksForCurrent)
            Q_EMIT currentIndexChanged(currentIndex(), currentIndex());
    }
    if (!m_PlainClick)
        return;
    // The row that was chosen may have been selected before, among others.
    QSet<OrvSnBaseNode*> ChosenNodes;
    for (const QModelIndex& Index : selectionModel()->selectedRows()) {
        if (const OrvLayer* pLayer = m_LayerView->layerFromIndex(Index))
            ChosenNodes.insert(pLayer->blendNode());
    }
    pNetwork->selectNone(ChosenNodes);
}

void OrvLayerTreeView::selectSharingRows(const QSet<OrvLayer*>& Deselected)
{
    const auto* pModel = qobject_cast<OrvLayerViewModel*>(model());
    if (!pModel || !selectionModel() || Deselected.isEmpty())
        return;
    const QItemSelection Sharing = pModel->rowsSharingContentWith(Deselected);
    if (Sharing.isEmpty())
        return;
    disconnectSelectionRelay();
    selectionModel()->select(Sharing, QItemSelectionModel::Select | QItemSelectionModel::Rows);
    connectSelectionRelay();
}

void OrvLayerTreeView::mousePressEvent(QMouseEvent* pEvent)
{
    if (m_LayerView)
        m_LayerView->makeActive();
    m_PlainClick = choosesOneRow(pEvent->modifiers());
    if (pEvent->modifiers() == Qt::ShiftModifier)
        m_PressPosition = pEvent->pos();
    m_Pressed = true;
    OrvRowWidgetTree::mousePressEvent(pEvent);
}

void OrvLayerTreeView::mouseDoubleClickEvent(QMouseEvent* pEvent)
{
    m_Pressed = true;
    OrvRowWidgetTree::mouseDoubleClickEvent(pEvent);
}

void OrvLayerTreeView::mouseReleaseEvent(QMouseEvent* pEvent)
{
    m_Pressed = false;
    // Of several selected rows, the base class leaves the one that was clicked only now.
    OrvRowWidgetTree::mouseReleaseEvent(pEvent);
    m_PlainClick = false;
}

void OrvLayerTreeView::keyPressEvent(QKeyEvent* pEvent)
{
    m_PlainClick = choosesOneRow(pEvent->modifiers());
    OrvRowWidgetTree::keyPressEvent(pEvent);
    m_PlainClick = false;
}

void OrvLayerTreeView::mouseMoveEvent(QMouseEvent* pEvent)
{
    OrvGui::stealFocusGently(this);
    // Buttons in the rows pass on what moves off them; the row that was clicked before must not come along.
    if (pEvent->buttons() != Qt::NoButton && !m_Pressed)
        return;
    setDragEnabled(pEvent->buttons() == Qt::LeftButton);
    if (!m_PressPosition.isNull()) {
        if ((pEvent->pos() - m_PressPosition).manhattanLength() <= QApplication::startDragDistance())
            return;
        m_PressPosition = QPoint();
    }
    OrvRowWidgetTree::mouseMoveEvent(pEvent);
}

void OrvLayerTreeView::enterEvent(QEvent* pEvent)
{
    OrvShortcutManager::instance().setEnabledSpecialShortcut(Qt::Key_Tab, true);
    OrvRowWidgetTree::enterEvent(pEvent);
}

void OrvLayerTreeView::leaveEvent(QEvent* pEvent)
{
    OrvShortcutManager::instance().setEnabledSpecialShortcut(Qt::Key_Tab, false);
    clearFocus();
    OrvRowWidgetTree::leaveEvent(pEvent);
}

void OrvLayerTreeView::dragMoveEvent(QDragMoveEvent* pEvent)
{
    const QMimeData* pData = pEvent->mimeData();
    if (OrvDragAndDropManager::instance().acceptDragEnter(pData, OrvDragAndDropManager::LayerTreeTarget)
        || OrvMaterialPaintManager::isMimeDataMaterialFile(pData)
        || OrvMaterialPaintManager::isMimeDataCustomProceduralFile(pData)) {
        setDropIndicatorShown(true);
        OrvRowWidgetTree::dragMoveEvent(pEvent);
        return;
    }
    m_DragHover->restAt(indexAt(pEvent->pos()));
    bool Accepted = mayLand(OrvLayerDragPayload::read(pData));
    if (!Accepted) {
        m_DragHover->wouldDrop(*pEvent, -1, QModelIndex()); // it tells why nowhere in this stack
    } else {
        // The base class accepts and scrolls as for a copy; the source is told what the keys ask for.
        pEvent->setDropAction(Qt::CopyAction);
        setDropIndicatorShown(true);
        OrvRowWidgetTree::dragMoveEvent(pEvent);
        Accepted = pEvent->isAccepted() && wouldDrop(*pEvent);
    }
    setDropIndicatorShown(Accepted);
    pEvent->setDropAction(
        Accepted ? OrvLayerDragPayload::actionFromModifiers(pEvent->keyboardModifiers()) : Qt::IgnoreAction);
    pEvent->setAccepted(Accepted);
}

bool OrvLayerTreeView::wouldDrop(const QDropEvent& Event)
{
    const QModelIndex Index = indexAt(Event.pos());
    switch (dropIndicatorPosition()) {
    case AboveItem:
        return m_DragHover->wouldDrop(Event, Index.row(), Index.parent());
    case BelowItem:
        return m_DragHover->wouldDrop(Event, Index.row() + 1, Index.parent());
    case OnItem:
        return m_DragHover->wouldDrop(Event, -1, Index);
    case OnViewport:
        break;
    }
    return m_DragHover->wouldDrop(Event, -1, QModelIndex());
}

void OrvLayerTreeView::dragLeaveEvent(QDragLeaveEvent* pEvent)
{
    m_DragHover->leave();
    OrvRowWidgetTree::dragLeaveEvent(pEvent);
    setDropIndicatorShown(false);
}

bool OrvLayerTreeView::mayLand(const QVector<OrvSnBaseNode*>& Nodes) const
{
    OrvLayerStack* pLayerStack = m_LayerView->layerStack();
    if (!pLayerStack)
        return true;
    if (std::none_of(Nodes.cbegin(), Nodes.cend(), [pLayerStack](OrvSnBaseNode* pNode) {
            return OrvLayerDropContent::needsMaterialStack(pNode, pLayerStack);
        }))
        return true;
    QList<OrvShaderInput*> Channels = OrvShaderInputUtils::findParents(pLayerStack->node(), QString());
    if (auto* pOwnChannel = qobject_cast<OrvShaderInput*>(pLayerStack))
        Channels.append(pOwnChannel);
    return std::all_of(Channels.cbegin(), Channels.cend(),
        [](const OrvShaderInput* pChannel) { return pChannel->isMaterialStack(); });
}

void OrvLayerTreeView::dropEvent(QDropEvent* pEvent)
{
    m_DragHover->leave();
    pEvent->setDropAction(OrvLayerDragPayload::actionFromModifiers(pEvent->keyboardModifiers()));
    OrvRowWidgetTree::dropEvent(pEvent);
    // A drop that was not accepted after all leaves the tree as if it were still dragged over.
    setDropIndicatorShown(false);
    setState(NoState);
    viewport()->update();
    // Told of a move, the view that the rows come from would take them away; the document has moved them.
    if (pEvent->dropAction() == Qt::MoveAction)
        pEvent->setDropAction(Qt::CopyAction);
}

void OrvLayerTreeView::startDrag(Qt::DropActions SupportedActions)
{
    OrvRowWidgetTree::startDrag(SupportedActions);
    // Whatever the rows were dropped on got the release.
    m_Pressed = false;
    m_PlainClick = false;
    // The drag took the keyboard along, and keys are for the rows that were moved.
    if (viewport()->rect().contains(viewport()->mapFromGlobal(QCursor::pos())))
        OrvGui::stealFocusGently(this);
    m_LayerView->requestRefresh();
}

void OrvLayerTreeView::currentChanged(const QModelIndex& Current, const QModelIndex& Previous)
{
    OrvRowWidgetTree::currentChanged(Current, Previous);
    Q_EMIT currentIndexChanged(Current, Previous);
}

QStyleOptionViewItem OrvLayerTreeView::viewOptions() const
{
    QStyleOptionViewItem Options = OrvRowWidgetTree::viewOptions();
    // A style sheet paints the branches of a selected row in the palette's current colours, whatever the
    // row's are.
    if (!(Options.state & QStyle::State_Active))
        Options.palette.setCurrentColorGroup(QPalette::Inactive);
    return Options;
}

QSize OrvLayerTreeView::viewportSizeHint() const
{
    return OrvRowWidgetTree::viewportSizeHint();
}

void OrvLayerTreeView::paintEvent(QPaintEvent* pEvent)
{
    executeDelayedItemsLayout();
    OrvRowWidgetTree::paintEvent(pEvent);
    if (m_EmptyText.isEmpty() || indexAt(QPoint()).isValid())
        return;
    QPainter Painter(viewport());
    Painter.setPen(palette().color(QPalette::Disabled, QPalette::Text));
    const QRect Place
        = viewport()->rect().adjusted(EmptyTextMargin, EmptyTextMargin, -EmptyTextMargin, -EmptyTextMargin);
    Painter.drawText(Place, Qt::AlignCenter | Qt::TextWordWrap, m_EmptyText);
}

#include "moc_OrvLayerTreeView.cpp"
