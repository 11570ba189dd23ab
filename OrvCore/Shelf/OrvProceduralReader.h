#pragma once

#include "OrvCore/Shelf/OrvProceduralDescription.h"

#include <QtCore/QJsonObject>

/// Fills the description of a custom procedural from its text, in the order in which the parts need each
/// other: nodes, connections, shown parameters. Made for one reading; on the first failure it writes one
/// sentence and stops.
class OrvProceduralReader {
public:
    OrvProceduralReader(OrvProceduralDescription& Description, QString& Error)
        : m_Read(Description)
        , m_Error(Error)
    {
    }

    bool readText(const QByteArray& Text);

private:
    bool readObject(const QJsonObject& Json);
    bool readHead(const QJsonObject& Json);
    bool readNode(const QJsonObject& Json);
    bool readKind(const QJsonObject& Json, OrvProceduralDescription::Node& Node, QStringList& InputNames);
    bool readSources(
        const QJsonObject& Json, const QStringList& InputNames, OrvProceduralDescription::Node& Node);
    bool readValues(const QJsonObject& Json, OrvProceduralDescription::Node& Node);
    bool checkConnections();
    bool readParameter(const QJsonObject& Json);
    bool readRange(const QJsonObject& Json, const QString& Owner, OrvOperationParameter& Editor);
    bool readChoices(const QJsonObject& Json, const QString& Owner, OrvOperationParameter& Editor);
    bool readBindings(
        const QJsonObject& Json, const QString& Owner, OrvProceduralDescription::Parameter& Parameter);
    bool readBinding(const QJsonValue& Json, const QString& Owner, const OrvOperationParameter& Editor,
        OrvProceduralDescription::Binding& Binding);
    bool fail(const QString& Text);

    OrvProceduralDescription& m_Read;
    QString& m_Error;
    QStringList m_BoundTargets;
};
