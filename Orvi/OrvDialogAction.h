#pragma once

#include "OrvCoreModules/Menus/OrvAction.h"

/// Menu entries that ask something before they do anything carry an ellipsis; their path in the action tree,
/// which shortcuts are kept by, does not.
namespace OrvDialogAction {

inline void mark(OrvAction* pAction)
{
    if (pAction)
        pAction->setText(pAction->text() + QStringLiteral("…"));
}

} // namespace OrvDialogAction
