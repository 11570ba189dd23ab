#pragma once

#include "OrvCoreModules/Widgets/OrvDialog.h"

/// Says what becomes of multi-channel layers when a channel is disconnected from a shader, or the shader
/// removed, and lets the user choose. It changes nothing itself: whoever runs it acts on the choice when it
/// is accepted.
class OrvShaderInputDisconnectDialog : public OrvDialog {
    Q_OBJECT

public:
    enum class Occasion { DisconnectingChannel, RemovingShader };

    OrvShaderInputDisconnectDialog(QWidget* pParent, Occasion Why);

    /// True: the layers leave the stack. False: they become ordinary layers.
    bool disconnectChosen() const { return m_DisconnectChosen; }

public Q_SLOTS:
    void onDisconnect();
    void onConvert();

private:
    QString introduction() const;

    Occasion m_Occasion;
    bool m_DisconnectChosen = false;
};
