#include "OrvCore/Shelf/OrvProceduralReader.h"

#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Shelf/OrvShelfJson.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QRegularExpression>

#include <algorithm>

using namespace OrvShelfJson;
using Description = OrvProceduralDescription;

namespace {

constexpr int MostNodes = 500;

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvProceduralReader", pText);
}

/// What attributes and bindings can be called by.
bool isIdentifier(const QString& Text)
{
    static const QRegularExpression Identifier(QStringLiteral("^[A-Za-z][A-Za-z0-9_-]*$"));
    return Identifier.match(Text).hasMatch();
}

bool isNumber(const OrvOperationParameter& Parameter)
{
    return Parameter.Type == OrvOperationParameter::Real || Parameter.Type == OrvOperationParameter::Integer
        || Parameter.Type == OrvOperationParameter::Angle;
}

const QVector<QPair<QString, OrvOperationParameter::Kind>>& parameterTypes()
{
    static const QVector<QPair<QString, OrvOperationParameter::Kind>> Types{
        {QStringLiteral("real"), OrvOperationParameter::Real},
        {QStringLiteral("integer"), OrvOperationParameter::Integer},
        {QStringLiteral("boolean"), OrvOperationParameter::Boolean},
        {QStringLiteral("enumeration"), OrvOperationParameter::Enumeration},
        {QStringLiteral("color"), OrvOperationParameter::Color},
        {QStringLiteral("angle"), OrvOperationParameter::Angle},
        {QStringLiteral("text"), OrvOperationParameter::Text},
    };
    return Types;
}

bool mayDrive(const OrvOperationParameter& Source, const OrvOperationParameter& Target)
{
    if (isNumber(Source) && isNumber(Target))
        return true;
    if (Source.Type != Target.Type)
        return false;
    return std::all_of(Source.Choices.begin(), Source.Choices.end(),
        [&Target](const QString& Choice) { return Target.Choices.contains(Choice); });
}

/// Three digits that count, whatever the size of the range.
int decimalsFor(double Range)
{
    return Range >= 100.0 ? 1 : Range >= 10.0 ? 2 : 3;
}

} // namespace

bool OrvProceduralReader::fail(const QString& Text)
{
    m_Error = Text;
    return false;
}

bool OrvProceduralReader::readText(const QByteArray& Text)
{
    QJsonObject Json;
    return parse(Text, Json, m_Error) && readObject(Json);
}

bool OrvProceduralReader::readObject(const QJsonObject& Json)
{
    if (!readHead(Json))
        return false;
    const QString Owner = tr("The procedural");
    QJsonArray Nodes, Parameters;
    if (!array(Json, QStringLiteral("nodes"), Required, Owner, Nodes, m_Error)
        || !array(Json, QStringLiteral("parameters"), Optional, Owner, Parameters, m_Error))
        return false;
    if (Nodes.isEmpty() || Nodes.size() > MostNodes)
        return fail(tr("The procedural has %1 nodes; it may have 1 to %2").arg(Nodes.size()).arg(MostNodes));
    for (const QJsonValue Node : qAsConst(Nodes)) {
        if (!readNode(Node.toObject()))
            return false;
    }
    if (!string(Json, QStringLiteral("output"), Required, Owner, m_Read.Output, m_Error)
        || !checkConnections())
        return false;
    return std::all_of(Parameters.begin(), Parameters.end(),
        [this](const QJsonValue& Parameter) { return readParameter(Parameter.toObject()); });
}

bool OrvProceduralReader::readHead(const QJsonObject& Json)
{
    static const QStringList Known{Description::FormatName, QStringLiteral("name"), QStringLiteral("type"),
        QStringLiteral("description"), QStringLiteral("channels"), QStringLiteral("parameters"),
        QStringLiteral("nodes"), QStringLiteral("output")};
    static const QStringList Types{QStringLiteral("color"), QStringLiteral("scalar"), QStringLiteral("mask")};
    const QString Owner = tr("The procedural");
    QString Type;
    if (!checkVersion(Json, Description::FormatName, Description::FormatVersion, m_Error)
        || !checkEntries(Json, Known, Owner, m_Error)
        || !string(Json, QStringLiteral("name"), Required, Owner, m_Read.Name, m_Error)
        || !string(Json, QStringLiteral("description"), Optional, Owner, m_Read.Description, m_Error)
        || !string(Json, QStringLiteral("type"), Required, Owner, Type, m_Error)
        || !strings(Json, QStringLiteral("channels"), Optional, Owner, m_Read.GeoChannels, m_Error))
        return false;
    if (!Types.contains(Type))
        return fail(tr("The type \"%1\" is none of %2").arg(Type, Types.join(QStringLiteral(", "))));
    m_Read.Type = Description::Kind(Types.indexOf(Type));
    return true;
}

bool OrvProceduralReader::readNode(const QJsonObject& Json)
{
    static const QStringList Common{QStringLiteral("id"), QStringLiteral("operation"),
        QStringLiteral("blend"), QStringLiteral("procedural"), QStringLiteral("values"),
        QStringLiteral("unbounded")};
    Description::Node Node;
    if (!string(Json, QStringLiteral("id"), Required, tr("Node %1").arg(m_Read.Nodes.size() + 1), Node.Id,
            m_Error))
        return false;
    if (!isIdentifier(Node.Id))
        return fail(
            tr("\"%1\" cannot be the id of a node: letters, digits, \"-\" and \"_\" can").arg(Node.Id));
    if (m_Read.node(Node.Id))
        return fail(tr("Two nodes have the id \"%1\"").arg(Node.Id));
    QStringList InputNames;
    const QString Owner = tr("Node \"%1\"").arg(Node.Id);
    if (!readKind(Json, Node, InputNames))
        return false;
    QStringList Known = Common;
    for (const QString& InputName : qAsConst(InputNames))
        Known.append(InputName.toLower());
    if (Node.What == Description::Node::Blend)
        Known.append(QStringLiteral("amount"));
    if (!checkEntries(Json, Known, Owner, m_Error) || !readSources(Json, InputNames, Node)
        || !readValues(Json, Node))
        return false;
    const QJsonValue Unbounded = Json.value(QStringLiteral("unbounded"));
    if (!Unbounded.isUndefined() && !Unbounded.isBool())
        return fail(tr("\"unbounded\" of %1 is to be true or false").arg(Owner));
    Node.Unbounded = Unbounded.toBool();
    m_Read.Nodes.append(Node);
    return true;
}

bool OrvProceduralReader::readKind(const QJsonObject& Json, Description::Node& Node, QStringList& InputNames)
{
    const QString Owner = tr("Node \"%1\"").arg(Node.Id);
    const QJsonValue Operation = Json.value(QStringLiteral("operation"));
    const QJsonValue Blend = Json.value(QStringLiteral("blend"));
    const QJsonValue Included = Json.value(QStringLiteral("procedural"));
    if (int(Operation.isUndefined()) + int(Blend.isUndefined()) + int(Included.isUndefined()) != 2)
        return fail(tr("%1 is to have one of \"operation\", \"blend\" and \"procedural\"").arg(Owner));
    if (!Blend.isUndefined()) {
        Node.What = Description::Node::Blend;
        InputNames = QStringList{OrvSnNames::Base, OrvSnNames::Over, OrvSnNames::Mask};
        return true;
    }
    if (!Operation.isUndefined()) {
        const OrvOperationRegistry& Registry = OrvOperationRegistry::instance();
        Node.pOperation = Registry.findByMenuPath(Operation.toString());
        if (!Node.pOperation)
            Node.pOperation = Registry.find(Operation.toString());
        if (!Node.pOperation)
            return fail(tr("%1: there is no operation \"%2\"").arg(Owner, Operation.toString()));
        if (!Node.pOperation->Procedural)
            InputNames = QStringList{OrvSnNames::Input};
        return true;
    }
    Node.What = Description::Node::Included;
    if (!Included.isObject())
        return fail(tr("%1: the included procedural is missing").arg(Owner));
    Node.IncludedText = QJsonDocument(Included.toObject()).toJson(QJsonDocument::Compact);
    auto pIncluded = std::make_shared<Description>();
    if (!OrvProceduralReader(*pIncluded, m_Error).readObject(Included.toObject()))
        return fail(tr("%1: %2").arg(Owner, m_Error));
    // What an included procedural needs, the whole needs.
    for (const QString& Channel : qAsConst(pIncluded->GeoChannels)) {
        if (!m_Read.GeoChannels.contains(Channel))
            m_Read.GeoChannels.append(Channel);
    }
    Node.pIncluded = pIncluded;
    return true;
}

bool OrvProceduralReader::readSources(
    const QJsonObject& Json, const QStringList& InputNames, Description::Node& Node)
{
    for (const QString& InputName : InputNames) {
        QString Source;
        if (!string(Json, InputName.toLower(), Optional, tr("Node \"%1\"").arg(Node.Id), Source, m_Error))
            return false;
        if (!Source.isEmpty())
            Node.Sources.insert(InputName, Source);
    }
    return true;
}

bool OrvProceduralReader::readValues(const QJsonObject& Json, Description::Node& Node)
{
    const QString Owner = tr("Node \"%1\"").arg(Node.Id);
    const QJsonValue Given = Json.value(QStringLiteral("values"));
    if (!Given.isUndefined() && !Given.isObject())
        return fail(tr("\"values\" of %1 is no object").arg(Owner));
    QJsonObject Values = Given.toObject();
    if (Node.What == Description::Node::Blend) {
        for (const QString& Name : Node.parameterNames()) {
            if (Json.contains(Name))
                Values.insert(Name, Json.value(Name));
        }
    }
    for (auto Value = Values.begin(); Value != Values.end(); ++Value) {
        const OrvOperationParameter* pParameter = Node.parameter(Value.key());
        if (!pParameter) {
            return fail(tr("%1 has no parameter \"%2\"; it has %3")
                            .arg(Owner, Value.key(), Node.parameterNames().join(QStringLiteral(", "))));
        }
        QVariant Wanted;
        if (!value(Value.value(), *pParameter, tr("\"%1\" of %2").arg(Value.key(), Owner), Wanted, m_Error))
            return false;
        Node.Values.insert(Value.key(), Wanted);
    }
    return true;
}

bool OrvProceduralReader::checkConnections()
{
    if (!m_Read.node(m_Read.Output))
        return fail(tr("There is no node \"%1\" for the output").arg(m_Read.Output));
    QHash<QString, int> Unread;
    for (const Description::Node& Node : qAsConst(m_Read.Nodes)) {
        for (auto Source = Node.Sources.begin(); Source != Node.Sources.end(); ++Source) {
            if (!m_Read.node(Source.value())) {
                return fail(
                    tr("Node \"%1\" reads a node \"%2\" that there is not").arg(Node.Id, Source.value()));
            }
        }
        Unread.insert(Node.Id, Node.Sources.size());
    }
    // Take away what reads nothing that is left, again and again: a circle stays.
    for (bool Shrinks = true; Shrinks;) {
        Shrinks = false;
        for (const Description::Node& Node : qAsConst(m_Read.Nodes)) {
            if (Unread.value(Node.Id, -1) != 0)
                continue;
            Unread.remove(Node.Id);
            Shrinks = true;
            for (const Description::Node& Reader : qAsConst(m_Read.Nodes)) {
                const QStringList Sources = Reader.Sources.values();
                if (Sources.contains(Node.Id))
                    Unread[Reader.Id] -= Sources.count(Node.Id);
            }
        }
    }
    if (Unread.isEmpty())
        return true;
    QStringList Circle = Unread.keys();
    Circle.sort();
    return fail(tr("The nodes %1 read each other in a circle").arg(Circle.join(QStringLiteral(", "))));
}

bool OrvProceduralReader::readParameter(const QJsonObject& Json)
{
    static const QStringList Known{QStringLiteral("name"), QStringLiteral("label"),
        QStringLiteral("description"), QStringLiteral("type"), QStringLiteral("range"),
        QStringLiteral("choices"), QStringLiteral("default"), QStringLiteral("binds")};
    Description::Parameter Parameter;
    OrvOperationParameter& Editor = Parameter.Editor;
    QString Type;
    if (!string(Json, QStringLiteral("name"), Required, tr("Parameter %1").arg(m_Read.Parameters.size() + 1),
            Editor.Name, m_Error))
        return false;
    const QString Owner = tr("Parameter \"%1\"").arg(Editor.Name);
    if (!isIdentifier(Editor.Name))
        return fail(tr("\"%1\" cannot be the name of a parameter: letters, digits, \"-\" and \"_\" can")
                        .arg(Editor.Name));
    for (const Description::Parameter& Other : qAsConst(m_Read.Parameters)) {
        if (Other.Editor.Name == Editor.Name)
            return fail(tr("Two parameters are called \"%1\"").arg(Editor.Name));
    }
    Editor.Label = Editor.Name;
    if (!checkEntries(Json, Known, Owner, m_Error)
        || !string(Json, QStringLiteral("label"), Optional, Owner, Editor.Label, m_Error)
        || !string(Json, QStringLiteral("description"), Optional, Owner, Editor.Description, m_Error)
        || !string(Json, QStringLiteral("type"), Required, Owner, Type, m_Error))
        return false;
    const auto Found = std::find_if(parameterTypes().begin(), parameterTypes().end(),
        [&Type](const auto& Candidate) { return Candidate.first == Type; });
    if (Found == parameterTypes().end()) {
        QStringList Names;
        for (const auto& Candidate : parameterTypes())
            Names.append(Candidate.first);
        return fail(
            tr("%1: the type \"%2\" is none of %3").arg(Owner, Type, Names.join(QStringLiteral(", "))));
    }
    Editor.Type = Found->second;
    if (!readRange(Json, Owner, Editor) || !readChoices(Json, Owner, Editor)
        || !value(Json.value(QStringLiteral("default")), Editor, tr("The default of %1").arg(Owner),
            Editor.Default, m_Error)
        || !readBindings(Json, Owner, Parameter))
        return false;
    m_Read.Parameters.append(Parameter);
    return true;
}

bool OrvProceduralReader::readRange(
    const QJsonObject& Json, const QString& Owner, OrvOperationParameter& Editor)
{
    const QJsonValue Given = Json.value(QStringLiteral("range"));
    if (!isNumber(Editor))
        return Given.isUndefined() || fail(tr("%1 is no number and has no range").arg(Owner));
    const QJsonArray Range = Given.toArray();
    if (Range.size() != 2 || !Range[0].isDouble() || !Range[1].isDouble()
        || !(Range[0].toDouble() < Range[1].toDouble()))
        return fail(tr("%1 needs a range of two numbers, such as [0, 1]").arg(Owner));
    Editor.Minimum = Editor.UiMinimum = Range[0].toDouble();
    Editor.Maximum = Editor.UiMaximum = Range[1].toDouble();
    const bool Whole = Editor.Type == OrvOperationParameter::Integer;
    Editor.Decimals = Whole ? 0 : decimalsFor(Editor.Maximum - Editor.Minimum);
    Editor.Step = Whole ? 1.0 : (Editor.Maximum - Editor.Minimum) / 100.0;
    if (Editor.Type == OrvOperationParameter::Angle)
        Editor.Unit = QStringLiteral("degree");
    return true;
}

bool OrvProceduralReader::readChoices(
    const QJsonObject& Json, const QString& Owner, OrvOperationParameter& Editor)
{
    const bool Wanted = Editor.Type == OrvOperationParameter::Enumeration;
    if (!Wanted && Json.contains(QStringLiteral("choices")))
        return fail(tr("%1 is no enumeration and has no choices").arg(Owner));
    if (Wanted && !strings(Json, QStringLiteral("choices"), Required, Owner, Editor.Choices, m_Error))
        return false;
    for (const QString& Choice : qAsConst(Editor.Choices)) {
        QString Label = Choice;
        Label.replace(QLatin1Char('-'), QLatin1Char(' '));
        Editor.ChoiceLabels.append(Label.left(1).toUpper() + Label.mid(1));
    }
    return true;
}

bool OrvProceduralReader::readBindings(
    const QJsonObject& Json, const QString& Owner, Description::Parameter& Parameter)
{
    QJsonArray Bindings;
    if (!array(Json, QStringLiteral("binds"), Required, Owner, Bindings, m_Error))
        return false;
    if (Bindings.isEmpty())
        return fail(tr("%1 is bound to nothing").arg(Owner));
    for (const QJsonValue One : qAsConst(Bindings)) {
        Description::Binding Binding;
        if (!readBinding(One, Owner, Parameter.Editor, Binding))
            return false;
        Parameter.Bindings.append(Binding);
    }
    return true;
}

bool OrvProceduralReader::readBinding(const QJsonValue& Json, const QString& Owner,
    const OrvOperationParameter& Editor, Description::Binding& Binding)
{
    static const QStringList Known{QStringLiteral("to"), QStringLiteral("factor"), QStringLiteral("offset")};
    QString Target = Json.toString();
    const QJsonObject Details = Json.toObject();
    if (Json.isObject()
        && (!checkEntries(Details, Known, tr("A binding of %1").arg(Owner), m_Error)
            || !string(Details, QStringLiteral("to"), Required, Owner, Target, m_Error)))
        return false;
    Binding.Node = Target.section(QLatin1Char('.'), 0, 0);
    Binding.Parameter = Target.section(QLatin1Char('.'), 1);
    Binding.Factor = Details.value(QStringLiteral("factor")).toDouble(1.0);
    Binding.Offset = Details.value(QStringLiteral("offset")).toDouble(0.0);
    const Description::Node* pNode = m_Read.node(Binding.Node);
    const OrvOperationParameter* pTarget = pNode ? pNode->parameter(Binding.Parameter) : nullptr;
    if (!pTarget)
        return fail(tr("%1 is bound to \"%2\", which is no parameter of a node").arg(Owner, Target));
    if (m_BoundTargets.contains(Target))
        return fail(tr("\"%1\" is bound twice").arg(Target));
    m_BoundTargets.append(Target);
    if (!mayDrive(Editor, *pTarget))
        return fail(tr("%1 and \"%2\" are of different types").arg(Owner, Target));
    if (!isNumber(Editor)) {
        return Details.size() <= 1
            || fail(tr("%1 is no number and is bound without factor and offset").arg(Owner));
    }
    for (const double End : {Editor.Minimum, Editor.Maximum}) {
        const double Driven = End * Binding.Factor + Binding.Offset;
        if (Driven < pTarget->Minimum || Driven > pTarget->Maximum) {
            return fail(tr("%1 takes \"%2\" to %3; it may lie between %4 and %5")
                            .arg(Owner, Target)
                            .arg(Driven)
                            .arg(pTarget->Minimum)
                            .arg(pTarget->Maximum));
        }
    }
    return true;
}
