#pragma once

#include <QtWidgets/QToolBar>

class OrvBrushTool;
class OrvColorSwatch;
class OrvSliderSpinBox;
class QAction;
class QToolButton;

/// The strip with the brush's colour, size, hardness, opacity, eraser, and what a pen's pressure does. It
/// shows and sets what the brush tool keeps, and shows as which grey a mask takes the colour.
class OrvBrushBar : public QToolBar {
    Q_OBJECT

public:
    explicit OrvBrushBar(OrvBrushTool* pTool, QWidget* pParent = nullptr);

private Q_SLOTS:
    void refresh();
    void refreshNumber();

private:
    OrvSliderSpinBox* addSlider(const QString& Name, const QString& ToolTip, int Width);
    QToolButton* addToggle(const char* pName, const QString& IconName, const QString& ToolTip);
    void connectEditors();

    OrvBrushTool* m_pTool;
    OrvColorSwatch* m_pColor;
    OrvColorSwatch* m_pNumber; ///< the colour as an image of numbers takes it
    QAction* m_pNumberPlace;
    OrvSliderSpinBox* m_pSize;
    OrvSliderSpinBox* m_pHardness;
    OrvSliderSpinBox* m_pOpacity;
    QToolButton* m_pPressureSetsSize;
    QToolButton* m_pPressureSetsOpacity;
    QToolButton* m_pEraser;
};
