#pragma once

#include <QtCore/QMap>
#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

class OrvLayerShader;
class OrvLayerView;
class OrvShaderInput;
class OrvShaderView;
class QTabBar;

/// Body of the "Shaders" palette, which owns it: tabs on the left, the first for the list of shaders, one
/// more for each material channel that feeds the current shader, with its layers. The tabs follow the host;
/// which one is open is all that the view knows by itself.
class OrvShaderMaterialsView : public QWidget {
    Q_OBJECT

public:
    explicit OrvShaderMaterialsView(QWidget* pParent);

    OrvShaderView* shaderView() const { return m_ShaderView; }
    OrvLayerView* layerView() const { return m_LayerView; }
    QTabBar* tabBar() const { return m_TabBar; }

public Q_SLOTS:
    void onShaderTagsChanged(QString, OrvLayerShader* Shader);
    void onShaderAdded(OrvLayerShader* pShader);
    void onShaderRemoved(OrvLayerShader*);
    void onShaderChanged(OrvLayerShader* pShader);
    void onNodeInputChanged();
    void onShaderInputNameChanged(OrvShaderInput* pShaderInput, QString);
    void onShaderInputRenamed(OrvShaderInput* ShaderInput);
    void onShaderRenamed();
    void onTabChanged(int TabIndex);
    void onProjectClosed();

private:
    void createTabBar();
    void connectHost();

    void rebuildTabs();
    void followShader(OrvLayerShader* pShader);
    void stopFollowingShader();
    void addMissingTabs();
    void removeLeftOverTabs();
    /// For the user, who goes on working there.
    void openTab(int TabIndex);
    /// Of a channel, or none.
    void showLayers(OrvShaderInput* pShaderInput);
    void titleTab(OrvShaderInput* pShaderInput);
    QObject* tabObject(int TabIndex) const;
    int tabIndex(const OrvShaderInput* pShaderInput) const;

    QTabBar* m_TabBar;
    OrvShaderView* m_ShaderView;
    OrvLayerView* m_LayerView;
    /// The one whose node is listened to.
    QPointer<OrvLayerShader> m_ConnectedShader;
    /// The material channels of the current shader, with the inputs that they feed.
    QMap<OrvShaderInput*, QString> m_MaterialChannels;
};
