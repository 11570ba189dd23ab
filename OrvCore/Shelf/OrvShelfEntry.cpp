#include "OrvCore/Shelf/OrvShelfEntry.h"

#include "OrvCore/Shelf/OrvMaterialDescription.h"
#include "OrvCore/Shelf/OrvProceduralDescription.h"
#include "OrvCore/Shelf/OrvProceduralFile.h"

namespace {

void readProcedural(OrvShelfEntry& Entry)
{
    OrvProceduralDescription Procedural;
    if (!OrvProceduralFile::read(Entry.Path, Entry.Text, Entry.Error)
        || !OrvProceduralDescription::fromText(Entry.Text, Procedural, Entry.Error))
        return;
    Entry.Name = Procedural.Name;
    Entry.Description = Procedural.Description;
    Entry.ProceduralType = Procedural.Type;
    Entry.MissesGeoChannels = !Procedural.GeoChannels.isEmpty();
}

void readMaterial(OrvShelfEntry& Entry)
{
    OrvMaterialDescription Material;
    if (!OrvMaterialDescription::read(Entry.Path, Material, Entry.Error))
        return;
    Entry.Name = Material.Name;
    Entry.Description = Material.Description;
    Entry.MissesGeoChannels = !Material.geoChannels().isEmpty();
    // Colour tells more of a material than the other streams do.
    for (const OrvMaterialDescription::Stream& Stream : qAsConst(Material.Streams)) {
        if (Stream.What != OrvMaterialDescription::Stream::Procedural)
            continue;
        const bool IsColor = Stream.InputName.contains(QLatin1String("color"), Qt::CaseInsensitive);
        if (IsColor || Entry.Text.isEmpty()) {
            Entry.Text = Stream.ProceduralText;
            Entry.Values = Stream.ProceduralValues;
        }
    }
}

} // namespace

OrvShelfEntry OrvShelfEntry::read(const QString& Path, const QString& Key)
{
    OrvShelfEntry Entry;
    Entry.Path = Path;
    Entry.Key = Key;
    Entry.Name = Key.section(QLatin1Char('/'), -1);
    Entry.What
        = Path.endsWith(OrvMaterialDescription::Suffix, Qt::CaseInsensitive) ? Material : CustomProcedural;
    if (Entry.What == Material)
        readMaterial(Entry);
    else
        readProcedural(Entry);
    return Entry;
}

bool OrvShelfEntry::operator==(const OrvShelfEntry& Other) const
{
    return Key == Other.Key && Path == Other.Path && What == Other.What && Name == Other.Name
        && Description == Other.Description && Text == Other.Text && Values == Other.Values
        && Error == Other.Error && MissesGeoChannels == Other.MissesGeoChannels;
}
