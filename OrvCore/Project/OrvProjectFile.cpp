#include "OrvCore/Project/OrvProjectFile.h"

#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Project/OrvProject.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Files/OrvBlockStore.h"
#include "OrvDdi/Files/OrvImageBlocks.h"
#include "OrvDdi/Files/OrvPartialFile.h"
#include "OrvDdi/Image/OrvImageSet.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonDocument>
#include <QtCore/QLockFile>
#include <QtCore/QSet>

const QString OrvProjectFile::ManifestName = QStringLiteral("project.json");
const QString OrvProjectFile::LockName = QStringLiteral("project.lock");

namespace {

const QLatin1String FormatMark("orvi-project");
constexpr int LockPatience = 5000; // ms; longer than most saves take
constexpr int ReadAttempts = 3;

/// Its program was killed in the moment between making the file and writing itself into it.
bool isNobodys(const QString& LockPath)
{
    return QFileInfo(LockPath).size() == 0;
}

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvProjectFile", pText);
}

QString blockFolder(const QString& Folder)
{
    return Folder + QStringLiteral("/blocks");
}

/// All image nodes of a network and of those nested in it.
void collectImageNodes(const OrvShaderNetwork* pNetwork, QHash<QString, OrvImageSet*>& Images)
{
    for (OrvSnBaseNode* pNode : pNetwork->nodes()) {
        if (OrvImageSet* pImages = pNode->imageSet())
            Images.insert(pNode->uuidString(), pImages);
        if (const OrvShaderNetwork* pNested = pNode->nestedNetwork())
            collectImageNodes(pNested, Images);
    }
}

/// Adds to the nodes' descriptions where their pixels are stored. A step is called for each square that was stored, and
/// for each image.
bool storeImages(QJsonArray& Nodes, const QHash<QString, OrvImageSet*>& Images, OrvBlockStore& Store, QString& Error,
    const OrvProgress& squareDone, const std::function<bool()>& Step)
{
    for (int Index = 0; Index < Nodes.size(); ++Index) {
        QJsonObject Node = Nodes[Index].toObject();
        QJsonArray Nested = Node.value(QLatin1String("nodes")).toArray();
        if (!Nested.isEmpty()) {
            if (!storeImages(Nested, Images, Store, Error, squareDone, Step))
                return false;
            Node.insert(QStringLiteral("nodes"), Nested);
        }
        OrvImageSet* pImages = Images.value(Node.value(QLatin1String("id")).toString());
        if (pImages && Node.contains(QLatin1String("images"))) {
            QJsonObject Description = Node.value(QLatin1String("images")).toObject();
            QJsonObject Blocks;
            if (!OrvImageBlocks::store(*pImages, Store, Blocks, squareDone, Error))
                return false;
            Description.insert(QStringLiteral("pixels"), Blocks);
            Node.insert(QStringLiteral("images"), Description);
            if (!Step()) {
                Error = tr("Saving was cancelled");
                return false;
            }
        }
        Nodes[Index] = Node;
    }
    return true;
}

/// Reads the pixels of the descriptions.
bool loadImages(const QJsonArray& Json, QVector<OrvNodeDescription>& Nodes, OrvBlockStore& Store, QString& Error,
    const std::function<bool()>& Step)
{
    // Images are told by the layers that show them.
    QHash<QString, QString> ShownBy;
    for (const OrvNodeDescription& Node : qAsConst(Nodes)) {
        for (const OrvNodeDescription::Connection& One : Node.Connections) {
            if (One.InputName == OrvSnNames::Over)
                ShownBy.insert(One.SourceUuid, Node.Name);
        }
    }
    for (int Index = 0; Index < Nodes.size(); ++Index) {
        OrvNodeDescription& Node = Nodes[Index];
        const QJsonObject Object = Json.at(Index).toObject();
        if (!Node.Nested.isEmpty()
            && !loadImages(Object.value(QLatin1String("nodes")).toArray(), Node.Nested, Store, Error, Step))
            return false;
        if (!Node.HasImages)
            continue;
        OrvImageSet Images(Node.Layout, Node.Format, Node.Fill);
        const QJsonObject Blocks
            = Object.value(QLatin1String("images")).toObject().value(QLatin1String("pixels")).toObject();
        if (!OrvImageBlocks::load(Blocks, Store, Images, Error)) {
            const QString Name = ShownBy.value(Node.Uuid, Node.Name);
            Error = tr("The pixels of '%1' cannot be read: %2").arg(Name.isEmpty() ? Node.Uuid : Name, Error);
            return false;
        }
        Node.Pixels = Images.snapshot();
        for (int Block = 0; Block < Images.blockCount(); ++Block)
            Node.BlockKeys.append(Images.blockKey(Block));
        if (!Step()) {
            Error = tr("Opening was cancelled");
            return false;
        }
    }
    return true;
}

QJsonObject selectionGroupsToJson(const OrvGeoEntity::SelectionGroups& Groups)
{
    QJsonObject Json;
    for (auto Group = Groups.begin(); Group != Groups.end(); ++Group)
        Json.insert(Group.key(), Group.value().toJson());
    return Json;
}

bool selectionGroupsFromJson(const QJsonObject& Json, OrvGeoEntity::SelectionGroups& Groups, QString& Error)
{
    for (auto Group = Json.begin(); Group != Json.end(); ++Group) {
        if (!OrvSelectionArea::fromJson(Group.value().toArray(), Groups[Group.key()])) {
            Error = tr("Selection group '%1' is no list of polygons").arg(Group.key());
            return false;
        }
    }
    return true;
}

/// Blocks that no manifest names any more go. Copies of a manifest that somebody keeps beside it, of whatever version,
/// need theirs too.
void removeForgottenBlocks(const QString& Folder, OrvBlockStore& Store)
{
    QSet<QByteArray> Named;
    const QDir Directory(Folder);
    for (const QString& Name : Directory.entryList({QStringLiteral("*.json*")}, QDir::Files | QDir::Hidden)) {
        QFile File(Directory.filePath(Name));
        if (!File.open(QIODevice::ReadOnly))
            return;
        Named += OrvBlockStore::keysIn(File.readAll());
    }
    Store.removeUnreferenced(Named);
}

/// In one step: there is the old text or the new one, whatever happens.
bool writeManifest(const QString& Path, const QByteArray& Text, QString& Error)
{
    const OrvPartialFile Partial(Path);
    QFile File(Partial.path());
    QString Reason;
    const QFileInfo Old(Path);
    if (Old.exists() && !Old.isWritable()) {
        Reason = tr("it is write-protected");
    } else if (!File.open(QIODevice::WriteOnly) || File.write(Text) != Text.size() || !File.flush()) {
        Reason = File.errorString();
    } else {
        File.close();
        if (Partial.takePlace(Reason))
            return true;
    }
    Error = tr("'%1' cannot be written: %2").arg(Path, Reason);
    return false;
}

int countImages(const QVector<OrvNodeDescription>& Nodes)
{
    int Count = 0;
    for (const OrvNodeDescription& Node : Nodes)
        Count += (Node.HasImages ? 1 : 0) + countImages(Node.Nested);
    return Count;
}

} // namespace

bool OrvProjectFile::readManifest(const QString& Path, QJsonObject& Json, QString& Error)
{
    QFile File(Path);
    if (!File.open(QIODevice::ReadOnly)) {
        Error = tr("'%1' cannot be read: %2").arg(Path, File.errorString());
        return false;
    }
    QJsonParseError Trouble;
    const QJsonDocument Document = QJsonDocument::fromJson(File.readAll(), &Trouble);
    if (!Document.isObject()) {
        Error = tr("'%1' is damaged: %2 at byte %3").arg(Path, Trouble.errorString()).arg(Trouble.offset);
        return false;
    }
    Json = Document.object();
    if (Json.value(QLatin1String("format")).toString() != FormatMark) {
        Error = tr("'%1' is no Orvi project").arg(Path);
        return false;
    }
    const int Version = Json.value(QLatin1String("version")).toInt(-1);
    if (Version < 1 || Version > FormatVersion) {
        Error = tr("'%1' was saved by another version of Orvi (format %2; this one reads up to %3)")
                    .arg(Path)
                    .arg(Version)
                    .arg(FormatVersion);
        return false;
    }
    return true;
}

bool OrvProjectFile::checkConnections(const OrvNodeSubgraph& Nodes, QString& Error)
{
    QHash<QString, const OrvNodeDescription*> ByUuid;
    for (const OrvNodeDescription& Node : Nodes.nodes()) {
        if (ByUuid.contains(Node.Uuid)) {
            Error = tr("Two nodes have the identity '%1'").arg(Node.Uuid);
            return false;
        }
        ByUuid.insert(Node.Uuid, &Node);
    }
    // Kahn's algorithm: nodes whose sources are all done; what is left over lies on a cycle.
    QHash<QString, int> Open;
    QHash<QString, QVector<QString>> Readers;
    for (const OrvNodeDescription& Node : Nodes.nodes()) {
        for (const OrvNodeDescription::Connection& One : Node.Connections) {
            if (!ByUuid.contains(One.SourceUuid)) {
                Error = tr("Input '%1' of node '%2' is connected to a node that does not exist ('%3')")
                            .arg(One.InputName, Node.Name.isEmpty() ? Node.Uuid : Node.Name, One.SourceUuid);
                return false;
            }
            ++Open[Node.Uuid];
            Readers[One.SourceUuid].append(Node.Uuid);
        }
    }
    QVector<QString> Done;
    for (const OrvNodeDescription& Node : Nodes.nodes()) {
        if (Open.value(Node.Uuid) == 0)
            Done.append(Node.Uuid);
    }
    for (int Index = 0; Index < Done.size(); ++Index) {
        for (const QString& Reader : Readers.value(Done[Index])) {
            if (--Open[Reader] == 0)
                Done.append(Reader);
        }
    }
    if (Done.size() != Nodes.nodes().size()) {
        for (auto Left = Open.begin(); Left != Open.end(); ++Left) {
            if (Left.value() > 0) {
                const OrvNodeDescription* pNode = ByUuid.value(Left.key());
                Error = tr("Node '%1' lies on a cycle").arg(pNode->Name.isEmpty() ? pNode->Uuid : pNode->Name);
                return false;
            }
        }
    }
    for (const OrvNodeDescription& Node : Nodes.nodes()) {
        OrvNodeSubgraph Inside;
        for (const OrvNodeDescription& One : Node.Nested)
            Inside.append(One);
        if (!Inside.isEmpty() && !checkConnections(Inside, Error))
            return false;
    }
    return true;
}

bool OrvProjectFile::read(
    const QString& Folder, const QString& Manifest, OrvProjectFile& File, QString& Error, const Progress& Step)
{
    // Another program may save meanwhile, and remove blocks that only the manifest before it named.
    const auto stamp = [&] { return QFileInfo(Folder + QLatin1Char('/') + Manifest).lastModified(); };
    for (int Attempt = 1;; ++Attempt) {
        const QDateTime Before = stamp();
        File = OrvProjectFile();
        if (readOnce(Folder, Manifest, File, Error, Step))
            return true;
        if (Attempt == ReadAttempts || stamp() == Before)
            return false;
    }
}

bool OrvProjectFile::readOnce(
    const QString& Folder, const QString& Manifest, OrvProjectFile& File, QString& Error, const Progress& Step)
{
    const QString Path = Folder + QLatin1Char('/') + Manifest;
    if (!QFileInfo::exists(Path)) {
        Error = tr("'%1' is no Orvi project: it holds no '%2'").arg(Folder, Manifest);
        return false;
    }
    QJsonObject Json;
    if (!readManifest(Path, Json, Error))
        return false;
    File.m_Name = QFileInfo(Folder).completeBaseName();
    File.m_CacheName = Json.value(QLatin1String("cache")).toString();
    File.m_CurrentEntity = Json.value(QLatin1String("currentEntity")).toString();

    const QJsonArray Entities = Json.value(QLatin1String("entities")).toArray();
    if (Entities.isEmpty()) {
        Error = tr("'%1' is damaged: it holds no object").arg(Path);
        return false;
    }
    int Total = 0, Done = 0;
    QSet<QString> Known;
    std::vector<QVector<OrvNodeDescription>> Nodes;
    for (const QJsonValue Value : Entities) {
        const QJsonObject Object = Value.toObject();
        OrvNodeSubgraph Subgraph;
        if (!OrvNodeSubgraph::fromJson(Object.value(QLatin1String("nodes")).toArray(), Subgraph, Error)
            || !checkConnections(Subgraph, Error)) {
            Error = tr("'%1' is damaged: %2").arg(Path, Error);
            return false;
        }
        for (const OrvNodeDescription& Node : Subgraph.nodes()) {
            if (Known.contains(Node.Uuid)) {
                Error = tr("'%1' is damaged: two objects have a node of the identity '%2'").arg(Path, Node.Uuid);
                return false;
            }
            Known.insert(Node.Uuid);
        }
        Nodes.push_back(Subgraph.nodes());
        Total += countImages(Nodes.back());
    }
    OrvBlockStore Store(blockFolder(Folder));
    const auto oneDone = [&] { return !Step || Step(++Done, Total); };
    for (std::size_t Index = 0; Index < Nodes.size(); ++Index) {
        const QJsonObject Object = Entities.at(int(Index)).toObject();
        if (!loadImages(Object.value(QLatin1String("nodes")).toArray(), Nodes[Index], Store, Error, oneDone))
            return false;
        Entity One;
        One.Uuid = Object.value(QLatin1String("id")).toString();
        One.Name = Object.value(QLatin1String("name")).toString();
        One.Ptex = Object.value(QLatin1String("ptex")).toBool();
        const QJsonArray Faces = Object.value(QLatin1String("faceResolution")).toArray();
        One.FaceResolution = QSize(Faces.at(0).toInt(), Faces.at(1).toInt());
        for (const QJsonValue Tile : Object.value(QLatin1String("udims")).toArray())
            One.UdimTiles.append(Tile.toInt());
        One.Current = OrvCurrentState::read(Object);
        if (!selectionGroupsFromJson(
                Object.value(QLatin1String("selectionGroups")).toObject(), One.SelectionGroups, Error)) {
            Error = tr("'%1' is damaged: %2").arg(Path, Error);
            return false;
        }
        for (const OrvNodeDescription& Node : Nodes[Index])
            One.Nodes.append(Node);
        File.m_Entities.push_back(std::move(One));
    }
    return true;
}

std::unique_ptr<OrvProject> OrvProjectFile::build() const
{
    const OrvUndoManager::NoRecording NoRecording;
    auto pProject = std::make_unique<OrvProject>(m_Name);
    if (!m_CacheName.isEmpty())
        pProject->setCacheName(m_CacheName);
    for (const Entity& One : m_Entities) {
        OrvGeoEntity* pEntity = pProject->addGeoEntity(One.Name);
        if (!One.Uuid.isEmpty())
            pEntity->setUuidString(One.Uuid);
        if (!One.UdimTiles.isEmpty())
            pEntity->setUdimTiles(One.UdimTiles);
        pEntity->setPtex(One.Ptex);
        if (!One.FaceResolution.isEmpty())
            pEntity->setFaceResolution(One.FaceResolution);
        pEntity->setSelectionGroups(One.SelectionGroups, QString());
        One.Nodes.instantiate(pEntity->shaderNetwork(), OrvNodeSubgraph::KeepIdentities);
        One.Current.apply(pEntity);
    }
    return pProject;
}

bool OrvProjectFile::write(
    OrvProject& Project, const QString& Folder, const QString& Manifest, QString& Error, const Progress& Step)
{
    if (!OrvBlockStore::makeFolder(Folder, Error))
        return false;
    const QString LockPath = Folder + QLatin1Char('/') + LockName;
    QLockFile Lock(LockPath);
    Lock.setStaleLockTime(0); // one whose program is gone does not count
    if (!Lock.tryLock(LockPatience) && Lock.error() == QLockFile::LockFailedError
        && !(isNobodys(LockPath) && QFile::remove(LockPath) && Lock.tryLock(LockPatience))) {
        Error = tr("'%1' is being saved by another program, which holds '%2'").arg(Folder, LockName);
        return false;
    }
    OrvBlockStore Store(blockFolder(Folder));
    QHash<QString, OrvImageSet*> Images;
    for (const OrvGeoEntity* pEntity : Project.geoEntities())
        collectImageNodes(pEntity->shaderNetwork(), Images);

    int Done = 0;
    const auto oneDone = [&] { return !Step || Step(++Done, Images.size()); };
    const auto squareDone = [&](int, int) { return !Step || Step(Done, Images.size()); };
    QJsonArray Entities;
    for (OrvGeoEntity* pEntity : Project.geoEntities()) {
        const OrvShaderNetwork* pNetwork = pEntity->shaderNetwork();
        QJsonArray Nodes = OrvNodeSubgraph::capture(pNetwork->nodes()).toJson();
        if (!storeImages(Nodes, Images, Store, Error, squareDone, oneDone)) {
            // Whoever goes on later finds these blocks and takes them for safe.
            QString Trouble;
            Store.sync(Trouble);
            return false;
        }
        QJsonObject Json{{"id", pEntity->uuidString()}, {"name", pEntity->name()}, {"nodes", Nodes}};
        QJsonArray Tiles;
        for (const int Tile : pEntity->udimTiles())
            Tiles.append(Tile);
        Json.insert("udims", Tiles);
        if (pEntity->isPtex()) {
            const QSize Faces = pEntity->faceResolution();
            Json.insert("ptex", true);
            Json.insert("faceResolution", QJsonArray{Faces.width(), Faces.height()});
        }
        if (!pEntity->selectionGroups().isEmpty())
            Json.insert("selectionGroups", selectionGroupsToJson(pEntity->selectionGroups()));
        OrvCurrentState::of(pEntity).write(Json);
        Entities.append(Json);
    }
    if (!Store.sync(Error))
        return false;

    QJsonObject Json{{"format", FormatMark}, {"version", FormatVersion}, {"cache", Project.cacheName()},
        {"entities", Entities}};
    if (Project.currentGeoEntity())
        Json.insert("currentEntity", Project.currentGeoEntity()->uuidString());
    const QString Path = Folder + QLatin1Char('/') + Manifest;
    if (!writeManifest(Path, QJsonDocument(Json).toJson(), Error))
        return false;
    if (!Lock.isLocked())
        return true;
    OrvPartialFile::removeLeftovers(Path);
    // Only once the new manifest cannot vanish any more may anything go that the old one names.
    if (OrvBlockStore::syncFolder(Folder))
        removeForgottenBlocks(Folder, Store);
    return true;
}
