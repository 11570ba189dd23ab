#pragma once

#include "OrvCore/Channels/OrvShaderInput.h"

#include "OrvDdi/Image/OrvColor.h"
#include "OrvDdi/Image/OrvImageBuffer.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QVector>

class OrvImageSet;
class OrvSnBaseNode;
class OrvSnChannelInputNode;
class OrvSnMergeNode;

/// One conversion of a channel's images, to another depth, colour space or size: made for it and dropped. The
/// new pixels are computed before the document is touched, so that a conversion that is cancelled or cannot
/// be done leaves nothing behind. Each is one undo step.
class OrvChannelConversion {
    Q_DECLARE_TR_FUNCTIONS(OrvChannelConversion)

public:
    OrvChannelConversion(OrvShaderInput* pChannel, OrvShaderInput::ConversionOption Option);

    /// The picture stays, within what the depth holds. Spaces that follow the depth do so.
    bool convertDepth(GLenum Depth);
    bool convertColorSpace(const QString& Space);
    /// Masks, and in channels of data the paint.
    bool convertScalarColorSpace(const QString& Space);
    /// The edge length of a tile. Images that other channels show too keep their size.
    bool resize(int EdgeLength);

    /// The colour space of paint in a chain that the node is part of; empty where values mean no colour.
    static QString paintSpaceAt(const OrvSnBaseNode* pNode);
    /// The layer came from a place of one paint space to a place of another: its paint looks as it did there,
    /// with the same numbers.
    static void keepColors(OrvSnMergeNode* pMerge, const QString& FormerSpace, const QString& Space);

private:
    /// How the pixels of one image get from one format to another.
    struct Step {
        OrvPixelFormat Target;
        OrvPixelFormat ReadAs, WriteAs; ///< what the pixels are between reading and writing
        QString From, To; ///< colour spaces in between; the same for none
    };
    struct Result {
        OrvSnChannelInputNode* pNode;
        OrvPixelFormat Format;
        OrvColor Fill;
        OrvImageBuffer Pixels;
    };

    bool refuse(const QString& Reason) const;
    bool checkUnlocked() const;
    bool isSpaceUsable(const QString& From, const QString& To) const;
    /// The images that are to be converted, of data or of colour.
    QVector<OrvSnChannelInputNode*> images(bool Data) const { return images(Data, m_Option); }
    QVector<OrvSnChannelInputNode*> images(bool Data, OrvShaderInput::ConversionOption Option) const;
    bool isData(const OrvSnChannelInputNode* pNode) const;
    Step depthStep(const OrvSnChannelInputNode* pNode, GLenum Depth) const;
    Step colorStep(const OrvImageSet& Images, const QString& Stored, const QString& To) const;
    Step dataStep(const OrvImageSet& Images, const QString& From, const QString& To) const;

    /// In which space the image's numbers are in a channel of that one, curve included.
    static QString spaceOf(const OrvSnChannelInputNode* pNode, const QString& ChannelSpace);
    /// Images that stay what they are, or that other channels see, are to be shown as before.
    void keepSpaces(const QString& From, const QString& To) const;

    void plan(OrvSnChannelInputNode* pNode, const Step& Wanted);
    /// Computes what was planned; false when that was cancelled or failed, with the reason told.
    bool compute();
    bool computePixels(const OrvImageSet& Images, const Step& Wanted, OrvImageBuffer& Pixels);
    void apply();

    OrvShaderInput* m_pChannel;
    OrvShaderInput::ConversionOption m_Option;
    QVector<Step> m_Steps;
    QVector<Result> m_Results;
    int m_RowsDone = 0, m_Rows = 0;
    QString m_Error;
};
