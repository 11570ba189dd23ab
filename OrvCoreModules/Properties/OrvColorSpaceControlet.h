#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtWidgets/QWidget>

class OrvColorSpaceConfig;
class QComboBox;
class QLabel;

/// Edits a colour-space configuration that the caller owns and keeps alive: one choice for each role that it
/// shows, "Automatic" first. It touches nothing but that copy.
class ORVCOREMODULES_EXPORT OrvColorSpaceControlet : public QWidget {
    Q_OBJECT

public:
    explicit OrvColorSpaceControlet(OrvColorSpaceConfig& Config, QWidget* pParent = nullptr);

public Q_SLOTS:
    /// To be called after the configuration was changed from outside, by setAutomaticType() for one.
    void refresh();

Q_SIGNALS:
    void colorSpaceChanged();

private:
    void choose(int Role, int Index);

    OrvColorSpaceConfig& m_Config;
    QComboBox* m_Combos[2];
    QLabel* m_pLabels[2];
};
