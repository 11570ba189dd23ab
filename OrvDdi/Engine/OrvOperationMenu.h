#pragma once

/// Which operations of the image engine are offered as layers, and where in the menus: operations without a
/// use on a texture (files, screens, plumbing), those that need curves or paths, those whose result differs
/// with the region asked for, and those that compute for minutes are not in it.
struct OrvOperationMenuEntry {
    /// Whether a reduced view may be computed from reduced pixels. Only where the result depends on nothing
    /// but the pixel's colour, or the operation knows of scales: others would look different when zoomed out.
    enum Scaling { AtAnyScale, AtFullScale };
    const char* pOperation;
    const char* pMenuPath;
    Scaling View;
};

/// In menu order; the list ends with null pointers.
extern const OrvOperationMenuEntry OrvOperationMenu[];

/// True also for operations that are not in the menu.
bool orvNeedsFullScale(const char* pOperation);
