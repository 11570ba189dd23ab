#pragma once

class OrvEditLabel;
class OrvLayerComponentPushButton;
class OrvLayerStackPopupButton;
class OrvToggleAction;
class QGridLayout;
class QLabel;
class QToolButton;
class QWidget;

/// The widgets of one layer row in their order, children of the row. Marks that a layer does not have keep
/// their column free, so that the eye finds each kind of mark in one line from row to row; a narrow tree
/// gives that room to the names. The row fills and connects them.
struct OrvLayerRowContents {
    explicit OrvLayerRowContents(QWidget* pRow);

    /// Shows the widgets and gives them their places at once.
    void show();
    /// To the tree's width, not the row's: all rows of a tree look alike.
    void fitTo(int TreeWidth);

    QGridLayout* pLayout;
    QToolButton* pVisibilityButton;
    OrvLayerComponentPushButton* pBakePointButton;
    OrvEditLabel* pNameLabel;
    QLabel* pColorTag;
    OrvLayerComponentPushButton* pPaintButton;
    OrvLayerStackPopupButton* pMaskStackButton;
    OrvLayerComponentPushButton* pMaskButton;
    OrvLayerStackPopupButton* pAdjustmentStackButton;
    QToolButton* pSharedButton;
    QToolButton* pSharedChannelButton;
    OrvToggleAction* pLockAction;
    QLabel* pCost;
};
