#pragma once

#include "OrvCoreModules/Window/OrvPalette.h"

#include <functional>

class QBoxLayout;
class QKeySequence;
class QListWidget;
class QToolButton;

/// A palette that is a list with a row of buttons below. It knows how they look; what they are about is its
/// heirs'.
class OrvListPalette : public OrvPalette {
    Q_OBJECT

protected:
    /// The title is its object name, too.
    OrvListPalette(const QString& Title, int IconEdge, QWidget* pParent);

    QListWidget* list() const { return m_pList; }
    /// At the end of the row.
    QToolButton* addButton(const QString& Icon, const QString& ToolTip);
    /// A key while the list has the focus, but no editor in it.
    void addKey(const QList<QKeySequence>& Keys, const std::function<void()>& Pressed);

private:
    QListWidget* m_pList;
    QBoxLayout* m_pButtons;
};
