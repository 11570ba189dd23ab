#pragma once

#include <QtWidgets/QListView>

/// The list of shaders. The Shaders palette owns it; it reports the current row, and only shaders and shader
/// layers may be dragged over it.
class OrvShaderListView : public QListView {
    Q_OBJECT

public:
    explicit OrvShaderListView(QWidget* pParent);

Q_SIGNALS:
    void currentIndexChanged(QModelIndex current, QModelIndex previous);

protected:
    void currentChanged(const QModelIndex& Current, const QModelIndex& Previous) override;
    void dragMoveEvent(QDragMoveEvent* pEvent) override;
};
