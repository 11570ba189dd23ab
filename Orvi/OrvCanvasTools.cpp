#include "Orvi/OrvCanvasTools.h"

#include "Orvi/OrvBrushTool.h"
#include "Orvi/OrvCanvasSelection.h"
#include "Orvi/OrvSelectionTool.h"

OrvCanvasTools::OrvCanvasTools(QObject* pParent)
    : QObject(pParent)
    , m_pSelection(new OrvCanvasSelection(this))
    , m_pBrushTool(new OrvBrushTool(m_pSelection, this))
    , m_pSelectionTool(new OrvSelectionTool(m_pSelection, this))
{
}

void OrvCanvasTools::setTool(Tool NewTool)
{
    // What is under way with the old tool is finished with it.
    if (m_Tool == NewTool || m_pBrushTool->isPainting() || m_pSelectionTool->isSelecting())
        return;
    m_Tool = NewTool;
    if (m_Tool != Brush) {
        m_pSelectionTool->setShape(
            m_Tool == SelectLasso ? OrvSelectionTool::Lasso : OrvSelectionTool::Rectangle);
    }
    Q_EMIT toolChanged();
}

#include "moc_OrvCanvasTools.cpp"
