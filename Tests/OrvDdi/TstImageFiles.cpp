#include "OrvDdi/Color/OrvColorManager.h"
#include "OrvDdi/Files/OrvImageFiles.h"
#include "OrvDdi/Files/OrvUdimSet.h"
#include "OrvDdi/Image/OrvColor.h"
#include "OrvDdi/Image/OrvImageBuffer.h"

#include <QtCore/QDataStream>
#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <QtGui/QImage>
#include <QtTest/QtTest>

#include <cmath>
#include <thread>

namespace {

using Properties = OrvImageFileProperties;
using Pixels = std::vector<float>;

constexpr OrvPixelFormat FloatColor{GL_FLOAT, OrvPixelFormat::Rgba, OrvPixelFormat::Linear};
constexpr OrvPixelFormat FloatScalar{GL_FLOAT, OrvPixelFormat::Scalar, OrvPixelFormat::Linear};

/// A slope in all components, with alpha from a tenth to one.
OrvImageBuffer slope(const QSize& Size, const OrvPixelFormat& Format)
{
    const OrvPixelFormat Plain{GL_FLOAT, Format.Kind, Format.Curve};
    Pixels Values;
    for (int Y = 0; Y < Size.height(); ++Y) {
        for (int X = 0; X < Size.width(); ++X) {
            const float U = float(X) / float(Size.width()), V = float(Y) / float(Size.height());
            Values.push_back(U);
            if (Format.Kind == OrvPixelFormat::Rgba)
                Values.insert(Values.end(), {V, 0.5f * (U + V), 0.1f + 0.9f * V});
        }
    }
    OrvImageBuffer Buffer(QRect(QPoint(), Size), Format);
    Buffer.write(Buffer.extent(), Plain, Values.data());
    return Buffer;
}

/// The buffer's own numbers.
Pixels numbers(const OrvImageBuffer& Buffer, const QRect& Region)
{
    const OrvPixelFormat Plain{GL_FLOAT, Buffer.format().Kind, Buffer.format().Curve};
    Pixels Values(size_t(Region.width()) * size_t(Region.height()) * size_t(Plain.componentCount()));
    Buffer.read(Region, Plain, Values.data());
    return Values;
}

Pixels numbers(const OrvImageBuffer& Buffer)
{
    return numbers(Buffer, Buffer.extent());
}

float largestDifference(const Pixels& Left, const Pixels& Right)
{
    float Largest = Left.size() == Right.size() ? 0.0f : INFINITY;
    for (size_t Index = 0; Index < qMin(Left.size(), Right.size()); ++Index)
        Largest = std::fmax(Largest, std::fabs(Left[Index] - Right[Index]));
    return Largest;
}

OrvImageWriteOptions writing(
    Properties::Precision Depth, bool Scalar = false, const QString& FileSpace = QString())
{
    OrvImageWriteOptions Options;
    Options.Depth = Depth;
    Options.Scalar = Scalar;
    Options.FileSpace = FileSpace;
    return Options;
}

OrvImageReadOptions reading(const QString& FileSpace)
{
    OrvImageReadOptions Options;
    Options.FileSpace = FileSpace;
    return Options;
}

/// An uncompressed EXR of floats, made byte by byte. Channels in alphabetical order, each row by row.
QByteArray exr(
    const QRect& Display, const QRect& Data, const QByteArrayList& Channels, const QVector<Pixels>& Planes)
{
    QByteArray File;
    QDataStream Out(&File, QIODevice::WriteOnly);
    Out.setByteOrder(QDataStream::LittleEndian);
    Out.setFloatingPointPrecision(QDataStream::SinglePrecision);
    const auto attribute = [&](const char* pName, const char* pType, qint32 Size) {
        Out.writeRawData(pName, int(strlen(pName)) + 1);
        Out.writeRawData(pType, int(strlen(pType)) + 1);
        Out << Size;
    };
    const auto box = [&](const char* pName, const QRect& Rect) {
        attribute(pName, "box2i", 16);
        Out << qint32(Rect.left()) << qint32(Rect.top()) << qint32(Rect.right()) << qint32(Rect.bottom());
    };
    Out << quint32(0x01312f76) << quint32(2);
    qint32 ListSize = 1;
    for (const QByteArray& Name : Channels)
        ListSize += Name.size() + 17;
    attribute("channels", "chlist", ListSize);
    for (const QByteArray& Name : Channels) {
        Out.writeRawData(Name.constData(), Name.size() + 1);
        Out << quint32(2) << quint32(0) << quint32(1) << quint32(1);
    }
    Out << quint8(0);
    attribute("compression", "compression", 1);
    Out << quint8(0);
    box("dataWindow", Data);
    box("displayWindow", Display);
    attribute("lineOrder", "lineOrder", 1);
    Out << quint8(0);
    attribute("pixelAspectRatio", "float", 4);
    Out << 1.0f;
    attribute("screenWindowCenter", "v2f", 8);
    Out << 0.0f << 0.0f;
    attribute("screenWindowWidth", "float", 4);
    Out << 1.0f << quint8(0);

    const qint32 RowSize = Data.width() * Channels.size() * 4;
    const qint64 FirstRow = File.size() + qint64(Data.height()) * 8;
    for (int Row = 0; Row < Data.height(); ++Row)
        Out << quint64(FirstRow + Row * (RowSize + 8));
    for (int Row = 0; Row < Data.height(); ++Row) {
        Out << qint32(Data.top() + Row) << RowSize;
        for (const Pixels& Plane : Planes) {
            for (int X = 0; X < Data.width(); ++X)
                Out << Plane[size_t(Row * Data.width() + X)];
        }
    }
    return File;
}

/// The tags that every image file of a camera has, in a TIFF structure made byte by byte, and behind them
/// rows of gray bytes; without rows it is what JPEG files hold as Exif.
QByteArray tiff(int Orientation, const QSize& Size, const QByteArray& Rows)
{
    QByteArray File;
    QDataStream Out(&File, QIODevice::WriteOnly);
    Out.setByteOrder(QDataStream::LittleEndian);
    const QVector<QPair<quint16, quint32>> Tags = Rows.isEmpty()
        ? QVector<QPair<quint16, quint32>>{{274, quint32(Orientation)}}
        : QVector<QPair<quint16, quint32>>{{256, quint32(Size.width())}, {257, quint32(Size.height())},
            {258, 8}, {259, 1}, {262, 1}, {273, 8 + 2 + 10 * 12 + 4}, {274, quint32(Orientation)}, {277, 1},
            {278, quint32(Size.height())}, {279, quint32(Rows.size())}};
    Out.writeRawData("II*\0", 4);
    Out << quint32(8) << quint16(Tags.size());
    for (const auto& Tag : Tags) {
        const bool Long = Tag.first == 273 || Tag.first == 279;
        Out << Tag.first << quint16(Long ? 4 : 3) << quint32(1) << Tag.second;
    }
    Out << quint32(0);
    return File + Rows;
}

} // namespace

/// Image files to buffers and back, with everything that a file can be instead of an image.
class TstImageFiles : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_pFolder = std::make_unique<QTemporaryDir>();
        m_Error.clear();
    }

    void writtenFilesComeBack_data()
    {
        QTest::addColumn<QString>("Name");
        QTest::addColumn<int>("Depth");
        QTest::addColumn<bool>("Scalar");
        QTest::addColumn<float>("Tolerance");
        const struct {
            const char* pName;
            Properties::Precision Depth;
            float Tolerance;
        } Rows[] = {{"a.png", Properties::Integer8, 0.51f / 255},
            {"a.png", Properties::Integer16, 0.6f / 65535}, {"a.tif", Properties::Integer8, 0.51f / 255},
            {"a.TIFF", Properties::Integer16, 0.6f / 65535}, {"a.tif", Properties::Float, 0.0f},
            {"a.exr", Properties::Half, 2e-3f}, {"a.exr", Properties::Float, 1e-6f}};
        for (const auto& Row : Rows) {
            for (const bool Scalar : {false, true}) {
                QTest::addRow("%s %d %s", Row.pName, int(Row.Depth), Scalar ? "scalar" : "colour")
                    << QString(Row.pName) << int(Row.Depth) << Scalar << Row.Tolerance;
            }
        }
    }
    void writtenFilesComeBack()
    {
        QFETCH(QString, Name);
        QFETCH(int, Depth);
        QFETCH(bool, Scalar);
        QFETCH(float, Tolerance);
        const OrvPixelFormat Format = Scalar ? FloatScalar : FloatColor;
        // More rows than are written at once.
        const OrvImageBuffer Source = slope({701, 911}, Format);
        // Numbers as they are: the conversion has a test of its own.
        const auto Options = writing(Properties::Precision(Depth), Scalar, OrvColorManager::raw());
        const QString Path = m_pFolder->filePath(Name);
        QVERIFY2(
            OrvImageFiles::write(Path, Source, Source.extent(), Options, {}, m_Error), qPrintable(m_Error));
        QCOMPARE(QDir(m_pFolder->path()).entryList(QDir::Files | QDir::Hidden), QStringList(Name));

        Properties Found;
        QVERIFY2(OrvImageFiles::probe(Path, Found, m_Error), qPrintable(m_Error));
        QCOMPARE(Found.Size, QSize(701, 911));
        QCOMPARE(int(Found.Depth), Depth);
        QCOMPARE(Found.Scalar, Scalar);
        QCOMPARE(Found.HasAlpha, !Scalar);
        QCOMPARE(Found.ComponentCount, Scalar ? 1 : 4);

        OrvImageBuffer Back(Source.extent(), Format);
        const OrvImageReadOptions AsIs = reading(OrvColorManager::raw());
        QVERIFY2(OrvImageFiles::read(Path, Back, {}, {}, m_Error, AsIs), qPrintable(m_Error));
        const float Difference = largestDifference(numbers(Back), numbers(Source));
        QVERIFY2(Difference <= Tolerance, qPrintable(QString::number(double(Difference))));
    }

    void coloursAreConvertedByWhatTheFileSays()
    {
        OrvImageBuffer Source(QRect(0, 0, 4, 4), FloatColor);
        Source.fill(OrvColor(0.5f, 0.18f, 1.0f, 1.0f));
        const QString Path = m_pFolder->filePath("a.png");
        QVERIFY(OrvImageFiles::write(Path, Source, Source.extent(), {}, {}, m_Error));
        Properties Found;
        QVERIFY(OrvImageFiles::probe(Path, Found, m_Error));
        QCOMPARE(Found.ColorSpace, OrvColorManager::srgb());

        const QRect Pixel(1, 1, 1, 1);
        OrvImageBuffer Back(Source.extent(), FloatColor);
        QVERIFY(OrvImageFiles::read(Path, Back, {}, {}, m_Error));
        QVERIFY(largestDifference(numbers(Back, Pixel), {0.5f, 0.18f, 1.0f, 1.0f}) < 4e-3f);
        QVERIFY(OrvImageFiles::read(Path, Back, {}, {}, m_Error, reading(OrvColorManager::raw())));
        QVERIFY(largestDifference(numbers(Back, Pixel), {188 / 255.0f, 118 / 255.0f, 1.0f, 1.0f}) < 1e-5f);
        // 8-bit to 8-bit under one curve must not move a single step.
        OrvImageBuffer Bytes(Source.extent(), {GL_UNSIGNED_BYTE, OrvPixelFormat::Rgba, OrvPixelFormat::Srgb});
        QVERIFY(OrvImageFiles::read(Path, Bytes, {}, {}, m_Error));
        QVERIFY(largestDifference(numbers(Bytes, Pixel), {188 / 255.0f, 118 / 255.0f, 1.0f, 1.0f}) < 1e-5f);

        const OrvImageReadOptions Unknown = reading("No such space");
        QVERIFY(!OrvImageFiles::read(Path, Back, {}, {}, m_Error, Unknown));
        QVERIFY(m_Error.contains(Path) && m_Error.contains(Unknown.FileSpace));

        const QString Wide = m_pFolder->filePath("wide.exr");
        const auto ToAces = writing(Properties::Float, false, OrvColorManager::acesCg());
        QVERIFY(OrvImageFiles::write(Wide, Source, Source.extent(), ToAces, {}, m_Error));
        QVERIFY(OrvImageFiles::probe(Wide, Found, m_Error));
        QCOMPARE(Found.ColorSpace, OrvColorManager::acesCg());
        QVERIFY(OrvImageFiles::read(Wide, Back, {}, {}, m_Error));
        QVERIFY(largestDifference(numbers(Back, Pixel), {0.5f, 0.18f, 1.0f, 1.0f}) < 1e-5f);
    }

    void exrAlphaIsPremultiplied()
    {
        const QRect Rect(0, 0, 3, 1);
        // Half covered, opaque, and light without any cover.
        const QString Path = file("a.exr",
            exr(Rect, Rect, {"A", "B", "G", "R"},
                {{0.5f, 1.0f, 0.0f}, {0.1f, 3.0f, 0.25f}, {0.2f, 2.0f, 0.25f}, {0.3f, 1.0f, 0.25f}}));
        OrvImageBuffer Buffer(Rect, FloatColor);
        QVERIFY2(OrvImageFiles::read(Path, Buffer, {}, {}, m_Error), qPrintable(m_Error));
        const Pixels Straight{0.6f, 0.4f, 0.2f, 0.5f, 1.0f, 2.0f, 3.0f, 1.0f, 0.25f, 0.25f, 0.25f, 0.0f};
        QVERIFY(largestDifference(numbers(Buffer), Straight) < 1e-6f);

        const QString Copy = m_pFolder->filePath("copy.exr");
        const OrvImageWriteOptions Float = writing(Properties::Float);
        QVERIFY(OrvImageFiles::write(Copy, Buffer, QRect(0, 0, 2, 1), Float, {}, m_Error));
        OrvImageBuffer Back(Rect, FloatColor);
        QVERIFY(OrvImageFiles::read(Copy, Back, {}, {}, m_Error));
        QVERIFY(
            largestDifference(numbers(Back, QRect(0, 0, 2, 1)), numbers(Buffer, QRect(0, 0, 2, 1))) < 1e-6f);
    }

    void halfFilesHoldNoInfinity()
    {
        OrvImageBuffer Source(QRect(0, 0, 2, 2), FloatColor);
        Source.fill(OrvColor(1e6f, -1e6f, 0.25f, 1.0f));
        const OrvImageWriteOptions Half = writing(Properties::Half);
        const QString Path = m_pFolder->filePath("a.exr");
        QVERIFY(OrvImageFiles::write(Path, Source, Source.extent(), Half, {}, m_Error));
        QVERIFY(OrvImageFiles::read(Path, Source, {}, {}, m_Error));
        QCOMPARE(numbers(Source, QRect(0, 0, 1, 1)), Pixels({65504.0f, -65504.0f, 0.25f, 1.0f}));
    }

    void displayWindowIsThePicture()
    {
        // Stored: columns 2 to 5 and rows 1 to 2 of a picture of 4 x 4 that starts at (1, 0).
        const QString Path = file("a.exr",
            exr(QRect(1, 0, 4, 4), QRect(2, 1, 4, 2), {"Y"},
                {{1.0f, 2.0f, 3.0f, 4.0f, 5.0f, 6.0f, 7.0f, 8.0f}}));
        Properties Found;
        QVERIFY2(OrvImageFiles::probe(Path, Found, m_Error), qPrintable(m_Error));
        QCOMPARE(Found.Size, QSize(4, 4));
        QVERIFY(Found.Scalar);
        OrvImageBuffer Buffer(QRect(0, 0, 4, 4), FloatScalar);
        QVERIFY(OrvImageFiles::read(Path, Buffer, {}, {}, m_Error));
        QCOMPARE(numbers(Buffer), Pixels({0, 0, 0, 0, 0, 1, 2, 3, 0, 5, 6, 7, 0, 0, 0, 0}));
    }

    void photographsStandUpright_data()
    {
        QTest::addColumn<QByteArray>("Upright");
        // As stored: "123" above "456".
        const char* const Pictures[]
            = {"123/456", "321/654", "654/321", "456/123", "14/25/36", "41/52/63", "63/52/41", "36/25/14"};
        for (int Number = 1; Number <= 8; ++Number)
            QTest::addRow("%d", Number) << QByteArray(Pictures[Number - 1]);
        QTest::addRow("0") << QByteArray(Pictures[0]);
        QTest::addRow("9") << QByteArray(Pictures[0]);
    }
    void photographsStandUpright()
    {
        QFETCH(QByteArray, Upright);
        const int Number = QByteArray(QTest::currentDataTag()).toInt();
        const int Width = Upright.indexOf('/'), Height = Upright.count('/') + 1;
        const QByteArray Expected = Upright.replace("/", "");

        const QString Tiff = file("a.tif", tiff(Number, QSize(3, 2), "123456"));
        // Blocks of one gray each, so that nothing is lost.
        constexpr int Block = 16;
        QImage Blocks(3 * Block, 2 * Block, QImage::Format_Grayscale8);
        for (int Y = 0; Y < Blocks.height(); ++Y) {
            for (int X = 0; X < Blocks.width(); ++X)
                Blocks.scanLine(Y)[X] = uchar('1' + X / Block + 3 * (Y / Block));
        }
        const QString Jpeg = m_pFolder->filePath("a.jpg");
        QVERIFY(Blocks.save(Jpeg, "JPG", 100));
        QFile Plain(Jpeg);
        QVERIFY(Plain.open(QIODevice::ReadOnly));
        const QByteArray Pixels = Plain.readAll(), Exif = QByteArray("Exif\0\0", 6) + tiff(Number, {}, {});
        Plain.close();
        const int Length = Exif.size() + 2;
        file("a.jpg",
            Pixels.left(2) + "\xff\xe1" + char(Length >> 8) + char(Length & 0xff) + Exif + Pixels.mid(2));

        for (const auto& [Path, Edge] : {std::pair(Tiff, 1), std::pair(Jpeg, Block)}) {
            Properties Found;
            QVERIFY2(OrvImageFiles::probe(Path, Found, m_Error), qPrintable(m_Error));
            QCOMPARE(Found.Size, QSize(Width * Edge, Height * Edge));
            OrvImageBuffer Buffer(QRect(QPoint(), Found.Size), FloatScalar);
            QVERIFY2(OrvImageFiles::read(Path, Buffer, {}, {}, m_Error), qPrintable(m_Error));
            QByteArray Seen;
            for (int Index = 0; Index < Expected.size(); ++Index) {
                const QRect Pixel(Index % Width * Edge + Edge / 2, Index / Width * Edge + Edge / 2, 1, 1);
                Seen += char(std::lround(numbers(Buffer, Pixel).front() * 255.0f));
            }
            QCOMPARE(Seen, Expected);
        }
    }

    void largePicturesAreTurnedPieceByPiece()
    {
        // More rows than are read at once, each byte by its place; the picture lies over the buffer's edges.
        const QSize Stored(600, 900);
        const auto value = [](int X, int Y) { return (X * 7 + Y * 31) & 0xff; };
        QByteArray Rows;
        for (int Y = 0; Y < Stored.height(); ++Y) {
            for (int X = 0; X < Stored.width(); ++X)
                Rows += char(value(X, Y));
        }
        for (const int Number : {3, 6}) {
            const QString Path = file("a.tif", tiff(Number, Stored, Rows));
            for (const OrvPixelFormat& Format : {FloatScalar, FloatColor}) {
                OrvImageBuffer Buffer(QRect(0, 0, 400, 500), Format);
                OrvImageReadOptions AsIs;
                AsIs.FileSpace = AsIs.BufferSpace = OrvColorManager::raw();
                QVERIFY2(OrvImageFiles::read(Path, Buffer, QPoint(-300, -50), {}, m_Error, AsIs),
                    qPrintable(m_Error));
                for (int Y = 0; Y < 500; Y += 7) {
                    for (int X = Y % 5; X < 300; X += 11) {
                        const int Across = X + 300, Down = Y + 50;
                        const int Expected = Number == 3
                            ? value(Stored.width() - 1 - Across, Stored.height() - 1 - Down)
                            : value(Down, Stored.height() - 1 - Across);
                        const float Found = numbers(Buffer, QRect(X, Y, 1, 1)).front();
                        QCOMPARE(int(std::lround(Found * 255.0f)), Expected);
                    }
                }
            }
        }
    }

    void bottomUpTargaFilesAreTurnedOnce()
    {
        QByteArray Targa(18, '\0');
        Targa[2] = 3; // gray, stored from the bottom up
        Targa[12] = 2;
        Targa[14] = 2;
        Targa[16] = 8;
        const QString Path = file("a.tga", Targa + "3412");
        OrvImageBuffer Buffer(QRect(0, 0, 2, 2), FloatScalar);
        QVERIFY2(OrvImageFiles::read(Path, Buffer, {}, {}, m_Error), qPrintable(m_Error));
        for (int Index = 0; Index < 4; ++Index)
            QCOMPARE(int(std::lround(numbers(Buffer)[size_t(Index)] * 255.0f)), '1' + Index);
    }

    void scalarAndColourMeet()
    {
        const QRect Rect(0, 0, 2, 2);
        OrvImageBuffer Gray(Rect, FloatScalar), Color(Rect, FloatColor);
        Gray.fill(OrvColor(0.25f, 0.0f, 0.0f, 1.0f));
        Color.fill(OrvColor(1.0f, 0.5f, 0.25f, 0.5f));
        const float Luma = 0.2126f + 0.7152f * 0.5f + 0.0722f * 0.25f;
        const auto Float = writing(Properties::Float), FloatGray = writing(Properties::Float, true);

        const QString ColorFile = m_pFolder->filePath("color.tif"),
                      GrayFile = m_pFolder->filePath("gray.tif");
        QVERIFY(OrvImageFiles::write(ColorFile, Color, Rect, Float, {}, m_Error));
        QVERIFY(OrvImageFiles::read(ColorFile, Gray, {}, {}, m_Error));
        QVERIFY(std::fabs(numbers(Gray).front() - Luma) < 1e-6f);
        QVERIFY(OrvImageFiles::write(GrayFile, Color, Rect, FloatGray, {}, m_Error));
        QVERIFY(OrvImageFiles::read(GrayFile, Color, {}, {}, m_Error));
        QVERIFY(largestDifference(numbers(Color, QRect(1, 1, 1, 1)), {Luma, Luma, Luma, 1.0f}) < 1e-6f);

        // A scalar buffer's values go to 8-bit files and back without any curve.
        const QString Mask = m_pFolder->filePath("mask.png"), MaskAsColor = m_pFolder->filePath("rgb.png");
        Gray.fill(OrvColor(128 / 255.0f, 0.0f, 0.0f, 1.0f));
        OrvImageWriteOptions Eight;
        QVERIFY(OrvImageFiles::write(MaskAsColor, Gray, Rect, Eight, {}, m_Error));
        Eight.Scalar = true;
        QVERIFY(OrvImageFiles::write(Mask, Gray, Rect, Eight, {}, m_Error));
        for (const QString& Path : {Mask, MaskAsColor}) {
            Gray.fill(OrvColor::clear());
            QVERIFY(OrvImageFiles::read(Path, Gray, {}, {}, m_Error));
            QVERIFY(std::fabs(numbers(Gray).back() - 128 / 255.0f) < 1e-6f);
        }
    }

    void bufferTakesThePartThatFits()
    {
        const OrvImageBuffer Source = slope({600, 600}, FloatScalar);
        const OrvImageWriteOptions Options = writing(Properties::Float, true);
        const QString Path = m_pFolder->filePath("a.tif");
        const QRect Region(10, 20, 500, 550);
        QVERIFY(OrvImageFiles::write(Path, Source, Region, Options, {}, m_Error));
        OrvImageBuffer Target(QRect(100, 100, 300, 800), FloatScalar);
        Target.fill(OrvColor(2.0f, 0.0f, 0.0f, 1.0f));
        QVERIFY(OrvImageFiles::read(Path, Target, QPoint(200, 50), {}, m_Error));
        // What is at (200, 100) came from (0, 50) of the file, so from (10, 70) of the source.
        QCOMPARE(numbers(Target, QRect(200, 100, 200, 500)), numbers(Source, QRect(10, 70, 200, 500)));
        QCOMPARE(numbers(Target, QRect(199, 100, 1, 1)).front(), 2.0f);
        QCOMPARE(numbers(Target, QRect(399, 600, 1, 1)).front(), 2.0f);
        QVERIFY(OrvImageFiles::read(Path, Target, QPoint(5000, 0), {}, m_Error));
    }

    void whatIsNoImageIsRefused_data()
    {
        QTest::addColumn<QByteArray>("Contents");
        QTest::addColumn<QString>("Reason");
        const QByteArray Exr = exr(QRect(0, 0, 64, 64), QRect(0, 0, 64, 64), {"Y"}, {Pixels(64 * 64)});
        QTest::newRow("empty.png") << QByteArray("") << "empty";
        QTest::newRow("text.png") << QByteArray("hello, I am a letter") << "no image";
        QTest::newRow("noise.exr") << QByteArray("\x76\x2f\x31\x01\x02\0\0\0garbage", 15) << "no image";
        QTest::newRow("header.exr") << Exr.left(100) << "no image";
        QTest::newRow("truncated.exr") << Exr.left(Exr.size() - 3000) << "cut short";
        QTest::newRow("large.pgm") << QByteArray("P5\n40000 40000\n255\n") << "40000 x 40000";
        QTest::newRow("large.exr")
            << exr(QRect(0, 0, 8, 8), QRect(0, 0, 40000, 1), {"Y"}, {}).append(QByteArray(64, '\0'))
            << QString();
        QTest::newRow("large.png") << QByteArray::fromHex(
            "89504e470d0a1a0a0000000d4948445200009c4000009c400800000000746751d9"
            "0000000849444154789c030000000001480689d2")
                                   << "40000 x 40000";
    }
    void whatIsNoImageIsRefused()
    {
        QFETCH(QByteArray, Contents);
        QFETCH(QString, Reason);
        const QString Path = file(QTest::currentDataTag(), Contents);
        OrvImageBuffer Buffer(QRect(0, 0, 64, 64), FloatColor);
        QVERIFY(!OrvImageFiles::read(Path, Buffer, {}, {}, m_Error));
        QVERIFY2(m_Error.contains(Path) && m_Error.contains(Reason), qPrintable(m_Error));
        QVERIFY2(m_Error.size() > Path.size() + 20 && !m_Error.contains('\n'), qPrintable(m_Error));
    }

    void whatIsNoFileIsRefused()
    {
        Properties Found;
        const QString Missing = m_pFolder->filePath("missing.png");
        QVERIFY(!OrvImageFiles::probe(Missing, Found, m_Error));
        QVERIFY2(m_Error.contains(Missing) && m_Error.contains("no such file"), qPrintable(m_Error));
        QVERIFY(!OrvImageFiles::probe(m_pFolder->path(), Found, m_Error));
        QVERIFY2(m_Error.contains("folder"), qPrintable(m_Error));
        QVERIFY(!OrvImageFiles::probe(QStringLiteral("/dev/null"), Found, m_Error));
        QVERIFY(!OrvImageFiles::probe(QString(), Found, m_Error));
    }

    void contentsDecideNotTheSuffix()
    {
        const OrvImageBuffer Source = slope({8, 8}, FloatColor);
        QVERIFY(OrvImageFiles::write(m_pFolder->filePath("a.png"), Source, Source.extent(), {}, {}, m_Error));
        const QString Renamed = m_pFolder->filePath(QStringLiteral("Bild mit Namen \u00e4\u6587 %1.exr"));
        QVERIFY(QFile::rename(m_pFolder->filePath("a.png"), Renamed));
        Properties Found;
        QVERIFY2(OrvImageFiles::probe(Renamed, Found, m_Error), qPrintable(m_Error));
        QCOMPARE(Found.Size, QSize(8, 8));
        QVERIFY(!OrvImageFiles::probe(Renamed + "x", Found, m_Error));
        QVERIFY(m_Error.contains(Renamed + "x"));
    }

    void failureLeavesTheOldFile_data()
    {
        QTest::addColumn<QString>("Name");
        QTest::newRow("PNG") << "a.png";
        QTest::newRow("TIFF") << "a.tif";
        QTest::newRow("EXR") << "a.exr";
    }
    void failureLeavesTheOldFile()
    {
        QFETCH(QString, Name);
        const QString Path = file(Name, "precious");
        const OrvImageBuffer Source = slope({1000, 1000}, FloatColor);
        int Calls = 0;
        const OrvProgress CancelAtSecond = [&](int, int) { return ++Calls < 2; };
        QVERIFY(!OrvImageFiles::write(Path, Source, Source.extent(), {}, CancelAtSecond, m_Error));
        QVERIFY2(m_Error.contains(Path) && m_Error.contains("cancelled"), qPrintable(m_Error));
        OrvImageWriteOptions Unknown;
        Unknown.FileSpace = QStringLiteral("No such space");
        QVERIFY(!OrvImageFiles::write(Path, Source, Source.extent(), Unknown, {}, m_Error));
        QVERIFY(!OrvImageFiles::write(Path, Source, QRect(), {}, {}, m_Error));
        QVERIFY(!OrvImageFiles::write(Path, Source, QRect(0, 0, 40000, 1), {}, {}, m_Error));
        QVERIFY(!OrvImageFiles::write(Path, OrvImageBuffer(), QRect(0, 0, 4, 4), {}, {}, m_Error));
        QFile Old(Path);
        QVERIFY(Old.open(QIODevice::ReadOnly));
        QCOMPARE(Old.readAll(), QByteArray("precious"));
        QCOMPARE(QDir(m_pFolder->path()).entryList(QDir::Files | QDir::Hidden), QStringList(Name));

        QVERIFY(OrvImageFiles::write(Path, Source, Source.extent(), {}, {}, m_Error));
        Properties Found;
        QVERIFY(OrvImageFiles::probe(Path, Found, m_Error));
    }

    void impossibleTargetsAreNamed()
    {
        const OrvImageBuffer Source = slope({4, 4}, FloatColor);
        QVERIFY(QDir(m_pFolder->path()).mkdir("folder.png"));
        for (const char* pName : {"a.jpg", "a", "folder.png", "missing/a.png"}) {
            const QString Path = m_pFolder->filePath(pName);
            QVERIFY(!OrvImageFiles::write(Path, Source, Source.extent(), {}, {}, m_Error));
            QVERIFY2(m_Error.contains(Path), qPrintable(m_Error));
        }
        QCOMPARE(QDir(m_pFolder->path()).entryList(QDir::Files | QDir::Hidden), QStringList());
    }

    void linksLeadToTheNewFile()
    {
        const OrvImageBuffer Source = slope({4, 4}, FloatColor);
        QVERIFY(QDir(m_pFolder->path()).mkdir("store"));
        const QString Real = file("store/a.png", "old"), Link = m_pFolder->filePath("link.png");
        QVERIFY(QFile::link(Real, Link));
        QVERIFY(OrvImageFiles::write(Link, Source, Source.extent(), {}, {}, m_Error));
        QVERIFY(QFileInfo(Link).isSymLink());
        Properties Found;
        QVERIFY(OrvImageFiles::probe(Real, Found, m_Error));
    }

    void progressRisesAndCancels()
    {
        const OrvImageBuffer Source = slope({1000, 1500}, FloatScalar);
        const QString Path = m_pFolder->filePath("a.exr");
        int Last = 0, Total = 0;
        const OrvProgress Rising = [&](int Done, int All) {
            const bool Risen = Done == Last + 1;
            Last = Done;
            Total = All;
            return Risen;
        };
        QVERIFY2(
            OrvImageFiles::write(Path, Source, Source.extent(), {}, Rising, m_Error), qPrintable(m_Error));
        QVERIFY(Total > 2 && Last == Total);
        OrvImageBuffer Back(Source.extent(), FloatScalar);
        Last = 0;
        QVERIFY2(OrvImageFiles::read(Path, Back, {}, Rising, m_Error), qPrintable(m_Error));
        QVERIFY(Total > 2 && Last == Total);
        QVERIFY(!OrvImageFiles::read(
            Path, Back, {}, [](int Done, int) { return Done < 2; }, m_Error));
        QVERIFY2(m_Error.contains("cancelled"), qPrintable(m_Error));
    }

    void threadsDoNotDisturbEachOther()
    {
        std::vector<std::thread> Threads;
        std::atomic<int> Good{0};
        for (int Number = 0; Number < 4; ++Number) {
            Threads.emplace_back([&, Number] {
                const OrvImageBuffer Source = slope({100 + Number, 200}, FloatScalar);
                OrvImageBuffer Back(Source.extent(), FloatScalar);
                const OrvImageWriteOptions Options = writing(Properties::Float, true);
                QString Error;
                const QString Path = m_pFolder->filePath(QStringLiteral("%1.exr").arg(Number));
                if (OrvImageFiles::write(Path, Source, Source.extent(), Options, {}, Error)
                    && OrvImageFiles::read(Path, Back, {}, {}, Error) && numbers(Source) == numbers(Back))
                    ++Good;
            });
        }
        for (std::thread& Thread : Threads)
            Thread.join();
        QCOMPARE(Good.load(), 4);
    }

    void typesAndPrecisions()
    {
        using Files = OrvImageFiles;
        QCOMPARE(Files::usablePrecision("png", Properties::Float), Properties::Integer16);
        QCOMPARE(Files::usablePrecision("TIF", Properties::Half), Properties::Float);
        QCOMPARE(Files::usablePrecision("exr", Properties::Integer8), Properties::Half);
        QCOMPARE(Files::usablePrecision("exr", Properties::Integer16), Properties::Float);
        QCOMPARE(Files::precisionForDepth("png", GL_UNSIGNED_BYTE), Properties::Integer8);
        QCOMPARE(Files::precisionForDepth("exr", GL_HALF_FLOAT), Properties::Half);
        for (const QString& Suffix : Files::writableSuffixes())
            QVERIFY(
                Files::readableSuffixes().contains(Suffix) && Files::writeFilter().contains("*." + Suffix));
        QVERIFY(Files::readFilter().startsWith("Images (*."));

        Properties File;
        const auto format = [&](Properties::Precision Depth, bool Scalar) {
            File.Depth = Depth;
            File.Scalar = Scalar;
            return File.pixelFormat();
        };
        QCOMPARE(format(Properties::Integer8, false),
            OrvPixelFormat({GL_UNSIGNED_BYTE, OrvPixelFormat::Rgba, OrvPixelFormat::Srgb}));
        QCOMPARE(format(Properties::Integer8, true),
            OrvPixelFormat({GL_UNSIGNED_BYTE, OrvPixelFormat::Scalar, OrvPixelFormat::Linear}));
        QCOMPARE(format(Properties::Integer16, false).Depth, GLenum(GL_HALF_FLOAT));
        QCOMPARE(format(Properties::Integer16, true).Depth, GLenum(GL_FLOAT));
    }

    void udimNamesMakeSets()
    {
        const QList<OrvUdimSet> Sets
            = OrvUdimSet::fromPaths({"/t/color.1002.exr", "/t/wood.jpg", "/t/color.1001.exr",
                "/u/color.1001.exr", "/t/photo1234.png", "/t/a_1011.TIF", "/t/year-1000.png"});
        QCOMPARE(Sets.size(), 6);
        QCOMPARE(Sets[0].Pattern, QString("/t/color.<UDIM>.exr"));
        QCOMPARE(Sets[0].BaseName, QString("color"));
        QCOMPARE(Sets[0].Paths.keys(), QList<int>({1001, 1002}));
        QVERIFY(!Sets[1].isUdim() && Sets[1].BaseName == "wood" && Sets[1].Paths.value(0) == "/t/wood.jpg");
        QVERIFY(!Sets[3].isUdim());
        QCOMPARE(Sets[4].Suffix, QString("tif"));
        QCOMPARE(Sets[4].Paths.firstKey(), 1011);
        QVERIFY(!Sets[5].isUdim());
        QCOMPARE(OrvUdimSet::pathForTile("/t/c.<udim>.exr", 1003), QString("/t/c.1003.exr"));
        QCOMPARE(OrvUdimSet::pathForTile("/t.x/c", 1003), QString("/t.x/c.1003"));
        QCOMPARE(OrvUdimSet::pathForTile("/t/c.png", 1003), QString("/t/c.1003.png"));

        for (const char* pName : {"c.1001.png", "c.1003.png", "c.1003.tif", "d.1002.png", "c_1004.png"})
            file(pName, "x");
        QCOMPARE(OrvUdimSet::brothersOf(m_pFolder->filePath("c.1003.png")),
            QStringList({m_pFolder->filePath("c.1001.png"), m_pFolder->filePath("c.1003.png")}));
    }

private:
    QString file(const QString& Name, const QByteArray& Contents)
    {
        QFile File(m_pFolder->filePath(Name));
        if (!File.open(QIODevice::WriteOnly) || File.write(Contents) != Contents.size())
            qFatal("the test file cannot be written");
        return File.fileName();
    }

    std::unique_ptr<QTemporaryDir> m_pFolder;
    QString m_Error;
};

QTEST_GUILESS_MAIN(TstImageFiles)
#include "TstImageFiles.moc"
