#pragma once

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QStringList>

class OrvLayerShader;
class OrvProject;
class QAction;

/// The shader commands of menus and palettes, made once at the module's start, with one entry per registered
/// shader type in the menus that add shaders and shader layers. They act on the host's current shader and
/// hold no document data.
class OrvShaderViewActions : public QObject {
    Q_OBJECT

public:
    static OrvShaderViewActions& instance();

    /// What the last chosen entry made, once: whoever opened the menu asks for it.
    OrvLayerShader* takeCreatedShader();

public Q_SLOTS:
    /// Asks what becomes of multi-channel layers in the shader's channels.
    void removeShader();
    void duplicateShader();
    void cut();
    void copy();
    void paste();
    void switchActionsEnabled(OrvProject* Project);
    /// A shader of the type that the sender carries.
    void addShaderFromAction();
    void createStandaloneShaderActions();
    void createLayeredShaderActions();
    /// Fills the menu of the action anew, or gives it one.
    void updateAddShaderSubMenu(QAction* Action, QString Window);

private:
    OrvShaderViewActions();
    QAction* createAction(const QString& Text, const char* pIcon);
    QAction* createCommand(const QString& Text, const char* pIcon, const char* pSlot);
    QAction* createSubMenuAction(const QString& Text, const QString& Window);
    void createMaintenanceActions();
    void createEntries(const QStringList& Types, const QStringList& Windows);
    void followLayerMenu();
    void addShaderLayerOfType(const QString& Key);

    QList<QPointer<QAction>> m_Commands;
    QAction* m_AddShaderAction = nullptr;
    QAction* m_AddShaderLayerAction = nullptr;
    QPointer<OrvLayerShader> m_CreatedShader;
    bool m_IsChoosingLayer = false; ///< the menu of shader layers is open, or closing on a choice
};
