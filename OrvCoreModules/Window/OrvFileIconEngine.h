#pragma once

#include <QtCore/QString>
#include <QtGui/QIconEngine>
#include <QtGui/QImage>

#include <memory>

/// The engine of an icon that is one file, bitmap or SVG: opened when first needed, scaled to the size asked
/// for from the "@2x" twin where the screen wants it, faded when disabled. A file is read once, however many
/// icons show it; rendered sizes are kept in the pixmap cache.
class OrvFileIconEngine : public QIconEngine {
public:
    /// A relative name is one of the icon directory.
    explicit OrvFileIconEngine(const QString& File);
    ~OrvFileIconEngine() override;

    void paint(QPainter* pPainter, const QRect& Rect, QIcon::Mode Mode, QIcon::State State) override;
    QPixmap pixmap(const QSize& Size, QIcon::Mode Mode, QIcon::State State) override;
    QSize actualSize(const QSize& Size, QIcon::Mode Mode, QIcon::State State) override;
    QList<QSize> availableSizes(QIcon::Mode Mode, QIcon::State State) const override;
    QIconEngine* clone() const override;
    QString key() const override;
    void virtual_hook(int Id, void* pData) override;

private:
    struct Picture;
    static std::shared_ptr<const Picture> read(const QString& Path);

    void open();
    bool isEmpty();
    /// The size in device pixels that fits into the given one without growing a bitmap beyond its own size.
    QSize fittedSize(const QSize& DeviceSize, bool MayGrow) const;
    QImage render(const QSize& DeviceSize) const;
    QPixmap cachedPixmap(const QSize& DeviceSize, QIcon::Mode Mode);

    QString m_File;
    QString m_Path; // what was opened
    bool m_Opened = false;
    std::shared_ptr<const Picture> m_pPicture; // null: no file, or one that is no picture
};
