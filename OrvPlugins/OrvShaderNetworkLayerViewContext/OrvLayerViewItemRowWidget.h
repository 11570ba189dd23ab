#pragma once

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

#include <memory>

class OrvLayer;
class OrvLayerView;
class OrvSnBaseNode;
struct OrvLayerRowContents;

/// One row of a Layers palette. The palette's tree owns it; it shows its layer, follows the layer's own
/// signals, passes clicks on to OrvLayerRowClicks, and holds nothing of the document.
/// A stack may have thousands of rows: the widgets of a row, and its connections, are made when it is painted
/// for the first time. The layer of another stack gets them as they are, and fills them when it is in view.
class OrvLayerViewItemRowWidget : public QWidget {
    Q_OBJECT

public:
    static constexpr int RowHeight = 24;

    OrvLayerViewItemRowWidget(OrvLayer* pLayer, OrvLayerView* pLayerView);
    ~OrvLayerViewItemRowWidget() override;

    OrvLayer* layer() const;
    /// Shows another layer from now on, at once where the row can be seen.
    void setLayer(OrvLayer* pLayer);
    OrvLayerView* layerView() const { return m_LayerView; }

    /// Whether the group is unfolded in the tree, kept with the layer. Only to be asked of groups.
    bool isExpanded() const;
    void setExpanded(bool Expanded);

    /// Shows the rich text in the place of the name; editing starts from the plain name all the same.
    void showFilteredName(const QString& RichText, const QString& PlainName);
    void showPlainName();
    /// Of the visibility button; nowhere before the row was painted.
    QRect eyeGeometry() const;
    bool isEyeDown() const;
    /// Lets the user edit the name in its place.
    void editName();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void selectedChanged(bool Selected, OrvLayer* pLayer);

public Q_SLOTS:
    void setName(QString Name);
    void updateEditLabelText();
    void onVisibilityButtonPressed();
    void updateVisibilityIcon();
    /// Shows the bake state in the button of a bake point; other layers have none.
    void updateBakePointComponentButton();
    void updateColorTagWidget();
    void makePaintComponentCurrent();
    void updateCustomProceduralIcon();
    void updateMaterialButton();
    /// Highlights the button of the component that is painted on.
    void updateComponentButtons();
    void onMaskStackClicked();
    void onMaskComponentClicked();
    void updateMaskIcon();
    void onAdjustmentStackClicked();
    void updateAdjustmentIcon();
    void showSharerList();
    void showLayerProperties();
    /// Unlocking may ask the user; the row then shows what came of it.
    void onLockedChanged(bool Locked);
    void updateCostWidget();
    void onSelectedChanged(bool Selected);
    void onNodeEnabledChanged(OrvSnBaseNode* pNode);

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void showEvent(QShowEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;
    void contextMenuEvent(QContextMenuEvent* pEvent) override;

private Q_SLOTS:
    void onLayerStateRefreshed();

private:
    /// Reports a layer that is gone.
    bool checkLayer(int Line) const;
    bool showsGroup() const;
    /// Made where they are not there yet.
    void ensureContents();
    void connectContents();
    /// What there is of contents shows the layer and follows it.
    void fillContents();
    void fitContents();
    void connectLayer();
    void updateContents();
    void updatePaintButton();
    void updateLock();

    QPointer<OrvLayer> m_Layer;
    OrvLayerView* m_LayerView;
    std::unique_ptr<OrvLayerRowContents> m_pContents;
    bool m_ContentsShowLayer = false; ///< not that of the stack before
    QString m_FilteredName;
    bool m_Selected = false;
};
