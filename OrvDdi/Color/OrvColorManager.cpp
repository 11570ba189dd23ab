#include "OrvDdi/Color/OrvColorManager.h"

#include "OrvDdi/Color/OrvColorSpaceConfig.h"
#include "OrvDdi/Color/OrvColorSpaceManager.h"
#include "OrvDdi/Image/OrvColor.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDebug>
#include <QtCore/QHash>
#include <QtCore/QMutex>
#include <QtCore/QSet>

#include <OpenColorIO/OpenColorIO.h>

#include <algorithm>
#include <future>
#include <thread>
#include <vector>

namespace OCIO = OCIO_NAMESPACE;

namespace {

const char LinearName[] = "Linear Rec.709";
const char SrgbName[] = "sRGB";
const char RawName[] = "Raw";
const char AcesCgName[] = "ACEScg";
const char AcesName[] = "ACES2065-1";
const char Gamma22Name[] = "Gamma 2.2 Rec.709";

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvColorManager", pText);
}

OCIO::BuiltinTransformRcPtr builtin(const char* pStyle)
{
    OCIO::BuiltinTransformRcPtr pTransform = OCIO::BuiltinTransform::Create();
    pTransform->setStyle(pStyle);
    return pTransform;
}

void addColorSpace(
    const OCIO::ConfigRcPtr& pConfig, const char* pName, const OCIO::ConstTransformRcPtr& pToReference)
{
    OCIO::ColorSpaceRcPtr pSpace = OCIO::ColorSpace::Create();
    pSpace->setName(pName);
    pSpace->setBitDepth(OCIO::BIT_DEPTH_F32);
    pSpace->setIsData(qstrcmp(pName, RawName) == 0);
    if (pToReference)
        pSpace->setTransform(pToReference, OCIO::COLORSPACE_DIR_TO_REFERENCE);
    pConfig->addColorSpace(pSpace);
}

/// The reference space is linear Rec.709, so that the conversions needed most are the cheapest.
OCIO::ConstConfigRcPtr makeBuiltInConfig()
{
    OCIO::ConfigRcPtr pConfig = OCIO::Config::Create();
    pConfig->setVersion(2, 0);
    addColorSpace(pConfig, LinearName, {});
    addColorSpace(pConfig, RawName, {});

    // IEC 61966-2-1; negative values continue the straight piece.
    OCIO::ExponentWithLinearTransformRcPtr pSrgb = OCIO::ExponentWithLinearTransform::Create();
    pSrgb->setGamma({2.4, 2.4, 2.4, 1.0});
    pSrgb->setOffset({0.055, 0.055, 0.055, 0.0});
    addColorSpace(pConfig, SrgbName, pSrgb);

    OCIO::ExponentTransformRcPtr pGamma = OCIO::ExponentTransform::Create();
    pGamma->setValue({2.2, 2.2, 2.2, 1.0});
    pGamma->setNegativeStyle(OCIO::NEGATIVE_MIRROR);
    addColorSpace(pConfig, Gamma22Name, pGamma);

    OCIO::BuiltinTransformRcPtr pAp1ToLinear = builtin("UTILITY - ACES-AP1_to_LINEAR-REC709_BFD");
    addColorSpace(pConfig, AcesCgName, pAp1ToLinear);
    OCIO::GroupTransformRcPtr pAces = OCIO::GroupTransform::Create();
    OCIO::BuiltinTransformRcPtr pAp0ToAp1 = builtin("ACEScg_to_ACES2065-1");
    pAp0ToAp1->setDirection(OCIO::TRANSFORM_DIR_INVERSE);
    pAces->appendTransform(pAp0ToAp1);
    pAces->appendTransform(pAp1ToLinear);
    addColorSpace(pConfig, AcesName, pAces);

    pConfig->setRole(OCIO::ROLE_SCENE_LINEAR, LinearName);
    pConfig->setRole(OCIO::ROLE_DATA, RawName);
    pConfig->setRole(OCIO::ROLE_DEFAULT, RawName);
    pConfig->setRole("aces_interchange", AcesName);
    return pConfig;
}

/// The known spaces and the processors made so far. Immutable but for the processors, which have their own
/// lock.
class ColorSpaces {
public:
    ColorSpaces();

    QStringList names() const;
    bool contains(const QString& Name) const { return configOf(Name) != nullptr; }
    bool isData(const QString& Name) const;
    /// Null with the reason in Error.
    OCIO::ConstCPUProcessorRcPtr processor(const QString& From, const QString& To, QString& Error);
    bool matrix(const QString& From, const QString& To, float* pFactors) const;
    /// Remembers, and tells once, which ones are not.
    bool isUsable(const QString& Name);
    QString error() const { return m_Error; }

private:
    OCIO::ConstConfigRcPtr configOf(const QString& Name) const;
    OCIO::ConstProcessorRcPtr makeProcessor(const QByteArray& From, const QByteArray& To) const;

    OCIO::ConstConfigRcPtr m_pBuiltIn, m_pUser;
    QString m_Error;
    QMutex m_Mutex;
    QHash<QPair<QString, QString>, OCIO::ConstCPUProcessorRcPtr> m_Processors;
    QSet<QString> m_Unusable;
};

ColorSpaces::ColorSpaces()
    : m_pBuiltIn(makeBuiltInConfig())
{
    const QByteArray Path = qgetenv("OCIO");
    if (Path.isEmpty())
        return;
    try {
        const OCIO::ConstConfigRcPtr pConfig = OCIO::Config::CreateFromFile(Path.constData());
        pConfig->validate();
        m_pUser = pConfig;
    } catch (const std::exception& Trouble) {
        m_Error = tr("The color configuration '%1' cannot be used, the built-in color spaces are: %2")
                      .arg(QString::fromLocal8Bit(Path), QString::fromUtf8(Trouble.what()).simplified());
        qWarning("%s", qUtf8Printable(m_Error));
    }
}

QStringList ColorSpaces::names() const
{
    QStringList Names{OrvColorManager::srgb(), OrvColorManager::linear(), OrvColorManager::raw(),
        OrvColorManager::acesCg(), AcesName, Gamma22Name};
    for (int Index = 0; m_pUser && Index < m_pUser->getNumColorSpaces(); ++Index) {
        const QString Name = QString::fromUtf8(m_pUser->getColorSpaceNameByIndex(Index));
        if (!Names.contains(Name, Qt::CaseInsensitive))
            Names.append(Name);
    }
    return Names;
}

OCIO::ConstConfigRcPtr ColorSpaces::configOf(const QString& Name) const
{
    const QByteArray Utf8 = Name.toUtf8();
    if (m_pBuiltIn->getIndexForColorSpace(Utf8.constData()) >= 0)
        return m_pBuiltIn;
    if (m_pUser && m_pUser->getIndexForColorSpace(Utf8.constData()) >= 0)
        return m_pUser;
    return {};
}

bool ColorSpaces::isData(const QString& Name) const
{
    const OCIO::ConstConfigRcPtr pConfig = configOf(Name);
    const OCIO::ConstColorSpaceRcPtr pSpace
        = pConfig ? pConfig->getColorSpace(Name.toUtf8().constData()) : nullptr;
    return pSpace && pSpace->isData();
}

OCIO::ConstProcessorRcPtr ColorSpaces::makeProcessor(const QByteArray& From, const QByteArray& To) const
{
    const OCIO::ConstConfigRcPtr pFrom = configOf(From), pTo = configOf(To);
    if (pFrom == pTo)
        return pFrom->getProcessor(From.constData(), To.constData());
    const auto interchange = [&](const OCIO::ConstConfigRcPtr& pConfig) {
        // Both sides must speak of the same light. Where the user's configuration does not say which of its
        // spaces is ACES2065-1, its scene-linear one is taken for linear Rec.709.
        return m_pUser->hasRole("aces_interchange") ? "aces_interchange"
            : pConfig == m_pUser                    ? OCIO::ROLE_SCENE_LINEAR
                                                    : LinearName;
    };
    return OCIO::Config::GetProcessorFromConfigs(
        pFrom, From.constData(), interchange(pFrom), pTo, To.constData(), interchange(pTo));
}

OCIO::ConstCPUProcessorRcPtr ColorSpaces::processor(const QString& From, const QString& To, QString& Error)
{
    for (const QString& Name : {From, To}) {
        if (!contains(Name)) {
            Error = tr("There is no color space '%1'").arg(Name);
            return {};
        }
    }
    const QMutexLocker Locker(&m_Mutex);
    OCIO::ConstCPUProcessorRcPtr& pProcessor = m_Processors[{From, To}];
    if (!pProcessor) {
        try {
            // The library's fast powers are off by up to 1e-4, visible when 16-bit values make the way there
            // and back.
            const auto Flags
                = OCIO::OptimizationFlags(OCIO::OPTIMIZATION_DEFAULT & ~OCIO::OPTIMIZATION_FAST_LOG_EXP_POW);
            pProcessor = makeProcessor(From.toUtf8(), To.toUtf8())->getOptimizedCPUProcessor(Flags);
        } catch (const std::exception& Trouble) {
            Error = tr("Colors cannot be converted from '%1' to '%2': %3")
                        .arg(From, To, QString::fromUtf8(Trouble.what()).simplified());
        }
    }
    return pProcessor;
}

bool ColorSpaces::matrix(const QString& From, const QString& To, float* pFactors) const
{
    if (!contains(From) || !contains(To))
        return false;
    try {
        const OCIO::ConstProcessorRcPtr pProcessor = makeProcessor(From.toUtf8(), To.toUtf8());
        const OCIO::GroupTransformRcPtr pSteps
            = pProcessor->getOptimizedProcessor(OCIO::OPTIMIZATION_DEFAULT)->createGroupTransform();
        if (pSteps->getNumTransforms() != 1)
            return false;
        const auto pMatrix = OCIO::DynamicPtrCast<const OCIO::MatrixTransform>(pSteps->getTransform(0));
        if (!pMatrix)
            return false;
        double Factors[16], Offsets[4];
        pMatrix->getMatrix(Factors);
        pMatrix->getOffset(Offsets);
        const bool KeepsAlpha = Factors[3] == 0.0 && Factors[7] == 0.0 && Factors[11] == 0.0
            && Factors[12] == 0.0 && Factors[13] == 0.0 && Factors[14] == 0.0 && Factors[15] == 1.0;
        const bool HasOffset = std::any_of(Offsets, Offsets + 4, [](double One) { return One != 0.0; });
        // One that the library keeps as the inverse of another matrix says nothing of its own factors.
        if (!KeepsAlpha || HasOffset || pMatrix->getDirection() != OCIO::TRANSFORM_DIR_FORWARD)
            return false;
        for (int Index = 0; Index < 9; ++Index)
            pFactors[Index] = float(Factors[Index / 3 * 4 + Index % 3]);
        return true;
    } catch (const std::exception&) {
        return false; // told where pixels are converted
    }
}

bool ColorSpaces::isUsable(const QString& Name)
{
    if (Name == OrvColorManager::linear() || Name == OrvColorManager::srgb() || isData(Name))
        return true;
    {
        const QMutexLocker Locker(&m_Mutex);
        if (m_Unusable.contains(Name))
            return false;
    }
    QString Error;
    if (processor(Name, OrvColorManager::linear(), Error) && processor(OrvColorManager::linear(), Name, Error))
        return true;
    const QMutexLocker Locker(&m_Mutex);
    if (!m_Unusable.contains(Name)) {
        m_Unusable.insert(Name);
        qWarning("%s", qUtf8Printable(tr("%1. Its values are taken for linear light").arg(Error)));
    }
    return false;
}

QMutex SpacesMutex;
std::shared_ptr<ColorSpaces> pSpaces;

std::shared_ptr<ColorSpaces> colorSpacesInUse()
{
    const QMutexLocker Locker(&SpacesMutex);
    if (!pSpaces)
        pSpaces = std::make_shared<ColorSpaces>();
    return pSpaces;
}

/// Below this many pixels a thread costs more than it saves.
constexpr qint64 PixelsWorthAThread = 64 * 1024;

} // namespace

QString OrvColorManager::srgb()
{
    return QLatin1String(SrgbName);
}

QString OrvColorManager::linear()
{
    return QLatin1String(LinearName);
}

QString OrvColorManager::raw()
{
    return QLatin1String(RawName);
}

QString OrvColorManager::acesCg()
{
    return QLatin1String(AcesCgName);
}

QStringList OrvColorManager::colorSpaces()
{
    return colorSpacesInUse()->names();
}

bool OrvColorManager::isColorSpace(const QString& Name)
{
    return colorSpacesInUse()->contains(Name);
}

bool OrvColorManager::isIdentity(const QString& From, const QString& To)
{
    if (From == To || From == raw() || To == raw())
        return true;
    const auto pInUse = colorSpacesInUse();
    return pInUse->isData(From) || pInUse->isData(To);
}

bool OrvColorManager::matrix(const QString& From, const QString& To, float* pFactors)
{
    return !isIdentity(From, To) && colorSpacesInUse()->matrix(From, To, pFactors);
}

QString OrvColorManager::computedSpace(const QString& Stored)
{
    // The two that nearly all channels have cost no look at the configuration.
    if (Stored == srgb() || Stored == linear())
        return linear();
    return colorSpacesInUse()->isUsable(Stored) ? Stored : linear();
}

bool OrvColorManager::transform(const OrvColor& In, OrvColor& Out,
    OrvColorSpaceDefaults::ColorSpaceTarget From, OrvColorSpaceDefaults::ColorSpaceTarget To,
    const OrvColorSpaceConfig* pConfig)
{
    const OrvColorSpaceManager& Manager = OrvColorSpaceManager::instance();
    return transform(In, Out, Manager.colorSpace(From, pConfig), Manager.colorSpace(To, pConfig));
}

bool OrvColorManager::transform(const OrvColor& In, OrvColor& Out, const QString& From, const QString& To)
{
    float Pixel[4] = {In.red(), In.green(), In.blue(), In.alpha()};
    QString Error;
    const bool Done = transformPixels(Pixel, 1, 1, 0, From, To, Error);
    Out = OrvColor(Pixel[0], Pixel[1], Pixel[2], Pixel[3]);
    return Done;
}

bool OrvColorManager::transformPixels(float* pPixels, int Width, int Height, qsizetype Stride,
    const QString& From, const QString& To, QString& Error)
{
    if (Width <= 0 || Height <= 0 || isIdentity(From, To))
        return true;
    const OCIO::ConstCPUProcessorRcPtr pProcessor = colorSpacesInUse()->processor(From, To, Error);
    if (!pProcessor)
        return false;

    const qsizetype RowFloats = Stride ? Stride : qsizetype(Width) * 4;
    const auto convertRows = [&](int First, int End) {
        OCIO::PackedImageDesc Rows(pPixels + First * RowFloats, Width, End - First,
            OCIO::CHANNEL_ORDERING_RGBA, OCIO::BIT_DEPTH_F32, OCIO::AutoStride, OCIO::AutoStride,
            RowFloats * qsizetype(sizeof(float)));
        pProcessor->apply(Rows);
    };
    const qint64 Worthwhile = qint64(Width) * Height / PixelsWorthAThread;
    const int Bands
        = int(qBound<qint64>(1, Worthwhile, std::min<qint64>(Height, std::thread::hardware_concurrency())));
    std::vector<std::future<void>> Others;
    for (int Band = 1; Band < Bands; ++Band) {
        Others.push_back(std::async(std::launch::async, convertRows, int(qint64(Height) * Band / Bands),
            int(qint64(Height) * (Band + 1) / Bands)));
    }
    convertRows(0, Height / Bands);
    for (std::future<void>& Other : Others)
        Other.get();
    return true;
}

QString OrvColorManager::configurationError()
{
    return colorSpacesInUse()->error();
}

void OrvColorManager::reloadConfiguration()
{
    const QMutexLocker Locker(&SpacesMutex);
    pSpaces.reset();
}
