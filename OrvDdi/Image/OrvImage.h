#pragma once

#include "OrvDdi/Image/OrvPixelFormat.h"

#include <QtCore/QList>
#include <QtCore/QPair>
#include <QtCore/QString>

/// The pixel depths that images can have, with the names under which users choose them. Only queries; pixels
/// themselves live in OrvImageBuffer.
class ORVDDI_EXPORT OrvImage {
public:
    /// Display name and depth code, in menu order.
    static QList<QPair<QString, GLenum>> sortedSupportedDepths();
    /// The depth code of a display name; names of depths that images cannot have mean bytes.
    static GLenum validTypeFromString(const QString& Text);
    /// The display name of a depth code, empty for one that images cannot have.
    static QString depthName(GLenum Depth);
};
