#include "OrvCoreModules/Graph/OrvNodeGraphCreation.h"

#include "OrvCoreModules/Graph/OrvNodeGraphCommands.h"
#include "OrvCoreModules/Graph/OrvNodeLook.h"
#include "OrvCoreModules/Menus/OrvMenu.h"
#include "OrvCoreModules/Widgets/OrvNodeQuickFind.h"

#include "OrvCore/Channels/OrvImageSettings.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvNodeRegistry.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Network/OrvSnGraphNode.h"
#include "OrvCore/Network/OrvSnGraphOutputNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnOperationNode.h"
#include "OrvCore/Object/OrvSettings.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Image/OrvColor.h"
#include "OrvDdi/Image/OrvImageSet.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QHash>

namespace {

constexpr QLatin1Char Separator('/');
constexpr int StoredPaths = 8;

const QString SettingsGroup = QStringLiteral("Node Graph");
const QString LimitKey = QStringLiteral("numberOfLastUsedNodePathsToStore");

const QString OutputKey = QStringLiteral("GraphOutput");
const QStringList PlainKeys{QStringLiteral("ImageSet"), QStringLiteral("Merge"),
    QStringLiteral("BottomTransparency"), QStringLiteral("Pass"), QStringLiteral("Graph"), OutputKey};

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvNodeGraphCreation", pText);
}

bool hasOutput(const OrvShaderNetwork* pNetwork)
{
    const QVector<OrvSnBaseNode*>& Nodes = pNetwork->nodes();
    return std::any_of(Nodes.begin(), Nodes.end(),
        [](const OrvSnBaseNode* pNode) { return qobject_cast<const OrvSnGraphOutputNode*>(pNode); });
}

/// Only the network inside a node has an output, and only one.
bool isOffered(const QString& Key, const OrvShaderNetwork* pNetwork)
{
    return Key != OutputKey || (pNetwork->container() && !hasOutput(pNetwork));
}

/// New nodes are as large and as deep as the channel that is worked on.
void equip(OrvSnBaseNode* pNode)
{
    const OrvImageSettings Settings
        = OrvImageSettings::ofChannel(OrvShaderInputManager::instance().currentShaderInput());
    if (auto* pImages = qobject_cast<OrvSnChannelInputNode*>(pNode)) {
        pImages->setImageSet(
            std::make_unique<OrvImageSet>(Settings.Layout, Settings.Paint, OrvColor::clear()));
    } else if (const auto* pGraph = qobject_cast<const OrvSnGraphNode*>(pNode)) {
        // The inside comes and goes with the node.
        const OrvUndoManager::NoRecording NoRecording;
        OrvChainEditing::addNode(
            pGraph->nestedNetwork(), std::make_unique<OrvSnGraphOutputNode>(), tr("Output"), nullptr, 0, 0);
    } else if (const auto* pOperation = qobject_cast<const OrvSnOperationNode*>(pNode)) {
        if (!pOperation->isProcedural())
            return;
        OrvCustomAttribute Extent(OrvSnOperationNode::ExtentAttribute, Settings.Layout.extent().size());
        Extent.setVisible(false);
        pNode->createUserAttribute(Extent);
    }
}

QString nameFor(const OrvSnBaseNode* pNode, const OrvShaderNetwork* pNetwork)
{
    if (qobject_cast<const OrvSnMergeNode*>(pNode))
        return OrvLayerManager::instance().uniqueLayerName(pNetwork, tr("Layer"));
    return pNode->typeLabel();
}

void connectNew(OrvSnBaseNode* pNode, const OrvNodeGraphCreation::Place& Where)
{
    using namespace OrvNodeGraphCommands;
    const Link In{Where.pSource, Where.OutputName, pNode, pNode->preferredInput()};
    if (Where.pSource && !In.InputName.isEmpty() && refusal(In).isEmpty())
        pNode->connectInput(In.InputName, In.pSource, In.OutputName);
    const Link Out{pNode, QString(), Where.Reader.pNode, Where.Reader.InputName};
    if (Where.Reader.pNode && refusal(Out).isEmpty())
        Out.pTarget->connectInput(Out.InputName, pNode);
}

QMenu* subMenu(QMenu* pRoot, QHash<QString, QMenu*>& Menus, const QStringList& Path)
{
    if (Path.isEmpty())
        return pRoot;
    const QString Key = Path.join(Separator);
    if (QMenu* pKnown = Menus.value(Key))
        return pKnown;
    QMenu* pParent = subMenu(pRoot, Menus, Path.mid(0, Path.size() - 1));
    auto* pMenu = new OrvMenu(Path.last(), pParent);
    pParent->addMenu(pMenu);
    Menus.insert(Key, pMenu);
    return pMenu;
}

} // namespace

namespace OrvNodeGraphCreation {

OrvSnBaseNode* add(const QString& Key, const Place& Where)
{
    const OrvNodeRegistry& Registry = OrvNodeRegistry::instance();
    std::unique_ptr<OrvSnBaseNode> pNode
        = Key.contains(Separator) ? Registry.createFromMenuPath(Key) : Registry.create(Key);
    if (!pNode || !Where.pNetwork || !isOffered(Key, Where.pNetwork))
        return nullptr;
    equip(pNode.get());
    pNode->setName(nameFor(pNode.get(), Where.pNetwork));
    pNode->setPosition(Where.Position.isNull() ? QPointF(1.0, 0.0) : Where.Position);
    const OrvUndoManager::AutoMacro Macro(tr("Add '%1'").arg(pNode->name()));
    OrvSnBaseNode* pAdded = Where.pNetwork->addNode(std::move(pNode));
    connectNew(pAdded, Where);
    return pAdded;
}

void fillMenu(
    QMenu* pMenu, const OrvShaderNetwork* pNetwork, const std::function<void(const QString& Key)>& Chosen)
{
    const auto addEntry = [&Chosen](QMenu* pParent, const QString& Text, const QString& Key) {
        QObject::connect(
            pParent->addAction(Text), &QAction::triggered, pParent, [Chosen, Key] { Chosen(Key); });
    };
    const OrvShaderNetworkManager& Manager = OrvShaderNetworkManager::instance();
    QHash<QString, QMenu*> Menus;
    for (const QString& Key : Manager.layerPathKeys()) {
        QStringList Parts = Manager.nodeMenuPath(Key).split(Separator, Qt::SkipEmptyParts);
        if (Parts.isEmpty())
            continue;
        const QString Text = Parts.takeLast();
        addEntry(subMenu(pMenu, Menus, Parts), Text, Key);
    }
    pMenu->addSeparator();
    for (const QString& Key : PlainKeys) {
        if (isOffered(Key, pNetwork))
            addEntry(pMenu, OrvNodeRegistry::instance().create(Key)->typeLabel(), Key);
    }
}

QString find(QWidget* pWidget, const QPoint& Position)
{
    return OrvNodeQuickFind::choose(SettingsGroup, Position, pWidget);
}

void setUpSettings()
{
    OrvSettings Settings;
    Settings.beginGroup(SettingsGroup);
    if (!Settings.contains(LimitKey))
        Settings.setValue(LimitKey, StoredPaths);
}

} // namespace OrvNodeGraphCreation
