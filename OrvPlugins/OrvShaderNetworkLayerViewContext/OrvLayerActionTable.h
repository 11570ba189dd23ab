#pragma once

#include "OrvCoreModules/Menus/OrvActionCreator.h"

#include <QtCore/QCoreApplication>

/// Makes the layer commands, once at the module's start: what each is called, what it does, where it stands
/// in the menus and which keys it answers to. The actions belong to the object whose slots they call,
/// OrvLayerActions; the table keeps none of them.
class OrvLayerActionTable {
    Q_DECLARE_TR_FUNCTIONS(OrvLayerActions)

public:
    explicit OrvLayerActionTable(QObject* pActions);

    void createActions();
    /// One action per layer type and use of it; a type that has its action already keeps it.
    void createLayerTypeActions();

private:
    void setDefaultShortcuts();
    void createLayerActions();
    void createMaskActions();
    void createMaskImageActions();
    void createAdjustmentActions();
    void createContentActions();
    void createCachingActions();
    void createQuickFind();
    void placeHostMenus();
    /// The menu that the following actions go to, at the end of the one that holds it.
    void beginMenu(const QString& MenuPath, const char* pIcon);
    void add(const QString& Text, const char* pIcon, const char* pSlot, const QVariant& Data = QVariant());

    struct LayerTypeFamily;
    void createLayerTypeActions(const LayerTypeFamily& Family);

    QObject* m_pActions;
    OrvActionCreator m_Creator;
};
