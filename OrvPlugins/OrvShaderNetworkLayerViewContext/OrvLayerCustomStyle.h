#pragma once

#include "OrvCoreModules/Window/OrvCustomStyle2.h"

/// The look of a layer tree, which owns it: rows without the lines that connect them.
class OrvLayerCustomStyle : public OrvCustomStyle2 {
    Q_OBJECT

public:
    void drawPrimitive(PrimitiveElement Element, const QStyleOption* pOption, QPainter* pPainter,
        const QWidget* pWidget = nullptr) const override;
};
