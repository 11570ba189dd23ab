#pragma once

#include <QtWidgets/QToolBar>

class OrvCanvasTools;
class QButtonGroup;

/// The strip with the canvas's tools, the ways in which a new selection combines with the present one, and what the
/// canvas can show. It shows and sets what the tools keep.
class OrvToolBar : public QToolBar {
    Q_OBJECT

public:
    explicit OrvToolBar(OrvCanvasTools* pTools, QWidget* pParent = nullptr);

private Q_SLOTS:
    void refresh();

private:
    /// What the canvas can be made to show.
    void addViews();
    void addButton(QButtonGroup* pGroup, int Id, const QString& Icon, const QString& ToolTip);

    OrvCanvasTools* m_pTools;
    QButtonGroup* m_pToolButtons;
    QButtonGroup* m_pModeButtons;
};
