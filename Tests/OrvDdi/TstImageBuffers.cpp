#include "OrvDdi/Engine/OrvEngine.h"
#include "OrvDdi/Engine/OrvPixelKernels.h"
#include "OrvDdi/Image/OrvChannel.h"
#include "OrvDdi/Image/OrvColor.h"
#include "OrvDdi/Image/OrvImage.h"
#include "OrvDdi/Image/OrvImageBuffer.h"
#include "OrvDdi/Image/OrvImageSet.h"

#include <QtCore/QRandomGenerator>
#include <QtCore/qfloat16.h>
#include <QtGui/QColor>
#include <QtTest/QSignalSpy>
#include <QtTest/QtTest>

#include <cmath>
#include <vector>

namespace {

constexpr GLenum Depths[] = {GL_UNSIGNED_BYTE, GL_HALF_FLOAT, GL_FLOAT};

OrvPixelFormat format(GLenum Depth, OrvPixelFormat::Components Kind = OrvPixelFormat::Rgba,
    OrvPixelFormat::Encoding Curve = OrvPixelFormat::Linear)
{
    return {Depth, Kind, Curve};
}

const OrvPixelFormat LinearFloat = format(GL_FLOAT);

QVector<OrvPixelFormat> allFormats()
{
    QVector<OrvPixelFormat> All;
    for (const GLenum Depth : Depths) {
        for (const auto Kind : {OrvPixelFormat::Rgba, OrvPixelFormat::Scalar}) {
            for (const auto Curve : {OrvPixelFormat::Linear, OrvPixelFormat::Srgb})
                All.append(format(Depth, Kind, Curve));
        }
    }
    return All;
}

QByteArray formatName(const OrvPixelFormat& Format)
{
    return QByteArray::number(Format.bytesPerComponent() * 8)
        + (Format.Kind == OrvPixelFormat::Scalar ? " scalar" : " colour")
        + (Format.Curve == OrvPixelFormat::Srgb ? " sRGB" : " linear");
}

float linearOfSrgb(double Value)
{
    return float(Value <= 0.04045 ? Value / 12.92 : std::pow((Value + 0.055) / 1.055, 2.4));
}

QVector<float> readLinear(const OrvImageBuffer& Buffer, const QRect& Region)
{
    QVector<float> Pixels(Region.width() * Region.height() * 4, -99.0f);
    Buffer.read(Region, LinearFloat, Pixels.data());
    return Pixels;
}

OrvColor pixelAt(const OrvImageBuffer& Buffer, int X, int Y)
{
    const QVector<float> Pixel = readLinear(Buffer, QRect(X, Y, 1, 1));
    return {Pixel[0], Pixel[1], Pixel[2], Pixel[3]};
}

} // namespace

class TstImageBuffers : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void udimLayout();
    void namesOfDepthsAndSizes();
    void colorsToAndFromQt();
    void storedBitsSurvive_data();
    void storedBitsSurvive();
    void wideningAndNarrowingIsExact();
    void sRgbIsTheCurve();
    void scalarAndColor();
    void transparentPixelsKeepTheirColor();
    void kernelSetsAgree_data();
    void kernelSetsAgree();
    void valuesThatAreNoNumbers();
    void partsAndStrides();
    void snapshotsAreIndependent();
    void fillAndCopy();
    void imageSetBecomesPixels();
    void imageSetRestores();
    void imageSetBlocks();
    void nothingLeaks();
};

void TstImageBuffers::udimLayout()
{
    const QSize Tile(64, 32);
    QCOMPARE(OrvUdimLayout(Tile).extent(), QRect(0, 0, 64, 32));
    QCOMPARE(OrvUdimLayout(Tile, {}).tiles(), QVector<int>{1001});
    QVERIFY(OrvUdimLayout().extent().isEmpty());
    QVERIFY(!OrvUdimLayout().isValid());

    const OrvUdimLayout Layout(Tile, {1012, 1001, 1012, 1000, 10000, 1010});
    QCOMPARE(Layout.tiles(), (QVector<int>{1001, 1010, 1012}));
    QCOMPARE(Layout.extent(), QRect(0, 0, 640, 64));
    // v grows upwards: the second row of tiles stands at the top.
    QCOMPARE(Layout.tileRect(1001), QRect(0, 32, 64, 32));
    QCOMPARE(Layout.tileRect(1010), QRect(576, 32, 64, 32));
    QCOMPARE(Layout.tileRect(1012), QRect(64, 0, 64, 32));
    QVERIFY(Layout.tileRect(1002).isEmpty());
    QCOMPARE(Layout.resized(QSize(8, 8)).tileRect(1012), QRect(8, 0, 8, 8));
    QVERIFY(Layout.resized(Tile) == Layout);
}

void TstImageBuffers::namesOfDepthsAndSizes()
{
    for (const auto& Depth : OrvImage::sortedSupportedDepths()) {
        QCOMPARE(OrvImage::validTypeFromString(Depth.first), Depth.second);
        QCOMPARE(OrvImage::depthName(Depth.second), Depth.first);
    }
    QCOMPARE(OrvImage::sortedSupportedDepths().first().second, GLenum(5121));
    QCOMPARE(OrvImage::validTypeFromString("12bit"), GLenum(GL_UNSIGNED_BYTE));
    QVERIFY(OrvImage::depthName(0).isEmpty());
    QVERIFY(OrvChannel::supportedTextureSizes().contains(QSize(2048, 2048)));
}

void TstImageBuffers::colorsToAndFromQt()
{
    QCOMPARE(OrvColor(4.0f, -1.0f, float(qQNaN()), 0.5f).toQColor().rgb(), qRgb(255, 0, 0));
    const QColor Color = QColor::fromRgbF(0.25, 0.5, 0.75, 0.5);
    QCOMPARE(OrvColor::fromQColor(Color).toQColor(), Color);
}

void TstImageBuffers::storedBitsSurvive_data()
{
    QTest::addColumn<int>("Index");
    for (int Index = 0; Index < allFormats().size(); ++Index)
        QTest::newRow(formatName(allFormats()[Index])) << Index;
}

/// What is written comes back bit by bit, and unchanged through linear float and a conversion of the whole
/// buffer.
void TstImageBuffers::storedBitsSurvive()
{
    QFETCH(int, Index);
    const OrvPixelFormat Format = allFormats()[Index];
    const QRect Extent(-5, 3, 300, 140); // more than one tile, at no tile's edge
    QRandomGenerator Random(7);
    QByteArray Pixels(Extent.width() * Extent.height() * Format.bytesPerPixel(), 0);
    const int Components = Pixels.size() / Format.bytesPerComponent();
    for (int Component = 0; Component < Components; ++Component) {
        const double Value = Random.bounded(1.0);
        if (Format.Depth == GL_FLOAT)
            reinterpret_cast<float*>(Pixels.data())[Component] = float(Value * 3.0 - 1.0);
        else if (Format.Depth == GL_HALF_FLOAT)
            reinterpret_cast<qfloat16*>(Pixels.data())[Component] = qfloat16(float(Value));
        else
            Pixels[Component] = char(Component % 256);
    }
    OrvImageBuffer Buffer(Extent, Format);
    Buffer.write(Extent, Format, Pixels.constData());
    QByteArray Back(Pixels.size(), 'x');
    Buffer.read(Extent, Format, Back.data());
    QCOMPARE(Back, Pixels);
    if (Format.Depth == GL_FLOAT)
        return;
    Buffer.converted(LinearFloat).converted(Format).read(Extent, Format, Back.data());
    if (Format.Depth == GL_UNSIGNED_BYTE) {
        QCOMPARE(Back, Pixels);
    } else {
        const auto* pBack = reinterpret_cast<const quint16*>(Back.constData());
        const auto* pPixels = reinterpret_cast<const quint16*>(Pixels.constData());
        const int Tolerance
            = Format.Curve == OrvPixelFormat::Srgb || Format.Kind == OrvPixelFormat::Scalar ? 1 : 0;
        for (int Component = 0; Component < Components; ++Component)
            QVERIFY(qAbs(pBack[Component] - pPixels[Component]) <= Tolerance);
    }
}

/// All 65,536 halves, and that what lies between them goes to the nearest one, on both sets of kernels.
void TstImageBuffers::wideningAndNarrowingIsExact()
{
    std::vector<quint16> Halves(65536 * 4);
    for (size_t Index = 0; Index < Halves.size(); ++Index)
        Halves[Index] = quint16(Index);
    std::vector<float> Floats(Halves.size());
    std::vector<quint16> Back(Halves.size());
    for (const OrvPixelKernels* pKernels : {&OrvPixelKernels::portable(), &OrvPixelKernels::best()}) {
        pKernels->widenStraight(OrvPixelLayout::HalfRgba, Halves.data(), 65536, Floats.data());
        pKernels->narrowStraight(OrvPixelLayout::HalfRgba, Floats.data(), 65536, Back.data());
        for (int Bits = 0; Bits < 65536; ++Bits) {
            qfloat16 Half;
            memcpy(static_cast<void*>(&Half), &Bits, 2);
            if (std::isnan(float(Half))) {
                QVERIFY(std::isnan(Floats[size_t(Bits)]));
                continue;
            }
            QCOMPARE(Floats[size_t(Bits)], float(Half));
            QCOMPARE(Back[size_t(Bits)], quint16(Bits));
        }
        const std::vector<float> ValueOf = Floats;
        QRandomGenerator Random(3);
        for (float& Value : Floats)
            Value = std::ldexp(float(Random.bounded(2.0) - 1.0), Random.bounded(44) - 26);
        pKernels->narrowStraight(OrvPixelLayout::HalfRgba, Floats.data(), 65536, Back.data());
        for (size_t Index = 0; Index < Floats.size(); ++Index) {
            const float Value = qAbs(Floats[Index]);
            const int Bits = Back[Index] & 0x7fff;
            QCOMPARE((Back[Index] & 0x8000) != 0, std::signbit(Floats[Index]));
            if (Bits == 0x7c00) {
                QVERIFY(Value >= 65520.0f);
                continue;
            }
            const float Error = qAbs(ValueOf[size_t(Bits)] - Value);
            QVERIFY(Bits == 0 || Error <= qAbs(ValueOf[size_t(Bits - 1)] - Value));
            QVERIFY(Error <= qAbs(ValueOf[size_t(Bits + 1)] - Value));
        }
    }
}

void TstImageBuffers::sRgbIsTheCurve()
{
    const QRect Row(0, 0, 256, 1);
    QByteArray Bytes;
    for (int Value = 0; Value < 256; ++Value)
        Bytes.append(4, char(Value));
    OrvImageBuffer Buffer(Row, format(GL_UNSIGNED_BYTE, OrvPixelFormat::Rgba, OrvPixelFormat::Srgb));
    Buffer.write(Row, Buffer.format(), Bytes.constData());
    for (const GLenum Depth : Depths) {
        // The same picture in every depth says the same in linear light.
        const OrvPixelFormat Srgb = format(Depth, OrvPixelFormat::Rgba, OrvPixelFormat::Srgb);
        const float Tolerance = Depth == GL_HALF_FLOAT ? 1.5e-3f : 4e-6f;
        const QVector<float> Linear = readLinear(Buffer.converted(Srgb), Row);
        for (int Value = 0; Value < 256; ++Value) {
            QVERIFY(qAbs(Linear[Value * 4] - linearOfSrgb(Value / 255.0)) < Tolerance);
            QVERIFY(qAbs(Linear[Value * 4 + 3] - float(Value / 255.0)) < Tolerance); // no curve for alpha
        }
    }
    // Beyond one and below zero, where there are no tables.
    OrvImageBuffer Wide(QRect(0, 0, 1, 1), format(GL_FLOAT, OrvPixelFormat::Rgba, OrvPixelFormat::Srgb));
    Wide.fill(OrvColor(9.0f, -0.1f, 1e-5f, 2.0f));
    const OrvColor Back = pixelAt(Wide, 0, 0);
    QVERIFY(qAbs(Back.red() - 9.0f) < 1e-4f);
    QVERIFY(qAbs(Back.green() + 0.1f) < 1e-6f);
    QVERIFY(qAbs(Back.blue() - 1e-5f) < 1e-9f);
    QCOMPARE(Back.alpha(), 2.0f);
}

void TstImageBuffers::scalarAndColor()
{
    const QRect Two(0, 0, 2, 1);
    OrvImageBuffer Mask(Two, format(GL_UNSIGNED_BYTE, OrvPixelFormat::Scalar));
    const uchar Values[] = {128, 255};
    Mask.write(Two, Mask.format(), Values);
    // Data has no curve: 128 is half.
    QVERIFY(pixelAt(Mask, 0, 0) == OrvColor(128 / 255.0f, 128 / 255.0f, 128 / 255.0f));
    QCOMPARE(pixelAt(Mask, 1, 0), OrvColor::white());
    QCOMPARE(pixelAt(Mask, 2, 0), OrvColor::clear());

    OrvImageBuffer Color(QRect(0, 0, 1, 1), LinearFloat);
    Color.fill(OrvColor(0.0f, 1.0f, 0.0f, 0.5f));
    float Luminance = 0.0f;
    Color.read(QRect(0, 0, 1, 1), format(GL_FLOAT, OrvPixelFormat::Scalar), &Luminance);
    QVERIFY(qAbs(Luminance - 0.3576f) < 1e-6f); // over black
    OrvImageBuffer Filled(QRect(0, 0, 1, 1), format(GL_HALF_FLOAT, OrvPixelFormat::Scalar));
    Filled.fill(OrvColor(0.25f, 1.0f, 1.0f, 0.0f));
    QCOMPARE(pixelAt(Filled, 0, 0), OrvColor(0.25f, 0.25f, 0.25f));
}

void TstImageBuffers::transparentPixelsKeepTheirColor()
{
    OrvImageBuffer Buffer(QRect(0, 0, 3, 1), LinearFloat);
    Buffer.fill(OrvColor(0.5f, 0.25f, 1.0f, 0.0f));
    QCOMPARE(pixelAt(Buffer.converted(format(GL_HALF_FLOAT)), 2, 0), OrvColor(0.5f, 0.25f, 1.0f, 0.0f));
}

void TstImageBuffers::kernelSetsAgree_data()
{
    storedBitsSurvive_data();
}

/// Every conversion of the fast set against the portable one, with odd and even lengths.
void TstImageBuffers::kernelSetsAgree()
{
    QFETCH(int, Index);
    const OrvPixelLayout Layout = orvPixelLayout(allFormats()[Index]);
    const OrvPixelKernels &Portable = OrvPixelKernels::portable(), &Best = OrvPixelKernels::best();
    QRandomGenerator Random(11);
    std::vector<float> Source(37 * 4), One(37 * 4), Two(37 * 4);
    for (float& Value : Source)
        Value = float(Random.bounded(1.2) - 0.1);
    const auto close = [](float A, float B) { return qAbs(A - B) <= 1e-4f + qAbs(A) * 2e-3f; };
    for (const int Count : {1, 2, 37}) {
        QByteArray First(37 * 16, 0), Second(37 * 16, 0);
        Portable.narrowPremultiplied(Layout, Source.data(), Count, First.data());
        Best.narrowPremultiplied(Layout, Source.data(), Count, Second.data());
        Portable.widenPremultiplied(Layout, First.constData(), Count, One.data());
        Best.widenPremultiplied(Layout, First.constData(), Count, Two.data());
        for (int Component = 0; Component < Count * 4; ++Component)
            QVERIFY(close(One[size_t(Component)], Two[size_t(Component)]));
        Portable.widenPremultiplied(Layout, Second.constData(), Count, Two.data());
        for (int Component = 0; Component < Count * 4; ++Component)
            QVERIFY(qAbs(One[size_t(Component)] - Two[size_t(Component)])
                <= 0.011f + qAbs(One[size_t(Component)]) * 2e-3f);
        Portable.maskFactors(Layout, First.constData(), Count, 0.5f, One.data());
        Best.maskFactors(Layout, First.constData(), Count, 0.5f, Two.data());
        for (int Pixel = 0; Pixel < Count; ++Pixel)
            QVERIFY(close(One[size_t(Pixel)], Two[size_t(Pixel)]));
    }
}

void TstImageBuffers::valuesThatAreNoNumbers()
{
    const float Infinity = float(qInf()), NotANumber = float(qQNaN());
    const float Pixel[8] = {Infinity, -Infinity, NotANumber, 1.0f, NotANumber, 1e30f, -1e30f, NotANumber};
    for (const OrvPixelKernels* pKernels : {&OrvPixelKernels::portable(), &OrvPixelKernels::best()}) {
        for (const OrvPixelLayout Layout : {OrvPixelLayout::ByteRgba, OrvPixelLayout::ByteRgbaSrgb}) {
            uchar Bytes[8] = {};
            pKernels->narrowStraight(Layout, Pixel, 2, Bytes);
            QCOMPARE(QByteArray(reinterpret_cast<char*>(Bytes), 8), QByteArray("\xff\0\0\xff\0\xff\0\0", 8));
        }
    }
}

void TstImageBuffers::partsAndStrides()
{
    OrvImageBuffer Buffer(QRect(0, 0, 4, 4), LinearFloat);
    Buffer.fill(OrvColor::white());
    // A region that reaches over all edges, with a stride, in another depth.
    std::vector<quint16> Halves(10 * 6 * 4, 0x3800); // one half
    const OrvPixelFormat Half = format(GL_HALF_FLOAT);
    Buffer.write(QRect(-2, 1, 3, 6), Half, Halves.data(), 10 * 8);
    QCOMPARE(pixelAt(Buffer, 0, 1), OrvColor(0.5f, 0.5f, 0.5f, 0.5f));
    QCOMPARE(pixelAt(Buffer, 0, 0), OrvColor::white());
    QCOMPARE(pixelAt(Buffer, 1, 1), OrvColor::white());

    std::fill(Halves.begin(), Halves.end(), quint16(0xffff));
    Buffer.read(QRect(-1, -1, 3, 6), Half, Halves.data(), 10 * 8);
    const auto red = [&Halves](int Column, int Row) { return Halves[size_t((Row * 10 + Column) * 4)]; };
    QCOMPARE(red(0, 0), quint16(0)); // outside
    QCOMPARE(red(1, 1), quint16(0x3c00));
    QCOMPARE(red(1, 2), quint16(0x3800));
    QCOMPARE(red(2, 5), quint16(0)); // below
    QCOMPARE(red(3, 2), quint16(0xffff)); // not asked for
    Buffer.read(QRect(100, 100, 1, 1), Half, Halves.data());
    QCOMPARE(red(0, 0), quint16(0));

    OrvImageBuffer Null;
    Null.write(QRect(0, 0, 1, 1), Half, Halves.data());
    Null.fill(OrvColor::white());
    QVERIFY(Null.isNull() && Null.snapshot().isNull() && Null.converted(Half).isNull());
    Null.read(QRect(0, 0, 1, 1), Half, Halves.data());
    QVERIFY(OrvImageBuffer(QRect(), Half).isNull());
}

void TstImageBuffers::snapshotsAreIndependent()
{
    OrvImageBuffer Buffer(QRect(0, 0, 300, 300), format(GL_UNSIGNED_BYTE));
    Buffer.fill(OrvColor::white());
    const OrvImageBuffer SamePixels = Buffer, Snapshot = Buffer.snapshot();
    Buffer.fill(OrvColor::black(), QRect(130, 130, 10, 10));
    QVERIFY(SamePixels.sameAs(Buffer) && !Snapshot.sameAs(Buffer));
    QCOMPARE(pixelAt(SamePixels, 131, 131), OrvColor::black());
    QCOMPARE(pixelAt(Snapshot, 131, 131), OrvColor::white());
    Buffer.copyFrom(Snapshot, QRect(130, 130, 5, 5));
    QCOMPARE(pixelAt(Buffer, 131, 131), OrvColor::white());
    QCOMPARE(pixelAt(Buffer, 136, 136), OrvColor::black());
}

void TstImageBuffers::fillAndCopy()
{
    for (const OrvPixelFormat& Format : allFormats()) {
        OrvImageBuffer Buffer(QRect(10, 10, 20, 20), Format);
        QCOMPARE(pixelAt(Buffer, 12, 12).red(), 0.0f);
        Buffer.fill(OrvColor::grey50(), QRect(0, 0, 15, 100));
        const float Tolerance = Format.Depth == GL_UNSIGNED_BYTE ? 0.003f : 0.0005f;
        QVERIFY(qAbs(pixelAt(Buffer, 14, 29).green() - 0.5f) < Tolerance);
        QCOMPARE(pixelAt(Buffer, 15, 29).green(), 0.0f);
    }
}

void TstImageBuffers::imageSetBecomesPixels()
{
    const OrvUdimLayout Layout(QSize(64, 64), {1001, 1002});
    OrvImageSet Images(
        Layout, format(GL_HALF_FLOAT, OrvPixelFormat::Scalar), OrvColor(0.5f, 0.1f, 0.2f, 0.3f));
    QVERIFY(Images.isUniform() && Images.snapshot().isNull());
    QCOMPARE(Images.fillColor(), OrvColor(0.5f, 0.5f, 0.5f));
    QCOMPARE(Images.channels().size(), 1);
    QCOMPARE(Images.channels().first()->name(), QString("Mask"));
    QCOMPARE(Images.property("tileCount").toInt(), 2);
    QCOMPARE(Images.property("imageSetDepthString").toString(), OrvImage::depthName(GL_HALF_FLOAT));

    QSignalSpy Replaced(&Images, &OrvImageSet::replaced), Changed(&Images, &OrvImageSet::pixelsChanged);
    QCOMPARE(pixelAt(Images.buffer(), 127, 63), OrvColor(0.5f, 0.5f, 0.5f));
    QCOMPARE(Replaced.size(), 1);
    QVERIFY(Images.buffer().sameAs(Images.buffer()) && !Images.isUniform());
    Images.pixelsWritten(QRect(-10, -10, 20, 20));
    QCOMPARE(Replaced.size(), 1);
    QCOMPARE(Changed.takeFirst().first().toRect(), QRect(0, 0, 10, 10));
    Images.pixelsWritten(QRect(500, 500, 20, 20));
    QVERIFY(Changed.isEmpty());

    Images.replace(OrvUdimLayout(QSize(8, 8)), LinearFloat, OrvColor::clear(), {});
    QVERIFY(Images.isUniform());
    QCOMPARE(Images.channels().first()->name(), QString("Color"));
    QCOMPARE(Replaced.size(), 2);
    QCOMPARE(Changed.takeFirst().first().toRect(), QRect(0, 0, 8, 8));
}

void TstImageBuffers::imageSetRestores()
{
    OrvImageSet Images(OrvUdimLayout(QSize(64, 64)), LinearFloat, OrvColor::grey50());
    const OrvImageBuffer Before = Images.snapshot(); // null: everything was grey
    Images.buffer().fill(OrvColor::white());
    const OrvImageBuffer After = Images.snapshot();
    QSignalSpy Changed(&Images, &OrvImageSet::pixelsChanged);
    Images.restore(Before, QRect(0, 0, 8, 8));
    QCOMPARE(pixelAt(Images.buffer(), 7, 7), OrvColor::grey50());
    QCOMPARE(pixelAt(Images.buffer(), 8, 8), OrvColor::white());
    QCOMPARE(Changed.takeFirst().first().toRect(), QRect(0, 0, 8, 8));
    Images.restore(Before, Images.extent());
    QVERIFY(Images.isUniform());
    QCOMPARE(Changed.takeFirst().first().toRect(), Images.extent());
    Images.restore(After, QRect(0, 0, 4, 4));
    QCOMPARE(pixelAt(Images.buffer(), 3, 3), OrvColor::white());
    QCOMPARE(pixelAt(Images.buffer(), 4, 4), OrvColor::grey50());
}

void TstImageBuffers::imageSetBlocks()
{
    OrvImageSet Images(OrvUdimLayout(QSize(600, 520)), LinearFloat, OrvColor::clear());
    QCOMPARE(Images.blockCount(), 4);
    QCOMPARE(Images.blockRect(0), QRect(0, 0, 512, 512));
    QCOMPARE(Images.blockRect(3), QRect(512, 512, 88, 8));
    QVERIFY(Images.blockRect(4).isEmpty() && Images.blockRect(-1).isEmpty());
    for (int Block = 0; Block < 4; ++Block)
        Images.setBlockKey(Block, "stored");
    Images.setBlockKey(4, "nowhere");
    Images.buffer();
    Images.pixelsWritten(QRect(511, 0, 1, 1));
    QCOMPARE(Images.blockKey(0), QByteArray());
    QCOMPARE(Images.blockKey(1), QByteArray("stored"));
    Images.pixelsWritten(QRect(511, 511, 2, 2));
    QVERIFY(Images.blockKey(1).isEmpty() && Images.blockKey(2).isEmpty() && Images.blockKey(3).isEmpty());
}

void TstImageBuffers::nothingLeaks()
{
    QCOMPARE(OrvEngine::shutdown(), 0);
}

QTEST_GUILESS_MAIN(TstImageBuffers)

#include "TstImageBuffers.moc"
