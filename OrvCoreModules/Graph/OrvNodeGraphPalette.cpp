#include "OrvCoreModules/Graph/OrvNodeGraphPalette.h"

#include "OrvCoreModules/Graph/OrvNodeGraphBreadcrumb.h"
#include "OrvCoreModules/Graph/OrvNodeGraphCommands.h"
#include "OrvCoreModules/Graph/OrvNodeGraphCreation.h"
#include "OrvCoreModules/Graph/OrvNodeGraphLayout.h"
#include "OrvCoreModules/Graph/OrvNodeGraphScene.h"
#include "OrvCoreModules/Graph/OrvNodeGraphSelection.h"
#include "OrvCoreModules/Graph/OrvNodeGraphView.h"
#include "OrvCoreModules/Graph/OrvNodeItem.h"
#include "OrvCoreModules/Graph/OrvNodePropertiesPane.h"
#include "OrvCoreModules/Graph/OrvWireItem.h"
#include "OrvCoreModules/Menus/OrvFocusShortcuts.h"
#include "OrvCoreModules/Menus/OrvMenu.h"
#include "OrvCoreModules/Menus/OrvShortcutManager.h"
#include "OrvCoreModules/Window/OrvContextHelp.h"
#include "OrvCoreModules/Window/OrvIcon.h"

#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Object/OrvSettings.h"

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QToolButton>

namespace {

const QString Name = QStringLiteral("Node Graph");
const QString SplitterKey = QStringLiteral("Node Graph/SplitterSize");
const QString HelpKey = QStringLiteral("NodeGraph");
constexpr QSize UsualSize(900, 340);
constexpr int PropertiesWidth = 280;

OrvSnBaseNode::Consumer consumerOf(const OrvWireItem* pWire)
{
    return {pWire->target()->node(), pWire->inputName()};
}

} // namespace

OrvNodeGraphPalette::OrvNodeGraphPalette(QWidget* pParent)
    : OrvPalette(pParent)
    , m_pScene(new OrvNodeGraphScene(this))
{
    setObjectName(Name);
    setWindowTitle(tr("Node Graph"));
    OrvNodeGraphCreation::setUpSettings();
    createBody();
    createShortcuts();
    OrvContextHelp::registerText(HelpKey,
        tr("<b>Node Graph</b><p>Drag from an output to an input to connect them; drag a wire off an input to "
           "free it. "
           "Tab adds a node, F frames the selection, the middle mouse button or Space moves the canvas. "
           "Double-click "
           "a graph to see what is inside.</p>"));
    setContextHelpKey(HelpKey);

    const auto* pManager = &OrvShaderNetworkManager::instance();
    connect(pManager, &OrvShaderNetworkManager::currentShaderNetworkChanged, this,
        &OrvNodeGraphPalette::onCurrentNetworkChanged);
    connect(
        pManager, &OrvShaderNetworkManager::nodeDeregistered, this, &OrvNodeGraphPalette::onNodeDeregistered);
    connect(pManager, &OrvShaderNetworkManager::nodeFocusRequested, this, &OrvNodeGraphPalette::focusOnNode);
    connect(this, &QDockWidget::visibilityChanged, m_pScene, &OrvNodeGraphScene::setActive);
    connect(m_pScene, &OrvNodeGraphScene::selectionRead, this, &OrvNodeGraphPalette::showSelection);
    connect(m_pView, &OrvNodeGraphView::selectionPublished, this, &OrvNodeGraphPalette::showSelection);
    connect(m_pView, &OrvNodeGraphView::nodeActivated, this, &OrvNodeGraphPalette::onNodeActivated);
    connect(m_pView, &OrvNodeGraphView::menuRequested, this, &OrvNodeGraphPalette::showMenu);
    connect(m_pBreadcrumb, &OrvNodeGraphBreadcrumb::networkChosen, this, &OrvNodeGraphPalette::enter);
    onCurrentNetworkChanged(pManager->currentShaderNetwork());
}

OrvNodeGraphPalette::~OrvNodeGraphPalette()
{
    // The canvas goes before what it shows.
    delete m_pView;
}

void OrvNodeGraphPalette::createBody()
{
    auto* pBody = new QWidget(this);
    auto* pLayout = new QVBoxLayout(pBody);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(0);
    m_pSplitter = new QSplitter(pBody);
    m_pView = new OrvNodeGraphView(m_pScene, m_pSplitter);
    m_pProperties = new OrvNodePropertiesPane(m_pSplitter);
    m_pSplitter->addWidget(m_pView);
    m_pSplitter->addWidget(m_pProperties);
    m_pSplitter->setStretchFactor(0, 1);
    m_pSplitter->setCollapsible(0, false);
    m_pSplitter->setSizes({UsualSize.width() - PropertiesWidth, PropertiesWidth});
    m_pSplitter->restoreState(OrvSettings().value(SplitterKey).toByteArray());
    connect(m_pSplitter, &QSplitter::splitterMoved, this,
        [this] { OrvSettings().setValue(SplitterKey, m_pSplitter->saveState()); });
    pLayout->addWidget(createToolBar());
    pLayout->addWidget(m_pSplitter, 1);
    setBodyWidget(pBody);
}

QWidget* OrvNodeGraphPalette::createToolBar()
{
    auto* pBar = new QWidget(this);
    auto* pLayout = new QHBoxLayout(pBar);
    pLayout->setContentsMargins(4, 2, 4, 2);
    pLayout->setSpacing(2);
    m_pBreadcrumb = new OrvNodeGraphBreadcrumb(pBar);
    pLayout->addWidget(m_pBreadcrumb);
    pLayout->addStretch(1);
    const auto addButton = [&](const QString& Text, const QString& Icon, const QString& Tip, auto Slot) {
        auto* pButton = new QToolButton(pBar);
        pButton->setAutoRaise(true);
        pButton->setText(Text);
        pButton->setIcon(Icon.isEmpty() ? QIcon() : OrvIcon::createIconFromFilename(Icon));
        pButton->setToolButtonStyle(Icon.isEmpty() ? Qt::ToolButtonTextOnly : Qt::ToolButtonIconOnly);
        pButton->setToolTip(Tip);
        connect(pButton, &QToolButton::clicked, this, Slot);
        pLayout->addWidget(pButton);
        return pButton;
    };
    addButton(tr("Add"), QString(), tr("Add a node"), [this] {
        OrvMenu Menu(this);
        OrvShaderNetwork* pNetwork = network();
        if (!pNetwork)
            return;
        const QPointF Place = m_pView->pointedPlace();
        OrvNodeGraphCreation::fillMenu(&Menu, pNetwork, [&](const QString& Key) { addFromKey(Key, Place); });
        Menu.exec(QCursor::pos());
    });
    addButton(tr("Arrange"), QString(), tr("Place the selected nodes, or all, by their connections"),
        &OrvNodeGraphPalette::arrange);
    addButton(tr("Fit"), QStringLiteral("ZoomFit.png"), tr("Frame the selected nodes, or all"),
        &OrvNodeGraphPalette::frameSelection);
    QToolButton* pProperties = addButton(tr("Properties"), QStringLiteral("advancedBlendingEnabled.png"),
        tr("Show the properties of the selected node"),
        [this](bool Shown) { m_pProperties->setVisible(Shown); });
    pProperties->setCheckable(true);
    pProperties->setChecked(true);
    return pBar;
}

void OrvNodeGraphPalette::createShortcuts()
{
    OrvShortcutManager::instance().addShortcutGroupMapping(
        QStringLiteral("Node Graph"), QLatin1String(m_pView->metaObject()->className()));
    auto* pShortcuts = new OrvFocusShortcuts(m_pView);
    const auto add = [&](const QKeySequence& Keys, const char* pSlot) { pShortcuts->add(Keys, pSlot, this); };
    add(Qt::Key_Tab, SLOT(addNode()));
    add(Qt::Key_Delete, SLOT(deleteSelection()));
    add(Qt::CTRL + Qt::Key_D, SLOT(duplicateSelection()));
    add(Qt::Key_F2, SLOT(renameNode()));
    add(Qt::Key_D, SLOT(toggleEnabled()));
    add(Qt::Key_L, SLOT(arrange()));
    add(Qt::CTRL + Qt::Key_A, SLOT(selectAll()));
    add(Qt::Key_F, SLOT(frameSelection()));
    add(Qt::Key_A, SLOT(frameAll()));
    add(Qt::Key_Return, SLOT(enterNode()));
    add(Qt::Key_Backspace, SLOT(leaveGraph()));
}

OrvShaderNetwork* OrvNodeGraphPalette::network() const
{
    return m_pScene->network();
}

QSize OrvNodeGraphPalette::sizeHint() const
{
    return UsualSize;
}

void OrvNodeGraphPalette::onCurrentNetworkChanged(OrvShaderNetwork* pNetwork)
{
    enter(pNetwork);
}

void OrvNodeGraphPalette::onNodeDeregistered(OrvShaderNetwork* pNetwork, OrvSnBaseNode* pNode)
{
    // A graph that goes takes its inside with it.
    const OrvShaderNetwork* pNested = pNode->nestedNetwork();
    for (const OrvShaderNetwork* pShown = network(); pNested && pShown; pShown = pShown->parentNetwork()) {
        if (pShown == pNested) {
            enter(pNetwork);
            return;
        }
    }
}

void OrvNodeGraphPalette::enter(OrvShaderNetwork* pNetwork)
{
    m_pScene->setNetwork(pNetwork);
    m_pBreadcrumb->showWayTo(pNetwork);
    showSelection();
}

void OrvNodeGraphPalette::enterNode()
{
    const OrvSnBaseNode* pNode = selectedNode();
    if (OrvShaderNetwork* pNested = pNode ? pNode->nestedNetwork() : nullptr)
        enter(pNested);
}

void OrvNodeGraphPalette::leaveGraph()
{
    OrvSnBaseNode* pContainer = network() ? network()->container() : nullptr;
    if (!pContainer || !pContainer->network())
        return;
    enter(pContainer->network());
    select({pContainer});
}

void OrvNodeGraphPalette::onNodeActivated(OrvSnBaseNode* pNode)
{
    if (OrvShaderNetwork* pNested = pNode->nestedNetwork())
        enter(pNested);
    else
        m_pView->editTitle(pNode);
}

void OrvNodeGraphPalette::focusOnNode(OrvSnBaseNode* pNode)
{
    OrvShaderNetwork* pNetwork = pNode ? pNode->network() : nullptr;
    if (!pNetwork)
        return;
    open();
    m_pScene->setActive(true);
    if (pNetwork != network())
        enter(pNetwork);
    m_pScene->synchronize();
    select({pNode});
    m_pView->focusOn(pNode);
}

void OrvNodeGraphPalette::select(const QVector<OrvSnBaseNode*>& Nodes)
{
    m_pScene->synchronize();
    m_pScene->clearSelection();
    for (const OrvSnBaseNode* pNode : Nodes) {
        if (OrvNodeItem* pItem = m_pScene->item(pNode))
            pItem->setSelected(true);
    }
    OrvNodeGraphSelection::publish(*m_pScene);
    showSelection();
}

OrvSnBaseNode* OrvNodeGraphPalette::selectedNode() const
{
    const QVector<OrvSnBaseNode*> Nodes = m_pScene->selectedNodes();
    return Nodes.size() == 1 ? Nodes.first() : nullptr;
}

void OrvNodeGraphPalette::showSelection()
{
    const int Count = m_pScene->selectedNodes().size();
    m_pProperties->showNode(
        selectedNode(), Count == 0 ? tr("No node is selected") : tr("%1 nodes are selected").arg(Count));
}

void OrvNodeGraphPalette::addFromKey(const QString& Key, const QPointF& Place)
{
    OrvNodeGraphCreation::Place Where;
    Where.pNetwork = network();
    Where.Position = Place;
    const QVector<OrvWireItem*> Wires = m_pScene->selectedWires();
    if (Wires.size() == 1) {
        // Into the wire.
        Where.pSource = Wires.first()->source()->node();
        Where.OutputName = Wires.first()->outputName();
        Where.Reader = consumerOf(Wires.first());
    } else if (OrvSnBaseNode* pSource = selectedNode()) {
        if (!pSource->hasTag(OrvSnNames::ShaderInputTag))
            Where.pSource = pSource;
    }
    if (OrvSnBaseNode* pAdded = OrvNodeGraphCreation::add(Key, Where))
        select({pAdded});
}

void OrvNodeGraphPalette::addNode()
{
    if (!network())
        return;
    const QPointF Place = m_pView->pointedPlace();
    const QString Key = OrvNodeGraphCreation::find(m_pView, m_pView->mapFromScene(Place));
    if (!Key.isEmpty())
        addFromKey(Key, Place);
}

void OrvNodeGraphPalette::deleteSelection()
{
    QVector<OrvSnBaseNode::Consumer> Wires;
    for (const OrvWireItem* pWire : m_pScene->selectedWires())
        Wires.append(consumerOf(pWire));
    OrvNodeGraphCommands::remove(m_pScene->selectedNodes(), Wires);
}

void OrvNodeGraphPalette::duplicateSelection()
{
    const QVector<OrvSnBaseNode*> Copies = OrvNodeGraphCommands::duplicate(m_pScene->selectedNodes());
    if (!Copies.isEmpty())
        select(Copies);
}

void OrvNodeGraphPalette::renameNode()
{
    if (OrvSnBaseNode* pNode = selectedNode())
        m_pView->editTitle(pNode);
}

void OrvNodeGraphPalette::toggleEnabled()
{
    OrvNodeGraphCommands::toggleEnabled(m_pScene->selectedNodes());
}

void OrvNodeGraphPalette::toggleLocked()
{
    OrvNodeGraphCommands::toggleLocked(m_pScene->selectedNodes());
}

void OrvNodeGraphPalette::arrange()
{
    m_pScene->synchronize();
    const QVector<OrvSnBaseNode*> Nodes = m_pScene->selectedNodes();
    if (Nodes.size() < 2) {
        OrvNodeGraphCommands::arrangeAll(network());
        return;
    }
    // Where they stand now, but tidy.
    const QPointF Corner = m_pScene->nodesRect(Nodes).topLeft();
    const auto heightOf
        = [this](const OrvSnBaseNode* pNode) { return m_pScene->item(pNode)->look().size().height(); };
    const OrvNodeGraphLayout::Places Arranged = OrvNodeGraphLayout::arrange(Nodes, heightOf);
    OrvNodeGraphCommands::Places Places;
    for (OrvSnBaseNode* pNode : Nodes)
        Places.insert(pNode, (Corner + Arranged.value(pNode)).toPoint());
    OrvNodeGraphCommands::move(Places);
}

void OrvNodeGraphPalette::selectAll()
{
    if (network())
        select(network()->nodes());
}

void OrvNodeGraphPalette::frameSelection()
{
    const QVector<OrvSnBaseNode*> Nodes = m_pScene->selectedNodes();
    if (Nodes.isEmpty())
        m_pView->frameAll();
    else
        m_pView->frame(m_pScene->nodesRect(Nodes));
}

void OrvNodeGraphPalette::frameAll()
{
    m_pView->frameAll();
}

void OrvNodeGraphPalette::showMenu(const QPoint& GlobalPosition, const QPointF& Place)
{
    OrvMenu Menu(this);
    auto* pAdd = new OrvMenu(tr("Add"), &Menu);
    Menu.addMenu(pAdd);
    OrvNodeGraphCreation::fillMenu(pAdd, network(), [&](const QString& Key) { addFromKey(Key, Place); });
    Menu.addSeparator();
    const QVector<OrvSnBaseNode*> Nodes = m_pScene->selectedNodes();
    const int Count = Nodes.size();
    const bool Single = Count == 1;
    const auto add = [&](const QString& Text, bool Enabled, auto Slot) {
        Menu.addAction(Text, this, Slot)->setEnabled(Enabled);
    };
    add(tr("Enter"), Single && selectedNode()->nestedNetwork(), &OrvNodeGraphPalette::enterNode);
    add(tr("Leave Graph"), network()->container() != nullptr, &OrvNodeGraphPalette::leaveGraph);
    Menu.addSeparator();
    add(tr("Rename"), Single, &OrvNodeGraphPalette::renameNode);
    const bool AllEnabled = std::all_of(
        Nodes.begin(), Nodes.end(), [](const OrvSnBaseNode* pNode) { return pNode->enabledAsBool(); });
    const bool AllLocked
        = std::all_of(Nodes.begin(), Nodes.end(), [](const OrvSnBaseNode* pNode) { return pNode->locked(); });
    add(AllEnabled ? tr("Disable") : tr("Enable"), Count > 0, &OrvNodeGraphPalette::toggleEnabled);
    add(AllLocked && Count > 0 ? tr("Unlock") : tr("Lock"), Count > 0, &OrvNodeGraphPalette::toggleLocked);
    add(tr("Duplicate"), Count > 0, &OrvNodeGraphPalette::duplicateSelection);
    add(tr("Delete"), Count > 0 || !m_pScene->selectedWires().isEmpty(),
        &OrvNodeGraphPalette::deleteSelection);
    Menu.addSeparator();
    add(Count > 1 ? tr("Arrange Selected") : tr("Arrange All"), true, &OrvNodeGraphPalette::arrange);
    add(tr("Select All"), true, &OrvNodeGraphPalette::selectAll);
    add(tr("Frame All"), true, &OrvNodeGraphPalette::frameAll);
    Menu.exec(GlobalPosition);
}

#include "moc_OrvNodeGraphPalette.cpp"
