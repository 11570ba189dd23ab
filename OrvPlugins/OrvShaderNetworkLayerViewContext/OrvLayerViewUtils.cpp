#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewUtils.h"

#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Object/OrvObjectReferenceManager.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"

#include <QtGui/QStandardItem>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QWidget>

OrvLayer* OrvLayerViewUtils::layerFromItem(const QStandardItem* pItem)
{
    const QString Uuid = pItem ? pItem->data(NodeRole).toString() : QString();
    if (Uuid.isEmpty())
        return nullptr;
    auto* pNode = qobject_cast<OrvSnBaseNode*>(OrvObjectReferenceManager::instance().getPointer(Uuid));
    if (pNode && OrvLayerStreamUtils::isMergeNode(pNode))
        return OrvLayerManager::instance().getLayer(pNode, true);
    OrvDebug("OrvLayerViewUtils", __LINE__,
        QStringLiteral("[ !! ] Invalid uuid '%1' conversion to a blend node").arg(Uuid), false, false);
    return nullptr;
}

void OrvLayerViewUtils::warn(const QString& Title, const QString& Error)
{
    if (!Error.isEmpty())
        QMessageBox::warning(&OrvMainWindow::instance(), Title, Error, QMessageBox::Ok);
}

void OrvLayerViewUtils::tell(const QString& Reason)
{
    constexpr int Duration = 6000; // ms
    OrvStatusManager::instance().showMessage(Reason, Duration);
}

void OrvLayerViewUtils::setStyleSheet(QWidget* pWidget, const QString& StyleSheet)
{
    if (pWidget->styleSheet() != StyleSheet)
        pWidget->setStyleSheet(StyleSheet);
}

void OrvLayerViewUtils::report(int Line, const QString& Message)
{
    OrvDebug("OrvLayerView", Line, Message, false, false);
}

void OrvLayerViewUtils::report(int Line, const char* pMessage)
{
    report(Line, QString::fromLatin1(pMessage));
}
