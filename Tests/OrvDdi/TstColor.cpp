#include "OrvDdi/Color/OrvColorManager.h"
#include "OrvDdi/Color/OrvColorSpaceConfig.h"
#include "OrvDdi/Color/OrvColorSpaceManager.h"
#include "OrvDdi/Image/OrvColor.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <cmath>

namespace {

bool isNear(const OrvColor& Left, const OrvColor& Right, float Tolerance = 2e-5f)
{
    for (int Index = 0; Index < 4; ++Index) {
        if (!(std::fabs(Left.components()[Index] - Right.components()[Index]) <= Tolerance))
            return false;
    }
    return true;
}

OrvColor converted(const OrvColor& Color, const QString& From, const QString& To)
{
    OrvColor Result;
    return OrvColorManager::transform(Color, Result, From, To) ? Result : OrvColor(NAN, NAN, NAN, NAN);
}

} // namespace

/// Colour spaces: the numbers behind their names, and the settings that choose them.
class TstColor : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void knownValues_data()
    {
        QTest::addColumn<QString>("Space");
        QTest::addColumn<OrvColor>("Color");
        QTest::addColumn<OrvColor>("Linear");
        // IEC 61966-2-1: the straight piece, the curve, and beyond one.
        QTest::newRow("sRGB") << OrvColorManager::srgb() << OrvColor(0.04045f, 0.5f, 1.0f, 0.5f)
                              << OrvColor(0.0031308f, 0.2140411f, 1.0f, 0.5f);
        QTest::newRow("sRGB above one") << OrvColorManager::srgb() << OrvColor(1.5f, 0.0f, 0.02f)
                                        << OrvColor(2.537159f, 0.0f, 0.0015480f);
        // Columns of the AP1 to Rec.709 matrix with Bradford adaptation.
        QTest::newRow("ACEScg white") << OrvColorManager::acesCg() << OrvColor::white() << OrvColor::white();
        QTest::newRow("ACEScg red") << OrvColorManager::acesCg() << OrvColor(1.0f, 0.0f, 0.0f)
                                    << OrvColor(1.70505f, -0.13026f, -0.02400f);
        QTest::newRow("raw") << OrvColorManager::raw() << OrvColor(0.5f, -2.0f, 7.0f, 0.0f)
                             << OrvColor(0.5f, -2.0f, 7.0f, 0.0f);
    }
    void knownValues()
    {
        QFETCH(QString, Space);
        QFETCH(OrvColor, Color);
        QFETCH(OrvColor, Linear);
        const QString To = OrvColorManager::linear();
        QVERIFY(isNear(converted(Color, Space, To), Linear));
        QVERIFY(isNear(converted(Linear, To, Space), Color, 1e-4f));
        OrvColor InPlace = Color;
        QVERIFY(OrvColorManager::transform(InPlace, InPlace, Space, To));
        QVERIFY(isNear(InPlace, Linear));
    }

    void everySpaceGoesThereAndBack()
    {
        const OrvColor Color(0.2f, 0.7f, 0.05f, 0.3f);
        for (const QString& Space : OrvColorManager::colorSpaces()) {
            const OrvColor There = converted(Color, OrvColorManager::srgb(), Space);
            QVERIFY2(isNear(converted(There, Space, OrvColorManager::srgb()), Color), qPrintable(Space));
        }
        // 16-bit values must survive the way there and back.
        for (int Step = 0; Step < 65536; Step += 7) {
            const float Value = float(Step) / 65535.0f;
            const OrvColor Linear
                = converted({Value, Value, Value}, OrvColorManager::srgb(), OrvColorManager::linear());
            const OrvColor Back = converted(Linear, OrvColorManager::linear(), OrvColorManager::srgb());
            QCOMPARE(int(std::lround(Back.green() * 65535.0f)), Step);
        }
    }

    void unknownSpacesChangeNothing()
    {
        const OrvColor Color(0.1f, 0.2f, 0.3f, 0.4f);
        OrvColor Out;
        QVERIFY(!OrvColorManager::transform(Color, Out, OrvColorManager::srgb(), "No such space"));
        QCOMPARE(Out, Color);
        QVERIFY(!OrvColorManager::isColorSpace("No such space") && !OrvColorManager::isColorSpace(QString()));
        QVERIFY(OrvColorManager::isIdentity("Raw", "sRGB") && !OrvColorManager::isIdentity("sRGB", "ACEScg"));
    }

    void rowsAreConvertedWithinTheirStride()
    {
        // Enough pixels for several threads, and a margin that must stay as it is.
        constexpr int Width = 500, Height = 700, Stride = Width * 4 + 12;
        std::vector<float> Pixels(size_t(Stride) * Height, 0.5f);
        QString Error;
        QVERIFY2(OrvColorManager::transformPixels(Pixels.data(), Width, Height, Stride,
                     OrvColorManager::srgb(), OrvColorManager::linear(), Error),
            qPrintable(Error));
        int Wrong = 0;
        for (int Y = 0; Y < Height; ++Y) {
            for (int X = 0; X < Stride; ++X) {
                const bool Converted = X < Width * 4 && X % 4 != 3;
                const float Expected = Converted ? 0.2140411f : 0.5f;
                Wrong += std::fabs(Pixels[size_t(Y * Stride + X)] - Expected) > 1e-5f;
            }
        }
        QCOMPARE(Wrong, 0);
        QVERIFY(
            !OrvColorManager::transformPixels(Pixels.data(), Width, 1, 0, "No such space", "sRGB", Error));
        QVERIFY(Error.contains("No such space"));
        QVERIFY(OrvColorManager::transformPixels(nullptr, 0, 0, 0, "sRGB", "ACEScg", Error));
    }

    void usersConfigurationAddsSpaces()
    {
        QTemporaryDir Folder;
        QFile File(Folder.filePath("config.ocio"));
        QVERIFY(File.open(QIODevice::WriteOnly));
        File.write("ocio_profile_version: 2\nroles:\n  default: house\n  scene_linear: house\ndisplays:\n"
                   "  d:\n    - !<View> {name: v, colorspace: house}\ncolorspaces:\n"
                   "  - !<ColorSpace>\n    name: house\n"
                   "  - !<ColorSpace>\n    name: doubled\n"
                   "    to_scene_reference: !<MatrixTransform> {matrix: [2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, "
                   "0, 0, 0, 1]}\n");
        File.close();
        const auto reload = [](const QByteArray& Path) {
            qputenv("OCIO", Path);
            OrvColorManager::reloadConfiguration();
        };
        reload(QFile::encodeName(File.fileName()));
        QVERIFY2(OrvColorManager::configurationError().isEmpty(),
            qPrintable(OrvColorManager::configurationError()));
        QVERIFY(OrvColorManager::colorSpaces().contains("doubled"));
        const OrvColor Linear = converted({0.25f, 0.5f, 0.0f, 0.5f}, "doubled", OrvColorManager::linear());
        QVERIFY(isNear(Linear, {0.5f, 1.0f, 0.0f, 0.5f}));

        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("missing\\.ocio"));
        reload(QFile::encodeName(Folder.filePath("missing.ocio")));
        QVERIFY(OrvColorManager::configurationError().contains("missing.ocio"));
        QVERIFY(!OrvColorManager::isColorSpace("doubled") && OrvColorManager::isColorSpace("sRGB"));
        qunsetenv("OCIO");
        OrvColorManager::reloadConfiguration();
        QVERIFY(OrvColorManager::configurationError().isEmpty());
    }

    void configurationFollowsTheDepth()
    {
        using Config = OrvColorSpaceConfig;
        Config Color(false, GL_UNSIGNED_BYTE);
        QCOMPARE(Color.colorSpace(), OrvColorManager::srgb());
        QCOMPARE(Color.pixelFormat(GL_UNSIGNED_BYTE).Curve, OrvPixelFormat::Srgb);
        QCOMPARE(Color.pixelFormat(GL_FLOAT).Curve, OrvPixelFormat::Linear);
        Color.setAutomaticType(Config::NativeSpace, GL_HALF_FLOAT);
        QCOMPARE(Color.colorSpace(), OrvColorManager::linear());
        Color.setColorSpace(Config::NativeSpace, OrvColorManager::srgb());
        QCOMPARE(Color.pixelFormat(GL_FLOAT).Curve, OrvPixelFormat::Srgb);
        QVERIFY(!Color.isAutomatic(Config::NativeSpace));
        Color.setColorSpace(7, "ignored");
        QVERIFY(Config::fromJson(Color.toJson()) == Color);
        Color.setColorSpaceVisible(Config::NativeSpace, false);
        QVERIFY(Config::fromJson(Color.toJson()) == Color);

        const Config Scalar(true);
        QCOMPARE(Scalar.colorSpace(), OrvColorManager::raw());
        QCOMPARE(Scalar.colorSpace(Config::WorkingSpace), OrvColorManager::raw());
        QCOMPARE(Scalar.pixelFormat(GL_UNSIGNED_BYTE).Curve, OrvPixelFormat::Linear);
        QVERIFY(Scalar != Color);
        QVERIFY(Config::fromJson({{"native", 5}, {"scalar", "yes"}}) == Config());
    }

    void targetsFollowSettings()
    {
        using namespace OrvColorSpaceDefaults;
        OrvColorSpaceManager& Manager = OrvColorSpaceManager::instance();
        OrvColor Color(0.5f, 0.5f, 0.5f);
        QVERIFY(OrvColorManager::transform(Color, Color, Picker, Working, nullptr));
        QVERIFY(isNear(Color, {0.2140411f, 0.2140411f, 0.2140411f}));
        QVERIFY(!Manager.setPickerColorSpace("No such space"));
        QVERIFY(Manager.setPickerColorSpace(OrvColorManager::linear()));
        QVERIFY(OrvColorManager::transform(Color, Color, Picker, Working, nullptr));
        QVERIFY(isNear(Color, {0.2140411f, 0.2140411f, 0.2140411f}));
        QVERIFY(Manager.setPickerColorSpace(OrvColorManager::srgb()));
        const OrvColorSpaceConfig Scalar(true);
        QCOMPARE(Manager.colorSpace(Working, &Scalar), OrvColorManager::raw());
        QCOMPARE(Manager.colorSpace(None), OrvColorManager::raw());
    }
};

QTEST_GUILESS_MAIN(TstColor)
#include "TstColor.moc"
