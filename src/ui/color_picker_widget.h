// A colour picker: a swatch button that opens a palette of 48 colours and a
// "Custom dialog..." button. Colours are 0x00BBGGRR.
#pragma once

#include <QToolButton>
#include <array>
#include <functional>

class QMenu;

class ColorPicker : public QToolButton {
    Q_OBJECT
public:
    static const std::array<quint32, 48> kPalette;

    explicit ColorPicker(const QString& caption, QWidget* parent = nullptr);

    quint32 color() const { return color_; }
    // Shows the colour without picking it.
    void setColor(quint32 bgr);
    // A click on palette entry `index` (0..47).
    void pick(int index);
    // The custom dialog; refused while the query says the main window stays on top.
    void openCustomDialog();
    void setStayOnTopQuery(std::function<bool()> q) { stayOnTop_ = std::move(q); }
    void setRefusalHandler(std::function<void(const QString&)> h) { refusal_ = std::move(h); }

signals:
    void colorPicked(quint32 bgr);

private:
    void showSwatch();

    QString caption_;
    quint32 color_ = 0;
    QMenu* menu_;
    std::function<bool()> stayOnTop_;
    std::function<void(const QString&)> refusal_;
};
