#pragma once

#include "OrvDdi/Color/OrvColorSpaceDefaults.h"
#include "OrvDdi/Image/OrvColor.h"

#include <QtCore/QModelIndex>
#include <QtWidgets/QWidget>

class OrvDeferredTimer;
class OrvExpandableListWidget;
class OrvGeoEntity;
class OrvPanelToolBar;
class OrvProject;
class OrvQuickChannelStrip;
class OrvShaderInput;
class OrvShaderInputModel;
class OrvShaderInputPropertiesPane;
class OrvShaderInputRowSynchronizer;
class OrvShaderInputTreeView;
class QAction;

/// Body of the "Channels" palette, which owns it: the channels of the current object, the quick-channel
/// strip, the channel commands and the properties of the current channel. It rebuilds itself from the host
/// after every burst of changes, follows the host's current channel and points the main Layers palette at it;
/// it holds no document data.
class OrvShaderInputView : public QWidget {
    Q_OBJECT

public:
    explicit OrvShaderInputView(QWidget* pParent);

    OrvShaderInputModel* model() const { return m_Model; }
    OrvShaderInputTreeView* treeView() const { return m_TreeView; }

Q_SIGNALS:
    void refreshRequested();

public Q_SLOTS:
    void onCurrentShaderInputChanged(OrvShaderInput* pNewShaderInput);
    void onCurrentIndexChanged(QModelIndex Current);
    void requestRefresh();
    /// Undo and redo of what happened will refresh the list too.
    void undoableRequestRefresh();
    void refresh();
    void remakePropertyWidgets(OrvShaderInput* pShaderInput);
    /// A new channel, filled with the colour, becomes current.
    void quickChannel(OrvColor Value, OrvColorSpaceDefaults::ColorSpaceTarget Target);
    void saveQuickChannelPrefs();
    void onCurrentProjectChanged(OrvProject* pNewProject);
    void onCurrentGeoEntityChanged(OrvGeoEntity* pNewGeoEntity);
    void onMenuManagerActionAdded(QString RootMenu, QString SubMenu, QString, QAction* Action);
    void onMenuManagerActionRemoved(QString RootMenu, QString SubMenu, QString, QAction* Action);
    void onRefreshTimerTimeout();

protected:
    void contextMenuEvent(QContextMenuEvent* pEvent) override;

private:
    QWidget* createListPane();
    void addToolBarAction(const QString& Path);
    void connectParts();
    /// What the user does in the list reaches the host; what a refresh does there must not.
    void connectList();
    void disconnectList();
    void connectHost();
    void registerShortcuts();

    OrvExpandableListWidget* m_QuickChannelGroup = nullptr;
    OrvQuickChannelStrip* m_QuickChannelStrip = nullptr;
    OrvShaderInputModel* m_Model = nullptr;
    OrvShaderInputTreeView* m_TreeView = nullptr;
    OrvPanelToolBar* m_ToolBar = nullptr;
    OrvShaderInputRowSynchronizer* m_Rows = nullptr;
    OrvShaderInputPropertiesPane* m_Properties = nullptr;
    OrvDeferredTimer* m_RefreshTimer = nullptr;
};
