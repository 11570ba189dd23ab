#pragma once

#include "OrvCoreModules/Widgets/OrvDialog.h"

/// Says what becomes of multi-channel layers when a channel is disconnected from a shader, or the shader
/// removed, and lets the user choose. It changes nothing itself: whoever runs it acts on the choice when it
/// is accepted, or asks for the answer alone.
class OrvShaderInputDisconnectDialog : public OrvDialog {
    Q_OBJECT

public:
    enum class Occasion { DisconnectingChannel, RemovingShader };
    enum class Treatment { Convert, Disconnect, GiveUp };

    /// What the user wants. Where nobody can be asked, the answer is what loses nothing.
    static Treatment ask(Occasion Why);

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
