#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QPoint>
#include <QtWidgets/QPushButton>

class QMimeData;

/// A button that can be dragged away and dropped on. What is dragged and what a drop does is the subclass's:
/// the base accepts drops without effect and drags nothing while it has no data.
class ORVCOREMODULES_EXPORT OrvDraggablePushButton : public QPushButton {
    Q_OBJECT

public:
    explicit OrvDraggablePushButton(QWidget* pParent = nullptr);

    /// The caller owns the data; null: there is nothing to drag.
    virtual QMimeData* mimeData() const;

protected:
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseMoveEvent(QMouseEvent* pEvent) override;
    void dragEnterEvent(QDragEnterEvent* pEvent) override;
    void dropEvent(QDropEvent* pEvent) override;
    /// Carries out a drag that has begun; the drag and its data are Qt's afterwards.
    virtual void runDrag(QMimeData* pData);

private:
    QPoint m_PressPosition;
    bool m_CanDrag = false;
    bool m_Dragged = false;
};
