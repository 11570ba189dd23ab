#include "OrvDdi/Files/OrvImageFiles.h"

#include "OrvDdi/Color/OrvColorManager.h"
#include "OrvDdi/Files/OrvImageFileFormats.h"
#include "OrvDdi/Files/OrvImageOrientation.h"
#include "OrvDdi/Files/OrvPartialFile.h"
#include "OrvDdi/Image/OrvImageBuffer.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QLibrary>
#include <QtCore/QMutex>
#include <QtCore/QVector>

#include <vector>

#include <dlfcn.h>

namespace {

using Properties = OrvImageFileProperties;

constexpr int RgbaCount = 4;

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvImageFiles", pText);
}

// ----- file types -----

struct FileType {
    const char* pName;
    QStringList Suffixes;
    const char* pWriter; ///< the name under which the library writes it, null where it only reads
};

const QVector<FileType>& fileTypes()
{
    static const QVector<FileType> Types{
        {"EXR", {QStringLiteral("exr")}, "exr"},
        {"PNG", {QStringLiteral("png")}, "png"},
        {"TIFF", {QStringLiteral("tif"), QStringLiteral("tiff")}, "tiff"},
        {"JPEG", {QStringLiteral("jpg"), QStringLiteral("jpeg")}, nullptr},
        {"Targa", {QStringLiteral("tga")}, nullptr},
        {"Radiance", {QStringLiteral("hdr")}, nullptr},
        {"Tiled texture", {QStringLiteral("tx")}, nullptr},
        {"DPX", {QStringLiteral("dpx")}, nullptr},
        {"DDS", {QStringLiteral("dds")}, nullptr},
        {"Photoshop", {QStringLiteral("psd")}, nullptr},
        {"JPEG 2000", {QStringLiteral("jp2")}, nullptr},
        {"WebP", {QStringLiteral("webp")}, nullptr},
        {"BMP", {QStringLiteral("bmp")}, nullptr},
        {"SGI", {QStringLiteral("sgi")}, nullptr},
        {"Portable map", {QStringLiteral("pbm"), QStringLiteral("pgm"), QStringLiteral("ppm")}, nullptr},
    };
    return Types;
}

QStringList suffixes(bool Writable)
{
    QStringList All;
    for (const FileType& Type : fileTypes()) {
        if (Type.pWriter || !Writable)
            All += Type.Suffixes;
    }
    return All;
}

/// Empty for a suffix that cannot be written.
QString writerOf(const QString& Suffix)
{
    for (const FileType& Type : fileTypes()) {
        if (Type.pWriter && Type.Suffixes.contains(Suffix, Qt::CaseInsensitive))
            return QLatin1String(Type.pWriter);
    }
    return {};
}

QString filterEntry(const QString& Name, const QStringList& Suffixes)
{
    return QStringLiteral("%1 (*.%2)").arg(Name, Suffixes.join(QLatin1String(" *.")));
}

QString filter(bool Writable)
{
    QStringList Entries{filterEntry(tr("Images"), suffixes(Writable))};
    for (const FileType& Type : fileTypes()) {
        if (Type.pWriter || !Writable)
            Entries.append(filterEntry(tr(Type.pName), Type.Suffixes));
    }
    Entries.append(tr("All files (*)"));
    return Entries.join(QLatin1String(";;"));
}

// ----- the library behind -----

/// Loaded once and kept, also when that failed; null with the reason.
OrvImageFileFormats* formats(QString& Reason)
{
    static QMutex Mutex;
    static OrvImageFileFormats* pFormats = nullptr;
    static QString Trouble;
    const QMutexLocker Locker(&Mutex);
    if (!pFormats && Trouble.isEmpty()) {
        // It lies beside the library that this function is in, wherever the program was started from.
        Dl_info Here{};
        QString Folder;
        if (dladdr(reinterpret_cast<const void*>(&OrvImageFiles::probe), &Here) && Here.dli_fname)
            Folder = QFileInfo(QFile::decodeName(Here.dli_fname)).absolutePath() + QLatin1Char('/');
        QLibrary Library(Folder + QLatin1String("libOrvImageFileFormats"));
        const auto pFactory
            = reinterpret_cast<OrvImageFileFormatsFactory>(Library.resolve(OrvImageFileFormatsSymbol));
        if (pFactory)
            pFormats = pFactory();
        else
            Trouble
                = tr("the library of image file formats cannot be loaded (%1)").arg(Library.errorString());
    }
    Reason = Trouble;
    return pFormats;
}

bool failed(QString& Error, const QString& Sentence, const QString& Path, const QString& Reason)
{
    Error = Sentence.arg(QDir::toNativeSeparators(Path), Reason);
    return false;
}

bool cancelled(QString& Error, const QString& Sentence, const QString& Path)
{
    Error = Sentence.arg(QDir::toNativeSeparators(Path));
    return false;
}

bool tooLarge(const QSize& Size)
{
    return Size.width() > OrvImageFiles::MaximumEdge || Size.height() > OrvImageFiles::MaximumEdge;
}

QString tooLargeReason(const QSize& Size)
{
    return tr("%1 x %2 pixels are more than the %3 x %3 that are possible")
        .arg(Size.width())
        .arg(Size.height())
        .arg(OrvImageFiles::MaximumEdge);
}

// ----- reading -----

/// Empty when there is something to open.
QString troubleOfFile(const QString& Path)
{
    const QFileInfo Info(Path);
    if (!Info.exists())
        return tr("there is no such file");
    if (Info.isDir())
        return tr("it is a folder");
    // Opening a pipe would wait for its other end.
    if (!Info.isFile())
        return tr("it is no ordinary file");
    if (Info.size() == 0)
        return tr("it is empty");
    QFile File(Path);
    return File.open(QIODevice::ReadOnly) ? QString() : File.errorString();
}

/// The name that the colour manager knows; what a file says is written in many ways.
QString knownColorSpace(const QString& FileSays, Properties::Precision Depth)
{
    const QString Key = FileSays.toLower();
    if (Key == QLatin1String("linear") || Key == QLatin1String("scene_linear")
        || Key == QLatin1String("lin_srgb"))
        return OrvColorManager::linear();
    if (Key == QLatin1String("gamma2.2"))
        return QStringLiteral("Gamma 2.2 Rec.709");
    if (!FileSays.isEmpty() && OrvColorManager::isColorSpace(FileSays))
        return FileSays;
    const bool Integers = Depth == Properties::Integer8 || Depth == Properties::Integer16;
    return Integers ? OrvColorManager::srgb() : OrvColorManager::linear();
}

QString readSentence()
{
    return tr("The image file '%1' cannot be read: %2");
}

std::unique_ptr<OrvImageFileReader> openFile(const QString& Path, Properties& Found, QString& Error)
{
    QString Reason = troubleOfFile(Path);
    OrvImageFileFormats* pFormats = Reason.isEmpty() ? formats(Reason) : nullptr;
    std::unique_ptr<OrvImageFileReader> pReader = pFormats ? pFormats->open(Path, Reason) : nullptr;
    if (pReader) {
        const QSize Largest = pReader->properties().Size.expandedTo(pReader->storedSize());
        if (tooLarge(Largest)) {
            Reason = tooLargeReason(Largest);
            pReader.reset();
        }
    }
    if (!pReader) {
        failed(Error, readSentence(), Path, Reason);
        return nullptr;
    }
    Found = pReader->properties();
    Found.Size = OrvImageOrientation(pReader->orientation()).uprightSize(Found.Size);
    Found.ColorSpace = knownColorSpace(Found.ColorSpace, Found.Depth);
    return pReader;
}

/// Of RGBA pixels; ITU-R BT.709.
void pixelsToLuma(const float* pPixels, qsizetype Count, float* pValues)
{
    for (; Count > 0; --Count, pPixels += RgbaCount, ++pValues) {
        // Gray stays what it is, to the last bit.
        *pValues = pPixels[0] == pPixels[1] && pPixels[1] == pPixels[2]
            ? pPixels[0]
            : 0.2126f * pPixels[0] + 0.7152f * pPixels[1] + 0.0722f * pPixels[2];
    }
}

QString bufferSpace(const QString& Wanted, const OrvPixelFormat& Format)
{
    if (!Wanted.isEmpty())
        return Wanted;
    return Format.Curve == OrvPixelFormat::Srgb ? OrvColorManager::srgb() : OrvColorManager::linear();
}

/// The buffer's own numbers as floats: what its curve means is the colour manager's affair.
OrvPixelFormat floatFormat(const OrvPixelFormat& Format)
{
    return {GL_FLOAT, Format.Kind, Format.Curve};
}

// ----- writing -----

/// Empty when the file can be written.
QString troubleOfTarget(const QString& Path, const QString& Format, const QRect& Region)
{
    const QFileInfo Info(Path);
    if (Format.isEmpty())
        return tr("'%1' is no type that can be written").arg(Info.suffix());
    if (Info.isDir())
        return tr("it is a folder");
    if (Info.exists() && !Info.isFile())
        return tr("it is no ordinary file");
    if (!QFileInfo(Info.absolutePath()).isDir())
        return tr("its folder does not exist");
    if (Info.exists() && !Info.isWritable())
        return tr("it is write-protected");
    if (Region.isEmpty())
        return tr("there are no pixels to write");
    return tooLarge(Region.size()) ? tooLargeReason(Region.size()) : QString();
}

/// Takes rows out of a buffer and brings them to the form that a file wants.
class RowSource {
public:
    RowSource(const OrvImageBuffer& Buffer, const Properties& File, const OrvImageWriteOptions& Options)
        : m_Buffer(Buffer)
        , m_Format(floatFormat(Buffer.format()))
        , m_File(File)
        , m_From(bufferSpace(Options.BufferSpace, Buffer.format()))
    {
    }

    /// The rows in as many components as the file has; null with the reason.
    const float* rows(const QRect& Rows, QString& Reason)
    {
        const qsizetype Count = qsizetype(Rows.width()) * Rows.height();
        m_Pixels.resize(size_t(Count * m_Format.componentCount()));
        m_Buffer.read(Rows, m_Format, m_Pixels.data());
        if (m_Format.Kind == OrvPixelFormat::Rgba
            && !OrvColorManager::transformPixels(
                m_Pixels.data(), Rows.width(), Rows.height(), 0, m_From, m_File.ColorSpace, Reason))
            return nullptr;
        if (m_Format.componentCount() == m_File.ComponentCount)
            return m_Pixels.data();

        m_Values.resize(size_t(Count * m_File.ComponentCount));
        if (m_File.ComponentCount == 1) {
            pixelsToLuma(m_Pixels.data(), Count, m_Values.data());
        } else {
            for (size_t Index = 0; Index < m_Values.size(); ++Index)
                m_Values[Index] = m_Pixels[Index / size_t(m_File.ComponentCount)];
        }
        return m_Values.data();
    }

private:
    const OrvImageBuffer& m_Buffer;
    OrvPixelFormat m_Format;
    Properties m_File;
    QString m_From;
    std::vector<float> m_Pixels, m_Values;
};

Properties fileProperties(const QString& Path, const QSize& Size, OrvPixelFormat::Components Kind,
    const OrvImageWriteOptions& Options)
{
    Properties File;
    File.Size = Size;
    File.Depth = OrvImageFiles::usablePrecision(QFileInfo(Path).suffix(), Options.Depth);
    File.Scalar = Options.Scalar;
    // Scalar values stand for no light that could be seen through.
    File.HasAlpha = !File.Scalar && Kind == OrvPixelFormat::Rgba;
    File.ComponentCount = File.Scalar ? 1 : File.HasAlpha ? RgbaCount : 3;
    if (!Options.FileSpace.isEmpty())
        File.ColorSpace = Options.FileSpace;
    else if (File.Scalar || Kind == OrvPixelFormat::Scalar)
        File.ColorSpace = OrvColorManager::raw();
    else
        File.ColorSpace = knownColorSpace({}, File.Depth);
    return File;
}

/// Rows that are written together: enough of them for the threads of an encoder.
int rowsAtOnce(int Width)
{
    constexpr int PixelsAtOnce = 256 * 1024, Granule = 16;
    return qMax(1, PixelsAtOnce / Width / Granule) * Granule;
}

} // namespace

bool OrvImageFiles::probe(const QString& Path, OrvImageFileProperties& Properties, QString& Error)
{
    return openFile(Path, Properties, Error) != nullptr;
}

bool OrvImageFiles::read(const QString& Path, OrvImageBuffer& Buffer, const QPoint& Offset,
    const OrvProgress& Progress, QString& Error, const OrvImageReadOptions& Options)
{
    OrvImageFileProperties File;
    const std::unique_ptr<OrvImageFileReader> pReader = openFile(Path, File, Error);
    if (!pReader)
        return false;

    const OrvPixelFormat Format = floatFormat(Buffer.format());
    const bool Scalar = Format.Kind == OrvPixelFormat::Scalar;
    const QString From = Options.FileSpace.isEmpty() ? File.ColorSpace : Options.FileSpace;
    const QString To = bufferSpace(Options.BufferSpace, Format);
    const OrvImageOrientation Orientation(pReader->orientation());
    const QSize Stored = pReader->properties().Size;
    const int Step = pReader->rowsAtOnce(), Width = Stored.width(), Height = Stored.height();
    const int StepCount = (Height + Step - 1) / Step;
    std::vector<float> Pixels(size_t(Width) * size_t(qMin(Step, Height)) * RgbaCount), Values, Turned;
    for (int Index = 0; Index < StepCount; ++Index) {
        const QRect Rows(0, Index * Step, Width, qMin(Step, Height - Index * Step));
        QString Reason;
        if (!pReader->readRows(Rows.top(), Rows.height(), Pixels.data(), Reason))
            return failed(Error, readSentence(), Path, Reason);
        if (Scalar) {
            Values.resize(Pixels.size() / RgbaCount);
            pixelsToLuma(Pixels.data(), qsizetype(Width) * Rows.height(), Values.data());
        } else if (!OrvColorManager::transformPixels(
                       Pixels.data(), Width, Rows.height(), 0, From, To, Reason)) {
            return failed(Error, readSentence(), Path, Reason);
        }
        const float* pPixels = Scalar ? Values.data() : Pixels.data();
        if (!Orientation.isUpright()) {
            Turned.resize(Pixels.size());
            Orientation.turn(pPixels, Rows.size(), Format.componentCount(), Turned.data());
            pPixels = Turned.data();
        }
        const QRect Upright = Orientation.uprightRect(Rows, Stored);
        const QRect Target = Upright.translated(Offset) & Buffer.extent();
        if (!Target.isEmpty()) {
            const QPoint Origin = Target.topLeft() - Offset - Upright.topLeft();
            const qsizetype First = qsizetype(Origin.y()) * Upright.width() + Origin.x();
            Buffer.write(Target, Format, pPixels + First * Format.componentCount(),
                Upright.width() * Format.bytesPerPixel());
        }
        if (Progress && !Progress(Index + 1, StepCount))
            return cancelled(Error, tr("Reading the image file '%1' was cancelled"), Path);
    }
    return true;
}

bool OrvImageFiles::write(const QString& Path, const OrvImageBuffer& Buffer, const QRect& Region,
    const OrvImageWriteOptions& Options, const OrvProgress& Progress, QString& Error)
{
    const QString Sentence = tr("The image file '%1' cannot be written: %2");
    const QString Format = writerOf(QFileInfo(Path).suffix());
    QString Reason = troubleOfTarget(Path, Format, Buffer.isNull() ? QRect() : Region);
    OrvImageFileFormats* pFormats = Reason.isEmpty() ? formats(Reason) : nullptr;
    if (!pFormats)
        return failed(Error, Sentence, Path, Reason);

    const OrvImageFileProperties File = fileProperties(Path, Region.size(), Buffer.format().Kind, Options);
    const OrvPartialFile Partial(Path);
    std::unique_ptr<OrvImageFileWriter> pWriter = pFormats->create(Partial.path(), Format, File, Reason);
    if (!pWriter)
        return failed(Error, Sentence, Path, Reason);

    RowSource Source(Buffer, File, Options);
    const int Step = rowsAtOnce(Region.width());
    const int StepCount = (Region.height() + Step - 1) / Step;
    for (int Index = 0; Index < StepCount; ++Index) {
        const int First = Index * Step, Count = qMin(Step, Region.height() - First);
        const float* pRows
            = Source.rows(QRect(Region.left(), Region.top() + First, Region.width(), Count), Reason);
        if (!pRows || !pWriter->writeRows(First, Count, pRows, Reason))
            return failed(Error, Sentence, Path, Reason);
        if (Progress && !Progress(Index + 1, StepCount))
            return cancelled(Error, tr("Writing the image file '%1' was cancelled"), Path);
    }
    const bool Finished = pWriter->finish(Reason);
    pWriter.reset();
    return (Finished && Partial.takePlace(Reason)) || failed(Error, Sentence, Path, Reason);
}

QStringList OrvImageFiles::readableSuffixes()
{
    return suffixes(false);
}

QStringList OrvImageFiles::writableSuffixes()
{
    return suffixes(true);
}

QString OrvImageFiles::readFilter()
{
    return filter(false);
}

QString OrvImageFiles::writeFilter()
{
    return filter(true);
}

OrvImageFileProperties::Precision OrvImageFiles::usablePrecision(
    const QString& Suffix, OrvImageFileProperties::Precision Wanted)
{
    const QString Writer = writerOf(Suffix);
    if (Writer == QLatin1String("png"))
        return Wanted == Properties::Integer8 ? Properties::Integer8 : Properties::Integer16;
    if (Writer == QLatin1String("tiff"))
        return Wanted == Properties::Half ? Properties::Float : Wanted;
    if (Writer == QLatin1String("exr")) {
        // Half takes every 8-bit value, but not every 16-bit one.
        return Wanted == Properties::Integer8 || Wanted == Properties::Half ? Properties::Half
                                                                            : Properties::Float;
    }
    return Wanted;
}

OrvImageFileProperties::Precision OrvImageFiles::precisionForDepth(const QString& Suffix, GLenum Depth)
{
    return usablePrecision(Suffix,
        Depth == GL_UNSIGNED_BYTE    ? Properties::Integer8
            : Depth == GL_HALF_FLOAT ? Properties::Half
                                     : Properties::Float);
}
