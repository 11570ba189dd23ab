#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include "OrvCore/Network/OrvSnBaseNode.h"

#include <QtCore/QPointF>
#include <QtCore/QString>

#include <functional>

class OrvShaderNetwork;
class QMenu;
class QWidget;

/// New nodes for the node graph: what there is to choose from, and putting the chosen one into the network. A
/// key is the menu path of an operation, or the type name of one of Orvi's own nodes.
namespace OrvNodeGraphCreation {

/// Where a new node goes, and what it is connected to; each of the connections may be missing.
struct Place {
    OrvShaderNetwork* pNetwork = nullptr;
    QPointF Position;
    OrvSnBaseNode* pSource = nullptr; ///< feeds its preferred input
    QString OutputName;
    OrvSnBaseNode::Consumer Reader; ///< is fed by it
};

/// Null, with nothing changed, for an unknown key; otherwise one undo step.
ORVCOREMODULES_EXPORT OrvSnBaseNode* add(const QString& Key, const Place& Where);

/// Fills the menu with all that can be added to the network; the function is given the key that was chosen.
ORVCOREMODULES_EXPORT void fillMenu(
    QMenu* pMenu, const OrvShaderNetwork* pNetwork, const std::function<void(const QString& Key)>& Chosen);
/// Asks for an operation by name; empty when the user thought better of it. The position is the widget's.
QString find(QWidget* pWidget, const QPoint& Position);
/// The number of node types that quick finds remember is the node graph's to set, once.
void setUpSettings();

} // namespace OrvNodeGraphCreation
