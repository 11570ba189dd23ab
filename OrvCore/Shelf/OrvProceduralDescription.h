#pragma once

#include "OrvCore/OrvCoreExport.h"

#include "OrvDdi/Engine/OrvOperationRegistry.h"

#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtCore/QVector>

#include <memory>

/// What a custom procedural is made of: inner nodes, how they are connected, and the parameters that it shows
/// to the user. A value that is checked when it is read: every name in it means something, and the
/// connections have no cycle. It knows neither files nor the document.
struct ORVCORE_EXPORT OrvProceduralDescription {
    enum Kind { Color, Scalar, Mask };

    static constexpr int FormatVersion = 1;
    static const QString FormatName; ///< the entry with the version of the format

    /// Where the value of a shown parameter goes: factor times value plus offset, for numbers.
    struct Binding {
        QString Node, Parameter;
        double Factor = 1.0, Offset = 0.0;
    };
    struct Parameter {
        OrvOperationParameter Editor;
        QVector<Binding> Bindings;
    };
    struct Node {
        enum Kind { Operation, Blend, Included };
        QString Id;
        Kind What = Operation;
        const OrvOperation* pOperation = nullptr; ///< the registry's
        QByteArray IncludedText;
        std::shared_ptr<const OrvProceduralDescription> pIncluded;
        QHash<QString, QString> Sources; ///< identifiers of nodes, by input name
        QHash<QString, QVariant> Values; ///< by parameter name
        bool Unbounded = false; ///< a procedural that goes on beyond the picture's edges

        /// Null for a name that is none.
        const OrvOperationParameter* parameter(const QString& Name) const;
        QStringList parameterNames() const;
    };

    QString Name, Description;
    Kind Type = Color;
    QStringList GeoChannels; ///< names of the geometry channels that it needs
    QVector<Parameter> Parameters;
    QVector<Node> Nodes;
    QString Output;

    const Node* node(const QString& Id) const;

    /// The text is self-contained (see OrvProceduralFile). False, with a sentence that names what is wrong.
    static bool fromText(const QByteArray& Text, OrvProceduralDescription& Description, QString& Error);
};
