#pragma once

#include "OrvCoreModules/Window/OrvPalette.h"

/// The palette with the undo history: a click on a step goes to the state after it.
class OrvHistoryPalette : public OrvPalette {
    Q_OBJECT

public:
    explicit OrvHistoryPalette(QWidget* pParent = nullptr);
};
