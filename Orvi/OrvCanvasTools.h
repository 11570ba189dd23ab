#pragma once

#include <QtCore/QObject>

class OrvBrushTool;
class OrvCanvasSelection;
class OrvSelectionTool;

/// What the left mouse button does on the canvas, and the tools that do it, which it owns. Canvas and tool
/// bars share it; it does nothing by itself.
class OrvCanvasTools : public QObject {
    Q_OBJECT

public:
    enum Tool { Brush, SelectRectangle, SelectLasso };

    explicit OrvCanvasTools(QObject* pParent = nullptr);

    Tool tool() const { return m_Tool; }
    void setTool(Tool NewTool);
    OrvBrushTool* brushTool() const { return m_pBrushTool; }
    OrvSelectionTool* selectionTool() const { return m_pSelectionTool; }
    OrvCanvasSelection* selection() const { return m_pSelection; }

public Q_SLOTS:
    void takeBrush() { setTool(Brush); }
    void takeRectangle() { setTool(SelectRectangle); }
    void takeLasso() { setTool(SelectLasso); }

Q_SIGNALS:
    void toolChanged();

private:
    OrvCanvasSelection* m_pSelection;
    OrvBrushTool* m_pBrushTool;
    OrvSelectionTool* m_pSelectionTool;
    Tool m_Tool = Brush;
};
