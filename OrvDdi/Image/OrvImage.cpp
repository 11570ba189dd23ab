#include "OrvDdi/Image/OrvImage.h"

#include <QtCore/QCoreApplication>

namespace {

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvImage", pText);
}

} // namespace

QList<QPair<QString, GLenum>> OrvImage::sortedSupportedDepths()
{
    return {{tr("8-bit"), GL_UNSIGNED_BYTE}, {tr("16-bit"), GL_HALF_FLOAT}, {tr("32-bit"), GL_FLOAT}};
}

GLenum OrvImage::validTypeFromString(const QString& Text)
{
    for (const auto& Depth : sortedSupportedDepths()) {
        if (Depth.first == Text)
            return Depth.second;
    }
    return GL_UNSIGNED_BYTE;
}

QString OrvImage::depthName(GLenum Depth)
{
    for (const auto& Supported : sortedSupportedDepths()) {
        if (Supported.second == Depth)
            return Supported.first;
    }
    return QString();
}
