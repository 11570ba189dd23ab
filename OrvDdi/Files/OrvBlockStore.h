#pragma once

#include "OrvDdi/OrvDdiExport.h"

#include <QtCore/QByteArray>
#include <QtCore/QMutex>
#include <QtCore/QSet>
#include <QtCore/QStringList>

/// A directory of data blocks, each named by the content that it holds ("ab/cdef…"), compressed. A block
/// never changes once written, so that writers and readers need no lock between them and equal contents are
/// stored once. Safe from any thread. It never removes a block unless told which ones are still needed.
class ORVDDI_EXPORT OrvBlockStore {
public:
    /// The directory is made with the first block.
    explicit OrvBlockStore(const QString& Directory);

    QString directory() const { return m_Directory; }

    /// Stores contents and returns their key (SHA-256 in lower case hexadecimal), empty on failure. A block
    /// that is there already is not written again.
    QByteArray put(const QByteArray& Raw, QString& Error);
    /// The contents, checked against the key; null on failure, with the block named in Error.
    QByteArray get(const QByteArray& Key, QString& Error) const;
    /// Whether a block is there and complete by its length; its contents are not read.
    bool contains(const QByteArray& Key) const;
    /// Forces what was put since the last time onto the disk.
    bool sync(QString& Error);
    /// Removes all other blocks, and what interrupted writers left over; returns the number of files removed.
    /// Not to be called while another store writes into the directory, nor before whatever names the blocks
    /// that are needed is on the disk.
    int removeUnreferenced(const QSet<QByteArray>& Keys);

    /// Makes a folder and those above it; one that is there already is fine. The error says what is in the
    /// way.
    static bool makeFolder(const QString& Path, QString& Error);
    /// Forces what entered, left or was renamed in a folder onto the disk.
    static bool syncFolder(const QString& Path);
    /// All keys that stand as quoted texts in a text, whatever it is otherwise.
    static QSet<QByteArray> keysIn(const QByteArray& Text);
    static bool isKey(const QByteArray& Key);
    /// The key under which contents are stored, wherever that is.
    static QByteArray keyOf(const QByteArray& Raw);
    QString blockPath(const QByteArray& Key) const;

private:
    bool writeBlock(const QByteArray& Raw, const QString& Path, QString& Error);

    QString m_Directory;
    QMutex m_Mutex;
    QStringList m_Unsynced;
};
