#pragma once

#include "OrvCoreModules/Window/OrvPalette.h"

class OrvLayerStack;
class OrvShelfModel;
class QLabel;
class QLineEdit;
class QListView;
class QModelIndex;
class QSortFilterProxyModel;

/// The "Shelf" palette: custom procedurals and materials with thumbnails, to be dragged into a layer tree; a
/// double click adds one to the current stack. It opens the shelf when it is first shown and edits the
/// document through its layers alone.
class ORVCOREMODULES_EXPORT OrvShelfPalette : public OrvPalette {
    Q_OBJECT

public:
    explicit OrvShelfPalette(QWidget* pParent = nullptr);

    OrvShelfModel* model() const { return m_pModel; }
    QListView* view() const { return m_pView; }
    QLineEdit* searchField() const { return m_pSearch; }

protected:
    void showEvent(QShowEvent* pEvent) override;

private Q_SLOTS:
    void addAsLayer(const QModelIndex& Index);
    void addAsMask(const QModelIndex& Index);
    void showInFiles(const QModelIndex& Index);
    void openUserDirectory();
    void popupMenu(const QPoint& Position);
    void search(const QString& Text);
    void updateHint();

private:
    /// In the channels of a shader that shows the stack.
    void addMaterial(const QModelIndex& Index, const OrvLayerStack* pStack);

    OrvShelfModel* m_pModel;
    QSortFilterProxyModel* m_pFound;
    QLineEdit* m_pSearch;
    QListView* m_pView;
    QLabel* m_pHint; ///< in place of an empty list
};
