#pragma once

#include "OrvCore/Network/OrvNodeDescription.h"
#include "OrvCore/Project/OrvCurrentState.h"
#include "OrvCore/Project/OrvGeoEntity.h"

#include <functional>
#include <memory>
#include <vector>

class OrvProject;

/// A project on disk: a folder with a readable manifest and content-addressed blocks of pixels. Reading checks all of
/// it before anything is made, so that the document that is open meanwhile is never touched by a bad one; writing
/// stores new blocks first, then replaces the manifest in one step, and last removes the blocks that only the old one
/// needed, so that a kill at any moment leaves the old or the new project.
class ORVCORE_EXPORT OrvProjectFile {
public:
    /// Writing tells of each image, and with the same number of each piece of it.
    using Progress = std::function<bool(int Done, int Total)>;

    static constexpr int FormatVersion = 1;
    static const QString ManifestName;
    static const QString LockName; ///< whoever saves has this file, so that no two do at once

    struct Entity {
        QString Uuid, Name;
        QVector<int> UdimTiles;
        bool Ptex = false;
        QSize FaceResolution; ///< empty: the usual one
        OrvNodeSubgraph Nodes;
        OrvCurrentState Current;
        OrvGeoEntity::SelectionGroups SelectionGroups;
    };

    /// Everything of the project in memory, checked; nothing is made yet.
    static bool read(const QString& Folder, const QString& Manifest, OrvProjectFile& File, QString& Error,
        const Progress& Step);
    /// Makes the objects and nodes; cannot fail.
    std::unique_ptr<OrvProject> build() const;

    static bool write(OrvProject& Project, const QString& Folder, const QString& Manifest, QString& Error,
        const Progress& Step);

    QString currentEntity() const { return m_CurrentEntity; }

private:
    static bool readOnce(const QString& Folder, const QString& Manifest, OrvProjectFile& File, QString& Error,
        const Progress& Step);
    static bool readManifest(const QString& Path, QJsonObject& Json, QString& Error);
    static bool checkConnections(const OrvNodeSubgraph& Nodes, QString& Error);

    QString m_Name, m_CacheName, m_CurrentEntity;
    std::vector<Entity> m_Entities;
};
