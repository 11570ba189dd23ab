#pragma once

#include "OrvDdi/Color/OrvColorSpaceConfig.h"

#include <QtWidgets/QDialog>

#include <qopengl.h>

class OrvColorSpaceControlet;
class OrvShaderInput;
class QComboBox;

/// Asks for the texel format and the colour spaces that a channel is converted to, and whether layers that
/// are locked, or used by other channels too, come along. It works on copies of the channel's settings and
/// converts nothing; OrvShaderInputActions does.
class OrvShaderInputActionsConvertDialog : public QDialog {
    Q_OBJECT

public:
    enum Choice { None = 0, ConvertChannel = 1, ConvertAll = 2 };

    OrvShaderInputActionsConvertDialog(
        OrvShaderInput* pShaderInput, QWidget* pParent, bool HasLockedLayers, bool HasSharedLayers);

    Choice choice() const { return m_Choice; }
    GLenum depth() const;
    const OrvColorSpaceConfig& colorSpaceConfig() const { return m_ColorSpaceConfig; }
    const OrvColorSpaceConfig& scalarColorSpaceConfig() const { return m_ScalarColorSpaceConfig; }

public Q_SLOTS:
    /// What follows the texel format follows the chosen one.
    void updateAutomaticColorSpaces();
    void acceptConvertChannel();
    void acceptConvertAll();

private:
    QWidget* createColorSpaces();
    QWidget* createButtons(bool HasOtherLayers);

    OrvColorSpaceConfig m_ColorSpaceConfig, m_ScalarColorSpaceConfig;
    QComboBox* m_TypeCombo;
    OrvColorSpaceControlet *m_ColorSpaces = nullptr, *m_ScalarColorSpaces = nullptr;
    Choice m_Choice = None;
};
