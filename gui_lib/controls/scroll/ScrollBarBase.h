#pragma once

#include "platform/qor/Api.h"

namespace gui {

/// The numbers of a scrolling range, without a widget: a position within a range, the part of the range that is in view
/// and the distances of a line and of a page. A class may derive from it alone and stand in for a bar that is not
/// shown. After every setter the minimum is at most the maximum, and the value lies between the minimum and the maximum
/// less the thumb value. What comes out as no number changes nothing.
class VORLEX_API ScrollBarBase {
public:
    ScrollBarBase() = default;
    ScrollBarBase(ScrollBarBase const&) = delete;
    ScrollBarBase& operator=(ScrollBarBase const&) = delete;

    /// The low edge of what is in view. Kept within the range and on multiples of the step, counted from 0.
    virtual void setValue(double newValue);
    virtual double getValue() const;
    /// Ignored if the maximum is below the minimum.
    virtual void setRange(double newMinimum, double newMaximum);
    virtual void getRange(double& minimum, double& maximum) const;
    /// The size of a line. Like the next two at most the width of the range; nothing limits them below.
    virtual void setStep(double newStep);
    virtual double getStep() const;
    virtual void setPageStep(double newPageStep);
    virtual double getPageStep() const;
    /// The part of the range that is in view. Then brings the value into the new limits, as the user would.
    virtual void setThumbValue(double newThumbValue);
    virtual double getThumbValue() const;

    // --- Changes: a setter has found a difference; the override stores or calls up ---
    virtual void onValueChanged_(double newValue);
    virtual void onRangeChanged_(double newMinimum, double newMaximum);
    virtual void onStepChanged_(double newStep);
    virtual void onPageStepChanged_(double newPageStep);
    virtual void onThumbValueChanged_(double newThumbValue);

    // --- What a setter makes of its argument ---
    virtual double validateValue_(double wanted) const;
    virtual bool validateRange_(double minimum, double maximum) const;
    virtual double validateStep_(double wanted) const;
    virtual double validatePageStep_(double wanted) const;
    virtual double validateThumbValue_(double wanted) const;

    // --- By the user ---
    virtual void increaseValue_();
    virtual void decreaseValue_();
    /// As `setValue`, by the user: a bar tells its listeners.
    virtual void changeValue_(double newValue);

    virtual ~ScrollBarBase() = default;

protected:
    /// Whether a validated number is to be stored in place of another.
    static bool differs_(double valid, double stored) { return valid == valid && valid != stored; }

    double value = 0.0;
    double rangeMinimum = 0.0;
    double rangeMaximum = 100.0;
    double step = 1.0;
    double pageStep = 10.0;
    double thumbValue = 30.0;

private:
    double limitToRange_(double wanted) const;
};

}  // namespace gui
