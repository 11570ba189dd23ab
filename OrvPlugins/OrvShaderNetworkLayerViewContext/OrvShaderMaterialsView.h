#pragma once

#include <QtWidgets/QWidget>

class OrvShaderView;

/// Body of the "Shaders" palette, which owns it: the shader view, to be joined by the material stacks of the current
/// shader.
class OrvShaderMaterialsView : public QWidget {
    Q_OBJECT

public:
    explicit OrvShaderMaterialsView(QWidget* pParent);

    OrvShaderView* shaderView() const { return m_ShaderView; }

private:
    OrvShaderView* m_ShaderView;
};
