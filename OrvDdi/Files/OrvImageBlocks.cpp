#include "OrvDdi/Files/OrvImageBlocks.h"

#include "OrvDdi/Files/OrvBlockStore.h"
#include "OrvDdi/Image/OrvImageSet.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDataStream>
#include <QtCore/QJsonArray>
#include <QtCore/QtEndian>

#include <atomic>
#include <future>
#include <thread>
#include <vector>

namespace {

/// A square of one value is described by this mark and the hexadecimal bytes of its pixel.
constexpr char UniformMark = '=';

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvImageBlocks", pText);
}

QString edgeKey()
{
    return QStringLiteral("edge");
}

QString squaresKey()
{
    return QStringLiteral("squares");
}

QString uniformKey()
{
    return QStringLiteral("uniform");
}

/// Blocks hold little-endian components; on such machines nothing happens. Its own inverse.
void exchangeByteOrder(QByteArray& Pixels, const OrvPixelFormat& Format)
{
    if (Format.bytesPerComponent() == 2)
        qToLittleEndian<quint16>(Pixels.constData(), Pixels.size() / 2, Pixels.data());
    else if (Format.bytesPerComponent() == 4)
        qToLittleEndian<quint32>(Pixels.constData(), Pixels.size() / 4, Pixels.data());
}

bool isOneValue(const QByteArray& Pixels, int BytesPerPixel)
{
    // Every pixel equals its neighbour when the bytes equal themselves one pixel further on.
    return memcmp(
               Pixels.constData(), Pixels.constData() + BytesPerPixel, size_t(Pixels.size() - BytesPerPixel))
        == 0;
}

QByteArray uniformKeyOf(const QByteArray& Pixel)
{
    return UniformMark + Pixel.toHex();
}

int byteCount(const QRect& Rect, const OrvPixelFormat& Format)
{
    return Rect.width() * Rect.height() * Format.bytesPerPixel();
}

/// The pixels of a square as they are stored.
QByteArray rawSquare(const OrvImageBuffer& Pixels, const QRect& Rect)
{
    const OrvPixelFormat Format = Pixels.format();
    QByteArray Raw(byteCount(Rect, Format), Qt::Uninitialized);
    Pixels.read(Rect, Format, Raw.data());
    exchangeByteOrder(Raw, Format);
    return Raw;
}

bool isUniformKey(const QByteArray& Key)
{
    return Key.startsWith(UniformMark);
}

/// The pixel of a uniform square, empty when the key is damaged.
QByteArray pixelOf(const QByteArray& UniformKey, const OrvPixelFormat& Format)
{
    const QByteArray Hex = UniformKey.mid(1);
    const QByteArray Pixel = QByteArray::fromHex(Hex);
    return Pixel.size() == Format.bytesPerPixel() && Pixel.toHex() == Hex ? Pixel : QByteArray();
}

/// Runs the step for 0 to Count - 1 in the calling thread, which alone reports progress, and a second one.
/// Stops early when a step or the progress fails; the first failure's text is kept.
bool runInTwoThreads(int Count, const OrvProgress& Progress, QString& Error, const QString& CancelText,
    const std::function<bool(int, QString&)>& Step)
{
    std::atomic<int> Next{0}, Done{0};
    std::atomic<bool> Stopped{false};
    const auto work = [&](QString& Trouble, const OrvProgress& Report) {
        for (int Index = Next++; Index < Count && !Stopped; Index = Next++) {
            if (!Step(Index, Trouble)) {
                Stopped = true;
                return false;
            }
            ++Done;
            if (Report && !Report(Done, Count)) {
                Stopped = true;
                Trouble = CancelText;
                return false;
            }
        }
        return true;
    };
    QString OtherError;
    std::future<bool> Other;
    if (Count > 1)
        Other = std::async(std::launch::async, [&] { return work(OtherError, {}); });
    const bool FirstDone = work(Error, Progress);
    const bool OtherDone = !Other.valid() || Other.get();
    if (FirstDone && !OtherDone)
        Error = OtherError;
    return FirstDone && OtherDone;
}

} // namespace

bool OrvImageBlocks::store(OrvImageSet& Images, OrvBlockStore& Store, QJsonObject& Description,
    const OrvProgress& Progress, QString& Error)
{
    if (Images.isUniform()) {
        Description = {{uniformKey(), true}};
        return true;
    }
    const OrvPixelFormat Format = Images.format();
    const int Count = Images.blockCount();
    std::vector<QByteArray> Keys(static_cast<size_t>(Count));
    std::vector<int> Changed;
    for (int Index = 0; Index < Count; ++Index) {
        const QByteArray Key = Images.blockKey(Index);
        if (!Key.isEmpty() && (isUniformKey(Key) || Store.contains(Key)))
            Keys[size_t(Index)] = Key;
        else
            Changed.push_back(Index);
    }

    const OrvImageBuffer Pixels = Images.snapshot();
    const auto storeSquare = [&](int Number, QString& Trouble) {
        const int Index = Changed[size_t(Number)];
        const QByteArray Raw = rawSquare(Pixels, Images.blockRect(Index));
        Keys[size_t(Index)] = isOneValue(Raw, Format.bytesPerPixel())
            ? uniformKeyOf(Raw.left(Format.bytesPerPixel()))
            : Store.put(Raw, Trouble);
        return !Keys[size_t(Index)].isEmpty();
    };
    const bool Done
        = runInTwoThreads(int(Changed.size()), Progress, Error, tr("Storing was cancelled"), storeSquare);
    for (const int Index : Changed) {
        if (!Keys[size_t(Index)].isEmpty())
            Images.setBlockKey(Index, Keys[size_t(Index)]);
    }
    if (!Done)
        return false;
    QJsonArray Squares;
    for (const QByteArray& Key : Keys)
        Squares.append(QLatin1String(Key));
    Description = {{edgeKey(), OrvImageSet::BlockEdge}, {squaresKey(), Squares}};
    return true;
}

bool OrvImageBlocks::load(const QJsonObject& Description, const OrvBlockStore& Store, OrvImageSet& Images,
    QString& Error, const OrvProgress& Progress)
{
    const OrvUdimLayout Layout = Images.layout();
    const OrvPixelFormat Format = Images.format();
    if (Description.value(uniformKey()).toBool()) {
        Images.replace(Layout, Format, Images.fillColor(), {});
        return true;
    }
    const QJsonArray Squares = Description.value(squaresKey()).toArray();
    if (Description.value(edgeKey()).toInt() != OrvImageSet::BlockEdge
        || Squares.size() != Images.blockCount()) {
        Error = tr("The description of the pixels does not fit an image of %1 x %2 pixels")
                    .arg(Images.extent().width())
                    .arg(Images.extent().height());
        return false;
    }

    OrvImageBuffer Pixels(Images.extent(), Format);
    std::vector<QByteArray> Keys;
    for (const QJsonValue Value : Squares)
        Keys.push_back(Value.toString().toLatin1());
    const auto loadSquare = [&](int Index, QString& Trouble) {
        const QByteArray& Key = Keys[size_t(Index)];
        const QRect Rect = Images.blockRect(Index);
        QByteArray Raw;
        if (isUniformKey(Key)) {
            const QByteArray Pixel = pixelOf(Key, Format);
            if (Pixel.isEmpty()) {
                Trouble = tr("The description of a square of one color is damaged: '%1'")
                              .arg(QLatin1String(Key.left(64)));
                return false;
            }
            if (Pixel.count('\0') == Pixel.size())
                return true;
            Raw = Pixel.repeated(Rect.width() * Rect.height());
        } else {
            Raw = Store.get(Key, Trouble);
            if (Raw.isNull())
                return false;
            if (Raw.size() != byteCount(Rect, Format)) {
                Trouble = tr("The data block '%1' does not fit the image").arg(Store.blockPath(Key));
                return false;
            }
        }
        exchangeByteOrder(Raw, Format);
        Pixels.write(Rect, Format, Raw.constData());
        return true;
    };
    if (!runInTwoThreads(int(Keys.size()), Progress, Error, tr("Loading was cancelled"), loadSquare))
        return false;

    Images.replace(Layout, Format, Images.fillColor(), Pixels);
    for (int Index = 0; Index < int(Keys.size()); ++Index)
        Images.setBlockKey(Index, Keys[size_t(Index)]);
    return true;
}

QByteArray OrvImageBlocks::contentKey(OrvImageSet& Images)
{
    const OrvPixelFormat Format = Images.format();
    QByteArray Contents;
    QDataStream Stream(&Contents, QIODevice::WriteOnly);
    Stream << Images.layout().tileSize() << Images.layout().tiles() << Format.Depth << Format.Kind
           << Format.Curve;
    if (Images.isUniform()) {
        for (int Component = 0; Component < 4; ++Component)
            Stream << Images.fillColor().components()[Component];
        return OrvBlockStore::keyOf(Contents);
    }
    const OrvImageBuffer Pixels = Images.snapshot();
    for (int Index = 0; Index < Images.blockCount(); ++Index) {
        if (Images.blockKey(Index).isEmpty()) {
            const QByteArray Raw = rawSquare(Pixels, Images.blockRect(Index));
            Images.setBlockKey(Index,
                isOneValue(Raw, Format.bytesPerPixel()) ? uniformKeyOf(Raw.left(Format.bytesPerPixel()))
                                                        : OrvBlockStore::keyOf(Raw));
        }
        Stream << Images.blockKey(Index);
    }
    return OrvBlockStore::keyOf(Contents);
}

QSet<QByteArray> OrvImageBlocks::blockKeys(const QJsonObject& Description)
{
    QSet<QByteArray> Keys;
    const QJsonArray Squares = Description.value(squaresKey()).toArray();
    for (const QJsonValue Value : Squares) {
        const QByteArray Key = Value.toString().toLatin1();
        if (OrvBlockStore::isKey(Key))
            Keys.insert(Key);
    }
    return Keys;
}
