#pragma once

#include "Orvi/OrvExportRun.h"

class OrvExportNames;
class OrvImageSet;
class OrvLayer;
class OrvShaderInput;

/// Writes the images that layers hold, as they are stored: in their depth, without blending, masks as images
/// of their own. One file per UDIM tile. Works without a window and changes nothing in the document.
class OrvLayerImageExport {
    Q_DECLARE_TR_FUNCTIONS(OrvLayerImageExport)

public:
    enum Part { Paint = 1, Masks = 2, Everything = 3 };

    /// All images of a channel's layers, on all levels, with those inside masks, named "Channel.Layer" and
    /// "Channel.Layer.Mask" after the prefix. An empty suffix means a type as deep as the image.
    static QVector<OrvExportJob> jobsOf(
        OrvShaderInput* pChannel, const QString& Prefix, const QString& Suffix, OrvExportNames& Names);
    /// The same for some layers. Of one that is computed its result takes the place of an image, and so does
    /// that of a mask stack.
    static QVector<OrvExportJob> jobsOf(const QList<OrvLayer*>& Layers, OrvShaderInput* pChannel, Part What,
        const QString& Suffix, OrvExportNames& Names);

    static bool writeImages(const OrvImageSet& Images, const QStringList& Files, bool Numbers,
        const OrvProgress& Progress, QString& Error);
};
