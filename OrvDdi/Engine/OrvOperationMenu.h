#pragma once

/// Which operations of the image engine are offered as layers, and where in the menus: operations without a
/// use on a texture (files, screens, plumbing), those that need curves or paths, those whose result differs
/// with the region asked for, and those that compute for minutes are not in it.
struct OrvOperationMenuEntry {
    const char* pOperation;
    const char* pMenuPath;
};

/// In menu order; the list ends with null pointers.
extern const OrvOperationMenuEntry OrvOperationMenu[];
