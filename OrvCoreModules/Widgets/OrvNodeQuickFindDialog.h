#pragma once

#include "OrvCoreModules/Widgets/OrvDialog.h"

#include <QtCore/QStringList>

class OrvFilteredStringSelector;

/// Finds a node type by typing parts of its name. Made for one question, run modally and thrown away; the
/// caller stores the favourites and creates the node.
class ORVCOREMODULES_EXPORT OrvNodeQuickFindDialog : public OrvDialog {
    Q_OBJECT

public:
    /// The position is in the parent's coordinates. Only node types below one of the groups are offered.
    OrvNodeQuickFindDialog(const QPoint& Position, const QStringList& ProceduralGroups,
        const QStringList& AdjustmentGroups, const QStringList& LastUsed, const QStringList& Favourites,
        QWidget* pParent = nullptr);

    /// Begins with its group; empty when the dialog was cancelled.
    const QString& chosenPath() const { return m_ChosenPath; }
    QStringList favourites() const;

private:
    void choose(const QString& Path);

    OrvFilteredStringSelector* m_pSelector;
    QString m_ChosenPath;
};
