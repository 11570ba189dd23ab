#pragma once

#include "OrvDdi/Files/OrvProgress.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QList>
#include <QtCore/QStringList>

class OrvGeoEntity;
class OrvShaderInput;
class OrvSnBaseNode;

/// Writes what channels and layers evaluate to as image files, one per UDIM tile, in the depth of the channel
/// as far as the file type has it. Works without a window, changes nothing in the document and asks no
/// questions.
class OrvChannelExport {
    Q_DECLARE_TR_FUNCTIONS(OrvChannelExport)

public:
    /// Those of an object that are images; a material channel is one only where it is shown.
    static QList<OrvShaderInput*> channelsOf(const OrvGeoEntity* pEntity);
    /// The files that the path stands for: itself for one tile, else one per tile, its number in place of
    /// "<UDIM>".
    static QStringList filesOf(const OrvShaderInput* pChannel, const QString& Path);
    /// A good name in a directory: "Color.<UDIM>.exr" or "Color.png".
    static QString suggestedPath(
        const OrvShaderInput* pChannel, const QString& Directory, const QString& Name, const QString& Suffix);

    static bool writeChannel(
        OrvShaderInput* pChannel, const QString& Path, const OrvProgress& Progress, QString& Error);
    /// The result of a node in a channel, such as one layer of it.
    static bool writeNode(const OrvSnBaseNode* pNode, OrvShaderInput* pChannel, const QString& Path,
        const OrvProgress& Progress, QString& Error);
};
