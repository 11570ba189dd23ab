#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvNodeMenuBuilder.h"

#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCoreModules/Menus/OrvMenu.h"

#include <QtWidgets/QAction>

namespace {
const QLatin1Char Separator('/');
}

OrvNodeMenuBuilder::OrvNodeMenuBuilder(
    QMenu* pRoot, QHash<QString, QMenu*>& Menus, QObject* pReceiver, const char* pSlot)
    : m_pRoot(pRoot)
    , m_Menus(Menus)
    , m_pReceiver(pReceiver)
    , m_pSlot(pSlot)
{
}

QMenu* OrvNodeMenuBuilder::menu(const QStringList& Path)
{
    if (Path.isEmpty())
        return m_pRoot;
    const QString Key = Path.join(Separator);
    if (QMenu* pKnown = m_Menus.value(Key))
        return pKnown;
    QMenu* pParent = menu(Path.mid(0, Path.size() - 1));
    QMenu* pMenu = new OrvMenu(Path.last(), pParent);
    pParent->addMenu(pMenu);
    m_Menus.insert(Key, pMenu);
    return pMenu;
}

QAction* OrvNodeMenuBuilder::addAction(
    const QStringList& MenuPath, const QString& Text, const QIcon& Icon, const QVariant& Data)
{
    QAction* pAction = menu(MenuPath)->addAction(Icon, Text);
    pAction->setData(Data);
    QObject::connect(pAction, SIGNAL(triggered()), m_pReceiver, m_pSlot);
    return pAction;
}

void OrvNodeMenuBuilder::addNodeTypes(const QStringList& Groups)
{
    const OrvShaderNetworkManager& NetworkManager = OrvShaderNetworkManager::instance();
    const QStringList Truncated = OrvLayerUtils::getTruncatedLayerRootMenuGroups();
    for (const QString& Key : NetworkManager.layerPathKeys()) {
        QStringList Parts = NetworkManager.nodeMenuPath(Key).split(Separator, Qt::SkipEmptyParts);
        if (Parts.size() < 2 || !Groups.contains(Parts.takeFirst()))
            continue;
        if (Parts.size() > 1 && Truncated.contains(Parts.first()))
            Parts.removeFirst();
        const QString Text = Parts.takeLast();
        addAction(Parts, Text, QIcon(), Key);
    }
}
