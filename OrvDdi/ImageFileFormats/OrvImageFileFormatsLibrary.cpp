#include "OrvDdi/ImageFileFormats/OrvImageFileFormatsLibrary.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QRect>

#include <OpenImageIO/imageio.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <vector>

namespace {

/// Pixels are handed out as RGBA.
constexpr int Components = 4;
/// Groups of rows hold about so many pixels: enough for the threads of a decoder, few enough to stay small.
constexpr int PixelsAtOnce = 256 * 1024;

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvImageFileFormats", pText);
}

std::string encoded(const QString& Path)
{
    return QFile::encodeName(Path).toStdString();
}

QString reason(const std::string& Message, const QString& Otherwise)
{
    const QString Text = QString::fromUtf8(Message.c_str()).simplified();
    return Text.isEmpty() ? Otherwise : Text.left(200);
}

/// Runs what may throw, bad files can ask for more memory than there is; false with the reason when it does.
template <class Function>
bool guarded(QString& Reason, const Function& Work)
{
    try {
        return Work();
    } catch (const std::bad_alloc&) {
        Reason = tr("there is not enough memory");
    } catch (const std::exception& Trouble) {
        Reason = reason(Trouble.what(), tr("the library of image file formats failed"));
    }
    return false;
}

// ----- what a file says -----

/// Red, green, blue and white point, x and y each (SMPTE ST 2065-1 and Academy S-2014-004).
using Chromaticities = std::array<float, 8>;
constexpr Chromaticities Ap0{0.7347f, 0.2653f, 0.0f, 1.0f, 0.0001f, -0.077f, 0.32168f, 0.33767f};
constexpr Chromaticities Ap1{0.713f, 0.293f, 0.165f, 0.83f, 0.128f, 0.044f, 0.32168f, 0.33767f};
const char ChromaticitiesKey[] = "chromaticities";
const char ColorSpaceKey[] = "oiio:ColorSpace";
const char OrientationKey[] = "Orientation";
const char StraightAlphaKey[] = "oiio:UnassociatedAlpha";
const char AcesCgName[] = "ACEScg";
const char AcesName[] = "ACES2065-1";
const char SrgbName[] = "sRGB";
const OIIO::TypeDesc ChromaticitiesType(OIIO::TypeDesc::FLOAT, 8);

bool hasChromaticities(const OIIO::ImageSpec& Spec, const Chromaticities& Wanted)
{
    const OIIO::ParamValue* pFound = Spec.find_attribute(ChromaticitiesKey, ChromaticitiesType);
    if (!pFound)
        return false;
    const auto* pValues = static_cast<const float*>(pFound->data());
    return std::equal(Wanted.begin(), Wanted.end(), pValues,
        [](float Left, float Right) { return std::fabs(Left - Right) < 1e-3f; });
}

QString colorSpaceOf(const OIIO::ImageInput& Input)
{
    // Programs write a gamma of 1 into Targa files whatever their pixels are.
    if (qstrcmp(Input.format_name(), "targa") == 0)
        return {};
    const OIIO::ImageSpec& Spec = Input.spec();
    if (hasChromaticities(Spec, Ap1))
        return QLatin1String(AcesCgName);
    if (hasChromaticities(Spec, Ap0))
        return QLatin1String(AcesName);
    return QString::fromStdString(Spec.get_string_attribute(ColorSpaceKey));
}

OrvImageFileProperties::Precision precisionOf(OIIO::TypeDesc Type)
{
    switch (Type.basetype) {
    case OIIO::TypeDesc::UINT8:
    case OIIO::TypeDesc::INT8:
        return OrvImageFileProperties::Integer8;
    case OIIO::TypeDesc::UINT16:
    case OIIO::TypeDesc::INT16:
        return OrvImageFileProperties::Integer16;
    case OIIO::TypeDesc::HALF:
        return OrvImageFileProperties::Half;
    default:
        return OrvImageFileProperties::Float;
    }
}

OIIO::TypeDesc typeOf(OrvImageFileProperties::Precision Precision)
{
    switch (Precision) {
    case OrvImageFileProperties::Integer8:
        return OIIO::TypeDesc::UINT8;
    case OrvImageFileProperties::Integer16:
        return OIIO::TypeDesc::UINT16;
    case OrvImageFileProperties::Half:
        return OIIO::TypeDesc::HALF;
    case OrvImageFileProperties::Float:
        break;
    }
    return OIIO::TypeDesc::FLOAT;
}

// ----- reading -----

/// Types whose alpha is straight are marked so only where the library would have premultiplied it; these come
/// as they are stored.
bool isStraight(const OIIO::ImageInput& Input)
{
    static const std::set<std::string> StraightTypes{"bmp", "dds", "dpx", "gif", "ico", "iff", "sgi"};
    return Input.spec().get_int_attribute(StraightAlphaKey) || StraightTypes.count(Input.format_name());
}

class Reader : public OrvImageFileReader {
public:
    explicit Reader(std::unique_ptr<OIIO::ImageInput> pInput);

    const OrvImageFileProperties& properties() const override { return m_Properties; }
    int orientation() const override { return m_Spec.get_int_attribute(OrientationKey, 1); }
    QSize storedSize() const override { return m_Stored.size(); }
    int rowsAtOnce() const override { return m_RowsAtOnce; }
    bool readRows(int First, int Count, float* pPixels, QString& Reason) override;

private:
    bool readStoredRows(int First, int End, float* pPixels, QString& Reason);
    void completePixels(float* pPixels, qsizetype Count) const;

    std::unique_ptr<OIIO::ImageInput> m_pInput;
    OIIO::ImageSpec m_Spec;
    OrvImageFileProperties m_Properties;
    int m_ColorCount = 0;
    int m_AlphaIndex = -1;
    bool m_Premultiplied = false;
    int m_RowsAtOnce = 1;
    /// Where the stored pixels lie in the picture. EXR stores what it likes of it, or more.
    QRect m_Stored;
};

Reader::Reader(std::unique_ptr<OIIO::ImageInput> pInput)
    : m_pInput(std::move(pInput))
    , m_Spec(m_pInput->spec())
{
    const int Count = std::min(m_Spec.nchannels, Components);
    m_AlphaIndex = m_Spec.alpha_channel > 0 && m_Spec.alpha_channel < Count ? m_Spec.alpha_channel : -1;
    m_ColorCount = m_AlphaIndex > 0 ? m_AlphaIndex : std::min(Count, 3);
    m_Premultiplied = m_AlphaIndex > 0 && !isStraight(*m_pInput);

    const QRect Picture(m_Spec.full_x, m_Spec.full_y, m_Spec.full_width, m_Spec.full_height);
    m_Stored = QRect(m_Spec.x, m_Spec.y, m_Spec.width, m_Spec.height);
    if (Picture.intersects(m_Stored)) {
        m_Properties.Size = Picture.size();
        m_Stored.translate(-Picture.topLeft());
    } else {
        m_Properties.Size = m_Stored.size();
        m_Stored.moveTo(0, 0);
    }

    m_Properties.Depth = precisionOf(m_Spec.format);
    m_Properties.ComponentCount = m_Spec.nchannels;
    m_Properties.HasAlpha = m_AlphaIndex > 0;
    m_Properties.Scalar = m_ColorCount == 1;
    m_Properties.ColorSpace = colorSpaceOf(*m_pInput);

    const int Granule = std::max(m_Spec.tile_height, 16);
    const int Width = std::max(m_Properties.Size.width(), m_Stored.width());
    m_RowsAtOnce = std::max(1, PixelsAtOnce / Width / Granule) * Granule;
}

bool Reader::readStoredRows(int First, int End, float* pPixels, QString& Reason)
{
    const OIIO::stride_t PixelStride = Components * sizeof(float);
    const int ChannelEnd = m_AlphaIndex > 0 ? m_AlphaIndex + 1 : m_ColorCount;
    const int Top = First - m_Stored.top() + m_Spec.y, Bottom = End - m_Stored.top() + m_Spec.y;
    const bool Done = m_Spec.tile_height
        ? m_pInput->read_tiles(0, 0, m_Spec.x, m_Spec.x + m_Spec.width, Top, Bottom, m_Spec.z, m_Spec.z + 1,
            0, ChannelEnd, OIIO::TypeDesc::FLOAT, pPixels, PixelStride)
        : m_pInput->read_scanlines(
            0, 0, Top, Bottom, m_Spec.z, 0, ChannelEnd, OIIO::TypeDesc::FLOAT, pPixels, PixelStride);
    // Some decoders fill up what is missing and say so only in their error text, which repeats the path.
    if (Done && m_pInput->geterror().empty())
        return true;
    Reason = tr("it is damaged or cut short");
    return false;
}

bool Reader::readRows(int First, int Count, float* pPixels, QString& Reason)
{
    return guarded(Reason, [&] {
        const QRect Wanted(0, First, m_Properties.Size.width(), Count);
        if (m_Stored == QRect(QPoint(), m_Properties.Size)) {
            if (!readStoredRows(First, First + Count, pPixels, Reason))
                return false;
            completePixels(pPixels, qsizetype(Wanted.width()) * Count);
            return true;
        }

        // The picture is no copy of the stored rectangle: read the rows, whole tiles of them, and cut out.
        std::fill_n(pPixels, qsizetype(Wanted.width()) * Count * Components, 0.0f);
        const QRect Common = Wanted & m_Stored;
        if (Common.isEmpty())
            return true;
        const int Granule = std::max(m_Spec.tile_height, 1);
        const int Top = m_Stored.top() + (Common.top() - m_Stored.top()) / Granule * Granule;
        const int Groups = (Common.bottom() + 1 - Top + Granule - 1) / Granule;
        const int End = std::min(Top + Groups * Granule, m_Stored.bottom() + 1);
        std::vector<float> Rows(size_t(m_Stored.width()) * size_t(End - Top) * Components);
        if (!readStoredRows(Top, End, Rows.data(), Reason))
            return false;
        completePixels(Rows.data(), qsizetype(m_Stored.width()) * (End - Top));
        for (int Row = Common.top(); Row <= Common.bottom(); ++Row) {
            const float* pFrom = Rows.data()
                + (qsizetype(Row - Top) * m_Stored.width() + Common.left() - m_Stored.left()) * Components;
            std::copy_n(pFrom, qsizetype(Common.width()) * Components,
                pPixels + (qsizetype(Row - First) * Wanted.width() + Common.left()) * Components);
        }
        return true;
    });
}

/// The file's components stand at the front of each pixel.
void Reader::completePixels(float* pPixels, qsizetype Count) const
{
    for (float* pPixel = pPixels; pPixel != pPixels + Count * Components; pPixel += Components) {
        const float Alpha = m_AlphaIndex > 0 ? pPixel[m_AlphaIndex] : 1.0f;
        if (m_ColorCount == 1)
            pPixel[1] = pPixel[2] = pPixel[0];
        else if (m_ColorCount == 2)
            pPixel[2] = 0.0f;
        pPixel[3] = Alpha;
        // Light without cover has no straight form; it stays as it is.
        if (m_Premultiplied && Alpha != 0.0f && Alpha != 1.0f) {
            for (int Index = 0; Index < 3; ++Index)
                pPixel[Index] /= Alpha;
        }
    }
}

// ----- writing -----

class Writer : public OrvImageFileWriter {
public:
    Writer(std::unique_ptr<OIIO::ImageOutput> pOutput, const OrvImageFileProperties& Properties,
        bool Premultiplied);
    ~Writer() override;

    bool writeRows(int First, int Count, const float* pPixels, QString& Reason) override;
    bool finish(QString& Reason) override;

private:
    bool failed(QString& Reason);

    std::unique_ptr<OIIO::ImageOutput> m_pOutput;
    OrvImageFileProperties m_Properties;
    bool m_Premultiplied;
    std::vector<float> m_Row;
};

Writer::Writer(
    std::unique_ptr<OIIO::ImageOutput> pOutput, const OrvImageFileProperties& Properties, bool Premultiplied)
    : m_pOutput(std::move(pOutput))
    , m_Properties(Properties)
    , m_Premultiplied(Premultiplied && Properties.HasAlpha)
{
}

Writer::~Writer()
{
    QString Reason;
    guarded(Reason, [this] { return m_pOutput->close(); });
}

bool Writer::failed(QString& Reason)
{
    Reason = reason(m_pOutput->geterror(), tr("the disk may be full"));
    return false;
}

bool Writer::writeRows(int First, int Count, const float* pPixels, QString& Reason)
{
    return guarded(Reason, [&] {
        const qsizetype Floats = qsizetype(m_Properties.Size.width()) * Count * m_Properties.ComponentCount;
        const bool Half = m_Properties.Depth == OrvImageFileProperties::Half;
        if (m_Premultiplied || Half) {
            m_Row.assign(pPixels, pPixels + Floats);
            for (qsizetype Index = 0; m_Premultiplied && Index < Floats; Index += Components) {
                for (int Component = 0; Component < 3; ++Component)
                    m_Row[size_t(Index + Component)] *= m_Row[size_t(Index + 3)];
            }
            // Beyond half's range lies infinity, which no renderer can filter.
            constexpr float LargestHalf = 65504.0f;
            for (qsizetype Index = 0; Half && Index < Floats; ++Index)
                m_Row[size_t(Index)] = std::clamp(m_Row[size_t(Index)], -LargestHalf, LargestHalf);
            pPixels = m_Row.data();
        }
        return m_pOutput->write_scanlines(First, First + Count, 0, OIIO::TypeDesc::FLOAT, pPixels)
            || failed(Reason);
    });
}

bool Writer::finish(QString& Reason)
{
    return guarded(Reason, [&] { return m_pOutput->close() || failed(Reason); });
}

} // namespace

std::unique_ptr<OrvImageFileReader> OrvImageFileFormatsLibrary::open(const QString& Path, QString& Reason)
{
    std::unique_ptr<OrvImageFileReader> pReader;
    guarded(Reason, [&] {
        OIIO::ImageSpec Hints;
        Hints.attribute(StraightAlphaKey, 1);
        std::unique_ptr<OIIO::ImageInput> pInput = OIIO::ImageInput::open(encoded(Path), &Hints);
        if (!pInput) {
            OIIO::geterror(); // repeats the path or tells of plug-ins
            Reason = tr("it is no image, it is damaged or it is of an unknown type");
            return false;
        }
        const OIIO::ImageSpec& Spec = pInput->spec();
        if (Spec.deep)
            Reason = tr("it holds deep pixels");
        else if (Spec.width <= 0 || Spec.height <= 0 || Spec.nchannels <= 0)
            Reason = tr("it holds no pixels");
        else
            pReader = std::make_unique<Reader>(std::move(pInput));
        return pReader != nullptr;
    });
    return pReader;
}

std::unique_ptr<OrvImageFileWriter> OrvImageFileFormatsLibrary::create(
    const QString& Path, const QString& Format, const OrvImageFileProperties& Properties, QString& Reason)
{
    std::unique_ptr<OrvImageFileWriter> pWriter;
    guarded(Reason, [&] {
        const bool Exr = Format == QLatin1String("exr");
        std::unique_ptr<OIIO::ImageOutput> pOutput
            = OIIO::ImageOutput::create(Exr ? "openexr" : Format.toStdString());
        if (!pOutput) {
            Reason = reason(OIIO::geterror(), tr("its type cannot be written"));
            return false;
        }
        OIIO::ImageSpec Spec(Properties.Size.width(), Properties.Size.height(), Properties.ComponentCount,
            typeOf(Properties.Depth));
        if (!Exr)
            Spec.attribute(StraightAlphaKey, 1);
        if (Properties.ColorSpace == QLatin1String(SrgbName))
            Spec.attribute(ColorSpaceKey, SrgbName);
        else if (Properties.ColorSpace == QLatin1String(AcesCgName))
            Spec.attribute(ChromaticitiesKey, ChromaticitiesType, Ap1.data());
        else if (Properties.ColorSpace == QLatin1String(AcesName))
            Spec.attribute(ChromaticitiesKey, ChromaticitiesType, Ap0.data());
        // Lossless, and the quickest of each type that still makes files clearly smaller.
        Spec.attribute("compression", Exr ? "piz" : "zip");
        Spec.attribute("tiff:zipquality", 1);
        Spec.attribute("png:compressionLevel", 2);
        if (!pOutput->open(encoded(Path), Spec)) {
            Reason = reason(pOutput->geterror(), tr("it cannot be made"));
            return false;
        }
        pWriter = std::make_unique<Writer>(std::move(pOutput), Properties, Exr);
        return true;
    });
    return pWriter;
}

extern "C" Q_DECL_EXPORT OrvImageFileFormats* orvImageFileFormats()
{
    static OrvImageFileFormatsLibrary Library;
    return &Library;
}
