// HostColor: a colour value with its colour-model code.
#pragma once

/// A colour as the host stores it: a colour-model code and up to four components.
/// Plain value; cheap to copy.
class HostColor
{
public:
    /// Colour models the host knows; the code is what saved forms carry. Code 2 is RGB, the
    /// model of every colour the library builds (the default handle colour is code 2 with
    /// the components 1, 0, 0).
    enum Model
    {
        HSV = 1,
        RGB = 2,
        HSL = 3,
        LAB = 4,
        XYZ = 5
    };

    HostColor() = default;
    HostColor(Model model, double c0, double c1, double c2, double alpha = 1.0)
        : myModel(model), myComponents{c0, c1, c2, alpha}
    {
    }

    /// A colour from a model code; unknown codes are read as RGB.
    static HostColor fromCode(int code, double c0, double c1, double c2, double alpha = 1.0);

    Model model() const { return myModel; }
    int modelCode() const { return static_cast<int>(myModel); }
    double component(int i) const { return (i >= 0 && i < 4) ? myComponents[i] : 0.0; }
    void setComponent(int i, double value)
    {
        if (i >= 0 && i < 4)
            myComponents[i] = value;
    }
    void setModel(Model model) { myModel = model; }

    bool operator==(const HostColor &other) const;
    bool operator!=(const HostColor &other) const { return !(*this == other); }

private:
    Model myModel = RGB;
    double myComponents[4] = {0.0, 0.0, 0.0, 1.0};
};
