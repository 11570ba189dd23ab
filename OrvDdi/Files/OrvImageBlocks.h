#pragma once

#include "OrvDdi/Files/OrvProgress.h"
#include "OrvDdi/OrvDdiExport.h"

#include <QtCore/QJsonObject>
#include <QtCore/QSet>
#include <QtCore/QString>

class OrvBlockStore;
class OrvImageSet;

/// Stores the pixels of an image set as data blocks, one per square of its plane, and brings them back. The
/// description says where each square lies; layout, format and fill colour are the document's to store.
/// Squares of one value are part of the description and take no block.
class ORVDDI_EXPORT OrvImageBlocks {
public:
    /// Stores what changed since the set was last stored, and whatever this store lacks; then the set's block
    /// keys are up to date. When it fails or is cancelled, what it stored until then need not be stored again.
    static bool store(OrvImageSet& Images, OrvBlockStore& Store, QJsonObject& Description,
        const OrvProgress& Progress, QString& Error);
    /// Replaces the pixels of a set that has the layout and format that the stored one had. On failure it is
    /// unchanged.
    static bool load(const QJsonObject& Description, const OrvBlockStore& Store, OrvImageSet& Images,
        QString& Error, const OrvProgress& Progress = {});
    /// The contents of the set in few bytes: the same for the same pixels, layout and format. Only squares
    /// that have changed since they were last stored or asked for are read.
    static QByteArray contentKey(OrvImageSet& Images);
    /// The blocks that a description needs.
    static QSet<QByteArray> blockKeys(const QJsonObject& Description);
};
