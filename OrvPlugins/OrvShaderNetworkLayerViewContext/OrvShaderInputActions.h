#pragma once

#include <QtCore/QList>
#include <QtCore/QObject>

class OrvAction;
class OrvActionCreator;
class OrvGeoEntity;
class OrvProject;
class QAction;

/// The channel commands of menus and palettes, made once at the module's start, and the questions that some
/// of them ask. They act on the host's current channel and network and hold no document data.
class OrvShaderInputActions : public QObject {
    Q_OBJECT

public:
    static OrvShaderInputActions& instance();
    ~OrvShaderInputActions() override;

public Q_SLOTS:
    void addShaderInput();
    void addMaterialShaderInput();
    /// One for each free input of the current shader that takes materials.
    void addMaterialLayersToMaterialsShader();
    void convertShaderInput();
    /// Asks what becomes of layers that share the channel.
    void removeShaderInput();
    void cut();
    void copy();
    void paste();
    /// The action's data is the edge length.
    void resizeShaderInput(QAction* Action);
    /// The action's data names a method of the channel.
    void invokeShaderInputMethod(QAction* Action);
    void switchActionsEnabled(OrvProject* Project);
    /// Checks the size that the current channel has.
    void markPresentSize();
    /// Of channels that have the sizes of faces none can be chosen.
    void explainSizes(OrvGeoEntity* Entity);

private:
    OrvShaderInputActions();
    void createActions();
    void createResizeActions(OrvActionCreator& Creator);

    QList<OrvAction*> m_SizeActions;
};
