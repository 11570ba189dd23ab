#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QObject>

/// How editors look, as the user has set it, kept in the program's settings.
class ORVCOREMODULES_EXPORT OrvAppearance : public QObject {
    Q_OBJECT

public:
    static OrvAppearance& instance();

    /// Decimals that sliders show.
    int sliderPrecision() const { return m_SliderPrecision; }

public Q_SLOTS:
    void setSliderPrecision(int Decimals);

Q_SIGNALS:
    void sliderPrecisionChanged(int Decimals);

private:
    OrvAppearance();

    int m_SliderPrecision;
};
