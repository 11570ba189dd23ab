#pragma once

#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCoreModules/Window/OrvPalette.h"

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QPointer>
#include <QtCore/QTimer>

class OrvLayerStack;
class OrvLayerViewContextManager;

/// The palettes of single layer stacks, of masks, adjustments and channels: opens, titles, retires and stores
/// them. The manager owns the table and passes on what the host tells; the host's window owns the palettes.
/// None is deleted inside a signal of the host.
class OrvLayerStackPalettes {
public:
    /// The manager's slots are called for what happens to palettes and stacks.
    explicit OrvLayerStackPalettes(OrvLayerViewContextManager* pManager);

    /// Shows the palette of the stack, made if needed. An unpinned palette closes by itself when it is left.
    void open(OrvLayerStack* pLayerStack, bool Unpinned);
    void close();
    void updateTitles();
    /// Kept with the stack's content. A palette of no stack is ignored.
    void storeSize(const OrvPalette* pPalette);

    /// Retires the palette of a stack whose mask or adjustments became something else.
    void noteReconnection(OrvSnBaseNode* pNode, const QString& InputName, const OrvSnBaseNode* pNewInputNode);
    void retireThoseOf(const OrvSnBaseNode* pNode);
    /// Only the identity of the stack is used: it is going already.
    void retireThatOf(const QObject* pLayerStack);
    void deleteRetired();

    /// Where the open palettes of the current project are stored; empty without a cache directory.
    static QString settingsFileName();
    /// The file's name without its folder.
    static QString shortSettingsFileName();
    void save() const;
    void load();

private:
    /// The place of the stack is kept with its palette: it is needed when the stack itself is already going.
    struct Entry {
        QPointer<OrvPalette> pPalette;
        QPointer<OrvSnBaseNode> pNode;
        QString InputName;
        /// When it was opened: a group's stack feeds an input of the same name.
        bool IsAdjustmentStack = false;
    };
    using Table = QHash<const QObject*, Entry>;

    static OrvPalette* create(OrvLayerStack* pLayerStack);
    static void storeSize(const Entry& Stored);
    void enter(OrvLayerStack* pLayerStack, OrvPalette* pPalette);
    Table::iterator retire(Table::iterator Retired);

    OrvLayerViewContextManager* m_pManager;
    Table m_Entries; ///< by the stack's identity
    QList<QPointer<OrvPalette>> m_Retired;
    QTimer m_DeletionTimer;
};
