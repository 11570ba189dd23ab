#pragma once

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

class OrvEditLabel;
class OrvShaderInput;
class OrvShaderInputView;
class OrvToggleAction;
class QLabel;
class QToolButton;

/// One row of the Channels palette: name, marks for depth and colour space, the button of the layer stack,
/// the marker of sharing, the lock. The palette's tree owns it; it shows its channel and edits it through the
/// host, and holds nothing of it.
class OrvShaderInputViewItemRowWidget : public QWidget {
    Q_OBJECT

public:
    static constexpr int RowHeight = 24;

    OrvShaderInputViewItemRowWidget(OrvShaderInputView* pView, OrvShaderInput* pShaderInput);

    OrvShaderInput* shaderInput() const;
    /// Where a dragged layer opens this channel at once, in coordinates of the row.
    QRect dragTargetGeometry() const;
    /// A long name is shortened; it does not push the buttons out of the list.
    QSize sizeHint() const override;

public Q_SLOTS:
    /// Reads again what changes without a signal of the channel.
    void refresh();
    void updateSharedMarker();
    void setNameUndo(QString Name);
    void editName();
    void setDepthLabelIcon();
    void setColorspaceLabelIcon();
    void setPopupLayerStackButtonIcon();
    void popupLayerStack();
    void showSharedItemsList();
    void toggleShaderInputLocked(bool Locked);

protected:
    void showEvent(QShowEvent* pEvent) override;

private:
    void createLayout();
    QToolButton* createButton(const QString& ToolTip);
    QLabel* createMark();
    void connectShaderInput();
    /// False when the user keeps the locks and caches around the channel.
    bool allowUnlocking() const;

    OrvShaderInputView* m_View;
    QPointer<OrvShaderInput> m_ShaderInput;
    OrvEditLabel* m_NameLabel = nullptr; ///< like all others made when the row is first seen
    QLabel* m_DepthLabel = nullptr;
    QLabel* m_ColorspaceLabel = nullptr;
    QToolButton* m_LayerStackButton = nullptr;
    QToolButton* m_SharedButton = nullptr;
    OrvToggleAction* m_LockAction = nullptr;
};
