#pragma once

#include <QtCore/QString>
#include <QtCore/Qt>

class OrvLayer;
class QStandardItem;
class QWidget;

/// What the parts of a Layers palette share: how a row names its layer, how the user and the debug channel
/// are told of something.
namespace OrvLayerViewUtils {

/// Item data: the identity of the layer's blend node.
constexpr int NodeRole = Qt::UserRole + 2;

/// Null for no item and for a row without a layer; an identity that is no blend node's is reported.
OrvLayer* layerFromItem(const QStandardItem* pItem);

/// Shows the user why something failed; nothing to say shows nothing.
void warn(const QString& Title, const QString& Error);
/// Says in the status line, for some seconds, why a command did nothing.
void tell(const QString& Reason);

/// Leaves a widget alone that has the sheet already: setting even the same one would polish it anew.
void setStyleSheet(QWidget* pWidget, const QString& StyleSheet);

/// Writes to the debug channel in the palette's name.
void report(int Line, const QString& Message);
void report(int Line, const char* pMessage);

} // namespace OrvLayerViewUtils
