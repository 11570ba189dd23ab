#include "OrvCoreModules/Window/OrvFileIconEngine.h"

#include "OrvCoreModules/Window/OrvResourceInfo.h"

#include <QtCore/QDir>
#include <QtCore/QHash>
#include <QtGui/QPainter>
#include <QtGui/QPixmapCache>
#include <QtSvg/QSvgRenderer>

namespace {

constexpr qreal DisabledOpacity = 0.35;

QString doubleSizeTwin(const QString& Path)
{
    const int Dot = Path.lastIndexOf(QLatin1Char('.'));
    return Dot < 0 ? QString() : Path.left(Dot) + QStringLiteral("@2x") + Path.mid(Dot);
}

QImage faded(const QImage& Image)
{
    // Gray, and light enough to be told from an enabled gray icon.
    QImage Gray = Image.convertToFormat(QImage::Format_ARGB32);
    for (int Y = 0; Y < Gray.height(); ++Y) {
        auto* pPixels = reinterpret_cast<QRgb*>(Gray.scanLine(Y));
        for (int X = 0; X < Gray.width(); ++X) {
            const int Level = qGray(pPixels[X]);
            pPixels[X] = qRgba(Level, Level, Level, qRound(qAlpha(pPixels[X]) * DisabledOpacity));
        }
    }
    return Gray;
}

} // namespace

/// The contents of a file.
struct OrvFileIconEngine::Picture {
    QImage Image;
    QImage DoubleImage; ///< of the "@2x" file
    std::unique_ptr<QSvgRenderer> pRenderer;

    QSize size() const { return pRenderer ? pRenderer->defaultSize() : Image.size(); }
};

OrvFileIconEngine::OrvFileIconEngine(const QString& File)
    : m_File(File)
{
}

OrvFileIconEngine::~OrvFileIconEngine() = default;

std::shared_ptr<const OrvFileIconEngine::Picture> OrvFileIconEngine::read(const QString& Path)
{
    static QHash<QString, std::shared_ptr<const Picture>> Known;
    if (const std::shared_ptr<const Picture> pKnown = Known.value(Path))
        return pKnown;
    auto pPicture = std::make_shared<Picture>();
    if (Path.endsWith(QLatin1String(".svg"), Qt::CaseInsensitive)) {
        pPicture->pRenderer = std::make_unique<QSvgRenderer>(Path);
        if (!pPicture->pRenderer->isValid())
            return nullptr;
    } else {
        pPicture->Image = QImage(Path);
        if (pPicture->Image.isNull())
            return nullptr;
        pPicture->DoubleImage = QImage(doubleSizeTwin(Path));
    }
    Known.insert(Path, pPicture);
    return pPicture;
}

void OrvFileIconEngine::open()
{
    if (m_Opened)
        return;
    m_Opened = true;
    // The path is made now, as the icon may be older than the program's knowledge of its own place.
    m_Path = QDir::cleanPath(QDir(OrvResourceInfo::iconPath()).filePath(m_File));
    m_pPicture = read(m_Path);
}

bool OrvFileIconEngine::isEmpty()
{
    open();
    return !m_pPicture;
}

QSize OrvFileIconEngine::fittedSize(const QSize& DeviceSize, bool MayGrow) const
{
    const QSize Fitted = m_pPicture->size().scaled(DeviceSize, Qt::KeepAspectRatio);
    if (m_pPicture->pRenderer || MayGrow)
        return Fitted;
    const QSize Largest
        = m_pPicture->DoubleImage.isNull() ? m_pPicture->Image.size() : m_pPicture->DoubleImage.size();
    return Fitted.width() <= Largest.width() ? Fitted : Largest;
}

QImage OrvFileIconEngine::render(const QSize& DeviceSize) const
{
    if (!m_pPicture->pRenderer) {
        const bool NeedsDouble
            = DeviceSize.width() > m_pPicture->Image.width() && !m_pPicture->DoubleImage.isNull();
        const QImage& Source = NeedsDouble ? m_pPicture->DoubleImage : m_pPicture->Image;
        return Source.size() == DeviceSize
            ? Source
            : Source.scaled(DeviceSize, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    QImage Image(DeviceSize, QImage::Format_ARGB32_Premultiplied);
    Image.fill(Qt::transparent);
    QPainter Painter(&Image);
    m_pPicture->pRenderer->render(&Painter);
    return Image;
}

QPixmap OrvFileIconEngine::cachedPixmap(const QSize& DeviceSize, QIcon::Mode Mode)
{
    const QString Key = QStringLiteral("OrvIcon %1 %2x%3 %4")
                            .arg(m_Path)
                            .arg(DeviceSize.width())
                            .arg(DeviceSize.height())
                            .arg(Mode == QIcon::Disabled);
    QPixmap Pixmap;
    if (QPixmapCache::find(Key, &Pixmap))
        return Pixmap;
    const QImage Image = render(DeviceSize);
    Pixmap = QPixmap::fromImage(Mode == QIcon::Disabled ? faded(Image) : Image);
    QPixmapCache::insert(Key, Pixmap);
    return Pixmap;
}

void OrvFileIconEngine::paint(QPainter* pPainter, const QRect& Rect, QIcon::Mode Mode, QIcon::State)
{
    if (isEmpty() || Rect.isEmpty())
        return;
    const qreal Ratio = pPainter->device()->devicePixelRatioF();
    // Drawn into a larger rectangle than its own, a bitmap grows: the caller has asked for it.
    QPixmap Pixmap = cachedPixmap(fittedSize(Rect.size() * Ratio, true), Mode);
    Pixmap.setDevicePixelRatio(Ratio);
    QRectF Target(QPointF(), QSizeF(Pixmap.size()) / Ratio);
    Target.moveCenter(QRectF(Rect).center());
    Target.moveTo(qRound(Target.x()), qRound(Target.y()));
    pPainter->drawPixmap(Target.topLeft(), Pixmap);
}

QPixmap OrvFileIconEngine::pixmap(const QSize& Size, QIcon::Mode Mode, QIcon::State)
{
    if (isEmpty() || Size.isEmpty())
        return {};
    return cachedPixmap(fittedSize(Size, false), Mode);
}

QSize OrvFileIconEngine::actualSize(const QSize& Size, QIcon::Mode, QIcon::State)
{
    return isEmpty() ? QSize() : fittedSize(Size, false);
}

QList<QSize> OrvFileIconEngine::availableSizes(QIcon::Mode, QIcon::State) const
{
    // The base class wants this const, opening is lazy.
    auto* pSelf = const_cast<OrvFileIconEngine*>(this);
    if (pSelf->isEmpty())
        return {};
    return {pSelf->m_pPicture->size()};
}

QIconEngine* OrvFileIconEngine::clone() const
{
    return new OrvFileIconEngine(*this);
}

QString OrvFileIconEngine::key() const
{
    return QStringLiteral("OrvFileIconEngine");
}

void OrvFileIconEngine::virtual_hook(int Id, void* pData)
{
    switch (Id) {
    case QIconEngine::AvailableSizesHook: {
        auto* pArgument = static_cast<QIconEngine::AvailableSizesArgument*>(pData);
        pArgument->sizes = availableSizes(pArgument->mode, pArgument->state);
        break;
    }
    case QIconEngine::IsNullHook:
        *static_cast<bool*>(pData) = isEmpty();
        break;
    default:
        QIconEngine::virtual_hook(Id, pData);
    }
}
