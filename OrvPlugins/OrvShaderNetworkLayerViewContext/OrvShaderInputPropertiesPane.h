#pragma once

#include <QtWidgets/QWidget>

class OrvPropertyView;
class OrvShaderInput;
class QVBoxLayout;

/// The properties of one channel, under the list of channels. The Channels palette owns it and says of which;
/// they follow the channel by themselves, and cannot be edited while the channel's row could not be either.
class OrvShaderInputPropertiesPane : public QWidget {
    Q_OBJECT

public:
    explicit OrvShaderInputPropertiesPane(QWidget* pParent = nullptr);

    /// None for null, and for a channel that is gone. The same channel is read anew.
    void showProperties(OrvShaderInput* pShaderInput);

private:
    void clear();
    OrvPropertyView* createProperties(OrvShaderInput* pShaderInput) const;

    QVBoxLayout* m_PropertyLayout;
};
