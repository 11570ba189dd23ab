#pragma once

#include <QtCore/QMimeData>
#include <QtCore/QStringList>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>

/// A part of the document on the system's clipboard. Within the program the snapshot itself is passed on,
/// pixels and all, at no cost; only another process makes it become bytes. A snapshot has toBytes(), and
/// fromBytes() that says in a text why bytes are none.
template <class Snapshot>
class OrvSnapshotClipboard {
public:
    explicit OrvSnapshotClipboard(const QString& MimeType)
        : m_MimeType(MimeType)
    {
    }

    void put(const Snapshot& Contents) const
    {
        if (QClipboard* pClipboard = clipboard())
            pClipboard->setMimeData(new Data(m_MimeType, Contents));
    }
    bool holds() const
    {
        const QMimeData* pData = clipboard() ? clipboard()->mimeData() : nullptr;
        return pData && pData->hasFormat(m_MimeType);
    }
    /// To be called when there is something. False, with a text, when it cannot be read.
    bool get(Snapshot& Contents, QString& Error) const
    {
        const QMimeData* pData = clipboard()->mimeData();
        if (const auto* pOwn = dynamic_cast<const Data*>(pData)) {
            Contents = pOwn->Contents;
            return true;
        }
        return Snapshot::fromBytes(pData->data(m_MimeType), Contents, Error);
    }

private:
    /// Turns itself into bytes only when somebody asks for them.
    struct Data : QMimeData {
        Data(const QString& Format, const Snapshot& Held)
            : MimeType(Format)
            , Contents(Held)
        {
        }
        QStringList formats() const override { return {MimeType}; }
        bool hasFormat(const QString& Format) const override { return Format == MimeType; }
        QVariant retrieveData(const QString& Format, QVariant::Type) const override
        {
            return hasFormat(Format) ? QVariant(Contents.toBytes()) : QVariant();
        }

        QString MimeType;
        Snapshot Contents;
    };

    /// Null without a window system.
    static QClipboard* clipboard()
    {
        const bool HasWindows = qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr;
        return HasWindows ? QGuiApplication::clipboard() : nullptr;
    }

    QString m_MimeType;
};
