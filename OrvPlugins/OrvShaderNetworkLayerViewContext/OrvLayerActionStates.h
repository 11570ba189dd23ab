#pragma once

#include <QtCore/QCoreApplication>

class OrvLayer;
class OrvLayerStack;
class QAction;

/// Which layer commands what is current allows, at the moment at which it is made: it switches their actions,
/// action sets and menus on and off, with the reason as their tool tip where it is not obvious, and is
/// dropped.
class OrvLayerActionStates {
    Q_DECLARE_TR_FUNCTIONS(OrvLayerActions)

public:
    OrvLayerActionStates();

    /// What needs no more than a stack.
    void switchStackActions() const;
    /// What depends on the current layer.
    void switchLayerActions() const;

private:
    void switchMaskActions() const;
    void switchAdjustmentActions() const;
    void switchContentActions() const;
    void switchExportActions() const;
    bool canBeExported(const QAction* pAction) const;
    /// What disables every command of the current layer, else what disables this one.
    QString whyNot(const QString& Reason) const { return m_Obstacle.isEmpty() ? Reason : m_Obstacle; }

    const OrvLayerStack* m_LayerStack = nullptr;
    const OrvLayer* m_Layer = nullptr; ///< null without a project, too
    bool m_IsModifiable = false;
    QString m_Obstacle; ///< why the current layer cannot be edited
};
