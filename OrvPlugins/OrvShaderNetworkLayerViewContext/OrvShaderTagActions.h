#pragma once

#include <QtCore/QList>
#include <QtCore/QObject>

class OrvLayerShader;
class OrvShaderView;
class QAction;

/// The checkable actions by which the user chooses what the canvas shows: one per system shader, and one for
/// the user's own shader chosen last. The Shaders palette, which owns them, is called by them and leads here
/// again.
class OrvShaderTagActions : public QObject {
    Q_OBJECT

public:
    enum Target { Channel, LayerAndBelow, Layer, PaintTarget, Material, UserShader };

    explicit OrvShaderTagActions(OrvShaderView* pShaderView);

    QList<QAction*> actions() const { return m_Actions; }
    /// Makes the shader that shows this the current one, or reports that there is none.
    void view(Target What);
    /// Checks the action of that shader, if it has one. There is no user's shader to go back to until one was
    /// chosen.
    void showCurrent(const OrvLayerShader* pShader);
    void setEnabled(bool Enabled);

private:
    bool isUsable(const QAction* pAction) const;

    QList<QAction*> m_Actions;
    bool m_Enabled = true;
};
