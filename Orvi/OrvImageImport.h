#pragma once

#include "OrvDdi/Files/OrvProgress.h"
#include "OrvDdi/Files/OrvUdimSet.h"

#include <QtCore/QCoreApplication>

class OrvGeoEntity;
class OrvImageSet;
class OrvLayer;
class OrvLayerStack;
class OrvShaderInput;
class OrvShaderNetwork;

/// Brings image files into the document: as channels of their own or as paint layers. Each call is one undo
/// step; a failed or cancelled one leaves nothing behind and says why in a sentence that names the file.
/// Tiles that the object lacks are added to it. It asks no questions.
class OrvImageImport {
    Q_DECLARE_TR_FUNCTIONS(OrvImageImport)

public:
    /// A channel named after the files, of their size and depth, with the image as its base layer. Files
    /// named after normals, heights and the like are taken as numbers, not as colour.
    static OrvShaderInput* importChannel(
        OrvShaderNetwork* pNetwork, const OrvUdimSet& Files, const OrvProgress& Progress, QString& Error);
    enum Place { AboveCurrent, AtBottom };
    /// A paint layer above another one, or where the place says when that is null. Images of other sizes are
    /// scaled to the tiles of the channel.
    static OrvLayer* importPaintLayer(OrvLayerStack* pStack, OrvLayer* pBelow, Place Where,
        const OrvUdimSet& Files, const OrvProgress& Progress, QString& Error);
    /// The layer's mask becomes the image's luminance; one that is a stack or computed is replaced.
    static bool importMask(
        OrvLayer* pLayer, const OrvUdimSet& Files, const OrvProgress& Progress, QString& Error);

    /// Gives an object without channels the tiles of all files that are to become its channels.
    static void takeTiles(OrvGeoEntity* pEntity, const QList<OrvUdimSet>& Sets);

    /// Paths of local image files among dropped or named ones; folders and other files are left out.
    static QStringList imagePaths(const QStringList& Paths);
    /// Files grouped to images; a single tile brings the other tiles of its set along.
    static QList<OrvUdimSet> imageSets(const QStringList& Paths);

private:
    static void addMissingTiles(const OrvShaderNetwork* pNetwork, const OrvUdimSet& Files);
    static bool fillImages(OrvImageSet& Images, bool Numbers, const OrvUdimSet& Files,
        const OrvProgress& Progress, QString& Error);
};
