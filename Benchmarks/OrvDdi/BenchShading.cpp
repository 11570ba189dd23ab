// How fast the lit picture of a flat texture is computed, next to the least that the machine could need for
// it: the same formulas in a bare loop over the same maps in plain memory, eight pixels at once on all cores,
// in the same run. Prints the times and, at the end, the ratios.

#include "Benchmarks/OrvDdi/EngineBenchmark.h"

#include "OrvDdi/Engine/OrvShadingKernels.h"
#include "OrvDdi/Engine/OrvShadingMath.h"
#include "OrvDdi/Image/OrvUdimLayout.h"

namespace {

using EngineBenchmark::FloatFormat;
using Parameters = OrvShadingParameters;

constexpr int Edge = 2048;
const OrvUdimLayout Layout(QSize(Edge, Edge));
const QRect Plane = Layout.extent();
const QRect Dab(900, 700, 256, 256);

/// A shader's channels: a colour, two scalars and, or not, normals or heights.
enum Relief { Flat, Normals, Heights };
const std::pair<Relief, const char*> Reliefs[]
    = {{Flat, "flat"}, {Normals, "normal map"}, {Heights, "heights"}};

/// Maps in the engine, and the same in memory.
class Material {
public:
    explicit Material(Relief Kind);

    OrvEngineNode& node() { return *m_pShading; }
    void touch(const QRect& Region) { m_Sources.front()->pixelsWritten(Region); }
    void computeByHand(const QRect& Region, float* pResult) const;

private:
    void addMap(Parameters::Slot Slot);

    Parameters m_Given;
    std::vector<float> m_Maps[Parameters::SlotCount];
    std::vector<std::unique_ptr<OrvEngineNode>> m_Sources;
    std::unique_ptr<OrvEngineNode> m_pShading = OrvEngineNode::createShading();
};

Material::Material(Relief Kind)
{
    m_Given.WhichModel = Parameters::MetallicRoughness;
    m_Given.setLayout(Layout);
    addMap(Parameters::Color);
    addMap(Parameters::Metallic);
    addMap(Parameters::Roughness);
    if (Kind == Normals)
        addMap(Parameters::Normal);
    else if (Kind == Heights)
        addMap(Parameters::Height);
    m_pShading->setShading(m_Given);
}

void Material::addMap(Parameters::Slot Slot)
{
    static EngineBenchmark::Noise s_Noise;
    std::vector<float>& Map = m_Maps[Slot];
    Map.resize(size_t(Edge) * Edge * 4);
    for (size_t Index = 0; Index < Map.size(); ++Index)
        Map[Index] = Index % 4 == 3 ? 1.0f : s_Noise.value();
    OrvImageBuffer Buffer(Plane, FloatFormat);
    Buffer.write(Plane, FloatFormat, Map.data());
    m_Sources.push_back(OrvEngineNode::createSource());
    m_Sources.back()->setBuffer(Buffer);
    m_pShading->connectInput(OrvEngineNode::Pad(Slot), m_Sources.back().get());
    m_Given.Slots[Slot].Used = m_Given.Slots[Slot].Connected = true;
}

/// Rows in plain memory through the same inner loop: all that the engine adds is left out, slopes at the
/// edges of the region too.
void Material::computeByHand(const QRect& Region, float* pResult) const
{
    const OrvShadingKernels& Kernels = OrvShadingKernels::best();
    const std::vector<float>& Heights = m_Maps[Parameters::Height];
    EngineBenchmark::onAllCores([&](int Thread, int ThreadCount) {
        const int Begin = Region.top() + Region.height() * Thread / ThreadCount;
        const int End = Region.top() + Region.height() * (Thread + 1) / ThreadCount;
        constexpr int Padding = 2 * OrvShadingKernels::Width;
        std::vector<float> Rows[3], SlopesU(Edge + Padding), SlopesV(Edge + Padding);
        for (std::vector<float>& Row : Rows)
            Row.resize(Edge + Padding);
        const auto fillRow = [&](int Y) {
            const size_t First = size_t(std::clamp(Y, 0, Edge - 1)) * Edge + size_t(Region.left());
            Kernels.scalars(m_Given.Slots[Parameters::Height], Heights.data() + First * 4, Region.width(),
                Rows[(Y + 3) % 3].data() + 1);
        };
        if (!Heights.empty()) {
            fillRow(Begin - 1);
            fillRow(Begin);
        }
        for (int Y = Begin; Y < End; ++Y) {
            const size_t First = size_t(Y) * Edge + size_t(Region.left());
            OrvShadingRow Row = {};
            Row.pParameters = &m_Given;
            for (int Slot = 0; Slot < Parameters::SlotCount; ++Slot) {
                if (!m_Maps[Slot].empty() && Slot != Parameters::Height)
                    Row.pInputs[Slot] = m_Maps[Slot].data() + First * 4;
            }
            if (!Heights.empty()) {
                fillRow(Y + 1);
                const float Scale = m_Given.HeightScale * Edge / 2.0f;
                const float *pAbove = Rows[(Y + 2) % 3].data(), *pHere = Rows[Y % 3].data(),
                            *pBelow = Rows[(Y + 1) % 3].data();
                for (int X = 0; X < Region.width(); ++X) {
                    SlopesU[size_t(X)] = (pHere[X + 2] - pHere[X]) * Scale;
                    SlopesV[size_t(X)] = (pAbove[X + 1] - pBelow[X + 1]) * Scale;
                }
                Row.pSlopesU = SlopesU.data();
                Row.pSlopesV = SlopesV.data();
            }
            Row.StepU = 1.0f / Edge;
            Row.U = (float(Region.left()) + 0.5f) * Row.StepU;
            Row.V = 1.0f - (float(Y) + 0.5f) / Edge;
            Row.Count = Region.width();
            Row.pResult = pResult + size_t(Y - Region.top()) * size_t(Region.width()) * 4;
            Kernels.light(Row);
        }
    });
}

EngineBenchmark::Held<Material, Relief> Materials;

} // namespace

int main(int ArgumentCount, char** pArguments)
{
    benchmark::Initialize(&ArgumentCount, pArguments);
    for (const auto& Kind : Reliefs) {
        for (const auto& Part : {std::make_pair(Plane, "lit 2048, "), std::make_pair(Dab, "dab of 256, ")})
            EngineBenchmark::measure(
                Materials, Kind.first, Part.first, Part.second + std::string(Kind.second), 0.2);
    }
    return EngineBenchmark::run(Materials);
}
