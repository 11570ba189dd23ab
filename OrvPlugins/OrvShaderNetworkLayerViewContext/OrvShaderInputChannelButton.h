#pragma once

#include <QtWidgets/QToolButton>

class OrvShaderInput;

/// The name of the channel that feeds an input of a shader, or a word in its place. It shortens the name to
/// its width and stands out while the channel is the current one; what a click does is up to its owner.
class OrvShaderInputChannelButton : public QToolButton {
    Q_OBJECT

public:
    explicit OrvShaderInputChannelButton(QWidget* pParent);

    void showChannel(const OrvShaderInput* pChannel, bool Current);
    /// Where there is neither a channel nor a value.
    void showNone(const QString& Text, const QString& ToolTip);
    /// In full, whatever is seen of it.
    const QString& channelName() const { return m_Name; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* pEvent) override;

private:
    enum class Kind { None, Channel, Material };
    void take(Kind What, const QString& Name, bool Emphasized);

    Kind m_Kind = Kind::None;
    QString m_Name;
};
