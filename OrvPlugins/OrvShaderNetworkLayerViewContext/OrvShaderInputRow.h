#pragma once

#include <QtCore/QPointer>
#include <QtCore/QVector>
#include <QtWidgets/QWidget>

class OrvCustomAttribute;
class OrvEditLabel;
class OrvLayerShader;
class OrvShaderInput;
class OrvShaderInputChannelButton;
class QCheckBox;
class QMimeData;
class QStackedLayout;
class QToolButton;

/// One input of a shader in the inputs pane, which owns it: whether it counts, its name, the channel that
/// feeds it or the value that it has without one, whether it is inverted. Channels can be dropped on it. It
/// shows the shader and edits it through the host, and outlives it harmlessly.
class OrvShaderInputRow : public QWidget {
    Q_OBJECT

public:
    /// The boxes carry the name of the input, and the one that inverts carries the node of the shader: for
    /// slots that ask the sender what it speaks of.
    static constexpr char InputNameProperty[] = "InputName";
    static constexpr char ShaderNodeProperty[] = "ShaderNode";

    OrvShaderInputRow(OrvLayerShader* pShader, const QString& InputName, QWidget* pParent);

    OrvLayerShader* shader() const;
    const QString& inputName() const { return m_InputName; }
    /// Null while a channel feeds the input, and for an input that has no value of its own.
    QWidget* valueEditor() const;
    QCheckBox* enableBox() const { return m_pEnable; }
    QCheckBox* invertBox() const { return m_pInvert; }
    OrvShaderInputChannelButton* channelButton() const { return m_pChannelButton; }
    QToolButton* menuButton() const { return m_pMenuButton; }

    /// The names of rows below each other get the same width, so that the other parts stand in columns.
    static void alignColumns(const QVector<OrvShaderInputRow*>& Rows);

Q_SIGNALS:
    /// The user went to the material channel that feeds the input.
    void materialChosen(OrvShaderInput* pChannel);

public Q_SLOTS:
    /// Reads everything again and changes only what differs.
    void refresh();
    void popupMenu();
    void disconnectChannel();

protected:
    void contextMenuEvent(QContextMenuEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void dragEnterEvent(QDragEnterEvent* pEvent) override;
    void dragLeaveEvent(QDragLeaveEvent* pEvent) override;
    void dropEvent(QDropEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;

private Q_SLOTS:
    void onAttributeChanged(OrvCustomAttribute Attribute);
    void onInputNodeChanged(QString InputName);
    void onChannelClicked();

private:
    void createParts();
    void createValueEditor();
    void describeParts();
    void popupMenuAt(const QPoint& GlobalPosition);
    void showWithoutChannel();
    void setDropTarget(bool DropTarget);
    OrvShaderInput* droppedChannel(const QMimeData* pMime) const;

    QPointer<OrvLayerShader> m_pShader;
    QString m_InputName;
    QCheckBox* m_pEnable;
    OrvEditLabel* m_pName;
    QStackedLayout* m_pFeed;
    OrvShaderInputChannelButton* m_pChannelButton;
    QWidget* m_pValueEditor = nullptr; ///< null for an input without a value of its own
    QToolButton* m_pMenuButton;
    QCheckBox* m_pInvert;
    bool m_DropTarget = false;
};
