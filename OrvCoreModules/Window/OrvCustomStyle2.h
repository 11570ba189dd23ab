#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtWidgets/QProxyStyle>

/// The style of item views that want more than the program's look: a drop indicator that can be seen,
/// selections across the whole row. Made per view; subclasses leave out or replace single primitives.
class ORVCOREMODULES_EXPORT OrvCustomStyle2 : public QProxyStyle {
    Q_OBJECT

public:
    OrvCustomStyle2();

    void drawPrimitive(PrimitiveElement Element, const QStyleOption* pOption, QPainter* pPainter,
        const QWidget* pWidget = nullptr) const override;
};
