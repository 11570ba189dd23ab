#pragma once

#include <QtCore/QObject>

class OrvProject;

/// The channel commands of menus and palettes, made once at the module's start. They act on the host's current
/// channel and network and hold no document data.
class OrvShaderInputActions : public QObject {
    Q_OBJECT

public:
    static OrvShaderInputActions& instance();

public Q_SLOTS:
    void addShaderInput();
    /// Asks what becomes of layers that share the channel.
    void removeShaderInput();
    void switchActionsEnabled(OrvProject* Project);

private:
    OrvShaderInputActions();
};
