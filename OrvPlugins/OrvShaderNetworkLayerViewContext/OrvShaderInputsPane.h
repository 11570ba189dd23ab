#pragma once

#include <QtCore/QPointer>
#include <QtCore/QVector>
#include <QtWidgets/QWidget>

class OrvLayerShader;
class OrvShaderInput;
class OrvShaderInputRow;
class OrvSnBaseNode;
class QGridLayout;
class QLabel;

/// The inputs of the current shader, one row each in a group titled "Inputs", under the list of shaders. The
/// shader view owns it, puts it into a scroll area and calls it on its properties timer; by itself the pane
/// follows only names and choice of channels, and it never edits without the user. Rows stay while the shader
/// and its inputs stay, so that a drag in one of them survives a refresh.
class OrvShaderInputsPane : public QWidget {
    Q_OBJECT

public:
    explicit OrvShaderInputsPane(QWidget* pParent);

    /// Shows the current shader; what did not change is left alone.
    void refresh();
    /// The same, and brings the row of an input that a new channel feeds into view.
    void refreshForNewShaderInput(const QString& InputName, OrvSnBaseNode* pChannelNode);
    /// No rows, for when there is nothing to show.
    void clear();

    OrvLayerShader* shader() const;
    /// The row of an input, or null.
    OrvShaderInputRow* row(const QString& InputName) const;
    QVector<OrvShaderInputRow*> rows() const { return m_Rows; }
    /// What is shown in place of rows; empty while there are some.
    QString message() const;
    /// What to know about the inputs in use, or empty.
    QString note() const;

Q_SIGNALS:
    /// The user went to a material channel that feeds an input.
    void materialChosen(OrvShaderInput* pChannel);

public Q_SLOTS:
    /// Brings the rows in step with the channels, without looking for other inputs.
    void updateConnections();

    // For the input that the sender names, as the boxes of rows do; else for the row that has the focus.
    // A channel without either is for the first free input.
    void createChannel();
    void createMaterialChannel();
    void toggleInvert(bool Inverted);
    void onSwitchInputEnabledChanged(bool Enabled);

private:
    enum class ChannelKind { Ordinary, Material };

    QWidget* createRowsHolder();
    QWidget* createTexts();
    void rebuildRows(OrvLayerShader* pShader);
    void removeRows();
    void showMessage(const QString& Text);
    void showNote();
    OrvShaderInputRow* rowInUse() const;
    OrvShaderInputRow* rowForNewChannel(ChannelKind Kind) const;
    void createChannelOfKind(ChannelKind Kind);

    QPointer<OrvLayerShader> m_pShader;
    QVector<OrvShaderInputRow*> m_Rows;
    QGridLayout* m_pGrid;
    QLabel* m_pInvertCaption;
    QLabel* m_pMessage;
    QLabel* m_pNote;
};
