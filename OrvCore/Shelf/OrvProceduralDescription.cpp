#include "OrvCore/Shelf/OrvProceduralDescription.h"

#include "OrvCore/Shelf/OrvProceduralReader.h"

#include "OrvDdi/Engine/OrvBlendParameters.h"

#include <QtCore/QCoreApplication>

const QString OrvProceduralDescription::FormatName = QStringLiteral("orvproc");

namespace {

const QVector<OrvOperationParameter>& blendParameters()
{
    static const QVector<OrvOperationParameter> Parameters = [] {
        OrvOperationParameter Mode, Amount;
        Mode.Name = QStringLiteral("blend");
        Mode.Type = OrvOperationParameter::Enumeration;
        Mode.Choices = Mode.ChoiceLabels = OrvBlendParameters::modeNames();
        Mode.Default = OrvBlendParameters::modeNames().first();
        Amount.Name = QStringLiteral("amount");
        Amount.Default = 1.0;
        return QVector<OrvOperationParameter>{Mode, Amount};
    }();
    return Parameters;
}

template <class Visitor>
void forEachParameter(const OrvProceduralDescription::Node& Node, Visitor Visit)
{
    if (Node.What == OrvProceduralDescription::Node::Included) {
        for (const OrvProceduralDescription::Parameter& Shown : Node.pIncluded->Parameters)
            Visit(Shown.Editor);
        return;
    }
    const QVector<OrvOperationParameter>& Parameters
        = Node.pOperation ? Node.pOperation->Parameters : blendParameters();
    for (const OrvOperationParameter& Parameter : Parameters)
        Visit(Parameter);
}

} // namespace

const OrvOperationParameter* OrvProceduralDescription::Node::parameter(const QString& Name) const
{
    const OrvOperationParameter* pFound = nullptr;
    forEachParameter(*this, [&](const OrvOperationParameter& Parameter) {
        if (Parameter.Name == Name)
            pFound = &Parameter;
    });
    return pFound;
}

QStringList OrvProceduralDescription::Node::parameterNames() const
{
    QStringList Names;
    forEachParameter(*this, [&](const OrvOperationParameter& Parameter) { Names.append(Parameter.Name); });
    return Names;
}

const OrvProceduralDescription::Node* OrvProceduralDescription::node(const QString& Id) const
{
    for (const Node& Candidate : Nodes) {
        if (Candidate.Id == Id)
            return &Candidate;
    }
    return nullptr;
}

bool OrvProceduralDescription::fromText(
    const QByteArray& Text, OrvProceduralDescription& Description, QString& Error)
{
    OrvProceduralDescription Read;
    OrvProceduralReader Reader(Read, Error);
    if (!Reader.readText(Text))
        return false;
    Description = Read;
    return true;
}
